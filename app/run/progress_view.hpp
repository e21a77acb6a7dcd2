// Shows the progress of a run on standard error: a bar that is redrawn on a terminal, plain lines elsewhere.
#ifndef TORNWALZEN_APP_PROGRESS_VIEW_HPP
#define TORNWALZEN_APP_PROGRESS_VIEW_HPP

#include <string>

#include "run/progress_record.hpp"

namespace host {

class ProgressView {
 public:
  // terminal: whether to draw a bar.
  explicit ProgressView(bool terminal) : terminal_(terminal) {}
  ~ProgressView() { finish(); }
  ProgressView(const ProgressView&) = delete;
  ProgressView& operator=(const ProgressView&) = delete;

  // To be called after each record. Prints only when there is news: a new increment, or in the development
  // another tenth (terminal: another hundredth). The percentage is the
  // best of the phase so far: it never runs backwards.
  void update(const ProgressRecord& record);
  // Ends the line of the bar.
  void finish();

 private:
  void print(const ProgressRecord& record, int percent);
  bool terminal_;
  bool lineOpen_ = false;
  int shownPercent_ = -1, shownSteps_ = 0;
};

// "[####......]" with `width` places; percent 0..100.
std::string progressBar(int percent, int width);

}  // namespace host

#endif
