// Shows the progress of a run; see the header.
#include "run/progress_view.hpp"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace host {

namespace {

// Bar, brackets, a blank and the text are narrower than a terminal of 80 columns: a longer line would not be redrawn.
constexpr int barWidth = 16;
constexpr std::size_t textWidth = 58;
constexpr int plainStep = 10;  // percent between two plain lines of a phase without increments

std::string gradientText(const ProgressRecord& record) {
  char text[32];
  std::snprintf(text, sizeof text, ", gradient %.1e mm", record.residual());
  return text;
}

// The estimate takes the gradient's place: both are wider than the line.
std::string tailText(const ProgressRecord& record, const std::string& left) {
  return ", iteration " + std::to_string(record.iteration()) +
         (left.empty() ? gradientText(record) : ", " + left);
}

std::string incrementText(const ProgressRecord& record, int percent, bool terminal, const std::string& left) {
  const std::string start =
      "increment " + std::to_string(record.steps()) + ", " + std::to_string(percent) + " %";
  if (!terminal) return start + " of the part" + (left.empty() ? "" : ", " + left);
  if (!(record.residual() >= 0.0)) return start;
  return start + tailText(record, left);
}

std::string newtonText(const ProgressRecord& record, int percent, bool terminal, const std::string& left) {
  const std::string start = "finding the blank " + std::to_string(percent) + " %";
  if (!terminal || !(record.residual() >= 0.0)) return start + (left.empty() ? "" : ", " + left);
  return start + tailText(record, left);
}

std::string phaseText(const ProgressRecord& record, int percent, bool terminal, const std::string& left) {
  switch (record.phase()) {
    case TORNWALZEN_PHASE_STRUCTURE:
      return "building the structure of the equations";
    case TORNWALZEN_PHASE_ORDERING:
      return "ordering the equations";
    case TORNWALZEN_PHASE_SYMBOLIC:
      return "laying out the factor";
    case TORNWALZEN_PHASE_DEVELOPMENT:
      return "developing the part " + std::to_string(percent) + " %";
    case TORNWALZEN_PHASE_INCREMENTS:
      return incrementText(record, percent, terminal, left);
    case TORNWALZEN_PHASE_START:
      return "laying out the starting blank";
    case TORNWALZEN_PHASE_NEWTON:
      return newtonText(record, percent, terminal, left);
    case TORNWALZEN_PHASE_PRESS:
      return terminal && record.residual() >= 0.0
                 ? "edges and tools, round " + std::to_string(record.iteration()) + gradientText(record)
                 : "edges and tools";
    default:
      return "running " + std::to_string(percent) + " %";
  }
}

}  // namespace

std::string progressBar(int percent, int width) {
  const int filled = percent * width / 100;
  return "[" + std::string(static_cast<std::size_t>(filled), '#') +
         std::string(static_cast<std::size_t>(width - filled), '.') + "]";
}

bool ProgressView::isNews(const ProgressRecord& record, int percent) const {
  if (record.phase() != shownPhase_ || record.steps() != shownSteps_) return true;
  if (terminal_)
    return percent > shownPercent_ || record.phase() == TORNWALZEN_PHASE_INCREMENTS ||
           record.phase() == TORNWALZEN_PHASE_NEWTON;
  return record.phase() != TORNWALZEN_PHASE_INCREMENTS && percent / plainStep > shownPercent_ / plainStep;
}

std::string ProgressView::lineOf(const ProgressRecord& record, int percent) {
  const std::optional<double> left =
      remaining_.update(record.phase(), record.fraction(), record.iteration(), record.seconds());
  return phaseText(record, percent, terminal_, left ? remainingText(*left) : "");
}

void ProgressView::update(const ProgressRecord& record) {
  const double fraction = std::isfinite(record.fraction()) ? std::clamp(record.fraction(), 0.0, 1.0) : 0.0;
  int percent = static_cast<int>(100.0 * fraction);
  if (record.phase() == shownPhase_) percent = std::max(percent, shownPercent_);
  const std::string line = lineOf(record, percent);  // the estimate hears of every step
  if (!isNews(record, percent)) return;
  shownPhase_ = record.phase();
  shownPercent_ = percent;
  shownSteps_ = record.steps();
  print(line, percent);
}

void ProgressView::reached(const ProgressRecord& record) {
  const std::string increment =
      record.steps() > 0 ? "increment " + std::to_string(record.steps()) + ", " : "";
  print(increment + "100 % of the part", 100);
}

void ProgressView::print(const std::string& line, int percent) {
  if (!shown_) return;
  if (terminal_) {
    std::string covering = line;  // what stood there
    covering.resize(textWidth, ' ');
    std::fprintf(stderr, "\r%s %s", progressBar(percent, barWidth).c_str(), covering.c_str());
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
