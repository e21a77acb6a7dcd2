// Takes the library's messages off standard output; see the header.
#include "run/output_capture.hpp"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "system/failure.hpp"

namespace host {

OutputCapture::OutputCapture(std::function<void(std::string_view)> receive) : receive_(std::move(receive)) {
  std::fflush(stdout);
  int ends[2];
  if (::pipe2(ends, O_CLOEXEC) != 0)
    throw Failure(std::string("no pipe for the messages: ") + std::strerror(errno));
  screen_ = ::fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 3);
  if (screen_ < 0 || ::dup2(ends[1], STDOUT_FILENO) < 0)
    throw Failure(std::string("cannot redirect standard output: ") + std::strerror(errno));
  ::close(ends[1]);
  reader_ = std::thread([this, source = ends[0]] { readLines(source); });
}

OutputCapture::~OutputCapture() {
  std::fflush(stdout);
  ::dup2(screen_, STDOUT_FILENO);  // closes the last writing end of the pipe: the thread comes to its end
  reader_.join();
  ::close(screen_);
}

void OutputCapture::readLines(int source) {
  std::string pending;
  char block[4096];
  for (;;) {
    const ssize_t got = ::read(source, block, sizeof block);
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) break;
    pending.append(block, static_cast<std::size_t>(got));
    std::size_t start = 0;
    for (std::size_t end; (end = pending.find('\n', start)) != std::string::npos; start = end + 1)
      receive_(std::string_view(pending).substr(start, end - start));
    pending.erase(0, start);
  }
  if (!pending.empty()) receive_(pending);
  ::close(source);
}

}  // namespace host
