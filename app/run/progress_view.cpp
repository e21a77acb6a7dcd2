// Shows the progress of a run; see the header.
#include "run/progress_view.hpp"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace host {

namespace {
constexpr int barWidth = 40;
constexpr int plainStep = 10;  // percent between two plain lines of the development
}  // namespace

std::string progressBar(int percent, int width) {
  const int filled = percent * width / 100;
  return "[" + std::string(static_cast<std::size_t>(filled), '#') +
         std::string(static_cast<std::size_t>(width - filled), '.') + "]";
}

void ProgressView::update(const ProgressRecord& record) {
  // the development's measure may rise for a while: its fraction is then negative
  const double fraction = std::isfinite(record.fraction()) ? std::clamp(record.fraction(), 0.0, 1.0) : 0.0;
  int percent = static_cast<int>(100.0 * fraction);
  if (record.phase() == RunPhase::increments) {
    if (record.steps() == shownSteps_) return;
    if (shownSteps_ == 0) shownPercent_ = 0;
    percent = std::max(percent, shownPercent_);  // an increment that is repeated goes back
  } else {
    const int step = terminal_ ? 1 : plainStep;
    if (shownPercent_ >= 0 && percent / step <= shownPercent_ / step) return;
  }
  shownPercent_ = percent;
  shownSteps_ = record.steps();
  print(record, percent);
}

void ProgressView::print(const ProgressRecord& record, int percent) {
  std::string line =
      record.phase() == RunPhase::development
          ? "developing the part " + std::to_string(percent) + " %"
          : "increment " + std::to_string(record.steps()) + ", " + std::to_string(percent) + " % of the part";
  if (terminal_) {
    line.resize(std::max(line.size(), std::size_t{36}), ' ');  // covers what stood there
    std::fprintf(stderr, "\r%s %s", progressBar(percent, barWidth).c_str(), line.c_str());
    lineOpen_ = true;
  } else {
    std::fprintf(stderr, "%s\n", line.c_str());
  }
  std::fflush(stderr);
}

void ProgressView::finish() {
  if (lineOpen_) std::fputc('\n', stderr);
  lineOpen_ = false;
}

}  // namespace host
