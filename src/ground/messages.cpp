// Composition of the 128-character message lines and the printing of their first 80 characters.
#include "ground/messages.hpp"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "ground/fixed_fields.hpp"
#include "ground/run_record.hpp"
#include "tornwalzen.h"

namespace tornwalzen {

namespace {
constexpr int printedLength = 80;  // characters of a message that reach standard output
}

MessageLine::MessageLine() {
  std::memset(buffer_, ' ', messageLength);
}

char* MessageLine::at(int width) {
  if (used_ + width > messageLength) return nullptr;
  char* field = buffer_ + used_;
  used_ += width;
  return field;
}

MessageLine& MessageLine::text(const char* zeroTerminated) {
  const int length = static_cast<int>(std::min<std::size_t>(std::strlen(zeroTerminated), messageLength));
  const int fitting = std::min(length, messageLength - used_);
  std::memcpy(buffer_ + used_, zeroTerminated, static_cast<std::size_t>(fitting));
  used_ += fitting;
  return *this;
}

MessageLine& MessageLine::integer(Int value, int width) {
  if (char* field = at(width)) integerField(field, value, width);
  return *this;
}

MessageLine& MessageLine::fixed(double value, int width, int decimals) {
  if (char* field = at(width)) fixedField(field, value, width, decimals);
  return *this;
}

MessageLine& MessageLine::exponent(double value, int width, int digits) {
  if (char* field = at(width)) exponentField(field, value, width, digits);
  return *this;
}

MessageLine& MessageLine::nul() {
  if (char* field = at(1)) *field = '\0';
  return *this;
}

void printMessage(const MessageLine& line) {
  std::memcpy(run.MSGSTR, line.buffer(), messageLength);
  prttxt(run.MSGSTR, messageLength);
}

void failSolver(const char* text) {
  std::memcpy(run.MSGSTR_solver, MessageLine().text(text).buffer(), messageLength);
  noteFatalText(text);
  prterr();
  run.ierrso = errorSet;
}

}  // namespace tornwalzen

extern "C" void prttxt(const char* text, int32_t) {
  static char printBuffer[tornwalzen::printedLength + 1];
  if (text == nullptr) return;
  int length = 0;
  while (length < tornwalzen::printedLength && text[length] != '\0') ++length;
  std::memcpy(printBuffer, text, static_cast<std::size_t>(length));
  printBuffer[length] = '\0';
  std::printf("%s\n", printBuffer);
  std::fflush(stdout);
}

extern "C" void prterr(void) {}
