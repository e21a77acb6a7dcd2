// The progress channel: fractions, information lines and the processor time go to the host's handler.
#include "ground/progress.hpp"

#include <cstdio>
#include <cstring>
#include <ctime>

#include "ground/run_state.hpp"

namespace {

struct ProgressState {
  TornwalzenProgressHandler handler = nullptr;
  void* userdata = nullptr;
  double pStart = 0.0, pEnd = 0.0, pRange = 0.0;
  bool firstCall = false;
  char information[tornwalzen::messageLength] = {};
  char time[tornwalzen::timeTextLength] = {};
} progress;

void report(double value, int32_t kind, const char* text) {
  const TornwalzenProgress record{value, kind, text};
  progress.handler(progress.userdata, &record);
}

}  // namespace

void tornwalzen::processorTimeText(char* out, Int64 milliseconds) {
  const long long seconds = milliseconds / 1000, minutes = seconds / 60;
  if (minutes != 0)
    std::snprintf(out, timeTextLength, "TIME: %lldmin %llds", minutes, seconds % 60);
  else
    std::snprintf(out, timeTextLength, "TIME: %lldsec", seconds % 60);
}

void tornwalzen::resetProgress() {
  progress = ProgressState{};
}

extern "C" {

void PlivaneSetProgressHdlr(TornwalzenProgressHandler handler, void* userdata) {
  progress.handler = handler;
  progress.userdata = userdata;
}

void inipgr(const double* end) {
  if (end == nullptr) return;
  progress.pEnd = *end;
  progress.pStart = 0.0;
  progress.firstCall = true;
}

void progre(const double* x) {
  if (progress.handler == nullptr || x == nullptr) return;
  if (progress.firstCall) {
    progress.pStart = *x;
    progress.pRange = progress.pEnd - *x;
    progress.firstCall = false;
    report(0.0, 0, nullptr);
  } else {
    report(1.0 - (progress.pEnd - *x) / progress.pRange, 0, nullptr);
  }
}

void proinf(const char* text, int32_t) {
  if (progress.handler == nullptr || text == nullptr) return;
  std::size_t length = 0;
  while (length + 1 < sizeof progress.information && text[length] != '\0') ++length;
  std::memcpy(progress.information, text, length);
  progress.information[length] = '\0';
  report(0.0, 1, progress.information);
}

void procpu(void) {
  if (progress.handler == nullptr) return;
  const tornwalzen::Int64 ticksPerMillisecond = CLOCKS_PER_SEC / 1000;
  tornwalzen::processorTimeText(progress.time,
                                static_cast<tornwalzen::Int64>(std::clock()) / ticksPerMillisecond);
  report(0.0, 1, progress.time);
}

}  // extern "C"
