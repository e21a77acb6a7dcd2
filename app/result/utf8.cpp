// Text of any bytes as characters; see the header.
#include "result/utf8.hpp"

namespace host {

namespace {

// The length of the sequence that begins with `lead`, 0 if none does, and the least character it may encode.
int sequenceLength(unsigned char lead, char32_t& least) {
  if (lead < 0x80) return least = 0, 1;
  if (lead >= 0xC2 && lead < 0xE0) return least = 0x80, 2;
  if (lead >= 0xE0 && lead < 0xF0) return least = 0x800, 3;
  if (lead >= 0xF0 && lead < 0xF5) return least = 0x10000, 4;
  return 0;
}

void appendUtf8(std::string& text, char32_t character) {
  const auto byte = [&](char32_t value) { text += static_cast<char>(static_cast<unsigned char>(value)); };
  if (character < 0x80) return byte(character);
  if (character < 0x800) {
    byte(0xC0 | character >> 6);
  } else if (character < 0x10000) {
    byte(0xE0 | character >> 12);
    byte(0x80 | (character >> 6 & 0x3F));
  } else {
    byte(0xF0 | character >> 18);
    byte(0x80 | (character >> 12 & 0x3F));
    byte(0x80 | (character >> 6 & 0x3F));
  }
  byte(0x80 | (character & 0x3F));
}

}  // namespace

std::u32string decodeUtf8(std::string_view bytes) {
  std::u32string characters;
  for (std::size_t at = 0; at < bytes.size();) {
    const auto lead = static_cast<unsigned char>(bytes[at]);
    char32_t least = 0;
    const int length = sequenceLength(lead, least);
    char32_t character = length <= 1 ? lead : lead & (0x7Fu >> length);
    bool good = length > 0 && at + static_cast<std::size_t>(length) <= bytes.size();
    for (int k = 1; good && k < length; ++k) {
      const auto next = static_cast<unsigned char>(bytes[at + static_cast<std::size_t>(k)]);
      good = (next & 0xC0) == 0x80;
      character = character << 6 | (next & 0x3F);
    }
    good = good && character >= least && character <= 0x10FFFF && (character < 0xD800 || character > 0xDFFF);
    characters += good ? character : U'?';
    at += good ? static_cast<std::size_t>(length) : 1;
  }
  return characters;
}

std::string xmlText(std::string_view text) {
  std::string result;
  for (const char32_t character : decodeUtf8(text)) {
    if (character == U'&')
      result += "&amp;";
    else if (character == U'<')
      result += "&lt;";
    else if (character == U'>')
      result += "&gt;";
    else if (character == U'"')
      result += "&quot;";
    else if (character == U'\'')
      result += "&#39;";
    else if ((character < U' ') || character == 0x7F || character == 0xFFFE || character == 0xFFFF)
      result += '?';
    else
      appendUtf8(result, character);
  }
  return result;
}

}  // namespace host
