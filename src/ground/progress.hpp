// The progress channel: fractions, information lines and the processor time go to the host's handler; a monitor
// hears of every step and may ask for an orderly end.
#pragma once

#include "ground/analysis.hpp"

namespace tornwalzen {

/// Opens a progress scale that ends at `end`.
void openScale(ProgressChannel& progress, double end);

/// Reports progress x on that scale: 0.0 the first time after openScale, then 1 - (end - x)/(end - first x).
void reportFraction(ProgressChannel& progress, double x);

/// Hands an information line to the handler. text: in, up to its zero byte, at most 127 characters; null: nothing.
void reportInformation(ProgressChannel& progress, const char* text);

/// Hands the processor time of the process to the handler.
void reportProcessorTime(ProgressChannel& progress);

/// The text for that: "TIME: 59sec" below a minute, else "TIME: 1min 1s".
/// out: at least timeTextLength characters, zero-terminated on return. milliseconds: in, >= 0.
void processorTimeText(char* out, Int64 milliseconds);

/// Tells the monitor where the run stands, with a fraction of 0..1 whatever a degenerate part made of it.
/// True if the run shall go on; once the monitor has asked for the end it is asked no more.
bool hostContinues(ProgressChannel& progress, const ProgressPoint& point);

}  // namespace tornwalzen
