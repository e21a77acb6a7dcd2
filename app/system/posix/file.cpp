// Files by descriptor where the system is POSIX's; see the header.
#include "system/file.hpp"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>

#include "system/path.hpp"

namespace host {

namespace {

constexpr mode_t permissions = 0666;  // less what the user's mask takes

bool take(const struct stat& of, FileStatus& status) {
  status.kind = S_ISREG(of.st_mode)    ? FileKind::plain
                : S_ISDIR(of.st_mode)  ? FileKind::folder
                : S_ISFIFO(of.st_mode) ? FileKind::pipe
                                       : FileKind::other;
  status.length = of.st_size;
  status.seconds = of.st_mtim.tv_sec;
  status.nanoseconds = of.st_mtim.tv_nsec;
  status.device = of.st_dev;
  status.number = of.st_ino;
  return true;
}

}  // namespace

std::filesystem::path pathOf(const std::string& text) {
  return text;
}

std::string pathText(const std::filesystem::path& path) {
  return path.string();
}

int openToRead(const std::string& path) {
  return ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);  // a pipe without writer would block
}

int createFile(const std::string& path) {
  return ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, permissions);
}

int replaceFile(const std::string& path) {
  return ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, permissions);
}

bool statusOf(int file, FileStatus& status) {
  struct stat found {};
  return ::fstat(file, &found) == 0 && take(found, status);
}

bool statusOf(const std::string& path, FileStatus& status) {
  struct stat found {};
  return ::stat(path.c_str(), &found) == 0 && take(found, status);
}

void awaitWriter(int pipe, int longest, std::string& content, bool& nobody) {
  nobody = false;
  pollfd wanted{pipe, POLLIN, 0};
  int ready = 0;
  do ready = ::poll(&wanted, 1, longest);
  while (ready < 0 && errno == EINTR);
  if (ready > 0) return;  // bytes, or a writer came and went
  char first = 0;
  const ssize_t got = ::read(pipe, &first, 1);  // fails where there is a writer who has not written yet
  if (got == 1) content += first;
  nobody = got == 0;
}

bool letReadsWait(int file) {
  const int flags = ::fcntl(file, F_GETFL);
  return flags >= 0 && ::fcntl(file, F_SETFL, flags & ~O_NONBLOCK) >= 0;
}

std::int64_t readBytes(int file, char* bytes, std::size_t length) {
  ssize_t got = 0;
  do got = ::read(file, bytes, length);
  while (got < 0 && errno == EINTR);
  return got;
}

bool writeBytes(int file, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(file, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

bool bringOntoDisk(int file) {
  return ::fsync(file) == 0 || errno == EINVAL || errno == EROFS;
}

bool closeFile(int file) {
  return ::close(file) == 0;
}

bool removeFile(const std::string& path) {
  return ::unlink(path.c_str()) == 0;
}

bool moveFile(const std::string& from, const std::string& to) {
  return std::rename(from.c_str(), to.c_str()) == 0;
}

bool makeOwnFolder(std::string& path) {
  path += "XXXXXX";
  return ::mkdtemp(path.data()) != nullptr;
}

bool isProgram(const std::string& path) {
  return ::access(path.c_str(), X_OK) == 0;
}

bool isTerminal(int file) {
  return ::isatty(file) == 1;
}

}  // namespace host
