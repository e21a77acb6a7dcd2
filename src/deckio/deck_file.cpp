// Whole files in, whole files out.
#include "deckio/deck_file.hpp"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <new>

#include "deckio/deck_error.hpp"

namespace tornwalzen {

namespace {

namespace fs = std::filesystem;

int32_t unreadable(TornwalzenDeckError& error, const char* reason) {
  error.kind = TORNWALZEN_DECK_UNREADABLE;
  copyPrintable(error.found, sizeof error.found, reason, std::strlen(reason));
  return error.kind;
}

// Type and size of what a path leads to; `asLink` looks at a link itself. Never throws.
fs::file_type typeOf(const char* path, bool asLink) noexcept {
  std::error_code ec;
  return (asLink ? fs::symlink_status(path, ec) : fs::status(path, ec)).type();
}

}  // namespace

int32_t loadFile(const char* path, std::size_t limit, FileText& file, TornwalzenDeckError& error) {
  // Asked before it is opened: to open a pipe would wait for somebody who writes into it.
  const fs::file_type type = typeOf(path, false);
  if (type != fs::file_type::regular && fs::exists(fs::file_status(type)))
    return unreadable(error, "not a plain file");
  std::FILE* stream = std::fopen(path, "rb");
  if (stream == nullptr) return unreadable(error, std::strerror(errno));
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> closing(stream, std::fclose);
  std::error_code ec;
  const std::uintmax_t size = fs::file_size(path, ec);
  if (ec) return unreadable(error, "its size is not known");
  file.length = static_cast<std::size_t>(std::min<std::uintmax_t>(size, limit));
  file.text.reset(new (std::nothrow) char[file.length + 1]);
  if (file.text == nullptr) return error.kind = TORNWALZEN_DECK_NO_MEMORY;
  file.length = std::fread(file.text.get(), 1, file.length, stream);
  if (std::ferror(stream) != 0) return unreadable(error, std::strerror(errno));
  return TORNWALZEN_DECK_OK;
}

void RecordFile::note() {
  if (failure_ == 0) failure_ = errno != 0 ? errno : EIO;
}

bool RecordFile::open(const char* path) {
  const std::size_t length = std::strlen(path);
  if (length >= longestName) {
    failure_ = ENAMETOOLONG;
    return false;
  }
  std::memcpy(path_, path, length + 1);
  std::snprintf(part_, sizeof part_, "%s.part", path);
  const fs::file_type type = typeOf(path, true);
  beside_ = type == fs::file_type::regular || type == fs::file_type::not_found;
  errno = 0;
  stream_ = std::fopen(beside_ ? part_ : path_, "wb");
  if (stream_ == nullptr) note();
  return stream_ != nullptr;
}

void RecordFile::put(const char* record, std::size_t length) {
  if (stream_ == nullptr) return;
  errno = 0;
  if (std::fwrite(record, 1, length, stream_) != length || std::fputc('\n', stream_) == EOF) note();
}

bool RecordFile::complete() {
  if (stream_ == nullptr) return false;
  errno = 0;
  if (std::fclose(stream_) != 0) note();
  stream_ = nullptr;
  if (failure_ == 0 && beside_ && std::rename(part_, path_) != 0) note();
  if (failure_ != 0 && beside_) std::remove(part_);
  return failure_ == 0;
}

RecordFile::~RecordFile() {
  if (stream_ == nullptr) return;
  std::fclose(stream_);
  if (beside_) std::remove(part_);
}

}  // namespace tornwalzen
