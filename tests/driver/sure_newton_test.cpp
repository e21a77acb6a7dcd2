// Steps and iteration of the sure path on a small part with all that they share.
#include "driver/sure_newton.hpp"

#include <gtest/gtest.h>

#include "driver/sure_start.hpp"
#include "driver/sure_step.hpp"
#include "driver/test_run.hpp"
#include "verification/blank_error.hpp"

namespace tornwalzen::test {
namespace {

/// A part with start, potential and systems, as the driver has them.
struct Prepared {
  TestPart part;
  std::vector<double> FRAMES;
  std::vector<Int> FREE;
  std::vector<double> FACTORED;
  ChordMemory memory;
  FlowCurve CURVE;
  PlasticWorkTerm work;
  GeometricTerm geometric{true};
  DensityTerms terms;
  SparseSystem tangent;
  MapJoiner joiner{run};
  SureStart start;
  SureCounts counts;

  Prepared(TestPart p, Int curve = 1)
      : part(ready(std::move(p), curve)),
        FRAMES(4 * static_cast<std::size_t>(part.nele)),
        FREE(part.ARFA.size(), 1),
        FACTORED(part.ARFA.size()),
        CURVE(run),
        work(CURVE, true),
        tangent(run, part.arrays().COLS, part.arrays().ROWI, part.arrays().WORK, part.arrays().RWORK,
                part.arrays().SYSM, part.arrays().WRHS) {
    if (curve == 10)
      terms.append(geometric);
    else
      terms.append(work);
    EXPECT_TRUE(memory.allocate(nullptr, part.neq));
    FREE[0] = FREE[1] = 0;
    FREE[2 * static_cast<std::size_t>(part.nkno) - 1] = 0;
    std::vector<Int> shift(part.ARFA.size(), 1);
    shift[0] = shift[1] = 0;
    EXPECT_TRUE(start.look(StartKind::projection, part.arrays().INTA, part.arrays().KNG));
    EXPECT_EQ(measurePartFrames(part.arrays().INTA, part.arrays().KNG, frames()), 0);
    EXPECT_TRUE(
        joiner.arrange(mesh(), part.arrays().COLS, part.arrays().ROWI, {"FREE", shift.data(), part.neq}));
    EXPECT_TRUE(joiner.factorize());
    start.project(mesh(), part.arrays().KNG, part.arrays().RX);
    EXPECT_TRUE(start.hinge(mesh(), part.arrays().KNG).memory);
    start.join(mesh(), joiner, part.arrays().RX, part.arrays().TEMP);
  }
  static TestPart ready(TestPart p, Int curve) {
    freshState();
    prepareSolver(p);
    selectMaterial(curve);
    return p;
  }
  Table<double> frames() { return {"FRAMES", FRAMES.data(), 4, part.nele}; }
  PotentialMesh mesh() { return {part.arrays().INTA, frames()}; }
  SureProblem problem(double s0 = 0.2) {
    const DriverArrays a = part.arrays();
    return {run,  mesh(), &terms, s0,     {"FREE", FREE.data(), part.neq},         tangent, joiner, a.RX,
            a.RR, a.RB,   a.RXA,  a.TEMP, {"FACTORED", FACTORED.data(), part.neq}, memory,  counts};
  }
};

NewtonOutcome minimiseQuietly(SureProblem& problem, const NewtonLimits& limits) {
  testing::internal::CaptureStdout();
  const NewtonOutcome found = minimise(problem, limits);
  testing::internal::GetCapturedStdout();
  return found;
}

constexpr NewtonLimits tight{1e-4, true, -1e300, 40};

TEST(SureStart, ADevelopablePartIsDevelopedByTheStart) {
  Prepared hat(hatWithVerticalWalls(3, 3));
  const DriverArrays a = hat.part.arrays();
  for (Int e = 1; e <= hat.part.nele; ++e) {
    const SingularValues s = singularValues(blankMap(e, a.INTA, hat.frames(), a.RX));
    EXPECT_NEAR(s.s1, 1.0, 1e-12);
    EXPECT_NEAR(s.s2, 1.0, 1e-12);
  }
}

TEST(SureStart, APartMeshedClockwiseIsTurnedOver) {
  TestPart plate = flatPlate(3, 3);
  for (std::size_t e = 0; e < static_cast<std::size_t>(plate.nele); ++e)
    std::swap(plate.INTA[static_cast<std::size_t>(plate.nele) + e],
              plate.INTA[2 * static_cast<std::size_t>(plate.nele) + e]);
  const std::vector<Int> clockwise = plate.INTA;
  Prepared prepared(std::move(plate));
  EXPECT_NE(prepared.part.INTA, clockwise);
  EXPECT_EQ(blankShape(prepared.mesh(), prepared.part.arrays().RX).inverted, 0);
}

TEST(MapJoiner, APieceThatHoldsNothingIsSingular) {
  TestPart two({{0, 0, 0}, {10, 0, 0}, {0, 10, 0}, {50, 0, 0}, {60, 0, 0}, {50, 10, 0}},
               {{1, 2, 3}, {4, 5, 6}});
  prepareSolver(two);
  std::vector<double> FRAMES(8);
  const Table<double> frames("FRAMES", FRAMES.data(), 4, 2);
  ASSERT_EQ(measurePartFrames(two.arrays().INTA, two.arrays().KNG, frames), 0);
  std::vector<Int> FREE(12, 1);
  FREE[0] = FREE[1] = 0;
  MapJoiner joiner(run);
  const PotentialMesh mesh{two.arrays().INTA, frames};
  ASSERT_TRUE(joiner.arrange(mesh, two.arrays().COLS, two.arrays().ROWI, {"FREE", FREE.data(), 12}));
  EXPECT_FALSE(joiner.factorize());
  FREE[6] = FREE[7] = 0;
  ASSERT_TRUE(joiner.arrange(mesh, two.arrays().COLS, two.arrays().ROWI, {"FREE", FREE.data(), 12}));
  EXPECT_TRUE(joiner.factorize());
}

TEST(MapJoiner, HoldsOfOneDirectionNeedAFactorForEach) {
  Prepared plate(flatPlate(4, 3));
  const Int before = plate.joiner.factorizations();
  std::vector<Int> FREE(plate.part.ARFA.size(), 1);
  FREE[0] = FREE[1] = FREE[9] = 0;
  ASSERT_TRUE(plate.joiner.arrange(plate.mesh(), plate.part.arrays().COLS, plate.part.arrays().ROWI,
                                   {"FREE", FREE.data(), plate.part.neq}));
  ASSERT_TRUE(plate.joiner.factorize());
  EXPECT_EQ(plate.joiner.factorizations(), before + 2);
  std::vector<double> loads(FREE.size(), 1.0), move(FREE.size(), 7.0);
  plate.joiner.join({"LOADS", loads.data(), plate.part.neq}, {"DX", move.data(), plate.part.neq});
  for (const std::size_t i : {0, 1, 9}) EXPECT_EQ(move[i], 0.0);
  EXPECT_NE(move[8], 0.0);
  EXPECT_NE(move[8], move[9]);
}

TEST(SureStep, FollowsADescentAndKeepsTheResidual) {
  Prepared dome(test::dome(4, 25.0));
  const SureProblem problem = dome.problem();
  const SureValue before = evaluateBlank(problem);
  for (Int64 i = 1; i <= problem.RB.length(); ++i) problem.RB(i) = problem.RR(i) / before.gradient;
  const std::vector<double> start = dome.part.RX;
  const StepTaken taken = takeStep(problem, before, descentAlong(problem), false);
  ASSERT_TRUE(taken.accepted);
  EXPECT_LT(taken.value.energy, before.energy);
  const std::vector<double> RR = dome.part.RR;
  const SureValue after = evaluateBlank(problem);
  EXPECT_EQ(after.energy, taken.value.energy);
  EXPECT_EQ(after.gradient, taken.value.gradient);
  EXPECT_EQ(RR, dome.part.RR);
  ASSERT_FALSE(taken.curved);
  for (std::size_t i = 0; i < start.size(); ++i)
    EXPECT_EQ(dome.part.RX[i], start[i] + taken.length * dome.part.RB[i]);
}

TEST(SureStep, AClimbIsRefusedAndTheBlankPutBack) {
  Prepared dome(test::dome(4, 25.0));
  const SureProblem problem = dome.problem();
  const SureValue before = evaluateBlank(problem);
  for (const double size : {1e-3, 30.0}) {  // straight alone, and curved first
    for (Int64 i = 1; i <= problem.RB.length(); ++i) problem.RB(i) = -size * problem.RR(i) / before.gradient;
    const std::vector<double> start = dome.part.RX, RR = dome.part.RR;
    const StepTaken taken = takeStep(problem, before, 1.0, true);
    EXPECT_FALSE(taken.accepted);
    EXPECT_EQ(taken.length, 0.0);
    EXPECT_EQ(dome.part.RX, start);
    EXPECT_EQ(dome.part.RR, RR);
    EXPECT_EQ(taken.value.energy, before.energy);
  }
}

TEST(SureStep, AShortSoftStepIsLengthened) {
  Prepared dome(test::dome(4, 25.0));
  const SureProblem problem = dome.problem();
  const SureValue before = evaluateBlank(problem);
  // a hundredth of the steepest step within the quadratic range: four of it bring four times as much
  for (Int64 i = 1; i <= problem.RB.length(); ++i) problem.RB(i) = 1e-4 * problem.RR(i) / before.gradient;
  EXPECT_EQ(takeStep(problem, before, descentAlong(problem), true).length, 4.0);
}

TEST(SureNewton, FindsACertifiedMinimum) {
  for (const Int curve : {0, 1, 2, 10}) {
    Prepared dome(test::dome(5, 20.0), curve);
    SureProblem problem = dome.problem();
    const NewtonOutcome found = minimiseQuietly(problem, tight);
    EXPECT_EQ(found.end, SureEnd::minimum) << curve;
    EXPECT_LE(found.value.gradient, 1e-4);
    EXPECT_EQ(found.inverted, 0);
    EXPECT_GT(found.smallest, problem.s0);
    EXPECT_LE(dome.counts.factorizations, 8);
    EXPECT_EQ(dome.tangent.negativePivots(), 0);
  }
}

// Wherever the iteration began, what proves the minimum is the exact tangent of nearly that blank.
TEST(SureNewton, TheCertificateIsThatOfANearBlank) {
  for (const double stretch : {1.0, 0.97, 1.1}) {
    Prepared dome(test::dome(5, 20.0));
    SureProblem problem = dome.problem();
    for (Int n = 1; n <= dome.part.nkno; ++n) problem.RX(2 * n) *= stretch;
    EXPECT_EQ(minimiseQuietly(problem, tight).end, SureEnd::minimum);
    EXPECT_TRUE(stretchesWithin(problem.mesh, problem.FACTORED, problem.RX, 0.03)) << stretch;
    EXPECT_EQ(problem.tangent.negativePivots(), 0);
  }
}

TEST(SureNewton, TurnedTrianglesComeBack) {
  Prepared dome(test::dome(5, 20.0));
  SureProblem problem = dome.problem();
  const NewtonOutcome found = minimiseQuietly(problem, tight);
  const std::vector<double> blank = dome.part.RX;
  // one inner node thrown over its neighbours
  dome.part.RX[2 * 60 - 2] += 25.0;
  dome.part.RX[2 * 60 - 1] += 14.0;
  dome.counts = SureCounts{};
  SureProblem thrown = dome.problem();
  EXPECT_GT(blankShape(dome.mesh(), dome.part.arrays().RX).inverted, 0);
  const NewtonOutcome back = minimiseQuietly(thrown, tight);
  EXPECT_EQ(back.end, SureEnd::minimum);
  EXPECT_NEAR(back.value.energy, found.value.energy, 1e-9 * found.value.energy);
  EXPECT_LT(verification::largestError(dome.part.RX, blank), 1e-4);
}

TEST(SureNewton, TheThresholdGoesBelowTheSmallestStretch) {
  Prepared dome(test::dome(5, 20.0));
  SureProblem problem = dome.problem(0.98);  // above the stretches of the minimum
  const NewtonOutcome found = minimiseQuietly(problem, tight);
  EXPECT_EQ(found.end, SureEnd::minimum);
  EXPECT_LE(problem.s0, found.smallest);
  EXPECT_LT(found.smallest, 0.98);
  Prepared same(test::dome(5, 20.0));
  SureProblem low = same.problem();
  EXPECT_NEAR(minimiseQuietly(low, tight).value.energy, found.value.energy, 1e-9 * found.value.energy);
}

TEST(SureNewton, SaysWhyItEnds) {
  Prepared dome(test::dome(5, 20.0));
  SureProblem problem = dome.problem();
  EXPECT_EQ(minimiseQuietly(problem, {1e-4, true, -1e300, 1}).end, SureEnd::tooLong);
  dome.counts = SureCounts{};
  EXPECT_EQ(minimiseQuietly(problem, {1e-4, true, 2.0, 40}).end, SureEnd::tooThin);
  EXPECT_EQ(minimiseQuietly(problem, {1e3, false, -1e300, 40}).end, SureEnd::minimum);
  EXPECT_EQ(dome.counts.factorizations, 0);  // nothing to certify, nothing to do
  run.progress.monitor = [](void*, const ProgressPoint& point) {
    return point.phase == RunPhase::newton ? 1 : 0;
  };
  EXPECT_EQ(minimiseQuietly(problem, {1e-12, true, -1e300, 40}).end, SureEnd::stopped);
  freshState();
  dome.part.RX[5] = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(minimiseQuietly(problem, tight).end, SureEnd::notFinite);
}

TEST(SureNewton, ATangentWithoutAFactorIsNamed) {
  Prepared plate(flatPlate(4, 3), 10);
  std::fill(plate.part.RX.begin(), plate.part.RX.end(), 0.0);  // every map is nothing: no stiffness at all
  SureProblem problem = plate.problem();
  const NewtonOutcome found = minimiseQuietly(problem, {-1.0, true, -1e300, 40});
  EXPECT_TRUE(found.end == SureEnd::noFactor || found.end == SureEnd::noDescent);
  freshState();  // the solver's error word is no other test's
}

}  // namespace
}  // namespace tornwalzen::test
