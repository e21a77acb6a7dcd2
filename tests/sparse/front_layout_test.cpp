// The blocks of a front: every entry of the lower triangle has a place of its own, on the right side of everything.
#include "sparse/kernels/front_layout.hpp"

#include <gtest/gtest.h>

#include <vector>

using namespace tornwalzen;

namespace {

const std::vector<Int64> someRows = {1, 2, 7, 31, 32, 33, 63, 64, 65, 95, 96, 97, 130, 200, 257, 545, 600};
const std::vector<Int64> someColumns = {1, 2, 8, 33, 63, 64, 65, 100, 128, 129, 600};

template <class Check>
void forShapes(Check check) {
  for (Int64 c : someRows)
    for (Int64 w : someColumns)
      if (w <= c) check(c, w);
}

std::vector<FrontBlock> blocks(Int64 c, Int64 w) {
  std::vector<FrontBlock> all;
  for (FrontBlock b = firstBlock(c, w); b.first < c; b = blockAfter(b, c, w)) all.push_back(b);
  return all;
}

}  // namespace

TEST(FrontLayout, BlocksFollowOneAnotherAndStartAnewBehindThePivots) {
  forShapes([](Int64 c, Int64 w) {
    Int64 column = 0, place = 0;
    bool startsAtW = w == c;
    for (const FrontBlock& b : blocks(c, w)) {
      EXPECT_EQ(b.first, column);
      EXPECT_EQ(b.start, place);
      EXPECT_LE(b.end - b.first, panelWidth);
      startsAtW |= b.first == w;
      column = b.end;
      place += (b.end - b.first) * b.stride;
    }
    EXPECT_EQ(column, c);
    EXPECT_TRUE(startsAtW) << c << " rows, " << w << " pivots";
    EXPECT_EQ(frontDoubles(c, w), place + frontAlignment);
  });
}

TEST(FrontLayout, GoingBackFindsTheSameBlocks) {
  forShapes([](Int64 c, Int64 w) {
    const std::vector<FrontBlock> all = blocks(c, w);
    for (std::size_t k = 1; k < all.size(); ++k) {
      const FrontBlock b = blockBefore(all[k], c, w);
      EXPECT_EQ(b.first, all[k - 1].first);
      EXPECT_EQ(b.end, all[k - 1].end);
      EXPECT_EQ(b.row, all[k - 1].row);
      EXPECT_EQ(b.stride, all[k - 1].stride);
      EXPECT_EQ(b.start, all[k - 1].start) << c << " rows, " << w << " pivots, block " << k;
    }
  });
}

TEST(FrontLayout, EveryEntryHasItsOwnPlaceWithinTheFront) {
  forShapes([](Int64 c, Int64 w) {
    std::vector<bool> taken(frontDoubles(c, w) - frontAlignment, false);
    for (const FrontBlock& b : blocks(c, w))
      for (Int64 j = b.first; j < b.end; ++j)
        for (Int64 i = j; i < c; ++i) {
          const Int64 place = columnPlace(b, j) + i;
          ASSERT_TRUE(place >= 0 && place < static_cast<Int64>(taken.size()) && !taken[place]);
          taken[place] = true;
        }
  });
}

// Register tiles start up to a tile above the diagonal and end on a cache line.
TEST(FrontLayout, ABlockHoldsAWholeTileAboveItsDiagonalAndWholeCacheLines) {
  forShapes([](Int64 c, Int64 w) {
    for (const FrontBlock& b : blocks(c, w)) {
      EXPECT_LE(b.row, std::max<Int64>(0, b.first - (largestTile - 1)));
      EXPECT_EQ(b.row % frontAlignment, 0);
      EXPECT_EQ(b.stride % frontAlignment, 0);
      EXPECT_NE(b.stride % 512, 0);
      EXPECT_GE(b.row + b.stride, (c + frontAlignment - 1) / frontAlignment * frontAlignment);
    }
  });
}

// The diagonal blocks' upper halves and the rows above them are what a front takes beyond its triangle.
TEST(FrontLayout, ALargeFrontTakesLittleMoreThanItsTriangle) {
  for (Int64 c : {2000, 5000}) {
    const double triangle = 0.5 * static_cast<double>(c * c);
    EXPECT_LT(static_cast<double>(frontDoubles(c, c / 3)), triangle + static_cast<double>(c) * 80.0);
  }
}
