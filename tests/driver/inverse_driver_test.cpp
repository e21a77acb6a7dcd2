// Whole runs of the driver on small parts: increments, lines, progress, results, and the ways a run can end.
#include "driver/inverse_driver.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "driver/whole_run.hpp"

using namespace tornwalzen;
using namespace tornwalzen::test;

namespace {

/// A dome, held against rigid motion at its centre and at one node of its middle row.
TestPart heldDome(double height) {
  TestPart part = dome(3, height);
  part.hold(25);
  part.ARFA[2 * 28 - 1] = 0;
  return part;
}

/// No nodes, no elements.
TestPart emptyPart() {
  return {{}, {}};
}

}  // namespace

TEST(InverseDriver, EasyPartGrowsTheStepToATenthAndEndsAtOne) {
  TestPart part = heldDome(8.0);
  const WholeRun whole(part, 1);
  ASSERT_TRUE(whole.converged);
  ASSERT_EQ(whole.increments.size(), 15u);
  const double steps[] = {0.0075, 0.01125, 0.016875, 0.025312, 0.037969, 0.056953, 0.085430, 0.1};
  for (std::size_t i = 0; i < 15; ++i) {
    const Increment& increment = whole.increments[i];
    EXPECT_EQ(increment.number, static_cast<int>(i) + 1);
    EXPECT_EQ(increment.maxgrad.size(), 2u) << "at least two iterations, and no more where they suffice";
    if (i < 14) {
      EXPECT_NEAR(increment.step, steps[std::min<std::size_t>(i, 7)], 1.1e-6);  // six decimals printed
    }
  }
  EXPECT_EQ(whole.increments.back().lambda, 1.0);
  EXPECT_EQ(run.ierrel, 0);
}

TEST(InverseDriver, LinesFractionsAndTextsOfAnIncrementComeInOrder) {
  TestPart part = heldDome(8.0);
  const WholeRun whole(part, 1);
  ASSERT_GE(whole.lines.size(), 6u);
  std::size_t first = 0;
  while (whole.lines[first] != " @") ++first;
  EXPECT_EQ(whole.lines[first + 1], " START INKRMEMENT     1");
  EXPECT_EQ(whole.lines[first + 2], " FORTSCHRITT/SCHRITTWEITE   0.007500  0.007500");
  EXPECT_THAT(whole.lines[first + 3], testing::StartsWith("MAX.GRAD, LS-FAK, EN 0."));
  EXPECT_EQ(whole.lines[first + 3].size(), 59u);
  EXPECT_EQ(whole.lines[first + 5], " @");
  EXPECT_EQ(whole.texts.front(),
            " Tornwalzen - Inverse Projektion :     Fortschritt / Schrittweite    0.75 %%     0.75 %%");
  EXPECT_THAT(
      whole.texts.back(),
      testing::StartsWith(" Tornwalzen - Inverse Projektion :     Fortschritt / Schrittweite  100.00 %%  "));
  EXPECT_EQ(whole.texts.size(), whole.increments.size());
  ASSERT_EQ(whole.fractions.size(), whole.increments.size() + 1);
  EXPECT_EQ(whole.fractions.front(), 0.0);
  EXPECT_EQ(whole.fractions.back(), 1.0);
  for (std::size_t i = 0; i < whole.increments.size(); ++i)
    EXPECT_NEAR(whole.fractions[i + 1], whole.increments[i].lambda, 0.6e-6);
}

TEST(InverseDriver, TolerancesAreTenTimesWiderBeforeTheEnd) {
  for (const Int ICTRL : {10, 1}) {
    TestPart part = heldDome(15.0);
    const WholeRun whole(part, ICTRL);
    ASSERT_TRUE(whole.converged) << "material " << ICTRL;
    const double tol = ICTRL == 10 ? 0.01 : 0.1;
    for (const Increment& increment : whole.increments) {
      if (increment.repeated) continue;
      const double limit = increment.lambda == 1.0 ? tol : 10.0 * tol;
      ASSERT_GE(increment.maxgrad.size(), 2u);
      EXPECT_LE(increment.maxgrad.back(), limit);
      for (std::size_t i = 1; i + 1 < increment.maxgrad.size(); ++i) EXPECT_GT(increment.maxgrad[i], limit);
    }
  }
}

TEST(InverseDriver, StepFollowsTheIterationsOfTheIncrementBefore) {
  TestPart part = heldDome(60.0);
  const WholeRun whole(part, 10);
  ASSERT_TRUE(whole.converged);
  int kept = 0;
  for (std::size_t i = 1; i + 1 < whole.increments.size(); ++i) {
    const Increment &before = whole.increments[i - 1], &now = whole.increments[i];
    if (before.repeated) continue;
    const std::size_t m = before.maxgrad.size();
    const double rule = m <= 2 ? std::min(before.step * 1.5, 0.1) : m <= 6 ? before.step : before.step / 1.5;
    EXPECT_NEAR(now.step, std::max(rule, 0.005), 2e-6) << "increment " << now.number;
    kept += m > 2 && m <= 6;
  }
  EXPECT_GT(kept, 0);
}

