// Whole numbers as bytes that compress well.
#pragma once

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace host {

// Streams of whole numbers: signs folded to the lowest bit (0, -1, 1, -2, ... to 0, 1, 2, 3, ...), the bytes of each
// stream in planes, lowest first.
class BytePlanes {
 public:
  // The numbers number(0), ..., number(count - 1).
  template <class Number>
  void add(std::size_t count, Number number) {
    folded_.resize(count);
    std::uint64_t all = 0;
    for (std::size_t k = 0; k < count; ++k) {
      const auto bits = static_cast<std::uint64_t>(number(k));
      folded_[k] = bits >> 63 != 0 ? ~(bits << 1) : bits << 1;
      all |= folded_[k];
    }
    int width = 0;
    for (; all != 0; all >>= 8) ++width;
    widths.push_back(width);
    for (int plane = 0; plane < width; ++plane) {
      const std::size_t begin = bytes.size();
      bytes.resize(begin + count);
      for (std::size_t k = 0; k < count; ++k)
        bytes[begin + k] = static_cast<char>(folded_[k] >> (8 * plane) & 255u);
      begins_.push_back(begin);
    }
  }

  // The differences of those numbers, each less the one before it.
  template <class Number>
  void addDifferences(std::size_t count, Number number) {
    std::int64_t before = 0;
    add(count, [&](std::size_t k) {
      const std::int64_t now = number(k);
      return now - std::exchange(before, now);
    });
  }

  // About the bits that they need when each byte gets a code of its own: the entropy of each plane (C. E. Shannon,
  // 1948). Every seventh byte tells it well enough.
  double bits() const {
    constexpr std::size_t every = 7;
    double sum = 0.0;
    for (std::size_t plane = 0; plane < begins_.size(); ++plane) {
      const std::size_t end = plane + 1 < begins_.size() ? begins_[plane + 1] : bytes.size();
      std::array<std::size_t, 256> times{};
      for (std::size_t k = begins_[plane]; k < end; k += every) ++times[static_cast<unsigned char>(bytes[k])];
      const auto all = static_cast<double>((end - begins_[plane] + every - 1) / every);
      for (const std::size_t n : times)
        if (n > 0) sum += static_cast<double>(every * n) * std::log2(all / static_cast<double>(n));
    }
    return sum;
  }

  std::string bytes;
  std::vector<int> widths;  // bytes per number, of each stream

 private:
  std::vector<std::size_t> begins_;  // of each plane
  std::vector<std::uint64_t> folded_;
};

}  // namespace host
