// Reads a whole input file into memory; see the header.
#include "input_file.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "failure.hpp"

namespace host {

namespace {

// Closes the descriptor on every way out.
struct OpenFile {
  int fd;
  ~OpenFile() {
    if (fd >= 0) ::close(fd);
  }
};

[[noreturn]] void refuse(const std::string& path, int error) {
  throw Failure("cannot read " + path + ": " + std::strerror(error));
}

}  // namespace

std::string readInputFile(const std::string& path) {
  const OpenFile file{::open(path.c_str(), O_RDONLY | O_CLOEXEC)};
  if (file.fd < 0) refuse(path, errno);
  struct stat status {};
  if (::fstat(file.fd, &status) != 0) refuse(path, errno);
  if (S_ISDIR(status.st_mode)) refuse(path, EISDIR);

  // The size is only a first guess: a pipe has none, and a file may change while it is read.
  std::string content;
  content.resize(S_ISREG(status.st_mode) ? static_cast<std::size_t>(status.st_size) + 1 : std::size_t{65536});
  std::size_t filled = 0;
  for (;;) {
    if (filled == content.size()) content.resize(2 * content.size());
    const ssize_t got = ::read(file.fd, content.data() + filled, content.size() - filled);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) refuse(path, errno);
    if (got == 0) break;
    filled += static_cast<std::size_t>(got);
  }
  content.resize(filled);
  return content;
}

}  // namespace host
