// Standard streams and signals; see the header. The signal handler uses async-signal-safe calls only.
#include "system/process.hpp"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdlib>
#include <cstring>

namespace host {

namespace {

constexpr std::array<int, 3> endingSignals{SIGINT, SIGTERM, SIGHUP};

// A slot is in use while `used` is set; the path is complete before that.
struct UnfinishedFile {
  volatile std::sig_atomic_t used = 0;
  char path[4096] = {};
};
std::array<UnfinishedFile, 16> unfinished;

volatile std::sig_atomic_t orderly = 0;  // whether an OrderlyStop lives
volatile std::sig_atomic_t noted = 0;

const char* nameOf(int signal) {
  return signal == SIGINT ? "SIGINT" : signal == SIGTERM ? "SIGTERM" : "SIGHUP";
}

void say(const char* text) {
  [[maybe_unused]] const ssize_t written = ::write(STDERR_FILENO, text, std::strlen(text));
}

void onEndingSignal(int signal) {
  if (orderly != 0 && noted == 0)
    noted = signal;
  else {
    say("\n");  // the cursor may stand behind a bar
    endBySignal(signal);
  }
}

void setHandler(int signal, void (*handler)(int)) {
  struct sigaction action {};
  action.sa_handler = handler;
  sigemptyset(&action.sa_mask);
  action.sa_flags = SA_RESTART;  // what is being written when a signal is noted goes on
  for (const int other : endingSignals) sigaddset(&action.sa_mask, other);
  sigaction(signal, &action, nullptr);
}

sigset_t endingSignalSet() {
  sigset_t set;
  sigemptyset(&set);
  for (const int signal : endingSignals) sigaddset(&set, signal);
  return set;
}

bool isIgnored(int signal) {
  struct sigaction action {};
  return sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

}  // namespace

void prepareProcess() {
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
    if (::fcntl(stream, F_GETFD) == -1) {
      // the lowest free number is the one that was closed
      if (::open("/dev/null", stream == STDIN_FILENO ? O_RDONLY : O_WRONLY) != stream) std::_Exit(1);
    }
  setHandler(SIGPIPE, SIG_IGN);
  setHandler(SIGXFSZ, SIG_IGN);
  for (const int signal : endingSignals)
    if (!isIgnored(signal)) setHandler(signal, onEndingSignal);  // nohup and the like stay in force
}

std::vector<std::string> programArguments(int argc, const char* const* argv) {
  if (argc == 0) return {"tornwalzen"};  // a caller may leave out even the name
  return {argv, argv + argc};
}

std::string environmentValue(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? "" : value;
}

int processNumber() {
  return ::getpid();
}

void endBySignal(int signal) {
  for (const UnfinishedFile& file : unfinished)
    if (file.used) ::unlink(file.path);
  for (const UnfinishedFile& file : unfinished)
    if (file.used) ::rmdir(file.path);  // a folder, now that the files in it are gone
  say("tornwalzen: stopped by ");
  say(nameOf(signal));
  say("; no result file was written\n");
  std::signal(signal, SIG_DFL);
  sigset_t set;  // in a handler it waits for the handler's end
  sigemptyset(&set);
  sigaddset(&set, signal);
  pthread_sigmask(SIG_UNBLOCK, &set, nullptr);
  ::raise(signal);
  std::_Exit(128 + signal);
}

OrderlyStop::OrderlyStop() {
  orderly = 1;
}

OrderlyStop::~OrderlyStop() {
  orderly = 0;
}

int notedSignal() {
  return noted;
}

bool removeOnSignal(const std::string& path) {
  for (UnfinishedFile& file : unfinished) {
    if (file.used || path.size() >= sizeof file.path) continue;
    std::memcpy(file.path, path.c_str(), path.size() + 1);
    file.used = 1;
    return true;
  }
  return false;
}

void keepOnSignal(const std::string& path) {
  for (UnfinishedFile& file : unfinished)
    if (file.used && path == file.path) file.used = 0;
}

SignalsHeldBack::SignalsHeldBack() {
  const sigset_t set = endingSignalSet();
  pthread_sigmask(SIG_BLOCK, &set, nullptr);
}

SignalsHeldBack::~SignalsHeldBack() {
  const sigset_t set = endingSignalSet();
  pthread_sigmask(SIG_UNBLOCK, &set, nullptr);
}

void endQuietlyOnSignal() {
  for (const int signal : endingSignals)
    if (!isIgnored(signal)) setHandler(signal, SIG_DFL);
}

}  // namespace host
