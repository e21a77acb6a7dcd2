// The lines of a DXF file: group codes with their values.
#pragma once

#include <cmath>
#include <cstdint>
#include <string>

#include "system/failure.hpp"
#include "system/text.hpp"

namespace host {

class DxfTags {
 public:
  const std::string& text() const { return text_; }

  void tag(int code, const std::string& value) {
    std::string number = std::to_string(code);
    text_ += std::string(number.size() < 3 ? 3 - number.size() : 0, ' ') + number + "\n" + value + "\n";
  }
  void integer(int code, std::int64_t value) { tag(code, std::to_string(value)); }
  void real(int code, double value, int digits = 6) {
    if (!std::isfinite(value)) throw Failure("no DXF of the blank: a coordinate is not finite");
    std::string number = fixedDecimal(value, digits);
    if (number.find_first_of("123456789") == std::string::npos && number[0] == '-') number.erase(0, 1);
    tag(code, number);
  }
  void point(int code, double x, double y) {
    real(code, x);
    real(code + 10, y);
  }
  void point(int code, double x, double y, double z) {
    point(code, x, y);
    real(code + 20, z);
  }
  void handle(int code, std::uint32_t value) {
    constexpr char digits[] = "0123456789ABCDEF";
    std::string number;
    do number.insert(number.begin(), digits[value % 16]);
    while ((value /= 16) > 0);
    tag(code, number);
  }

 private:
  std::string text_;
};

}  // namespace host
