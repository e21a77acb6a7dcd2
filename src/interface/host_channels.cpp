// The exported text and progress functions, on the default analysis.
#include "ground/messages.hpp"
#include "ground/progress.hpp"
#include "interface/default_analysis.hpp"
#include "tornwalzen.h"

using namespace tornwalzen;

extern "C" {

void PlivaneSetProgressHdlr(TornwalzenProgressHandler handler, void* userdata) {
  ProgressChannel& progress = defaultAnalysis().progress;
  progress.handler = handler;
  progress.userdata = userdata;
}

void inipgr(const double* end) {
  if (end != nullptr) openScale(defaultAnalysis().progress, *end);
}

void progre(const double* x) {
  if (x != nullptr) reportFraction(defaultAnalysis().progress, *x);
}

void proinf(const char* text, int32_t) {
  reportInformation(defaultAnalysis().progress, text);
}

void procpu(void) {
  reportProcessorTime(defaultAnalysis().progress);
}

void prttxt(const char* text, int32_t) {
  printText(defaultAnalysis().messages, text);
}

void prterr(void) {}

}  // extern "C"
