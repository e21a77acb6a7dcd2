// What the process as a whole needs: its arguments, usable standard streams, and an end by signal that leaves no
// half-written files.
#pragma once

#include <string>
#include <vector>

namespace host {

// To be called first. Standard streams that the caller closed are opened on /dev/null, so that no result file
// takes their number; a closed pipe and a full quota become write errors instead of signals; SIGINT, SIGTERM
// and SIGHUP remove the unfinished files named below, say so, and then end the process as they would have. Where the
// caller ignores one of them it stays ignored.
// On Windows the signals are Ctrl-C (SIGINT), Ctrl-Break (SIGTERM), and the end of the window or the session, which is
// never held back for long: the system ends the process itself. The streams hold the bytes that are written, without
// carriage returns, and a console is told that they are UTF-8.
void prepareProcess();

// The words of the command line in UTF-8, the program's own name first. argc, argv: main's.
std::vector<std::string> programArguments(int argc, const char* const* argv);

// The environment's value in UTF-8; empty: none.
std::string environmentValue(const char* name);

// The number of this process, which no other that runs has.
int processNumber();

// An unfinished file, or a folder of such files alone, that a signal shall remove. At most 16 at a time, paths shorter than 4096 bytes; returns
// false (and does nothing) beyond that.
bool removeOnSignal(const std::string& path);
void keepOnSignal(const std::string& path);

// While one lives, the three signals wait.
class SignalsHeldBack {
 public:
  SignalsHeldBack();
  ~SignalsHeldBack();
  SignalsHeldBack(const SignalsHeldBack&) = delete;
  SignalsHeldBack& operator=(const SignalsHeldBack&) = delete;
};

// While one lives, the first of the three signals is only noted, so that a computation can come to an orderly end; a
// second one ends the process at once.
class OrderlyStop {
 public:
  OrderlyStop();
  ~OrderlyStop();
  OrderlyStop(const OrderlyStop&) = delete;
  OrderlyStop& operator=(const OrderlyStop&) = delete;
};

// The signal that was noted, 0: none.
int notedSignal();

// Thrown after the orderly end, for main.
struct StoppedBySignal {
  int signal;
};

// Removes the unfinished files, says so, and ends the process by the signal, so that the caller learns of it: for a
// shell the status is 128 + its number; on Windows it is 0xC000013A, as if Ctrl-C had ended it.
[[noreturn]] void endBySignal(int signal);

// From now on the three signals end the process without a word: the results are in place.
void endQuietlyOnSignal();

}  // namespace host
