// The library's messages of one run: kept in a log file and shown on demand.
#pragma once

#include <string>
#include <string_view>

namespace host {

class RunLog {
 public:
  // Creates or empties the log file. Throws Failure if that is not possible.
  explicit RunLog(const std::string& path);
  ~RunLog();
  RunLog(const RunLog&) = delete;
  RunLog& operator=(const RunLog&) = delete;

  // One message line without its line end: written to the file at once, and to the descriptor
  // `screen` unless that is negative. A full disk is remembered, not thrown.
  void take(std::string_view line, int screen);

  // The reason why the file is incomplete, empty if it is complete.
  const std::string& problem() const { return problem_; }

 private:
  std::string path_, problem_;
  int file_;  // its descriptor
};

}  // namespace host
