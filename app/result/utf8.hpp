// Text of any bytes as characters.
#pragma once

#include <string>
#include <string_view>

namespace host {

// The characters of `bytes`; each byte that is not part of well-formed UTF-8 (Unicode 15, table 3-7) becomes '?'.
std::u32string decodeUtf8(std::string_view bytes);

// `text` for XML: markup characters escaped, bytes that are no UTF-8 and characters that XML 1.0 does not allow '?'.
std::string xmlText(std::string_view text);

}  // namespace host
