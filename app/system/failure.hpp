// How the host program gives up: one exception type that carries the sentence for the user and the exit
// status.
#pragma once

#include <stdexcept>
#include <string>

namespace host {

// Exit statuses of the program. A script needs to tell only 0 from the rest; the others say where to look.
enum ExitStatus : int {
  exitConverged = 0,
  exitRefused = 1,      // arguments, mesh, held unknowns or a file: nothing was computed, or not written
  exitUnconverged = 2,  // the run ended without converging; its results are kept and marked
  exitRunFailed = 3     // the library reported a failure
};

class Failure : public std::runtime_error {
 public:
  explicit Failure(const std::string& sentence, ExitStatus status = exitRefused)
      : std::runtime_error(sentence), status_(status) {}
  ExitStatus status() const { return status_; }

 private:
  ExitStatus status_;
};

}  // namespace host
