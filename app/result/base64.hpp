// Bytes as text.
#pragma once

#include <string>
#include <string_view>

namespace host {

// Base64 of `bytes` (RFC 4648, with padding).
std::string base64(std::string_view bytes);

}  // namespace host
