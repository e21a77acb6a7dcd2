// The progress channel.
#include "ground/progress.hpp"

#include <cstdio>
#include <cstring>
#include <ctime>

namespace tornwalzen {

namespace {

void report(ProgressChannel& progress, double value, Int kind, const char* text) {
  const TornwalzenProgress record{value, kind, text};
  progress.handler(progress.userdata, &record);
}

}  // namespace

void processorTimeText(char* out, Int64 milliseconds) {
  const long long seconds = milliseconds / 1000, minutes = seconds / 60;
  if (minutes != 0)
    std::snprintf(out, timeTextLength, "TIME: %lldmin %llds", minutes, seconds % 60);
  else
    std::snprintf(out, timeTextLength, "TIME: %lldsec", seconds % 60);
}

void openScale(ProgressChannel& progress, double end) {
  progress.pEnd = end;
  progress.pStart = 0.0;
  progress.firstCall = true;
}

void reportFraction(ProgressChannel& progress, double x) {
  if (progress.handler == nullptr) return;
  if (progress.firstCall) {
    progress.pStart = x;
    progress.pRange = progress.pEnd - x;
    progress.firstCall = false;
    report(progress, 0.0, 0, nullptr);
  } else {
    report(progress, 1.0 - (progress.pEnd - x) / progress.pRange, 0, nullptr);
  }
}

void reportInformation(ProgressChannel& progress, const char* text) {
  if (progress.handler == nullptr || text == nullptr) return;
  std::size_t length = 0;
  while (length + 1 < sizeof progress.information && text[length] != '\0') ++length;
  std::memcpy(progress.information, text, length);
  progress.information[length] = '\0';
  report(progress, 0.0, 1, progress.information);
}

void reportProcessorTime(ProgressChannel& progress) {
  if (progress.handler == nullptr) return;
  const Int64 ticksPerMillisecond = CLOCKS_PER_SEC / 1000;
  processorTimeText(progress.time, static_cast<Int64>(std::clock()) / ticksPerMillisecond);
  report(progress, 0.0, 1, progress.time);
}

bool hostContinues(ProgressChannel& progress, const ProgressPoint& point) {
  if (progress.monitor != nullptr && !progress.stopAsked) {
    ProgressPoint told = point;
    if (!(told.fraction > 0.0)) told.fraction = 0.0;  // no number where a measure of the development is none
    if (told.fraction > 1.0) told.fraction = 1.0;
    progress.stopAsked = progress.monitor(progress.monitorData, told) != 0;
  }
  return !progress.stopAsked;
}

}  // namespace tornwalzen
