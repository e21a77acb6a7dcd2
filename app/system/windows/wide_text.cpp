// UTF-8 and UTF-16, system errors and errno; see the header.
#include "system/windows/wide_text.hpp"

#include <windows.h>

#include <cerrno>

namespace host {

std::wstring wide(std::string_view utf8) {
  const int length = static_cast<int>(utf8.size());
  std::wstring text(
      static_cast<std::size_t>(MultiByteToWideChar(CP_UTF8, 0, utf8.data(), length, nullptr, 0)), 0);
  MultiByteToWideChar(CP_UTF8, 0, utf8.data(), length, text.data(), static_cast<int>(text.size()));
  return text;
}

std::string narrow(std::wstring_view utf16) {
  const int length = static_cast<int>(utf16.size());
  std::string text(static_cast<std::size_t>(
                       WideCharToMultiByte(CP_UTF8, 0, utf16.data(), length, nullptr, 0, nullptr, nullptr)),
                   0);
  WideCharToMultiByte(CP_UTF8, 0, utf16.data(), length, text.data(), static_cast<int>(text.size()), nullptr,
                      nullptr);
  return text;
}

int lastErrorAsErrno() {
  switch (GetLastError()) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_NAME:
    case ERROR_INVALID_DRIVE:
    case ERROR_BAD_NETPATH:
      return ENOENT;
    case ERROR_ACCESS_DENIED:
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
    case ERROR_WRITE_PROTECT:
      return EACCES;
    case ERROR_FILE_EXISTS:
    case ERROR_ALREADY_EXISTS:
      return EEXIST;
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL:
      return ENOSPC;
    case ERROR_NOT_ENOUGH_MEMORY:
    case ERROR_OUTOFMEMORY:
      return ENOMEM;
    case ERROR_TOO_MANY_OPEN_FILES:
      return EMFILE;
    case ERROR_FILENAME_EXCED_RANGE:
      return ENAMETOOLONG;
    case ERROR_BAD_EXE_FORMAT:
      return ENOEXEC;
    case ERROR_BROKEN_PIPE:
    case ERROR_NO_DATA:
      return EPIPE;
    default:
      return EIO;
  }
}

}  // namespace host
