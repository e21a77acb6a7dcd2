// The line search on small plates, whose equilibrium is known exactly: target and blank the same.
#include "driver/line_search.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "driver/test_run.hpp"

using namespace tornwalzen;
using namespace tornwalzen::test;

namespace {

constexpr Int limit = 4;
constexpr Int centre = 5;  // the inner node of a plate of 2 × 2 squares

/// Plate of 2 × 2 squares in equilibrium, but for its inner node, which stands `offset` mm off in u. The
/// residual is then linear in the offset up to terms of the order offset/10 mm.
struct DisturbedPlate {
  TestPart part = flatPlate(2, 2);
  std::vector<double> before;

  explicit DisturbedPlate(double offset) {
    part.bind();
    selectMaterial(10);
    startAtTheTarget(part);
    part.RX[2 * centre - 2] += offset;
    before = part.RX;
    run.maxgrad = 0.0;
    run.lsfak = -1.0;
  }
  /// Searches along u of the inner node; returns what was printed.
  std::vector<std::string> search(double correction, Int LSMAX = limit) {
    part.RB[2 * centre - 2] = correction;
    return search(LSMAX);
  }
  std::vector<std::string> search(Int LSMAX = limit) {
    testing::internal::CaptureStdout();
    lineSearch(run, LSMAX, part.arrays());
    return linesOf(testing::internal::GetCapturedStdout());
  }
  double u() const { return part.RX[2 * centre - 2]; }
};

constexpr double small = 1.0 / 1024.0;  // mm; exact in all sums below

}  // namespace

TEST(LineSearch, FullStepThatIsBetterThanItsHalfIsTaken) {
  DisturbedPlate plate(small);
  EXPECT_TRUE(plate.search(-small).empty());
  EXPECT_EQ(run.lsfak, 1.0);
  EXPECT_EQ(plate.u(), 10.0);
  EXPECT_EQ(run.maxgrad, 0.0) << "the run state describes the accepted point";
  EXPECT_EQ(run.ierrel, 0);
}

TEST(LineSearch, SettlesOnTheBestPointAmongTheHalves) {
  for (Int halvings = 1; halvings <= limit; ++halvings) {
    DisturbedPlate plate(small);
    plate.search(-small * (1 << halvings));
    EXPECT_EQ(run.lsfak, 1.0 / (1 << halvings)) << "optimum at 1/" << (1 << halvings);
    EXPECT_EQ(plate.u(), 10.0);
    EXPECT_EQ(run.maxgrad, 0.0);
  }
}

TEST(LineSearch, StillImprovingAfterTheLimitTakesTheStepBack) {
  DisturbedPlate plate(small);
  plate.search(-32.0 * small);  // the optimum lies at the fifth halving, which is one too many
  EXPECT_EQ(run.lsfak, 0.0);
  EXPECT_EQ(plate.part.RX, plate.before);
  EXPECT_GT(run.maxgrad, 0.0);
}

TEST(LineSearch, LimitIsTheCallersNumberOfHalvings) {
  DisturbedPlate two(small), one(small);
  two.search(-4.0 * small, 2);
  EXPECT_EQ(run.lsfak, 0.25);
  one.search(-4.0 * small, 1);
  EXPECT_EQ(run.lsfak, 0.0);
}

TEST(LineSearch, MonotoneImprovementThroughAllHalvingsReturnsToTheOldPoint) {
  DisturbedPlate plate(0.0);
  plate.search(64.0 * small);
  EXPECT_EQ(run.lsfak, 0.0);
  EXPECT_EQ(plate.part.RX, plate.before);
  EXPECT_EQ(run.maxgrad, 0.0);
}

TEST(LineSearch, EqualResidualAtTwoPointsTakesTheStepBack) {
  DisturbedPlate plate(small);
  for (std::size_t i = 0; i < plate.part.RB.size(); i += 2) plate.part.RB[i] = 8.0;  // a rigid shift
  plate.search();
  EXPECT_EQ(run.lsfak, 0.0);
  EXPECT_EQ(plate.part.RX, plate.before);
}

TEST(LineSearch, ZeroCorrectionTakesNothing) {
  DisturbedPlate plate(small);
  plate.search(0.0);
  EXPECT_EQ(run.lsfak, 0.0);
  EXPECT_EQ(plate.part.RX, plate.before);
}

TEST(LineSearch, ResidualThatIsNotANumberTakesTheStepBack) {
  DisturbedPlate plate(small);
  plate.part.KNZ[0] = std::nan("");
  plate.search(-small);
  EXPECT_EQ(run.lsfak, 0.0);
  EXPECT_TRUE(std::isnan(run.maxgrad));
}

// A step of 48 mm turns triangles over until less than 10 mm of it are left: at 48, 24 and 12 mm.
TEST(LineSearch, LeavesTheDegenerateRegionByHalving) {
  DisturbedPlate plate(0.0);
  const auto lines = plate.search(48.0);
  EXPECT_THAT(
      lines, testing::ElementsAre(" DEG. ELEMENTE BEIM VOLLEN LINE-SEARCH@", " DEG. ELEMENTE IM LINE-SEARCH@",
                                  " DEG. ELEMENTE IM LINE-SEARCH@"));
  EXPECT_EQ(run.ierrel, 0);
  EXPECT_LE(run.lsfak, 1.0 / 8.0);
}

TEST(LineSearch, HalvesPastTheLimitWhileElementsAreDegenerate) {
  DisturbedPlate plate(0.0);
  const auto lines = plate.search(10.0 * 1024.0 * 1024.0);
  EXPECT_EQ(lines.size(), 21u);  // the full step, and halves down to 10 mm exactly
  EXPECT_EQ(run.ierrel, 0);
}

TEST(LineSearch, EndsWhereHalvingNoLongerMovesADegenerateBlank) {
  DisturbedPlate plate(15.0);  // turned over already, and the correction does not mend it
  plate.part.RB[0] = 1.0;
  const auto lines = plate.search();
  EXPECT_EQ(run.lsfak, 0.0);
  EXPECT_EQ(run.ierrel, -1);
  EXPECT_GT(lines.size(), 10u);
  EXPECT_LT(lines.size(), 1200u) << "a double has no more halvings than that";
  EXPECT_NEAR(plate.part.RX[0], 0.0, std::numeric_limits<double>::min());

  DisturbedPlate still(15.0);
  EXPECT_THAT(still.search(0.0), testing::ElementsAre(" DEG. ELEMENTE BEIM VOLLEN LINE-SEARCH@",
                                                      " DEG. ELEMENTE IM LINE-SEARCH@"));
  EXPECT_EQ(run.lsfak, 0.0);
}

TEST(LineSearch, WithoutUnknownsEvaluatesAndTakesNothing) {
  TestPart part({}, {});
  run.maxgrad = 7.0;
  lineSearch(run, limit, part.arrays());
  EXPECT_EQ(run.maxgrad, 0.0);
  EXPECT_EQ(run.lsfak, 0.0);
}

TEST(LineSearch, LeavesTheMatrixAlone) {
  DisturbedPlate plate(small);
  buildPattern(plate.part);
  plate.part.SYSM.assign(plate.part.SYSM.size(), 3.0);
  plate.search(-small);
  EXPECT_THAT(plate.part.SYSM, testing::Each(3.0));
}
