// The Newton step: held unknowns, correction, energy, and what failures leave behind.
#include "driver/newton_step.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <limits>

#include "driver/test_run.hpp"
#include "element/assembly.hpp"
#include "element/element.hpp"

using namespace tornwalzen;
using namespace tornwalzen::test;

namespace {

/// A dome of 4 × 4 squares over its own projection, held against rigid motion at its centre, ready to
/// iterate.
struct DomeRun {
  TestPart part = dome(2, 3.0);

  explicit DomeRun(Int ICTRL) {
    part.hold(13);
    part.ARFA[2 * 15 - 1] = 0;  // v of the node at the end of the middle row
    prepareSolver(part);
    selectMaterial(ICTRL);
    startAtTheTarget(part);
    run.maxgrad = 0.0;
  }
  double step() {
    double EN = -1.0;
    testing::internal::CaptureStdout();
    newtonStep(run, EN, part.arrays());
    printed = linesOf(testing::internal::GetCapturedStdout());
    return EN;
  }
  std::vector<std::string> printed;
};

}  // namespace

TEST(NewtonStep, DecouplesHeldUnknownsInRowsAndColumns) {
  DomeRun dome(10);
  TestPart& part = dome.part;
  assemble(run, residualAndMatrix, part.arrays());
  const auto SYSM = part.SYSM, RR = part.RR;
  part.ARFA[20] = 2;  // any flag but 0 moves in the Newton step
  imposeHeldUnknowns(run, part.arrays());
  const DriverArrays a = part.arrays();
  int cut = 0;
  for (Int i = 1; i <= part.neq; ++i) {
    const bool held = a.ARFA(i) == 0;
    EXPECT_EQ(a.RR(i), held ? 0.0 : RR[static_cast<std::size_t>(i - 1)]);
    for (Int k = a.COLS(i); k < a.COLS(i + 1); ++k) {
      const bool diagonal = a.ROWI(k) == i;
      const double assembled = SYSM[static_cast<std::size_t>(k - 1)];
      const bool coupled = !held && a.ARFA(a.ROWI(k)) != 0;
      EXPECT_EQ(a.SYSM(k), coupled ? assembled : (diagonal ? 1.0 : 0.0)) << "entry " << k;
      cut += !coupled && !diagonal;
    }
  }
  EXPECT_GT(cut, 30);
}

TEST(NewtonStep, FreeUnknownWithItsDiagonalAloneKeepsItsRow) {
  TestPart part({{0, 0, 0}}, {});
  part.COLS = {1, 2, 3};
  part.ROWI = {1, 2};
  part.SYSM = {5.0, 7.0};
  part.RR = {2.0, 3.0};
  part.ARFA = {1, 0};
  imposeHeldUnknowns(run, part.arrays());
  EXPECT_THAT(part.SYSM, testing::ElementsAre(5.0, 1.0));
  EXPECT_THAT(part.RR, testing::ElementsAre(2.0, 0.0));
}

TEST(NewtonStep, CorrectionSolvesTheDecoupledSystem) {
  for (const Int ICTRL : {10, 1}) {
    DomeRun dome(ICTRL);
    TestPart& part = dome.part;
    // The system as it stands before the line search evaluates new residuals.
    assemble(run, residualAndMatrix, part.arrays());
    imposeHeldUnknowns(run, part.arrays());
    const auto SYSM = part.SYSM, RR = part.RR;
    startAtTheTarget(part);
    dome.step();
    EXPECT_TRUE(dome.printed.empty());
    EXPECT_EQ(part.SYSM, SYSM);
    std::vector<double> residual = RR;
    double normA = 0.0, normX = 0.0;
    const DriverArrays a = part.arrays();
    std::vector<double> rowSum(residual.size(), 0.0);
    for (Int i = 1; i <= part.neq; ++i) {
      normX = std::max(normX, std::fabs(a.RB(i)));
      for (Int k = a.COLS(i); k < a.COLS(i + 1); ++k) {
        const std::size_t r = static_cast<std::size_t>(a.ROWI(k) - 1), c = static_cast<std::size_t>(i - 1);
        residual[r] -= a.SYSM(k) * part.RB[c];
        rowSum[r] += std::fabs(a.SYSM(k));
        if (r != c) {
          residual[c] -= a.SYSM(k) * part.RB[r];
          rowSum[c] += std::fabs(a.SYSM(k));
        }
      }
    }
    for (const double s : rowSum) normA = std::max(normA, s);
    const double unit = part.neq * normA * normX * std::numeric_limits<double>::epsilon();
    for (const double r : residual) EXPECT_LE(std::fabs(r), 10.0 * unit);
    EXPECT_GT(normX, 0.0);
    for (Int i = 1; i <= part.neq; ++i)
      if (a.ARFA(i) == 0) {
        EXPECT_EQ(a.RB(i), 0.0);
      }
  }
}

