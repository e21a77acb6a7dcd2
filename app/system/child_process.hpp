// Runs another program, without a shell, for at most a given time.
#pragma once

#include <string>
#include <vector>

namespace host {

struct ChildEnd {
  bool overdue = false;  // ended because the time was up
  int status = 0;        // exit status, if it ended by itself
  int signal = 0;        // that ended it; 0: none
};

// words: path of the program and its arguments. Its standard input is empty, its output goes to the file
// `output`. It and all that it starts are ended after `seconds`, and with this process, whatever ends that.
// Throws Failure: the program cannot be started.
ChildEnd runChild(const std::vector<std::string>& words, const std::string& output, double seconds);

// The folder that this program lies in.
std::string programFolder();

}  // namespace host
