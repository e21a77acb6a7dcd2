// The development as a whole: projection, orientation, descent, lines and progress.
#include "develop/unfold.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "develop/part_shape.hpp"
#include "develop/test_part.hpp"
#include "develop/unfold_descent.hpp"
#include "develop/unfold_report.hpp"

using namespace tornwalzen;
using namespace tornwalzen::test;

namespace {

std::string captured(TestPart& part) {
  testing::internal::CaptureStdout();
  unfoldBlank(run, part.arrays());
  return testing::internal::GetCapturedStdout();
}

bool sameBits(const std::vector<double>& a, const std::vector<double>& b) {
  return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size() * sizeof(double)) == 0;
}

/// E as C writes it in exponent form, turned into 0.dddddde±xx of width 13.
std::string e13(double value) {
  if (value == 0.0) return " 0.000000E+00";
  char text[32];
  std::snprintf(text, sizeof text, "%.5e", value);
  const std::string s(text);
  const std::size_t point = s.find('.'), exponent = s.find('e');
  const bool negative = value < 0.0;
  const std::string digits = s.substr(negative ? 1 : 0, 1) + s.substr(point + 1, exponent - point - 1);
  const int power = std::stoi(s.substr(exponent + 1)) + 1;
  char out[32];
  std::snprintf(out, sizeof out, "0.%sE%c%02d", digits.c_str(), power < 0 ? '-' : '+', std::abs(power));
  std::string field(out);
  if (negative) field = "-" + field;
  return std::string(13 - field.size(), ' ') + field;
}

/// The descent once more, written down directly from its definition: every loop over everything.
struct PlainDescent {
  TestPart& part;
  double qmax = 0.0, maxgrad = 0.0;
  Int degenerate = 0, iterations = 0;
  std::vector<double> steps = {};
  std::vector<double> reported = {};  // smallest qmax so far, wherever the descent reports it

  std::size_t node(Int e, int c) const {
    return static_cast<std::size_t>(part.INTA[static_cast<std::size_t>(c * part.nele + e)] - 1);
  }
  double q(Int e, double& area, double& r) const {
    double x[3], y[3];
    for (int c = 0; c < 3; ++c) x[c] = part.RX[2 * node(e, c)], y[c] = part.RX[2 * node(e, c) + 1];
    area = 0.5 * (x[0] * (y[1] - y[2]) + x[1] * (y[2] - y[0]) + x[2] * (y[0] - y[1]));
    r = area / part.ELG[static_cast<std::size_t>(4 * part.nele + e)];
    const double b = r < 0.5 ? 2.0 * (0.5 - r) : 0.0, inv = r < 0.0 ? -r : 0.0;
    return b * b + 10.0 * (inv * inv);
  }
  double objective() {
    double E = 0.0;
    qmax = 0.0;
    degenerate = 0;
    for (Int e = 0; e < part.nele; ++e) {
      double area, r;
      const double qe = q(e, area, r), penalty = (qe * qe) * (qe * qe);
      degenerate += area <= 0.0;
      qmax = qe > qmax ? qe : qmax;
      part.ELG[static_cast<std::size_t>(3 * part.nele + e)] = penalty;
      E += penalty;
    }
    return E;
  }
  void forces() {
    std::fill(part.RR.begin(), part.RR.end(), 0.0);
    for (Int e = 0; e < part.nele; ++e) {
      double area, r;
      const double qe = q(e, area, r), A3 = part.ELG[static_cast<std::size_t>(4 * part.nele + e)];
      const double dqdr = -8.0 * (r < 0.5 ? 0.5 - r : 0.0) - 20.0 * (r < 0.0 ? -r : 0.0);
      for (int c = 0; c < 3; ++c) {
        const std::size_t n = node(e, c), s = node(e, (c + 1) % 3), t = node(e, (c + 2) % 3);
        const double dx = 0.5 * (part.RX[2 * s + 1] - part.RX[2 * t + 1]) / A3;
        const double dy = 0.5 * (part.RX[2 * t] - part.RX[2 * s]) / A3;
        part.RR[2 * n] -= 4.0 * (qe * qe * qe) * dqdr * dx;
        part.RR[2 * n + 1] -= 4.0 * (qe * qe * qe) * dqdr * dy;
      }
    }
    maxgrad = 0.0;
    for (std::size_t i = 0; i < part.RR.size(); ++i)
      if (part.ARFA[i] == 1 && std::fabs(part.RR[i]) > maxgrad) maxgrad = std::fabs(part.RR[i]);
  }
  void move(double f) {
    for (std::size_t i = 0; i < part.RX.size(); ++i) part.RX[i] = part.RX[i] + f * part.RB[i];
  }
  /// Projects, descends; true if it converged.
  bool descend() {
    for (std::size_t n = 0; n < static_cast<std::size_t>(part.nkno); ++n) {
      part.RX[2 * n] = part.KNG[n];
      part.RX[2 * n + 1] = part.KNG[static_cast<std::size_t>(part.nkno) + n];
    }
    objective();
    double smallest = qmax;
    reported.push_back(smallest);
    for (iterations = 1; iterations <= 5000; ++iterations) {
      forces();
      if (maxgrad < double(1e-7f)) return true;
      for (std::size_t i = 0; i < part.RB.size(); ++i)
        part.RB[i] = part.ARFA[i] == 1 ? part.RR[i] / maxgrad : 0.0;
      move(1.0);
      double Ep = objective(), f = 0.5;
      for (;;) {
        move(-f);
        const double En = objective();
        if (Ep <= En || f <= 0.001) break;
        f = f / 2.0;
        Ep = En;
      }
      move(f);
      steps.push_back(2.0 * f);
      objective();
      smallest = std::min(smallest, qmax);
      if (iterations % 10 == 1) reported.push_back(smallest);
      if (qmax <= 0.8 && degenerate < 1 && iterations > 19) return true;
    }
    return false;
  }
};

}  // namespace

