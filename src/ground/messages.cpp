// Composition of the 128-character message lines and the way of their first 80 characters to the host.
#include "ground/messages.hpp"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "ground/fixed_fields.hpp"

namespace tornwalzen {

namespace {
constexpr int printedLength = 80;  // characters of a message that reach the host
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

void printText(MessageChannel& messages, const char* text) {
  if (text == nullptr) return;
  char printed[printedLength + 1];
  int length = 0;
  while (length < printedLength && text[length] != '\0') ++length;
  std::memcpy(printed, text, static_cast<std::size_t>(length));
  printed[length] = '\0';
  if (messages.handler != nullptr) return messages.handler(messages.userdata, printed);
  std::printf("%s\n", printed);
  std::fflush(stdout);
}

void printMessage(Analysis& run, const MessageLine& line) {
  std::memcpy(run.messages.MSGSTR, line.buffer(), messageLength);
  printText(run.messages, run.messages.MSGSTR);
}

void failSolver(Analysis& run, const char* text) {
  std::memcpy(run.messages.MSGSTR_solver, MessageLine().text(text).buffer(), messageLength);
  noteFatalText(run.record, text);
  run.ierrso = errorSet;
}

}  // namespace tornwalzen
