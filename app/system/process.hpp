// What the process as a whole needs: usable standard streams, and an end by signal that leaves no
// half-written files.
#pragma once

#include <string>

namespace host {

// To be called first. Standard streams that the caller closed are opened on /dev/null, so that no result file
// takes their number; a closed pipe and a full quota become write errors instead of signals; SIGINT, SIGTERM
// and SIGHUP remove the unfinished files named below, say so, and then end the process as they would have. Where the
// caller ignores one of them it stays ignored.
void prepareProcess();

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
// shell the status is 128 + its number.
[[noreturn]] void endBySignal(int signal);

// From now on the three signals end the process without a word: the results are in place.
void endQuietlyOnSignal();

}  // namespace host