TEST(Unfold, FlatPartIsItsOwnBlankAndStopsWithoutAnIterationLine) {
  TestPart part = flatPlate(3, 2, 4.0);
  ProgressLog log;
  const std::string out = captured(part);
  EXPECT_THAT(linesOf(out), testing::ElementsAre(" ANZAHL DER ELEMENTE MIT WINKEL < 10 Grad      0@"));
  for (std::size_t n = 0; n < 12; ++n) {
    EXPECT_EQ(part.KNA[n], part.KNG[n]);
    EXPECT_EQ(part.KNA[12 + n], part.KNG[12 + n]);
    EXPECT_EQ(part.KNA[24 + n], -77.0) << "column 3 is not touched";
    EXPECT_EQ(part.RX[2 * n], part.KNG[n]);
  }
  EXPECT_EQ(run.maxgrad, 0.0);
  EXPECT_EQ(run.qmax, 0.0);
  EXPECT_EQ(run.ierrel, 0);
  EXPECT_EQ(run.atot, 600.0);
  EXPECT_THAT(log.fractions, testing::ElementsAre(0.0));
  EXPECT_TRUE(log.texts.empty());
  EXPECT_EQ(log.times, 0);
}

TEST(Unfold, EveryMessageIsEightyCharactersOnOutput) {
  TestPart part = flatPlate(1, 1);
  EXPECT_EQ(captured(part).size(), 81u);
}

TEST(Unfold, FlatPartMeshedClockwiseIsReversed) {
  TestPart part = flatPlate(2, 2);
  const auto counterClockwise = part.INTA;
  for (std::size_t e = 0; e < 8; ++e) std::swap(part.INTA[8 + e], part.INTA[16 + e]);
  captured(part);
  EXPECT_EQ(part.INTA, counterClockwise);
  EXPECT_EQ(run.qmax, 0.0);
}

