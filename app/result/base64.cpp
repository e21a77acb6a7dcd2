// Bytes as text; see the header.
#include "result/base64.hpp"

#include <cstddef>
#include <cstdint>

namespace host {

std::string base64(std::string_view bytes) {
  constexpr char digits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  const std::size_t whole = bytes.size() / 3 * 3, left = bytes.size() - whole;
  std::string text((bytes.size() + 2) / 3 * 4, '=');
  const auto put = [&](std::size_t first, std::size_t count) {
    std::uint32_t group = 0;
    for (std::size_t b = 0; b < 3; ++b)
      group = group << 8 | (b < count ? static_cast<unsigned char>(bytes[first + b]) : 0u);
    char* const to = text.data() + first / 3 * 4;
    for (std::size_t digit = 0; digit <= count; ++digit) to[digit] = digits[group >> (18 - 6 * digit) & 63];
  };
  for (std::size_t k = 0; k < whole; k += 3) put(k, 3);
  if (left > 0) put(whole, left);
  return text;
}

}  // namespace host
