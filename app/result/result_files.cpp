// The result files of a run; see the header.
#include "result/result_files.hpp"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <memory>
#include <utility>

#include "system/background.hpp"
#include "system/failure.hpp"
#include "system/file.hpp"
#include "system/path.hpp"
#include "system/process.hpp"

namespace host {

namespace {
constexpr std::size_t bufferLength = std::size_t{1} << 16;  // bytes that are gathered for one call
}

FileWriter::FileWriter(const std::string& path, std::string shownPath)
    : shownPath_(std::move(shownPath)), file_(createFile(path)) {
  if (file_ < 0) fail(errno);
  buffer_.reserve(bufferLength);
}

FileWriter::~FileWriter() {
  if (file_ >= 0) closeFile(file_);
}

void FileWriter::write(std::string_view bytes) {
  if (buffer_.size() + bytes.size() > bufferLength) flush();
  if (bytes.size() > bufferLength)
    put(bytes);
  else
    buffer_ += bytes;
}

void FileWriter::flush() {
  put(buffer_);
  buffer_.clear();
}

void FileWriter::put(std::string_view bytes) {
  if (!writeBytes(file_, bytes)) fail(errno);
}

void FileWriter::finish() {
  flush();
  if (!bringOntoDisk(file_)) fail(errno);  // some file systems tell of a full disk only now
  const int file = file_;
  file_ = -1;
  if (!closeFile(file)) fail(errno);
}

void FileWriter::fail(int error) const {
  throw Failure("cannot write " + shownPath_ + ": " + std::strerror(error));
}

ResultFiles::~ResultFiles() {
  finishing_.clear();  // a system may not remove a file that is open
  for (const Entry& entry : entries_) {
    removeFile(entry.unfinished);
    keepOnSignal(entry.unfinished);
  }
}

void ResultFiles::add(const std::string& name, const std::function<void(FileWriter&)>& content) {
  const std::string place = placeIn(folder_, name);
  // the process number keeps two runs into one folder apart
  const std::string beside = place + "." + std::to_string(processNumber());
  std::string unfinished = beside + ".unfinished";
  std::error_code error;  // a file of that name, whosever it is, stays
  for (int k = 1; std::filesystem::exists(std::filesystem::symlink_status(pathOf(unfinished), error)); ++k)
    unfinished = beside + "." + std::to_string(k) + ".unfinished";
  if (!removeOnSignal(unfinished)) throw Failure("cannot write " + place + ": the path is too long");
  entries_.push_back({unfinished, place});
  const auto writer = std::make_shared<FileWriter>(unfinished, place);
  try {
    content(*writer);
  } catch (const Failure&) {
    awaitDisk();  // an earlier file that failed is named first
    throw;
  }
  finishing_.push_back(inBackground([writer] { writer->finish(); }));  // waits for the disk
}

void ResultFiles::awaitDisk() {
  for (std::future<void>& file : std::exchange(finishing_, {})) file.get();
}

void ResultFiles::withdraw(const std::string& name) {
  withdrawn_.push_back(placeIn(folder_, name));
}

void ResultFiles::putIntoPlace() {
  awaitDisk();
  const SignalsHeldBack heldBack;
  for (const std::string& place : withdrawn_)
    if (!removeFile(place) && errno != ENOENT)
      throw Failure("cannot remove " + place + ", which is of an earlier run: " + std::strerror(errno));
  while (!entries_.empty()) {
    const Entry& entry = entries_.front();
    if (!moveFile(entry.unfinished, entry.place))
      throw Failure("cannot write " + entry.place + ": " + std::strerror(errno));
    keepOnSignal(entry.unfinished);
    entries_.erase(entries_.begin());
  }
  endQuietlyOnSignal();
}

void makeFolder(const std::string& folder) {
  std::error_code error;
  std::filesystem::create_directories(pathOf(folder), error);
  if (!error && !std::filesystem::is_directory(pathOf(folder), error))
    error = std::make_error_code(std::errc::not_a_directory);
  if (error) throw Failure("cannot make the folder " + folder + ": " + error.message());
}

}  // namespace host
