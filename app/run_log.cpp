// The library's messages of one run; see the header.
#include "run_log.hpp"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "failure.hpp"
#include "text.hpp"

namespace host {

namespace {

// The beginnings of the messages that are counted, as the library prints them.
constexpr std::string_view incrementBegins = " START INKRMEMENT";
constexpr std::string_view incrementRepeated = "INKREMENT WIRD WIEDERHOLT";
constexpr std::string_view newtonIteration = "MAX.GRAD";
constexpr std::string_view gaveUp = "KEINE KONVERGENZ, MINIMLAE SCHRITTWEITE";

// The library writes some texts with a leading blank.
bool beginsWith(std::string_view line, std::string_view text) {
  if (text.front() != ' ' && !line.empty() && line.front() == ' ') line.remove_prefix(1);
  return line.starts_with(text);
}

// The first number behind the words of an iteration line, -1 if there is none.
double firstNumber(std::string_view line) {
  std::size_t position = 0;
  double value = -1.0;
  for (std::string_view word = nextWord(line, position); !word.empty(); word = nextWord(line, position))
    if (word.find_first_of("0123456789") != std::string_view::npos && readReal(word, value)) return value;
  return -1.0;
}

bool writeAll(int fd, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(fd, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

}  // namespace

RunLog::RunLog(const std::string& path)
    : path_(path), fd_(::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666)) {
  if (fd_ < 0) throw Failure("cannot write " + path + ": " + std::strerror(errno));
}

RunLog::~RunLog() {
  ::close(fd_);
}

void RunLog::take(std::string_view line, int screen) {
  if (beginsWith(line, incrementBegins)) ++counts_.attempts;
  if (beginsWith(line, incrementRepeated)) ++counts_.repeats;
  if (beginsWith(line, gaveUp)) counts_.stepTooSmall = true;
  if (beginsWith(line, newtonIteration)) {
    ++counts_.newtonIterations;
    counts_.lastGradient = firstNumber(line);
  }
  const std::string whole = std::string(line) + '\n';
  if (problem_.empty() && !writeAll(fd_, whole))
    problem_ = "cannot write " + path_ + ": " + std::strerror(errno);
  if (screen >= 0) writeAll(screen, whole);
}

}  // namespace host
