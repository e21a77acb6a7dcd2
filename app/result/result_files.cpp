// The result files of a run; see the header.
#include "result/result_files.hpp"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>

#include "system/failure.hpp"
#include "system/process.hpp"

namespace host {

namespace {
constexpr std::size_t bufferLength = std::size_t{1} << 16;  // bytes per write call
}

FileWriter::FileWriter(const std::string& path, std::string shownPath)
    : shownPath_(std::move(shownPath)),
      fd_(::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666)) {
  if (fd_ < 0) fail(errno);
  buffer_.reserve(bufferLength);
}

FileWriter::~FileWriter() {
  if (fd_ >= 0) ::close(fd_);
}

void FileWriter::write(std::string_view bytes) {
  if (buffer_.size() + bytes.size() > bufferLength) flush();
  buffer_ += bytes;
}

void FileWriter::flush() {
  std::size_t done = 0;
  while (done < buffer_.size()) {
    const ssize_t written = ::write(fd_, buffer_.data() + done, buffer_.size() - done);
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) fail(errno);
    done += static_cast<std::size_t>(written);
  }
  buffer_.clear();
}

void FileWriter::finish() {
  flush();
  // Some file systems tell of a full disk only now. A pipe or device has nothing to bring onto a disk.
  if (::fsync(fd_) != 0 && errno != EINVAL && errno != EROFS) fail(errno);
  const int fd = fd_;
  fd_ = -1;
  if (::close(fd) != 0) fail(errno);
}

void FileWriter::fail(int error) const {
  throw Failure("cannot write " + shownPath_ + ": " + std::strerror(error));
}

ResultFiles::~ResultFiles() {
  for (const Entry& entry : entries_) {
    ::unlink(entry.unfinished.c_str());
    keepOnSignal(entry.unfinished);
  }
}

void ResultFiles::add(const std::string& name, const std::function<void(FileWriter&)>& content) {
  const std::string place = (std::filesystem::path(folder_) / name).string();
  // the process number keeps two runs into one folder apart
  const std::string beside = place + "." + std::to_string(::getpid());
  std::string unfinished = beside + ".unfinished";
  std::error_code error;  // a file of that name, whosever it is, stays
  for (int k = 1; std::filesystem::exists(std::filesystem::symlink_status(unfinished, error)); ++k)
    unfinished = beside + "." + std::to_string(k) + ".unfinished";
  if (!removeOnSignal(unfinished)) throw Failure("cannot write " + place + ": the path is too long");
  entries_.push_back({unfinished, place});
  FileWriter writer(unfinished, place);
  content(writer);
  writer.finish();
}

void ResultFiles::withdraw(const std::string& name) {
  withdrawn_.push_back((std::filesystem::path(folder_) / name).string());
}

void ResultFiles::putIntoPlace() {
  const SignalsHeldBack heldBack;
  for (const std::string& place : withdrawn_)
    if (::unlink(place.c_str()) != 0 && errno != ENOENT)
      throw Failure("cannot remove " + place + ", which is of an earlier run: " + std::strerror(errno));
  while (!entries_.empty()) {
    const Entry& entry = entries_.front();
    if (std::rename(entry.unfinished.c_str(), entry.place.c_str()) != 0)
      throw Failure("cannot write " + entry.place + ": " + std::strerror(errno));
    keepOnSignal(entry.unfinished);
    entries_.erase(entries_.begin());
  }
  endQuietlyOnSignal();
}

void makeFolder(const std::string& folder) {
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  if (!error && !std::filesystem::is_directory(folder, error))
    error = std::make_error_code(std::errc::not_a_directory);
  if (error) throw Failure("cannot make the folder " + folder + ": " + error.message());
}

}  // namespace host
