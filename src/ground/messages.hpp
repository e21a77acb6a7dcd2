// The message channel: German one-line texts, composed in a 128-character buffer and handed to the host.
#pragma once

#include "ground/analysis.hpp"

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

/// Keeps the line in MSGSTR and hands its first 80 characters to the host: its message handler, or standard
/// output with a newline, flushed.
void printMessage(Analysis& run, const MessageLine& line);

/// Hands a text to the host in the same way. text: in, up to its first zero byte or 80 characters; null: nothing.
void printText(MessageChannel& messages, const char* text);

/// Keeps a fatal text of the structure builder or the solver in its own MSGSTR and in the record, and sets the
/// solver-side error word `ierrso` to -1. Nothing is printed.
void failSolver(Analysis& run, const char* text);

}  // namespace tornwalzen
