// Holds that place the blank, and holds that pin it.
#include "driver/blank_holds.hpp"

#include <gtest/gtest.h>

#include "develop/test_part.hpp"

namespace tornwalzen::test {
namespace {

/// A flat plate and its blank, turned by `turn` and shifted.
struct Placed {
  TestPart part = flatPlate(6, 4);
  explicit Placed(double turn = 0.4) {
    const auto nodes = static_cast<std::size_t>(part.nkno);
    for (std::size_t n = 0; n < nodes; ++n) {
      const double x = part.KNG[n], y = part.KNG[nodes + n];
      part.RX[2 * n] = std::cos(turn) * x - std::sin(turn) * y + 100.0;
      part.RX[2 * n + 1] = std::sin(turn) * x + std::cos(turn) * y - 30.0;
    }
  }
  void hold(Int node, Int axis) { part.ARFA[static_cast<std::size_t>(2 * node - 2 + axis)] = 0; }
  std::vector<Int> used = std::vector<Int>(35, 1);
  BlankHolds holds() { return {part.arrays().ARFA, {"USED", used.data(), part.nkno}}; }
  bool place() { return holds().place(part.arrays().KNG, part.arrays().RX); }
  std::vector<Int> standing(bool shiftAlone = false, bool pinned = false) {
    std::vector<Int> FREE(part.ARFA.size(), 7);
    BlankHolds h = holds();
    if (pinned) h.pin();
    const Vector<Int> view("FREE", FREE.data(), part.neq);
    shiftAlone ? h.standingShift(part.arrays().RX, view) : h.standing(part.arrays().RX, view);
    return FREE;
  }
  double error(double turn, double u, double v) {  // of the blank against the part, turned and shifted
    double largest = 0.0;
    const auto nodes = static_cast<std::size_t>(part.nkno);
    for (std::size_t n = 0; n < nodes; ++n) {
      const double x = part.KNG[n], y = part.KNG[nodes + n];
      largest =
          std::max(largest, std::hypot(part.RX[2 * n] - std::cos(turn) * x + std::sin(turn) * y - u,
                                       part.RX[2 * n + 1] - std::sin(turn) * x - std::cos(turn) * y - v));
    }
    return largest;
  }
};

Int count(const std::vector<Int>& flags, Int value) {
  return static_cast<Int>(std::count(flags.begin(), flags.end(), value));
}

TEST(BlankHolds, ANodeAndADirectionOfAnotherBringTheBlankHome) {
  for (const Int axis : {0, 1}) {
    Placed placed;
    placed.hold(1, 0), placed.hold(1, 1), placed.hold(axis == 0 ? 29 : 7, axis);
    ASSERT_TRUE(placed.holds().free());
    ASSERT_TRUE(placed.place());
    EXPECT_LT(placed.error(0.0, 0.0, 0.0), 1e-12);
    EXPECT_EQ(placed.part.RX[0], placed.part.KNG[0]);
  }
}

TEST(BlankHolds, OfTwoTurnsTheSmallerOneIsTaken) {
  Placed placed(-0.3);
  placed.hold(1, 0), placed.hold(1, 1),
      placed.hold(7, 1);  // v of a node on the x axis: 0 or half a turn more
  ASSERT_TRUE(placed.place());
  EXPECT_LT(placed.error(0.0, 0.0, 0.0), 1e-12);
}

TEST(BlankHolds, ThreeNodesHeldOnceEachDoTheSame) {
  Placed placed;
  placed.hold(1, 0), placed.hold(35, 0), placed.hold(7, 1);
  ASSERT_TRUE(placed.holds().free());
  ASSERT_TRUE(placed.place());
  for (const Int i : {0, 68, 13})
    EXPECT_NEAR(placed.part.RX[static_cast<std::size_t>(i)],
                i == 13 ? 0.0 : placed.part.KNG[static_cast<std::size_t>(i / 2)], 0.0);
}

TEST(BlankHolds, WithoutATurnToTakeTheBlankIsShiftedAlone) {
  Placed placed;
  ASSERT_TRUE(placed.place());
  EXPECT_LT(placed.error(0.4, 100.0, -30.0), 1e-12);
  placed.hold(1, 1);
  ASSERT_TRUE(placed.place());
  EXPECT_LT(placed.error(0.4, 100.0, 0.0), 1e-12);
}

TEST(BlankHolds, NodesThatLieTooCloseCannotBePlaced) {
  Placed placed;
  placed.hold(1, 0), placed.hold(1, 1), placed.hold(35, 0);
  for (double& x : placed.part.RX) x *= 0.5;
  const std::vector<double> before = placed.part.RX;
  EXPECT_FALSE(placed.place());
  EXPECT_EQ(placed.part.RX, before);
  BlankHolds pinned = placed.holds();
  pinned.pin();
  ASSERT_TRUE(pinned.place(placed.part.arrays().KNG, placed.part.arrays().RX));
  EXPECT_EQ(placed.part.RX[68], placed.part.KNG[34]);
  EXPECT_EQ(placed.part.RX[69], before[69]);
}

TEST(BlankHolds, AFreeBlankStandsOnItsMiddleAndItsFarthestNode) {
  Placed placed(0.0);
  const std::vector<Int> FREE = placed.standing();
  EXPECT_EQ(count(FREE, 0), 3);
  EXPECT_EQ(FREE[2 * 18 - 2], 0);  // node 18 is the middle of 7 × 5
  EXPECT_EQ(FREE[2 * 18 - 1], 0);
  EXPECT_EQ(FREE[1], 0);  // v of node 1, a corner, farther along u than along v
  const std::vector<Int> shift = placed.standing(true);
  EXPECT_EQ(count(shift, 0), 2);
}

TEST(BlankHolds, MoreThanTheRigidMotionPins) {
  Placed placed;
  for (const Int node : {1, 8, 15}) placed.hold(node, 0);
  EXPECT_FALSE(placed.holds().free());
  std::vector<Int> FREE = placed.standing();
  EXPECT_EQ(count(FREE, 0), 4);  // v is open: the first held node stands there too
  EXPECT_EQ(FREE[1], 0);
  placed.hold(4, 1);
  FREE = placed.standing();
  EXPECT_EQ(FREE, placed.part.ARFA);
  EXPECT_EQ(placed.standing(true), placed.part.ARFA);
}

TEST(BlankHolds, PinnedHoldsThatLeaveTheRigidMotionOpenAreCompleted) {
  Placed placed(0.0);
  const std::vector<Int> none = placed.standing(false, true);
  EXPECT_EQ(count(none, 0), 3);
  placed.hold(1, 0), placed.hold(1, 1);
  const std::vector<Int> turn = placed.standing(false, true);
  EXPECT_EQ(count(turn, 0), 3);
  EXPECT_EQ(turn[69], 0);  // the opposite corner
}

TEST(BlankHolds, ANodeWithoutATriangleStandsApart) {
  Placed placed;
  placed.used[34] = 0;
  placed.hold(35, 0), placed.hold(35, 1);
  placed.hold(1, 0), placed.hold(1, 1), placed.hold(7, 1);
  ASSERT_TRUE(placed.holds().free());  // five are held, three of them count
  const std::vector<Int> FREE = placed.standing();
  EXPECT_EQ(count(FREE, 0), 5);
  EXPECT_EQ(FREE[68], 0);
  EXPECT_EQ(FREE[69], 0);
  EXPECT_EQ(placed.standing(true)[69], 0);
  placed.part.RX[68] = 1e6;
  ASSERT_TRUE(placed.place());
  EXPECT_LT(placed.error(0.0, 0.0, 0.0), 1e-12);
}

}  // namespace
}  // namespace tornwalzen::test
