// The library's messages of one run; see the header.
#include "run/run_log.hpp"

#include <cerrno>
#include <cstring>

#include "system/failure.hpp"
#include "system/file.hpp"

namespace host {

RunLog::RunLog(const std::string& path) : path_(path), file_(replaceFile(path)) {
  if (file_ < 0) throw Failure("cannot write " + path + ": " + std::strerror(errno));
}

RunLog::~RunLog() {
  closeFile(file_);
}

void RunLog::take(std::string_view line, int screen) {
  const std::string whole = std::string(line) + '\n';
  if (problem_.empty() && !writeBytes(file_, whole))
    problem_ = "cannot write " + path_ + ": " + std::strerror(errno);
  if (screen >= 0) writeBytes(screen, whole);
}

}  // namespace host
