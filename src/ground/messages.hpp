// The message channel: German one-line texts, composed in a 128-character buffer and printed on standard output.
#pragma once

#include "ground/run_state.hpp"

namespace tornwalzen {

/// Composes one message: texts and fixed-width fields from the left, what is left over stays blank. What would
/// pass character 128 is dropped.
class MessageLine {
 public:
  MessageLine();
  MessageLine& text(const char* zeroTerminated);
  MessageLine& integer(Int value, int width);                  // Iw
  MessageLine& fixed(double value, int width, int decimals);   // Fw.d
  MessageLine& exponent(double value, int width, int digits);  // Ew.d
  MessageLine& nul();                                          // one zero byte
  const char* buffer() const { return buffer_; }

 private:
  char* at(int width);  // room for a field of `width` characters, or nullptr
  char buffer_[messageLength];
  int used_ = 0;
};

/// Keeps the line in the run state's MSGSTR and prints its first 80 characters and a newline.
void printMessage(const MessageLine& line);

/// Keeps a fatal text of the structure builder or the solver in its own MSGSTR, calls `prterr` (which prints
/// nothing) and sets the solver-side error word `ierrso` to -1.
void failSolver(const char* text);

}  // namespace tornwalzen
