#include "system/stable_order.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <random>

using namespace host;
using testing::ElementsAre;

namespace {

std::vector<std::int32_t> byComparison(const std::vector<std::uint64_t>& keys) {
  std::vector<std::int32_t> order(keys.size());
  std::iota(order.begin(), order.end(), 0);
  std::stable_sort(order.begin(), order.end(), [&](std::int32_t a, std::int32_t b) {
    return keys[static_cast<std::size_t>(a)] < keys[static_cast<std::size_t>(b)];
  });
  return order;
}

}  // namespace

TEST(StableOrder, IsThatOfAStableSortForKeysOfAnyWidth) {
  std::mt19937_64 random(11);
  for (int bits = 1; bits <= 64; ++bits) {
    std::vector<std::uint64_t> keys(500);
    for (std::uint64_t& key : keys) key = random() >> (64 - bits);
    EXPECT_EQ(stableOrder(keys), byComparison(keys)) << bits << " bits";
    for (std::uint64_t& key : keys) key |= std::uint64_t{1} << 63;  // a digit that all share
    EXPECT_EQ(stableOrder(keys), byComparison(keys)) << bits << " bits below the highest";
  }
}

TEST(StableOrder, KeepsEqualKeysAsTheyAreGiven) {
  EXPECT_THAT(stableOrder({5, 1, 5, 1, 5}), ElementsAre(1, 3, 0, 2, 4));
  EXPECT_THAT(stableOrder({7, 7, 7}), ElementsAre(0, 1, 2));
  EXPECT_TRUE(stableOrder({}).empty());
}
