// Memory of the library's own: lengths, what stays when they change, what cannot be had.
#include "ground/own_array.hpp"

#include <gtest/gtest.h>

#include <numeric>
#include <vector>

namespace tornwalzen {
namespace {

std::vector<Int> listed(const OwnArray<Int>& array) {
  return {array.data(), array.data() + array.length()};
}

TEST(OwnArray, KeepsWhatItHeldWhenItsLengthChanges) {
  OwnArray<Int> array("A");
  ASSERT_TRUE(array.allocate(4));
  std::iota(array.data(), array.data() + 4, 1);
  const Int* const place = array.data();
  ASSERT_TRUE(array.resize(2));
  EXPECT_EQ(listed(array), (std::vector<Int>{1, 2}));
  EXPECT_EQ(array.vector().length(), 2);
  ASSERT_TRUE(array.resize(4));
  EXPECT_EQ(array.data(), place) << "what was had once needs no copy";
  EXPECT_EQ(listed(array), (std::vector<Int>{1, 2, 3, 4}));
  ASSERT_TRUE(array.resize(6));
  array.data()[4] = array.data()[5] = 7;
  EXPECT_EQ(listed(array), (std::vector<Int>{1, 2, 3, 4, 7, 7}));
  ASSERT_TRUE(array.resize(0));
  EXPECT_EQ(array.length(), 0);
}

TEST(OwnArray, WhatWasGivenBackIsNoRoomLeft) {
  OwnArray<Int> array("A");
  ASSERT_TRUE(array.allocate(1000, 5));
  array.release();
  EXPECT_EQ(array.length(), 0);
  ASSERT_TRUE(array.resize(10));
  array.fill(3);
  EXPECT_EQ(listed(array), std::vector<Int>(10, 3));
  ASSERT_TRUE(array.allocate(3, 8));
  ASSERT_TRUE(array.resize(500));
  array.fill(1);
  EXPECT_EQ(listed(array), std::vector<Int>(500, 1));
  OwnArray<Int> other(std::move(array));
  EXPECT_EQ(array.length(), 0);
  ASSERT_TRUE(array.resize(400));  // of its own
  array.fill(2);
  EXPECT_EQ(listed(other), std::vector<Int>(500, 1));
}

TEST(OwnArray, WithoutMemoryAllocateLeavesItEmpty) {
  OwnArray<Int> array("A");
  ASSERT_TRUE(array.allocate(3, 8));
  EXPECT_FALSE(array.allocate(Int64{1} << 62));
  EXPECT_EQ(array.length(), 0);
}

}  // namespace
}  // namespace tornwalzen