TEST(Unfold, CountsSharpTriangles) {
  TestPart part({{0, 0, 0}, {10, 0, 0}, {10, 1, 0}, {0, 10, 0}}, {{1, 2, 3}, {1, 3, 4}});
  EXPECT_THAT(linesOf(captured(part)),
              testing::ElementsAre(" ANZAHL DER ELEMENTE MIT WINKEL < 10 Grad      1@"));
}

TEST(Unfold, VerticalWallsArePushedOpen) {
  TestPart part = hatWithVerticalWalls(2, 2);
  captured(part);
  EXPECT_EQ(run.ierrel, 0);
  EXPECT_LE(run.qmax, 0.8);
  const DriverArrays a = part.arrays();
  for (Int e = 1; e <= part.nele; ++e) {
    const Int i = a.INTA(e, 1), j = a.INTA(e, 2), k = a.INTA(e, 3);
    const double area = 0.5 * ((a.KNA(j, 1) - a.KNA(i, 1)) * (a.KNA(k, 2) - a.KNA(i, 2)) -
                               (a.KNA(k, 1) - a.KNA(i, 1)) * (a.KNA(j, 2) - a.KNA(i, 2)));
    // q ≤ 0.8 means r ≥ ½ − √0.2
    EXPECT_GE(area / a.ELG(e, 5), 0.5 - std::sqrt(0.2) - 1e-14) << "element " << e;
  }
}

TEST(Unfold, ConvergesInNoFewerThanTwentyIterations) {
  EXPECT_FALSE(unfoldConverged(0.1, 0, 19));
  EXPECT_TRUE(unfoldConverged(0.1, 0, 20));
  EXPECT_TRUE(unfoldConverged(0.8, 0, 20));
  EXPECT_FALSE(unfoldConverged(0.8000001, 0, 20));
  EXPECT_FALSE(unfoldConverged(0.1, 1, 20));

  // Squares of 100 mm: a step of 1 mm opens a wall by a hundredth of its area, so the criterion is met long
  // before the forces are gone.
  TestPart part = hatWithVerticalWalls(1, 1, 100.0);
  const auto lines = linesOf(captured(part));
  ASSERT_EQ(lines.size(), 4u);
  EXPECT_LE(std::stod(lines[2].substr(60, 13)), 0.8);
  EXPECT_THAT(lines[2], testing::EndsWith("   11@"));
  EXPECT_THAT(lines[3], testing::EndsWith("   20@"));
}

TEST(Unfold, WorstMeasureThatIsNotANumberIsNotAboveTheTarget) {
  EXPECT_TRUE(unfoldConverged(std::nan(""), 0, 20));
  EXPECT_FALSE(unfoldConverged(std::nan(""), 1, 20));
}

TEST(Unfold, HeldNodeNeverMoves) {
  TestPart part = hatWithVerticalWalls(2, 2);
  for (Int n = 1; n <= 11; ++n) part.hold(n);
  part.ARFA[2 * 15 - 2] = 2;  // u of node 15: neither 1 nor 0, held as well
  captured(part);
  for (std::size_t n = 0; n < 11; ++n) {
    EXPECT_EQ(part.KNA[n], part.KNG[n]);
    EXPECT_EQ(part.RB[2 * n], 0.0);
    EXPECT_EQ(part.RB[2 * n + 1], 0.0);
  }
  EXPECT_EQ(part.KNA[14], part.KNG[14]);
  EXPECT_NE(part.KNA[33 - 8], part.KNG[33 - 8]);
}

/// Runs the library on one of two equal parts and the plain descent on the other, and compares all that comes
/// out.
PlainDescent compareWithPlainDescent(TestPart& part, TestPart& plain) {
  part.bind();
  ProgressLog log;
  captured(part);
  const double qmax = run.qmax;
  const bool converged = run.ierrel == 0;
  run.ierrel = 0;
  plain.ELG = part.ELG;
  PlainDescent reference{plain};
  EXPECT_EQ(reference.descend(), converged);
  EXPECT_TRUE(sameBits(part.RX, plain.RX));
  EXPECT_TRUE(sameBits(part.ELG, plain.ELG));
  EXPECT_EQ(qmax, reference.qmax);
  std::vector<double> fractions;
  for (const double value : reference.reported)
    fractions.push_back(1.0 - (0.8 - value) / (0.8 - reference.reported.front()));
  fractions.front() = 0.0;
  EXPECT_EQ(log.fractions, fractions);
  return reference;
}

