// Shows the progress of a run on standard error: a bar that is redrawn on a terminal, plain lines elsewhere.
#pragma once

#include <string>

#include "run/progress_record.hpp"
#include "run/remaining_time.hpp"

namespace host {

class ProgressView {
 public:
  // terminal: whether to draw a bar. shown: whether to show anything.
  explicit ProgressView(bool terminal, bool shown = true) : terminal_(terminal), shown_(shown) {}
  ~ProgressView() { finish(); }
  ProgressView(const ProgressView&) = delete;
  ProgressView& operator=(const ProgressView&) = delete;

  // To be called after each step. A bar is redrawn at every step that changes it; plain lines come with a new phase,
  // a new increment, or in the development another tenth. The percentage is the best of the phase so far: it never
  // runs backwards. A run that lasts more than 5 s gets an estimate of what is left.
  void update(const ProgressRecord& record);
  // The part is reached: shows it.
  void reached(const ProgressRecord& record);
  // Ends the line of the bar.
  void finish();

 private:
  bool isNews(const ProgressRecord& record, int percent) const;
  void print(const std::string& line, int percent);
  std::string lineOf(const ProgressRecord& record, int percent);
  bool terminal_, shown_;
  RemainingTime remaining_;
  bool lineOpen_ = false;
  int shownPhase_ = 0, shownPercent_ = 0, shownSteps_ = 0;
};

// "[####......]" with `width` places; percent 0..100.
std::string progressBar(int percent, int width);

}  // namespace host
