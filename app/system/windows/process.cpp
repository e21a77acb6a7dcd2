// Standard streams and console events on Windows; see the header. An event comes in a thread of its own, so that a mutex
// holds it back and guards the list of unfinished files.
#include "system/process.hpp"

#include <windows.h>
// behind the header that they stand on
#include <fcntl.h>
#include <io.h>
#include <shellapi.h>

#include <atomic>
#include <csignal>
#include <cstdio>
#include <mutex>

#include "system/file.hpp"
#include "system/windows/wide_text.hpp"

namespace host {

namespace {

constexpr int endOfSession = 1;  // SIGHUP's number: its name is not known here
constexpr std::size_t mostFiles = 16, longestPath = 4096;

std::recursive_mutex endings;  // whoever has it cannot be ended by an event
std::vector<std::string> unfinished;
std::atomic<int> orderly{0};  // whether an OrderlyStop lives
std::atomic<int> noted{0};

const char* nameOf(int signal) {
  return signal == SIGINT ? "Ctrl-C" : signal == SIGTERM ? "Ctrl-Break" : "the end of the session";
}

int signalOf(DWORD event) {
  return event == CTRL_C_EVENT ? SIGINT : event == CTRL_BREAK_EVENT ? SIGTERM : endOfSession;
}

BOOL WINAPI onEvent(DWORD event) {
  const int signal = signalOf(event);
  const std::lock_guard lock(endings);
  int none = 0;
  if (signal != endOfSession && orderly != 0 && noted.compare_exchange_strong(none, signal)) return TRUE;
  writeBytes(standardError, "\n");  // the cursor may stand behind a bar
  endBySignal(signal);
}

// A stream that the caller closed goes nowhere, so that no result file takes its number.
void fillWithNothing(int stream) {
  if (_get_osfhandle(stream) >= 0) return;
  const int nothing = _open("NUL", stream == 0 ? _O_RDONLY : _O_WRONLY);
  if (nothing >= 0 && nothing != stream) {
    _dup2(nothing, stream);
    _close(nothing);
  }
}

}  // namespace

void prepareProcess() {
  for (const int stream : {0, standardOutput, standardError}) fillWithNothing(stream);
  _setmode(standardOutput, _O_BINARY);
  _setmode(standardError, _O_BINARY);
  SetConsoleOutputCP(CP_UTF8);
  SetConsoleCtrlHandler(onEvent, TRUE);
}

std::vector<std::string> programArguments(int, const char* const*) {  // main's are in the system's code page
  int count = 0;
  wchar_t** const words = CommandLineToArgvW(GetCommandLineW(), &count);
  std::vector<std::string> arguments;
  for (int k = 0; k < count; ++k) arguments.push_back(narrow(words[k]));
  LocalFree(words);
  if (arguments.empty()) arguments.push_back("tornwalzen");
  return arguments;
}

std::string environmentValue(const char* name) {
  const wchar_t* const value = _wgetenv(wide(name).c_str());
  return value == nullptr ? "" : narrow(value);
}

int processNumber() {
  return static_cast<int>(GetCurrentProcessId());
}

void endBySignal(int signal) {
  const std::lock_guard lock(endings);
  for (const std::string& path : unfinished) removeFile(path);
  for (const std::string& path : unfinished)
    RemoveDirectoryW(wide(path).c_str());  // a folder, now that it is empty
  writeBytes(standardError,
             std::string("tornwalzen: stopped by ") + nameOf(signal) + "; no result file was written\n");
  TerminateProcess(GetCurrentProcess(), static_cast<UINT>(STATUS_CONTROL_C_EXIT));
  for (;;) Sleep(INFINITE);
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
  const std::lock_guard lock(endings);
  if (unfinished.size() == mostFiles || path.size() >= longestPath) return false;
  unfinished.push_back(path);
  return true;
}

void keepOnSignal(const std::string& path) {
  const std::lock_guard lock(endings);
  std::erase(unfinished, path);
}

SignalsHeldBack::SignalsHeldBack() {
  endings.lock();
}

SignalsHeldBack::~SignalsHeldBack() {
  endings.unlock();
}

void endQuietlyOnSignal() {
  SetConsoleCtrlHandler(onEvent, FALSE);
}

}  // namespace host