TEST(Unfold, StepsBlankAndFractionsAgreeWithThePlainDescentToTheBit) {
  for (const Int legs : {1, 3, 8}) {
    SCOPED_TRACE(legs);
    TestPart part = hatWithVerticalWalls(legs, 3, 25.0), plain = hatWithVerticalWalls(legs, 3, 25.0);
    for (TestPart* p : {&part, &plain}) p->hold(1);
    compareWithPlainDescent(part, plain);
  }
}

TEST(Unfold, StepThatNoHalvingImprovesIsTakenWhole) {
  // A steep triangle of 0.1 mm height with one free corner: half a millimetre opens it as well as a whole
  // one.
  const auto steep = [] {
    TestPart part({{0, 0, 0}, {0, -1, 0}, {0.01, -0.5, 0.1}}, {{1, 2, 3}});
    part.hold(1);
    part.hold(2);
    return part;
  };
  TestPart part = steep(), plain = steep();
  EXPECT_EQ(compareWithPlainDescent(part, plain).steps, std::vector<double>{1.0});
}

TEST(Unfold, VisitingOnlyWhatMovesChangesNoBitAndNoLine) {
  TestPart some = hatWithVerticalWalls(4, 5, 40.0), all = hatWithVerticalWalls(4, 5, 40.0);
  std::string lines[2];
  int which = 0;
  for (TestPart* part : {&some, &all}) {
    part->KNG[7] = -0.0;
    part->hold(3);
    const DriverArrays a = part->arrays();
    for (Int n = 1; n <= part->nkno; ++n) {
      a.RX(2 * n - 1) = a.KNG(n, 1);
      a.RX(2 * n) = a.KNG(n, 2);
    }
    measureAreas(run, a);
    VisitedElements list(part->nele), everything(part->nele, false);
    testing::internal::CaptureStdout();
    unfoldDescent(run, a, which == 0 ? list : everything);
    lines[which++] = testing::internal::GetCapturedStdout();
    if (which == 1) {
      EXPECT_LT(list.count(), part->nele);
    }
  }
  EXPECT_TRUE(sameBits(some.RX, all.RX));
  EXPECT_TRUE(sameBits(some.ELG, all.ELG));
  EXPECT_TRUE(sameBits(some.RR, all.RR));
  EXPECT_TRUE(sameBits(some.RB, all.RB));
  EXPECT_EQ(lines[0], lines[1]);
}

TEST(UnfoldReport, IterationLineToTheLetter) {
  testing::internal::CaptureStdout();
  reportIteration(run, {31, 12, 1234.5678, 0.0, 0.001953125, 19.0, 1.0, 2.0});
  const std::string line = testing::internal::GetCapturedStdout();
  EXPECT_EQ(line,
            "IZ,EN,EN1,L-FAK    12" + e13(1234.5678) + e13(0.0) + e13(0.001953125) + e13(19.0) + "   31@ \n");
  EXPECT_THAT(line, testing::HasSubstr(" 0.123457E+04 0.000000E+00 0.195312E-02 0.190000E+02"));
}

TEST(UnfoldReport, AdvanceLineToTheLetterAndTheProcessorTime) {
  ProgressLog log;
  reportAdvance(run, {101, 7, 0.0, 0.0, 0.0, 0.0, 2.8, 4.8});
  EXPECT_THAT(log.texts,
              testing::ElementsAre(" Tornwalzen - Geometrie abwickeln:       Fortschritt:   50.00 %%"
                                   "          7 degenerierte Elemente  "));
  EXPECT_EQ(log.times, 1);
}

