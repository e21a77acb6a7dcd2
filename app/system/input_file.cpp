// Reads a whole input file into memory; see the header.
#include "system/input_file.hpp"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <new>

#include "system/failure.hpp"
#include "system/file.hpp"
#include "system/path.hpp"

namespace host {

namespace {

// Closes the descriptor on every way out.
struct OpenFile {
  int descriptor;
  ~OpenFile() {
    if (descriptor >= 0) closeFile(descriptor);
  }
};

constexpr int longestWait = 3000;  // ms, for the writer of a pipe
constexpr std::size_t headLength = 65536;
constexpr std::size_t longestPipe = std::size_t{1} << 28;  // nobody waits for a part behind so many bytes

[[noreturn]] void refuse(const std::string& path, const std::string& reason) {
  throw Failure("cannot read " + path + ": " + reason);
}

FileStatus statusOf(const OpenFile& file, const std::string& path) {
  FileStatus status;
  if (!statusOf(file.descriptor, status)) refuse(path, std::strerror(errno));
  return status;
}

// Waits until somebody writes into the pipe, but not for ever.
void waitForWriter(const OpenFile& file, const std::string& path, std::string& content) {
  bool nobody = false;
  awaitWriter(file.descriptor, longestWait, content, nobody);
  if (nobody)
    refuse(path, "it is a pipe, and for " + std::to_string(longestWait / 1000) +
                     " s nobody has opened it to write");
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
    const std::int64_t got = readBytes(file.descriptor, content.data() + filled, length - filled);
    if (got < 0) refuse(path, std::strerror(errno));
    if (got == 0) break;
    filled += static_cast<std::size_t>(got);
  }
  content.resize(filled);
}

bool differ(const FileStatus& a, const FileStatus& b) {
  return a.length != b.length || a.seconds != b.seconds || a.nanoseconds != b.nanoseconds;
}

}  // namespace

std::string readInputFile(const std::string& path, const HeadCheck& check) {
  const OpenFile file{openToRead(path)};
  if (file.descriptor < 0) refuse(path, std::strerror(errno));
  const FileStatus status = statusOf(file, path);
  if (status.kind == FileKind::folder) refuse(path, std::strerror(EISDIR));
  const bool sized = status.kind == FileKind::plain && status.length > 0;  // files of /proc say 0

  std::string content;
  if (status.kind == FileKind::pipe) waitForWriter(file, path, content);
  if (!letReadsWait(file.descriptor)) refuse(path, std::strerror(errno));
  readUpTo(headLength, file, path, content);
  if (check) check(content, sized ? status.length : -1);
  if (sized) {
    const auto length = static_cast<std::size_t>(status.length);
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

std::string readRecordFile(const std::string& path) {
  constexpr std::uintmax_t longestRecord = 1 << 20;  // bytes
  const std::filesystem::path place = pathOf(path);
  std::error_code error;
  if (!std::filesystem::is_regular_file(place, error) ||
      std::filesystem::file_size(place, error) > longestRecord || error)
    return "";
  try {
    return readInputFile(path);
  } catch (const Failure&) {
    return "";
  }
}

}  // namespace host
