// One-based views: where an element lies, and that checked builds end at a subscript outside the array.
#include "ground/array_view.hpp"

#include <gtest/gtest.h>

#include <vector>

namespace {

using namespace tornwalzen;

TEST(ArrayView, ElementOneIsTheFirst) {
  std::vector<double> memory = {1.5, 2.5, 3.5};
  const Vector<double> RX("RX", memory.data(), 3);
  EXPECT_EQ(&RX(1), &memory[0]);
  EXPECT_EQ(&RX(3), &memory[2]);
  RX(2) = -1.0;
  EXPECT_EQ(memory[1], -1.0);
  EXPECT_EQ(RX.length(), 3);
  EXPECT_STREQ(RX.name(), "RX");
}

TEST(ArrayView, TablesAreColumnMajor) {
  std::vector<Int> memory(6);
  const Table<Int> INTA("INTA", memory.data(), 2, 3);
  for (Int e = 1; e <= 2; ++e)
    for (Int c = 1; c <= 3; ++c) INTA(e, c) = 10 * e + c;
  EXPECT_EQ(memory, (std::vector<Int>{11, 21, 12, 22, 13, 23}));
}

TEST(ArrayView, AViewToWriteThroughServesForReading) {
  std::vector<double> memory = {1.0, 2.0};
  const Table<double> KNG("KNG", memory.data(), 1, 2);
  const Table<const double> readOnly = KNG;
  EXPECT_EQ(&readOnly(1, 2), &memory[1]);
  const Vector<double> RX("RX", memory.data(), 2);
  const Vector<const double> readRX = RX;
  EXPECT_EQ(readRX(2), 2.0);
  EXPECT_STREQ(readRX.name(), "RX");
}

class ArrayViewDeathTest : public testing::Test {
 protected:
  void SetUp() override {
#ifndef TORNWALZEN_CHECKED
    GTEST_SKIP() << "skipped: subscripts are tested in checked builds only";
#endif
    testing::FLAGS_gtest_death_test_style = "threadsafe";
  }
  std::vector<double> memory = std::vector<double>(6);
};

TEST_F(ArrayViewDeathTest, AVectorEndsTheProcessOutsideItsBounds) {
  const Vector<double> RX("RX", memory.data(), 6);
  EXPECT_DEATH(RX(7) = 1.0,
               "^fort: \\(2\\): Subscript #1 of the array RX has value 7 which is greater than the upper "
               "bound of 6\n");
  EXPECT_DEATH(
      RX(0) = 1.0,
      "^fort: \\(3\\): Subscript #1 of the array RX has value 0 which is less than the lower bound of 1\n");
}

TEST_F(ArrayViewDeathTest, ATableNamesTheSubscriptThatIsOutside) {
  const Table<double> KNG("KNG", memory.data(), 2, 3);
  EXPECT_DEATH(KNG(3, 1) = 1.0,
               "Subscript #1 of the array KNG has value 3 which is greater than the upper bound of 2");
  EXPECT_DEATH(KNG(2, 4) = 1.0,
               "Subscript #2 of the array KNG has value 4 which is greater than the upper bound of 3");
  EXPECT_DEATH(KNG(1, 0) = 1.0,
               "Subscript #2 of the array KNG has value 0 which is less than the lower bound of 1");
}

TEST_F(ArrayViewDeathTest, AnEmptyViewHasNoElement) {
  const Vector<double> none;
  EXPECT_DEATH(none(1) = 1.0,
               "Subscript #1 of the array  has value 1 which is greater than the upper bound of 0");
}

}  // namespace