// The handler is called between the saving of the blank and the first iteration: it sees what the attempt
// starts from.
TEST(InverseDriver, RepeatedIncrementStartsFromTheBlankItStartedFromBefore) {
  struct Watch {
    TestPart* part;
    std::vector<std::vector<double>> starts;
    static void take(void* self, const TornwalzenProgress* record) {
      auto& watch = *static_cast<Watch*>(self);
      if (record->kind == 1 && std::string(record->text).rfind(" Tornwalzen - Inverse", 0) == 0)
        watch.starts.push_back(watch.part->RX);
    }
  };
  TestPart part = heldDome(60.0);
  Watch watch{&part, {}};
  prepareSolver(part);
  selectMaterial(10);
  std::vector<double> EVAL(5 * static_cast<std::size_t>(part.nele));
  PlivaneSetProgressHdlr(&Watch::take, &watch);
  testing::internal::CaptureStdout();
  inverseDriver(run, part.arrays(), {"EVAL", EVAL.data(), static_cast<Int64>(EVAL.size())});
  const auto lines = linesOf(testing::internal::GetCapturedStdout());
  PlivaneSetProgressHdlr(nullptr, nullptr);
  std::size_t attempt = 0;
  int moved = 0;
  bool iterated = false;
  for (const std::string& line : lines) {
    if (line.rfind(" START INKRMEMENT ", 0) == 0) {
      ++attempt;
      iterated = false;
    } else if (line.rfind("MAX.GRAD", 0) == 0) {
      iterated = iterated || line.substr(33, 13) != " 0.000000E+00";
    } else if (line == "INKREMENT WIRD WIEDERHOLT @") {
      ASSERT_LT(attempt, watch.starts.size());
      EXPECT_EQ(watch.starts[attempt], watch.starts[attempt - 1]);
      moved += iterated;
    }
  }
  EXPECT_GT(moved, 0) << "no attempt moved the blank before it failed: the part shows nothing";
}

TEST(InverseDriver, ResultsAreTheElementTableOfTheConvergedEnd) {
  TestPart part = heldDome(15.0);
  const WholeRun whole(part, 1);
  ASSERT_TRUE(whole.converged);
  const DriverArrays a = part.arrays();
  for (Int e = 1; e <= part.nele; ++e)
    for (Int column = 1; column <= 5; ++column)
      EXPECT_EQ(whole.EVAL[static_cast<std::size_t>(5 * (e - 1) + column - 1)], a.ELG(e, column));
  for (std::size_t i = 0; i < part.KNG.size(); ++i) EXPECT_EQ(part.KNZ[i], part.KNG[i]);
}

// Mirror images about the plane x = 0 through the held centre would
// demand a mirrored mesh, so the half turn about z is tested, which maps this mesh onto itself.
TEST(InverseDriver, HalfTurnOfTheDomeMapsTheBlankOntoItself) {
  TestPart part = heldDome(15.0);
  const WholeRun whole(part, 10);
  ASSERT_TRUE(whole.converged);
  const double size = 60.0;
  for (Int n = 1; n <= part.nkno; ++n) {
    const std::size_t i = static_cast<std::size_t>(2 * n - 2),
                      o = static_cast<std::size_t>(2 * (part.nkno + 1 - n) - 2);
    // The iteration stops at a residual below 0.01 mm, with stiffnesses of order 1; Newton leaves far less.
    EXPECT_NEAR(part.RX[i], -part.RX[o], 1e-5 * size);
    EXPECT_NEAR(part.RX[i + 1], -part.RX[o + 1], 1e-5 * size);
  }
}

TEST(InverseDriver, DevelopmentWithoutConvergenceReturnsAtOnce) {
  TestPart part({{0, 0, 0}, {0, 1, 0}, {0.4, 0.5, 20}, {1, 0, -3}, {1, 1, -3}}, {{1, 3, 2}, {4, 5, 3}});
  part.ARFA.assign(10, 0);
  part.ARFA[4] = 1;
  const WholeRun whole(part, 1);
  EXPECT_EQ(run.ierrel, -1);
  EXPECT_TRUE(whole.increments.empty());
  EXPECT_TRUE(whole.texts.empty());
  EXPECT_THAT(whole.EVAL, testing::Each(-9.0));
  EXPECT_FALSE(whole.converged);
  run.ierrel = 0;
}

