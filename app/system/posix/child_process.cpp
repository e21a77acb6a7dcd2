// Runs another program; see the header.
#include "system/child_process.hpp"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <thread>

#include "system/failure.hpp"

namespace host {

namespace {

constexpr std::chrono::milliseconds pause{10};  // between two looks at the child

[[noreturn]] void refuse(const std::string& program, int error) {
  throw Failure("cannot run " + program + ": " + std::strerror(error));
}

// In the child: never returns. Only calls that are safe between fork and exec. told: gets errno on failure.
[[noreturn]] void becomeProgram(char* const* words, const char* output, int told) {
  ::setpgid(0, 0);
  ::prctl(PR_SET_PDEATHSIG, SIGKILL);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGPIPE, SIGXFSZ}) std::signal(signal, SIG_DFL);
  sigset_t none;
  sigemptyset(&none);
  ::sigprocmask(SIG_SETMASK, &none, nullptr);
  const int in = ::open("/dev/null", O_RDONLY);
  const int out = ::open(output, O_WRONLY | O_CREAT | O_TRUNC, 0600);
  if (in >= 0 && out >= 0 && ::dup2(in, STDIN_FILENO) >= 0 && ::dup2(out, STDOUT_FILENO) >= 0 &&
      ::dup2(out, STDERR_FILENO) >= 0)
    ::execv(words[0], words);
  const int error = errno;
  [[maybe_unused]] const ssize_t written = ::write(told, &error, sizeof error);
  ::_exit(127);
}

ChildEnd waitFor(pid_t child, double seconds) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
  ChildEnd result;
  int status = 0;
  for (;;) {
    const pid_t got = ::waitpid(child, &status, result.overdue ? 0 : WNOHANG);
    if (got == child) break;
    if (got < 0 && errno != EINTR) return result;
    if (!result.overdue && std::chrono::steady_clock::now() >= end) {
      result.overdue = true;
      ::kill(child, SIGKILL);
    } else {
      std::this_thread::sleep_for(pause);
    }
  }
  ::kill(-child, SIGKILL);  // what it left behind
  if (WIFSIGNALED(status)) result.signal = WTERMSIG(status);
  if (WIFEXITED(status)) result.status = WEXITSTATUS(status);
  return result;
}

}  // namespace

ChildEnd runChild(const std::vector<std::string>& words, const std::string& output, double seconds) {
  std::vector<char*> pointers;
  for (const std::string& word : words)
    pointers.push_back(const_cast<char*>(word.c_str()));  // as execv wants
  pointers.push_back(nullptr);
  int told[2];
  if (::pipe2(told, O_CLOEXEC) != 0) refuse(words[0], errno);
  const pid_t child = ::fork();
  if (child == 0) becomeProgram(pointers.data(), output.c_str(), told[1]);
  const int forkError = errno;
  ::close(told[1]);
  int error = 0;
  ssize_t got;
  do got = ::read(told[0], &error, sizeof error);
  while (got < 0 && errno == EINTR);
  ::close(told[0]);
  if (child < 0) refuse(words[0], forkError);
  if (got == static_cast<ssize_t>(sizeof error)) {
    ::waitpid(child, nullptr, 0);
    refuse(words[0], error);
  }
  return waitFor(child, seconds);
}

std::string programFolder() {
  std::error_code error;
  return std::filesystem::read_symlink("/proc/self/exe", error).parent_path().string();
}

}  // namespace host
