// Composition of message lines: texts and fields from the left, blanks behind, nothing past character 128.
#include <gtest/gtest.h>

#include <string>

#include "ground/messages.hpp"

namespace {

using namespace tornwalzen;

std::string content(const MessageLine& line) {
  return {line.buffer(), messageLength};
}
std::string padded(std::string text) {
  text.resize(messageLength, ' ');
  return text;
}

TEST(MessageLine, AnEmptyLineIsBlank) {
  EXPECT_EQ(content(MessageLine()), padded(""));
}

TEST(MessageLine, TextsAndFieldsFollowOneAnotherFromTheLeft) {
  MessageLine line;
  line.text(" ANZAHL DER ELEMENTE MIT WINKEL < 10 Grad ").integer(17, 6).text("@");
  EXPECT_EQ(content(line), padded(" ANZAHL DER ELEMENTE MIT WINKEL < 10 Grad     17@"));
}

TEST(MessageLine, EachKindOfFieldHasItsWidth) {
  MessageLine line;
  line.text("IZ,EN,EN1,L-FAK ").integer(3, 5).exponent(12.5, 13, 6).exponent(-0.25, 13, 6).fixed(99.5, 7, 2);
  EXPECT_EQ(content(line), padded("IZ,EN,EN1,L-FAK     3 0.125000E+02-0.250000E+00  99.50"));
}

TEST(MessageLine, ANumberTooWideForItsFieldIsAsterisks) {
  MessageLine line;
  line.integer(1234567, 6).text("@");
  EXPECT_EQ(content(line), padded("******@"));
}

TEST(MessageLine, TheEndSignOfAnInformationLineIsOneZeroByte) {
  MessageLine line;
  line.text("ab").nul().text("c");
  EXPECT_EQ(content(line), padded(std::string("ab\0c", 4)));
}

TEST(MessageLine, TextIsCutAtCharacter128) {
  MessageLine line;
  line.text(std::string(120, 'a').c_str()).text(std::string(20, 'b').c_str());
  EXPECT_EQ(content(line), std::string(120, 'a') + std::string(8, 'b'));
  MessageLine whole;
  whole.text(std::string(1000, 'x').c_str());
  EXPECT_EQ(content(whole), std::string(128, 'x'));
}

TEST(MessageLine, AFieldThatWouldPassCharacter128IsDropped) {
  MessageLine line;
  line.text(std::string(124, 'a').c_str()).integer(7, 5);
  EXPECT_EQ(content(line), padded(std::string(124, 'a')));
  MessageLine exact;
  exact.text(std::string(123, 'a').c_str()).integer(7, 5);
  EXPECT_EQ(content(exact), std::string(123, 'a') + "    7");
  exact.nul().fixed(1.0, 7, 2).exponent(1.0, 13, 6).text("z");
  EXPECT_EQ(content(exact), std::string(123, 'a') + "    7");
}

}  // namespace