TEST(NewtonStep, ResidualFallsQuadraticallyNearTheSolution) {
  DomeRun dome(10);
  std::vector<double> norms;
  for (int iteration = 0; iteration < 6; ++iteration) {
    dome.step();
    norms.push_back(run.maxgrad);
  }
  // Potentials here are of the order 100 mm² · 1e-2 over edges of 10 mm: 1e-12 mm is a few roundings of a
  // sum.
  EXPECT_LT(norms.back(), 1e-12);
  EXPECT_GT(norms[0], 1e-6);
  EXPECT_LT(norms[1], 0.1 * norms[0]);
}

TEST(NewtonStep, EnergyIsTheSumOverElementsAtTheAcceptedPoint) {
  DomeRun dome(1);
  const double EN = dome.step();
  double expected = 0.0;
  const DriverArrays a = dome.part.arrays();
  for (Int e = 1; e <= dome.part.nele; ++e) {
    double potential;
    elementMeasure(run, e, a.INTA, a.RX, a.KNZ, FlowCurve(run), potential, a.ELG);
    expected += potential;
  }
  EXPECT_EQ(EN, expected);
  EXPECT_GT(EN, 0.0);
}

TEST(NewtonStep, AllUnknownsHeldGivesNoCorrectionAndNoStep) {
  DomeRun dome(10);
  dome.part.ARFA.assign(dome.part.ARFA.size(), 0);
  const auto before = dome.part.RX;
  dome.step();
  EXPECT_THAT(dome.part.RB, testing::Each(0.0));
  EXPECT_EQ(dome.part.RX, before);
  EXPECT_EQ(run.lsfak, 0.0);
  EXPECT_EQ(run.maxgrad, 0.0);
  EXPECT_EQ(run.ierrso, 0);
}

TEST(NewtonStep, DegenerateElementReturnsAtOnce) {
  DomeRun dome(10);
  dome.part.RX[0] = 35.0;  // the first corner, far across
  run.lsfak = 0.625;
  dome.part.RB.assign(dome.part.RB.size(), 4.0);
  const auto before = dome.part.RX;
  EXPECT_EQ(dome.step(), -1.0);
  EXPECT_EQ(run.ierrel, -1);
  EXPECT_EQ(run.lsfak, 0.625);
  EXPECT_EQ(dome.part.RX, before);
  EXPECT_THAT(dome.part.RB, testing::Each(4.0));
  EXPECT_TRUE(dome.printed.empty());
  run.ierrel = 0;
}

TEST(NewtonStep, FailedFactorizationLeavesTheBlankAndReportsNoStep) {
  TestPart part({{0, 0, 0}, {10, 0, 0}, {10, 10, 1}, {0, 10, 0}, {50, 50, 0}}, {{1, 2, 3}, {1, 3, 4}});
  part.hold(1);
  part.ARFA[3] = 0;
  prepareSolver(part);  // node 5 is free but in no triangle: its diagonal is zero
  selectMaterial(10);
  startAtTheTarget(part);
  part.RX[4] += 0.1;
  part.RB.assign(part.RB.size(), 9.0);
  const auto before = part.RX;
  double EN;
  newtonStep(run, EN, part.arrays());
  EXPECT_EQ(run.ierrso, -1);
  EXPECT_EQ(run.ierrel, 0);
  EXPECT_EQ(part.RX, before);
  EXPECT_EQ(run.lsfak, 0.0);
  run.ierrso = 0;
}

TEST(NewtonStep, CorrectionThatIsNotFiniteIsDiscarded) {
  DomeRun dome(10);
  dome.part.KNZ[7] = std::nan("");
  const auto before = dome.part.RX;
  dome.step();
  EXPECT_THAT(dome.part.RB, testing::Each(0.0));
  EXPECT_EQ(dome.part.RX, before);
  EXPECT_EQ(run.lsfak, 0.0);
  EXPECT_TRUE(std::isnan(run.maxgrad));
}

TEST(EnergySum, OfNoElementIsZero) {
  TestPart part({}, {});
  double EN = 5.0;
  energySum(run, EN, part.arrays());
  EXPECT_EQ(EN, 0.0);
}

TEST(EnergySum, StopsAtADegenerateElementWithTheSumSoFar) {
  TestPart part = flatPlate(3, 1);
  selectMaterial(10);
  startAtTheTarget(part);
  for (double& z : part.KNZ) z *= 1.01;
  const DriverArrays a = part.arrays();
  double first = 0.0, EN = 0.0;
  for (Int e = 1; e <= 2; ++e) {
    double potential;
    elementMeasure(run, e, a.INTA, a.RX, a.KNZ, FlowCurve(run), potential, a.ELG);
    first += potential;
  }
  a.RX(2 * a.INTA(3, 2) - 1) = -5.0;  // turns triangle 3 over, the first that has this node
  testing::internal::CaptureStdout();
  energySum(run, EN, a);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), " DEGENERIERTES ELEMENT \n");
  EXPECT_EQ(run.ierrel, -1);
  EXPECT_EQ(EN, first);
  EXPECT_GT(EN, 0.0);
  run.ierrel = 0;
}
