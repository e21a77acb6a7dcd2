// Text as this system takes it. Inside the program all text is UTF-8; the system's functions with a W take UTF-16.
#pragma once

#include <string>
#include <string_view>

namespace host {

// What is not UTF-8 (UTF-16) becomes U+FFFD.
std::wstring wide(std::string_view utf8);
std::string narrow(std::wstring_view utf16);

// What the system's last error is in the words of errno.
int lastErrorAsErrno();

}  // namespace host
