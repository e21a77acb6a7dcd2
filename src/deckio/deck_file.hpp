// Whole files in, whole files out.
#pragma once

#include <cstddef>
#include <cstdio>
#include <memory>

#include "tornwalzen_deck.h"

namespace tornwalzen {

/// The characters of a plain file. limit: at most so many from its beginning. Returns the error's kind:
/// unreadable or no memory.
struct FileText {
  std::unique_ptr<char[]> text;
  std::size_t length = 0;
};
int32_t loadFile(const char* path, std::size_t limit, FileText& file, TornwalzenDeckError& error);

/// A file that takes its name only when it is complete: it grows beside it as NAME.part and replaces it at
/// the end. A name that stands for something else than a plain file (a pipe, a device, a link) is written
/// directly.
class RecordFile {
 public:
  RecordFile() = default;
  RecordFile(const RecordFile&) = delete;
  RecordFile& operator=(const RecordFile&) = delete;
  ~RecordFile();  // what was not completed is removed

  bool open(const char* path);
  /// One record, without its line end. Failures are kept until complete.
  void put(const char* record, std::size_t length);
  /// False if anything could not be written; nothing of that name was changed then.
  bool complete();
  /// The system's number of the first failure.
  int failure() const { return failure_; }

 private:
  void note();

  static constexpr std::size_t longestName = 4096;
  std::FILE* stream_ = nullptr;
  int failure_ = 0;
  bool beside_ = false;  // writes to part_, to be renamed
  char path_[longestName] = {};
  char part_[longestName + 8] = {};
};

}  // namespace tornwalzen
