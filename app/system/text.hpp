// Numbers to text and text to numbers, exactly: shortest decimals that read back to the same bits, and strict
// reading that takes a word as a number only if the whole word is one. Independent of the locale.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace host {

// The shortest decimal that reads back to `value`; "nan", "inf", "-inf" for what is not finite.
std::string decimal(double value);

// The same, appended to a text.
void appendDecimal(std::string& text, double value);
void appendDecimal(std::string& text, std::int32_t value);

// `value` with `digits` digits after the point.
std::string fixedDecimal(double value, int digits);

// `value` with at most `digits` digits after the point (one at least), without zeros at the end: "1.5", "2".
std::string shortDecimal(double value, int digits);

// A count with its noun: "1 node", "12 nodes".
std::string counted(std::int64_t count, const std::string& noun);

// The whole of `word` as a real number: sign, digits, point, exponent e or E; also nan and inf, which the
// caller refuses by name. Too large becomes infinite, too small zero. False: not a number, `value` untouched.
bool readReal(std::string_view word, double& value);

// The whole of `word` as an integer. False: not an integer, or beyond 64 bits.
bool readInteger(std::string_view word, std::int64_t& value);

// The next word of `line` from `position` on (blanks, tabs and carriage returns separate), empty at the end;
// `position` moves behind it.
std::string_view nextWord(std::string_view line, std::size_t& position);

// The next line of `content` from `position` on, without its line end; `position` moves behind it. False at
// the end of the content.
bool nextLine(std::string_view content, std::size_t& position, std::string_view& line);

// A word for a message: at most 40 characters, anything unprintable shown as '?'.
std::string shown(std::string_view word);

}  // namespace host