TEST(UnfoldReport, StartBelowTheTargetLeavesThePercentageAsItFalls) {
  ProgressLog log;
  reportAdvance(run, {1, 0, 0.0, 0.0, 0.0, 0.0, 0.8, 0.8});  // 0/0
  reportAdvance(run, {1, 0, 0.0, 0.0, 0.0, 0.0, 0.2, 0.4});  // a negative range
  ASSERT_EQ(log.texts.size(), 2u);
  EXPECT_THAT(log.texts[0], testing::HasSubstr("Fortschritt:     NaN %%"));
  EXPECT_THAT(log.texts[1], testing::HasSubstr("Fortschritt:  -50.00 %%"));
}

TEST(UnfoldReport, NoConvergenceLineToTheLetter) {
  ProgressLog log;
  reportNoConvergence(run, 3, 5001);
  EXPECT_THAT(log.texts,
              testing::ElementsAre(
                  " Tornwalzen - Geometrie abwickeln:     3 deg.Elemente   5001 Iterationen ,    KEINE "
                  "KONVERGENZ -> ABBRUCH !!!"));
  EXPECT_EQ(log.times, 0);
}

TEST(Unfold, LinesFollowTheIterationNumbers) {
  TestPart part = hatWithVerticalWalls(6, 2, 40.0);
  ProgressLog log;
  const auto lines = linesOf(captured(part));
  ASSERT_GE(lines.size(), 4u);
  std::vector<int> numbers;
  for (std::size_t l = 1; l < lines.size(); ++l) {
    EXPECT_EQ(lines[l].substr(0, 16), "IZ,EN,EN1,L-FAK ");
    numbers.push_back(std::stoi(lines[l].substr(lines[l].size() - 6, 5)));
  }
  for (std::size_t l = 0; l + 1 < numbers.size(); ++l) EXPECT_EQ(numbers[l], static_cast<int>(10 * l + 1));
  EXPECT_EQ(log.fractions.size(), lines.size() - 1);  // the start, and one with each line but the last
  EXPECT_EQ(log.fractions.front(), 0.0);
  EXPECT_EQ(log.texts.size(), static_cast<std::size_t>((numbers.back() - 1) / 100 + 1));
  EXPECT_EQ(log.times, static_cast<Int>(log.texts.size()));
}

/// A node on top of a steep roof may slide along x alone; both its triangles want more room than there is.
/// The normalised steps of at least 2⁻⁹ mm swing about the balance for ever.
TestPart steepRoof() {
  TestPart part({{0, 0, 0}, {0, 1, 0}, {0.4, 0.5, 20}, {1, 0, -3}, {1, 1, -3}}, {{1, 3, 2}, {4, 5, 3}});
  part.ARFA.assign(10, 0);
  part.ARFA[4] = 1;
  return part;
}

TEST(Unfold, SmallestStepIsTwoToTheMinusNine) {
  TestPart part = steepRoof(), plain = steepRoof();
  const std::vector<double> steps = compareWithPlainDescent(part, plain).steps;
  EXPECT_EQ(steps.size(), 5000u);
  EXPECT_EQ(*std::min_element(steps.begin(), steps.end()), 0.001953125);
}

TEST(Unfold, NoConvergenceSetsTheErrorWordAndStillWritesTheBlank) {
  TestPart part = steepRoof();
  ProgressLog log;
  captured(part);
  EXPECT_EQ(run.ierrel, -1);
  EXPECT_GT(run.qmax, 0.8);
  ASSERT_FALSE(log.texts.empty());
  EXPECT_EQ(log.texts.back(),
            " Tornwalzen - Geometrie abwickeln:     0 deg.Elemente   5001 Iterationen ,    KEINE "
            "KONVERGENZ -> ABBRUCH !!!");
  EXPECT_NE(part.KNA[2], 0.4);
  EXPECT_EQ(part.KNA[2], part.RX[4]);
  EXPECT_EQ(part.KNA[5 + 2], 0.5);
  run.ierrel = 0;
}
