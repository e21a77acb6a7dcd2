// Wavefront OBJ: "v x y z" per node and "f a b c" per triangle, index base 1.
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <memory>
#include <stdexcept>

#include "shapes.hpp"

namespace shapes {

namespace {

/// Appends a blank and the shortest decimal that reads back to the same bits.
void appendNumber(std::string& line, double value) {
  char digits[32];
  const auto [end, error] = std::to_chars(digits, digits + sizeof digits, value);
  line += ' ';
  line.append(digits, end);
}

}  // namespace

void writeObj(const Sheet& sheet, const std::string& path, const std::string& comment, bool blank) {
  if (blank && sheet.blank.empty()) throw std::invalid_argument("the exact blank of this shape is not known");
  std::string text = "# " + comment + "\n# unit: mm; drawing direction +z\n";
  for (std::size_t n = 0; n < static_cast<std::size_t>(sheet.nodes()); ++n) {
    text += 'v';
    const double* p = blank ? &sheet.blank[2 * n] : &sheet.knots[3 * n];
    appendNumber(text, p[0]);
    appendNumber(text, p[1]);
    appendNumber(text, blank ? 0.0 : p[2]);
    text += '\n';
  }
  for (std::size_t e = 0; e < sheet.inzi.size(); e += 3) {
    text += "f " + std::to_string(sheet.inzi[e]) + ' ' + std::to_string(sheet.inzi[e + 1]) + ' ' +
            std::to_string(sheet.inzi[e + 2]) + '\n';
  }
  std::FILE* file = std::fopen(path.c_str(), "wb");
  bool written = file != nullptr && std::fwrite(text.data(), 1, text.size(), file) == text.size();
  const int cause = errno;
  if (file != nullptr && std::fclose(file) != 0) written = false;
  if (!written) throw std::runtime_error("cannot write " + path + ": " + std::strerror(cause));
}

}  // namespace shapes
