// The library's messages of one run; see the header.
#include "run/run_log.hpp"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "system/failure.hpp"

namespace host {

namespace {

bool writeAll(int fd, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(fd, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

}  // namespace

RunLog::RunLog(const std::string& path)
    : path_(path), fd_(::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666)) {
  if (fd_ < 0) throw Failure("cannot write " + path + ": " + std::strerror(errno));
}

RunLog::~RunLog() {
  ::close(fd_);
}

void RunLog::take(std::string_view line, int screen) {
  const std::string whole = std::string(line) + '\n';
  if (problem_.empty() && !writeAll(fd_, whole))
    problem_ = "cannot write " + path_ + ": " + std::strerror(errno);
  if (screen >= 0) writeAll(screen, whole);
}

}  // namespace host
