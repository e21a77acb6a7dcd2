// Files by descriptor: all about them that differs between systems, in posix/ and windows/. Paths are UTF-8.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace host {

enum class FileKind { plain, folder, pipe, other };

struct FileStatus {
  FileKind kind = FileKind::other;
  std::int64_t length = 0;                    // bytes
  std::int64_t seconds = 0, nanoseconds = 0;  // of the last change, since a day of the system's own
  std::uint64_t device = 0, number = 0;       // where the file lies, and which it is there
};

constexpr int standardOutput = 1, standardError = 2;  // descriptors

// Descriptors that a started program does not get; negative, with errno: the file cannot be opened so.
int openToRead(const std::string& path);   // where it is a pipe, reads do not wait: see letReadsWait
int createFile(const std::string& path);   // to write; where there is one already, EEXIST
int replaceFile(const std::string& path);  // to write, made or emptied

// All that follow return false (the number of bytes: a negative one), with errno, where the system refuses.
bool statusOf(int file, FileStatus& status);
bool statusOf(const std::string& path, FileStatus& status);  // behind all links

// Waits until somebody writes into the pipe, at most `longest` milliseconds. nobody: out, true if until then nobody has
// opened it to write; a byte that came at the last moment is appended to `content`.
void awaitWriter(int pipe, int longest, std::string& content, bool& nobody);
bool letReadsWait(int file);
std::int64_t readBytes(int file, char* bytes, std::size_t length);  // fewer at the end, 0 behind it
bool writeBytes(int file, std::string_view bytes);
bool bringOntoDisk(int file);  // true, too, where nothing can be brought onto a disk: a pipe, a device
bool closeFile(int file);

bool removeFile(const std::string& path);
bool moveFile(const std::string& from, const std::string& to);  // in the place of a file that lies there
bool makeOwnFolder(
    std::string& path);  // for this user alone; path: in its beginning, out the whole, which is new
bool isProgram(const std::string& path);  // a file that may be run
bool isTerminal(int file);

}  // namespace host
