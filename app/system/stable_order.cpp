// The order of many things by a key each; see the header.
#include "system/stable_order.hpp"

#include <array>
#include <cstddef>
#include <utility>

namespace host {

namespace {

constexpr int digitBits = 11;  // the counts of a digit lie in the first-level cache
constexpr std::size_t digits = std::size_t{1} << digitBits;

struct Keyed {
  std::uint64_t key;
  std::int32_t index;
};

}  // namespace

std::vector<std::int32_t> stableOrder(const std::vector<std::uint64_t>& keys) {
  std::vector<Keyed> sorted, other(keys.size());
  sorted.reserve(keys.size());
  std::uint64_t differing = 0;
  for (const std::uint64_t key : keys) {
    sorted.push_back({key, static_cast<std::int32_t>(sorted.size())});
    differing |= key ^ keys[0];
  }
  for (int shift = 0; shift < 64; shift += digitBits) {
    const auto digit = [&](std::uint64_t key) { return static_cast<std::size_t>(key >> shift) % digits; };
    if (digit(differing) == 0) continue;
    std::array<std::size_t, digits> place{};
    for (const Keyed& item : sorted) ++place[digit(item.key)];
    std::size_t begin = 0;
    for (std::size_t& p : place) begin += std::exchange(p, begin);
    for (const Keyed& item : sorted) other[place[digit(item.key)]++] = item;
    sorted.swap(other);
  }
  std::vector<std::int32_t> order;
  order.reserve(sorted.size());
  for (const Keyed& item : sorted) order.push_back(item.index);
  return order;
}

}  // namespace host
