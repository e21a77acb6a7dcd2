// Numbers to text and text to numbers; see the header.
#include "system/text.hpp"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstdlib>

namespace host {

namespace {

template <class Number>
void appendShortest(std::string& text, Number value) {
  char buffer[32];
  text.append(buffer, std::to_chars(buffer, buffer + sizeof buffer, value).ptr);
}

}  // namespace

void appendDecimal(std::string& text, double value) {
  appendShortest(text, value);
}

void appendDecimal(std::string& text, std::int32_t value) {
  appendShortest(text, value);
}

std::string decimal(double value) {
  std::string text;
  appendDecimal(text, value);
  return text;
}

std::string fixedDecimal(double value, int digits) {
  char buffer[400];  // 1.8e308 has 309 digits before the point
  std::snprintf(buffer, sizeof buffer, "%.*f", digits, value);
  return buffer;
}

std::string shortDecimal(double value, int digits) {
  std::string number = fixedDecimal(value, digits);
  number.erase(number.find_last_not_of('0') + 1);
  if (number.back() == '.') number.pop_back();
  return number == "-0" ? "0" : number;
}

std::string counted(std::int64_t count, const std::string& noun) {
  return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

bool readReal(std::string_view word, double& value) {
  if (word.size() > 1 && word[0] == '+' && word[1] != '-' && word[1] != '+') word.remove_prefix(1);
  double read = 0.0;
  const char* end = word.data() + word.size();
  const auto result = std::from_chars(word.data(), end, read);
  if (result.ptr != end || result.ec == std::errc::invalid_argument) return false;
  // out of range does not say on which side: strtod gives infinity or zero
  if (result.ec == std::errc::result_out_of_range) read = std::strtod(std::string(word).c_str(), nullptr);
  value = read;
  return true;
}

bool readInteger(std::string_view word, std::int64_t& value) {
  if (word.size() > 1 && word[0] == '+' && word[1] != '-') word.remove_prefix(1);
  std::int64_t read = 0;
  const char* end = word.data() + word.size();
  const auto result = std::from_chars(word.data(), end, read);
  if (result.ptr != end || result.ec != std::errc{}) return false;
  value = read;
  return true;
}

std::string_view nextWord(std::string_view line, std::size_t& position) {
  const auto isBlank = [&](std::size_t k) { return line[k] == ' ' || line[k] == '\t' || line[k] == '\r'; };
  position = std::min(position, line.size());
  while (position < line.size() && isBlank(position)) ++position;
  const std::size_t first = position;
  while (position < line.size() && !isBlank(position)) ++position;
  return line.substr(first, position - first);
}

bool nextLine(std::string_view content, std::size_t& position, std::string_view& line) {
  if (position >= content.size()) return false;
  const std::size_t end = std::min(content.find('\n', position), content.size());
  line = content.substr(position, end - position);
  position = end + 1;
  return true;
}

std::string shown(std::string_view word) {
  constexpr std::size_t longest = 40;
  std::string text;
  for (const char c : word.substr(0, longest)) text += c >= ' ' && c <= '~' ? c : '?';
  if (word.size() > longest) text += "...";
  return text;
}

}  // namespace host
