// The library's messages of one run: kept in a log file, shown on demand, and counted.
#ifndef TORNWALZEN_APP_RUN_LOG_HPP
#define TORNWALZEN_APP_RUN_LOG_HPP

#include <cstdint>
#include <string>
#include <string_view>

namespace host {

// What the messages tell. Repeats are attempts that were given up and made again with a smaller step.
struct RunCounts {
  std::int64_t attempts = 0;  // increments begun, repeats included
  std::int64_t repeats = 0;
  std::int64_t newtonIterations = 0;
  double lastGradient = -1.0;  // largest residual component of the last iteration, -1 before the first
  bool stepTooSmall = false;   // the driver gave up: its step became too small
  std::int64_t increments() const { return attempts - repeats; }
};

class RunLog {
 public:
  // Creates or empties the log file. Throws Failure if that is not possible.
  explicit RunLog(const std::string& path);
  ~RunLog();
  RunLog(const RunLog&) = delete;
  RunLog& operator=(const RunLog&) = delete;

  // One message line without its line end: counted, written to the file at once, and to the descriptor
  // `screen` unless that is negative. A full disk is remembered, not thrown.
  void take(std::string_view line, int screen);

  const RunCounts& counts() const { return counts_; }
  // The reason why the file is incomplete, empty if it is complete.
  const std::string& problem() const { return problem_; }

 private:
  std::string path_, problem_;
  RunCounts counts_;
  int fd_;
};

}  // namespace host

#endif
