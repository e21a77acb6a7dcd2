// The two ways to the host, as state: where messages go, and who hears of the progress.
#pragma once

#include "ground/array_view.hpp"
#include "tornwalzen.h"

namespace tornwalzen {

constexpr int messageLength = 128;  // characters of a message buffer, blank-padded
constexpr int timeTextLength =
    48;  // "TIME: ", up to 18 digits of minutes, "min ", two of seconds, "s", zero byte

/// Takes one message line, zero-terminated, without a line end. Null: standard output.
using MessageHandler = void (*)(void* userdata, const char* line);

struct MessageChannel {
  MessageHandler handler = nullptr;
  void* userdata = nullptr;
  char MSGSTR_solver[messageLength] = {};  // fatal text of structure builder and solver: kept, not printed
  char MSGSTR[messageLength] = {};         // message of all other routines
};

/// Where a run stands. The values are those of tornwalzen_analysis.h.
enum class RunPhase : Int {
  structure = 1,
  ordering = 2,
  symbolic = 3,
  development = 4,
  increments = 5,
  start = 6,
  newton = 7,
  checks = 8,
  press = 9
};

/// What a monitor is told.
struct ProgressPoint {
  RunPhase phase;
  double fraction;         // of the phase, 0..1
  Int increment = 0;       // from 1; 0 where the phase has none
  Int iteration = 0;       // of the increment or the phase, from 1; 0 before the first
  double residual = -1.0;  // largest free component of the gradient (mm); negative where there is none yet
};

/// Hears of every step and may end the run: anything but 0 asks for that.
using ProgressMonitor = Int (*)(void* userdata, const ProgressPoint& point);

struct ProgressChannel {
  TornwalzenProgressHandler handler = nullptr;  // of the fixed interface
  void* userdata = nullptr;
  double pStart = 0.0, pEnd = 0.0, pRange = 0.0;
  bool firstCall = false;
  char information[messageLength] = {};
  char time[timeTextLength] = {};

  ProgressMonitor monitor = nullptr;  // of an analysis handle
  void* monitorData = nullptr;
  bool stopAsked = false;  // since the run began
};

}  // namespace tornwalzen
