// The result files of a run: each is written beside its place under a name of its own, and all are renamed
// into place at the end. A run that fails, fills the disk or is interrupted leaves earlier results as they
// were.
#pragma once

#include <cstddef>
#include <functional>
#include <future>
#include <string>
#include <string_view>
#include <vector>

namespace host {

// Buffered writing to one file. Every call throws Failure with the system's reason if the bytes cannot be
// written.
class FileWriter {
 public:
  // Creates the file `path`, which must not exist; `shownPath` is the name for messages.
  FileWriter(const std::string& path, std::string shownPath);
  ~FileWriter();
  FileWriter(const FileWriter&) = delete;
  FileWriter& operator=(const FileWriter&) = delete;

  void write(std::string_view bytes);
  // Brings everything onto the disk and closes the file.
  void finish();

 private:
  void flush();
  void put(std::string_view bytes);
  [[noreturn]] void fail(int error) const;
  std::string shownPath_, buffer_;
  int file_;  // its descriptor
};

class ResultFiles {
 public:
  // folder: exists. Throws nothing.
  explicit ResultFiles(std::string folder) : folder_(std::move(folder)) {}
  ~ResultFiles();  // removes what was not put into place
  ResultFiles(const ResultFiles&) = delete;
  ResultFiles& operator=(const ResultFiles&) = delete;

  // Writes folder/name beside its place with the bytes that `content` hands to the writer; they reach the disk while the
  // caller goes on.
  void add(const std::string& name, const std::function<void(FileWriter&)>& content);

  // A result that an earlier run may have left and this one does not have: it goes as the files come into place.
  void withdraw(const std::string& name);

  // When all files are on the disk, removes what was withdrawn and renames them into place; signals wait meanwhile.
  // Throws Failure, as add does, of the first that could not be written.
  void putIntoPlace();

 private:
  void awaitDisk();  // throws of the first file that could not be brought there
  struct Entry {
    std::string unfinished, place;
  };
  std::string folder_;
  std::vector<Entry> entries_;
  std::vector<std::future<void>> finishing_;  // those on their way onto the disk
  std::vector<std::string> withdrawn_;        // places
};

// Makes the folder, and those above it, where absent. Throws Failure: not a folder, not permitted, ...
void makeFolder(const std::string& folder);

}  // namespace host
