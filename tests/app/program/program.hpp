// Runs the built program through the shell and collects what it prints and returns.
#pragma once

#include <sys/wait.h>

#include <cstdlib>
#include <string>

#include "app/scratch_folder.hpp"

struct Outcome {
  int status = -1;  // exit status; 128 + number if a signal ended it
  std::string out, err;
};

// `text` as one word of the shell.
inline std::string quoted(const std::string& text) {
  std::string word = "'";
  for (const char c : text) word += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return word + "'";
}

// Runs a shell command in the folder; $TORNWALZEN is the program.
inline Outcome shell(const ScratchFolder& folder, const std::string& command) {
  const ScratchFolder capture;
  const std::string line = "cd " + quoted(folder.path()) + " && TORNWALZEN=" + quoted(TORNWALZEN_PROGRAM) +
                           " && { " + command + "\n} >" + quoted(capture.file("out")) + " 2>" +
                           quoted(capture.file("err")) + " </dev/null";
  const int result = std::system(line.c_str());
  const int status = WIFSIGNALED(result) ? 128 + WTERMSIG(result) : WEXITSTATUS(result);
  return {status, capture.read("out"), capture.read("err")};
}

inline Outcome tornwalzen(const ScratchFolder& folder, const std::string& arguments) {
  return shell(folder, "\"$TORNWALZEN\" " + arguments);
}