// Every unknown held, so the vertical walls stay closed: each attempt fails in its first iteration, and the
// step is halved ten times from 0.0075 before it falls under 1e-5.
TEST(InverseDriver, StepThatBecomesTooSmallEndsTheRun) {
  TestPart part = hatWithVerticalWalls(1, 1);
  part.ARFA.assign(part.ARFA.size(), 0);
  const WholeRun whole(part, 1);
  EXPECT_EQ(run.ierrel, -1);
  EXPECT_EQ(whole.lines.back(), " KEINE KONVERGENZ, MINIMLAE SCHRITTWEITE @");
  ASSERT_EQ(whole.increments.size(), 10u);
  for (const Increment& increment : whole.increments) {
    EXPECT_EQ(increment.number, 1);
    EXPECT_TRUE(increment.repeated);
    EXPECT_TRUE(increment.maxgrad.empty());
  }
  EXPECT_EQ(*(whole.lines.end() - 2), "INKREMENT WIRD WIEDERHOLT @");
  EXPECT_THAT(whole.EVAL, testing::Each(-9.0));
  EXPECT_FALSE(whole.converged);
  for (Int n = 1; n <= part.nkno; ++n)
    EXPECT_EQ(part.RX[static_cast<std::size_t>(2 * n - 2)], part.KNG[static_cast<std::size_t>(n - 1)]);
  run.ierrel = 0;
}

// With coordinates that are powers of two the blend of blank and part is exact, and so the gradient of a flat
// plate is exactly zero: no step improves it. The first increment is repeated, all others are accepted
// unconverged at the smallest step, and the last one ends the run without results.
TEST(InverseDriver, FailureAtTheSmallestStepInTheLastIncrementEndsWithoutResultsAndWithoutClosingTime) {
  TestPart part = flatPlate(2, 2, 0.0, 8.0);
  part.hold(1);
  part.ARFA[3] = 0;
  const WholeRun whole(part, 10);
  EXPECT_EQ(run.ierrel, 0);
  EXPECT_FALSE(whole.converged);
  ASSERT_GE(whole.increments.size(), 3u);
  EXPECT_TRUE(whole.increments[0].repeated);
  EXPECT_NEAR(whole.increments[1].step, 0.00375, 1e-6);
  EXPECT_NEAR(whole.increments[2].step, 0.005, 1e-6);
  EXPECT_EQ(whole.increments[1].number, 1);
  EXPECT_EQ(whole.increments[1].maxgrad.size(), 1u) << "the line search collapsed in the first iteration";
  EXPECT_EQ(whole.increments.back().lambda, 1.0);
  EXPECT_EQ(whole.fractions.back(), 1.0);
  EXPECT_EQ(whole.trailingTexts, 2) << "information and time of the increment, no closing time";
  EXPECT_THAT(whole.EVAL, testing::Each(-9.0));
}

TEST(InverseDriver, WithoutUnknownsTheIncrementsStillRun) {
  TestPart part = emptyPart();
  const WholeRun whole(part, 1);
  // 0.0075, repeated as 0.00375, then 199 of 0.005, and what is left
  EXPECT_EQ(whole.increments.size(), 202u);
  EXPECT_EQ(whole.increments.back().lambda, 1.0);
  EXPECT_EQ(run.ierrel, 0);
  EXPECT_FALSE(whole.converged);
}

TEST(InverseDriver, PartWithAHeightThatIsNotANumberNeverConverges) {
  TestPart part = heldDome(8.0);
  part.KNG[2 * static_cast<std::size_t>(part.nkno) + 10] = std::nan("");
  const WholeRun whole(part, 1);
  EXPECT_FALSE(whole.converged);
  EXPECT_THAT(whole.EVAL, testing::Each(-9.0));
  for (const double x : part.RX) EXPECT_TRUE(std::isfinite(x));
  run.ierrso = 0;
}

TEST(InverseDriver, SolverFailureRepeatsAndLeavesTheErrorWordForTheHost) {
  TestPart part({{0, 0, 0}, {10, 0, 0}, {10, 10, 4}, {0, 10, 0}, {50, 50, 0}}, {{1, 2, 3}, {1, 3, 4}});
  part.hold(1);
  part.ARFA[3] = 0;  // node 5 is free but in no triangle
  const WholeRun whole(part, 10);
  EXPECT_EQ(run.ierrso, -1);
  EXPECT_TRUE(whole.increments.front().repeated);
  EXPECT_FALSE(whole.converged);
  EXPECT_THAT(whole.EVAL, testing::Each(-9.0));
  run.ierrso = 0;
}

TEST(InverseDriver, TwoRunsGiveTheSameBits) {
  TestPart first = heldDome(15.0), second = heldDome(15.0);
  const WholeRun one(first, 1), two(second, 1);
  EXPECT_EQ(first.RX, second.RX);
  EXPECT_EQ(one.EVAL, two.EVAL);
  EXPECT_EQ(one.lines, two.lines);
}
