// Reads a whole input file into memory; see the header.
#include "system/input_file.hpp"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <new>

#include "system/failure.hpp"

namespace host {

namespace {

// Closes the descriptor on every way out.
struct OpenFile {
  int fd;
  ~OpenFile() {
    if (fd >= 0) ::close(fd);
  }
};

constexpr int longestWait = 3000;  // ms, for the writer of a pipe
constexpr std::size_t headLength = 65536;
constexpr std::size_t longestPipe = std::size_t{1} << 28;  // nobody waits for a part behind so many bytes

[[noreturn]] void refuse(const std::string& path, const std::string& reason) {
  throw Failure("cannot read " + path + ": " + reason);
}

struct stat statusOf(const OpenFile& file, const std::string& path) {
  struct stat status {};
  if (::fstat(file.fd, &status) != 0) refuse(path, std::strerror(errno));
  return status;
}

// Waits until somebody writes into the pipe, but not for ever. The descriptor does not block; a byte that comes
// at the last moment is appended to the content.
void waitForWriter(const OpenFile& file, const std::string& path, std::string& content) {
  pollfd pipe{file.fd, POLLIN, 0};
  int ready = 0;
  do ready = ::poll(&pipe, 1, longestWait);
  while (ready < 0 && errno == EINTR);
  if (ready > 0) return;  // bytes, or a writer came and went
  char first = 0;
  const ssize_t got = ::read(file.fd, &first, 1);  // fails where there is a writer who has not written yet
  if (got == 1) content += first;
  if (got == 0)
    refuse(path, "it is a pipe, and for " + std::to_string(longestWait / 1000) +
                     " s nobody has opened it to write");
}

// From now on reading waits for the bytes.
void letReadsWait(const OpenFile& file, const std::string& path) {
  const int flags = ::fcntl(file.fd, F_GETFL);
  if (flags < 0 || ::fcntl(file.fd, F_SETFL, flags & ~O_NONBLOCK) < 0) refuse(path, std::strerror(errno));
}

// Lengthens the content to at most `length` bytes with those that follow in the file.
void readUpTo(std::size_t length, const OpenFile& file, const std::string& path, std::string& content) {
  std::size_t filled = content.size();
  try {
    content.resize(length);
  } catch (const std::bad_alloc&) {
    refuse(path, "not enough memory for " + std::to_string(length) + " bytes");
  }
  while (filled < length) {
    const ssize_t got = ::read(file.fd, content.data() + filled, length - filled);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) refuse(path, std::strerror(errno));
    if (got == 0) break;
    filled += static_cast<std::size_t>(got);
  }
  content.resize(filled);
}

bool differ(const struct stat& a, const struct stat& b) {
  return a.st_size != b.st_size || a.st_mtim.tv_sec != b.st_mtim.tv_sec ||
         a.st_mtim.tv_nsec != b.st_mtim.tv_nsec;
}

}  // namespace

std::string readInputFile(const std::string& path, const HeadCheck& check) {
  const OpenFile file{
      ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC)};  // a pipe without writer would block
  if (file.fd < 0) refuse(path, std::strerror(errno));
  const struct stat status = statusOf(file, path);
  if (S_ISDIR(status.st_mode)) refuse(path, std::strerror(EISDIR));
  const bool sized = S_ISREG(status.st_mode) && status.st_size > 0;  // files of /proc say 0

  std::string content;
  if (S_ISFIFO(status.st_mode)) waitForWriter(file, path, content);
  letReadsWait(file, path);
  readUpTo(headLength, file, path, content);
  if (check) check(content, sized ? std::int64_t{status.st_size} : -1);
  if (sized) {
    const auto length = static_cast<std::size_t>(status.st_size);
    if (length > content.size()) readUpTo(length, file, path, content);
    // A part that another program is still writing must not pass for the whole one.
    if (content.size() < length || differ(status, statusOf(file, path)))
      refuse(path, "it changed while it was read");
    return content;
  }
  for (std::size_t length = headLength; content.size() == length;) {  // the end is not reached
    if (length == longestPipe)
      refuse(path, "no end within " + std::to_string(longestPipe) + " bytes; a longer part must be a file");
    readUpTo(length *= 2, file, path, content);
  }
  return content;
}

}  // namespace host
