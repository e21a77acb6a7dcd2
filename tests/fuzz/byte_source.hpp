// Draws numbers from the fuzzer's bytes; zeros when they are used up.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace fuzz {

class ByteSource {
 public:
  ByteSource(const std::uint8_t* data, std::size_t size) : next_(data), end_(data + size) {}
  bool empty() const { return next_ == end_; }
  unsigned byte() { return empty() ? 0 : *next_++; }
  unsigned below(unsigned bound) { return bound > 0 ? byte() % bound : 0; }
  std::uint32_t word() { return byte() | byte() << 8 | byte() << 16 | byte() << 24; }
  /// Mostly small multiples of 1/8, now and then any bit pattern at all.
  double number() {
    const unsigned first = byte();
    if (first != 255) return (static_cast<int>(first) - 127) / 8.0;
    const std::uint64_t low = word(), bits = low | static_cast<std::uint64_t>(word()) << 32;
    double value;
    std::memcpy(&value, &bits, sizeof value);
    return value;
  }

 private:
  const std::uint8_t *next_, *end_;
};

}  // namespace fuzz
