// Files by descriptor on Windows; see the header.
#include "system/file.hpp"

#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <cerrno>

#include "system/path.hpp"
#include "system/windows/wide_text.hpp"

namespace host {

namespace {

// Others may read the file, and remove it: an unfinished one goes while it is still being written.
constexpr DWORD shared = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

// For the callers' two ways to say that the system refuses.
bool refused() {
  errno = lastErrorAsErrno();
  return false;
}

int noDescriptor() {
  refused();
  return -1;
}

int descriptorOf(HANDLE handle, int flags) {
  const int file = _open_osfhandle(reinterpret_cast<std::intptr_t>(handle), flags | _O_BINARY | _O_NOINHERIT);
  if (file < 0) CloseHandle(handle);
  return file;
}

int openToWrite(const std::string& path, DWORD way) {
  const HANDLE handle =
      CreateFileW(wide(path).c_str(), GENERIC_WRITE, shared, nullptr, way, FILE_ATTRIBUTE_NORMAL, nullptr);
  return handle == INVALID_HANDLE_VALUE ? noDescriptor() : descriptorOf(handle, _O_WRONLY);
}

bool take(HANDLE handle, FileStatus& status) {
  const DWORD type = GetFileType(handle);
  status = {};
  if (type != FILE_TYPE_DISK) {
    status.kind = type == FILE_TYPE_PIPE ? FileKind::pipe : FileKind::other;
    return true;
  }
  BY_HANDLE_FILE_INFORMATION found;
  if (!GetFileInformationByHandle(handle, &found)) return refused();
  const auto both = [](DWORD high, DWORD low) {
    return static_cast<std::uint64_t>(high) << 32 | static_cast<std::uint64_t>(low);
  };
  constexpr std::uint64_t unitsOfSecond = 10'000'000;  // a file time counts 100 ns
  const std::uint64_t changed =
      both(found.ftLastWriteTime.dwHighDateTime, found.ftLastWriteTime.dwLowDateTime);
  status.kind = found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY ? FileKind::folder : FileKind::plain;
  status.length = static_cast<std::int64_t>(both(found.nFileSizeHigh, found.nFileSizeLow));
  status.seconds = static_cast<std::int64_t>(changed / unitsOfSecond);
  status.nanoseconds = static_cast<std::int64_t>(changed % unitsOfSecond) * 100;
  status.device = found.dwVolumeSerialNumber;
  status.number = both(found.nFileIndexHigh, found.nFileIndexLow);
  return true;
}

// The handle of the file or folder, INVALID_HANDLE_VALUE: cannot be opened so.
HANDLE handleOf(const std::string& path, DWORD access) {
  return CreateFileW(wide(path).c_str(), access, shared, nullptr, OPEN_EXISTING,
                     FILE_FLAG_BACKUP_SEMANTICS,  // without it no folders
                     nullptr);
}

HANDLE handleOf(int file) {
  return reinterpret_cast<HANDLE>(_get_osfhandle(file));
}

}  // namespace

std::filesystem::path pathOf(const std::string& text) {
  return wide(text);
}

std::string pathText(const std::filesystem::path& path) {
  return narrow(path.native());
}

int openToRead(const std::string& path) {
  const HANDLE handle = handleOf(path, GENERIC_READ);
  return handle == INVALID_HANDLE_VALUE ? noDescriptor() : descriptorOf(handle, _O_RDONLY);
}

int createFile(const std::string& path) {
  return openToWrite(path, CREATE_NEW);
}

int replaceFile(const std::string& path) {
  return openToWrite(path, CREATE_ALWAYS);
}

bool statusOf(int file, FileStatus& status) {
  return take(handleOf(file), status);
}

bool statusOf(const std::string& path, FileStatus& status) {
  const HANDLE handle = handleOf(path, 0);
  if (handle == INVALID_HANDLE_VALUE) return refused();
  const bool taken = take(handle, status);
  CloseHandle(handle);
  return taken;
}

// A pipe here has its writer when it can be opened.
void awaitWriter(int, int, std::string&, bool& nobody) {
  nobody = false;
}

bool letReadsWait(int) {
  return true;  // they always do
}

std::int64_t readBytes(int file, char* bytes, std::size_t length) {
  constexpr std::size_t most = std::size_t{1} << 30;  // the system counts in 32 bits
  DWORD got = 0;
  if (ReadFile(handleOf(file), bytes, static_cast<DWORD>(length < most ? length : most), &got, nullptr))
    return got;
  return GetLastError() == ERROR_BROKEN_PIPE ? 0 : noDescriptor();  // its writer has gone: the end
}

bool writeBytes(int file, std::string_view bytes) {
  constexpr std::size_t most = std::size_t{1} << 20;
  while (!bytes.empty()) {
    DWORD written = 0;
    const auto length = static_cast<DWORD>(bytes.size() < most ? bytes.size() : most);
    if (!WriteFile(handleOf(file), bytes.data(), length, &written, nullptr)) return refused();
    bytes.remove_prefix(written);
  }
  return true;
}

bool bringOntoDisk(int file) {
  if (GetFileType(handleOf(file)) != FILE_TYPE_DISK || FlushFileBuffers(handleOf(file))) return true;
  return refused();
}

bool closeFile(int file) {
  return _close(file) == 0;
}

bool removeFile(const std::string& path) {
  return DeleteFileW(wide(path).c_str()) || refused();
}

bool moveFile(const std::string& from, const std::string& to) {
  return MoveFileExW(wide(from).c_str(), wide(to).c_str(), MOVEFILE_REPLACE_EXISTING) || refused();
}

bool makeOwnFolder(std::string& path) {
  const std::string stem = path + std::to_string(GetCurrentProcessId()) + "_";
  for (int k = 1;; ++k) {
    path = stem + std::to_string(k);
    if (CreateDirectoryW(wide(path).c_str(), nullptr)) return true;
    if (GetLastError() != ERROR_ALREADY_EXISTS) return refused();
  }
}

bool isProgram(const std::string& path) {
  FileStatus status;
  return statusOf(path, status) && status.kind == FileKind::plain;
}

bool isTerminal(int file) {
  DWORD mode = 0;
  return GetConsoleMode(handleOf(file), &mode) != 0;
}

}  // namespace host
