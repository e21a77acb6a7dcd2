// One blank for one map per triangle: Laplacian, loads, turns, and the step to the first inversion.
#include "element/map_joining.hpp"

#include <gtest/gtest.h>

#include <limits>

#include "small_mesh.hpp"

namespace reference {
namespace {

using namespace tornwalzen;

/// A small mesh with frames, and a dense Laplacian formed from the corner angles (U. Pinkall, K. Polthier, 1993).
struct JoinedMesh {
  SmallMesh small;
  std::vector<double> FRAMES, RB, RR;

  explicit JoinedMesh(Int cells, unsigned seed = 1) : small(cells, seed) {
    FRAMES.resize(4 * small.elements);
    RB.assign(small.equations, 0.0), RR.assign(small.equations, 7.0);
    EXPECT_EQ(measurePartFrames(small.incidences(), small.target(), frames()), 0);
  }
  Table<double> frames() { return {"FRAMES", FRAMES.data(), 4, small.elements}; }
  PotentialMesh mesh() { return {small.incidences(), frames()}; }
  Vector<double> blank() { return {"RX", small.RX.data(), small.equations}; }
  Vector<double> step() { return {"RB", RB.data(), small.equations}; }
  Vector<double> loads() { return {"RR", RR.data(), small.equations}; }

  std::vector<std::vector<double>> cotangents() const {
    std::vector<std::vector<double>> L(small.nodes, std::vector<double>(small.nodes, 0.0));
    for (Int e = 1; e <= small.elements; ++e)
      for (int c = 0; c < 3; ++c) {
        const Int n = small.corners(e)[c] - 1, i = small.corners(e)[(c + 1) % 3] - 1,
                  j = small.corners(e)[(c + 2) % 3] - 1;
        double dot = 0.0, pp = 0.0, qq = 0.0;
        for (Int k = 0; k < 3; ++k) {
          const double* x = &small.KNZ[k * small.nodes];
          dot += (x[i] - x[n]) * (x[j] - x[n]);
          pp += (x[i] - x[n]) * (x[i] - x[n]);
          qq += (x[j] - x[n]) * (x[j] - x[n]);
        }
        const double cot = dot / std::sqrt(pp * qq - dot * dot);
        L[i][j] -= cot, L[j][i] -= cot, L[i][i] += cot, L[j][j] += cot;
      }
    return L;
  }
};

TEST(MapJoining, TheLaplacianIsThatOfTheCotangents) {
  JoinedMesh joined(4);
  std::vector<Int> COLS{1}, ROWI;
  for (Int n = 0; n < joined.small.nodes; ++n) {
    for (Int p = joined.small.COLS[2 * n]; p < joined.small.COLS[2 * n + 1]; p += 2)
      ROWI.push_back((joined.small.ROWI[p - 1] + 1) / 2);
    COLS.push_back(static_cast<Int>(ROWI.size()) + 1);
  }
  std::vector<double> SYSM(ROWI.size(), 7.0);
  laplacian(joined.mesh(), {"COLS", COLS.data(), joined.small.nodes + 1},
            {"ROWI", ROWI.data(), static_cast<Int64>(ROWI.size())},
            {"SYSM", SYSM.data(), static_cast<Int64>(SYSM.size())});
  const auto exact = joined.cotangents();
  for (Int j = 0; j < joined.small.nodes; ++j)
    for (Int p = COLS[j]; p < COLS[j + 1]; ++p) EXPECT_NEAR(SYSM[p - 1], exact[ROWI[p - 1] - 1][j], 1e-12);
}

TEST(MapJoining, LoadsVanishWhereTheMapsAreTheBlanks) {
  JoinedMesh joined(3);
  for (Int n = 0; n < joined.small.nodes; ++n) {  // a flat part, its blank turned by 0.3 and moved
    const double x = joined.small.KNZ[n], y = joined.small.KNZ[joined.small.nodes + n];
    joined.small.KNZ[2 * joined.small.nodes + n] = 0.0;
    joined.small.RX[2 * n] = std::cos(0.3) * x - std::sin(0.3) * y + 5.0;
    joined.small.RX[2 * n + 1] = std::sin(0.3) * x + std::cos(0.3) * y;
  }
  ASSERT_EQ(measurePartFrames(joined.small.incidences(), joined.small.target(), joined.frames()), 0);
  std::vector<double> ANGLE(joined.small.elements);
  closestRotations(joined.mesh(), joined.blank(), {"ANGLE", ANGLE.data(), joined.small.elements});
  rotationLoads(joined.mesh(), joined.blank(), {"ANGLE", ANGLE.data(), joined.small.elements},
                joined.loads());
  for (const double load : joined.RR) EXPECT_NEAR(load, 0.0, 1e-14);
}

TEST(MapJoining, LoadsAreTheGradientOfTheDistance) {
  JoinedMesh joined(3);
  std::vector<double> ANGLE(joined.small.elements);
  for (std::size_t e = 0; e < ANGLE.size(); ++e) ANGLE[e] = 0.1 * static_cast<double>(e);
  const auto distance = [&] {  // ½·Σ A·|J - R|²
    double sum = 0.0;
    for (Int e = 1; e <= joined.small.elements; ++e) {
      const BlankMap J = blankMap(e, joined.mesh().INTA, joined.mesh().FRAMES, joined.blank());
      const double c = std::cos(ANGLE[e - 1]), s = std::sin(ANGLE[e - 1]);
      sum += 0.5 * joined.FRAMES[4 * e - 1] *
             ((J.J11 - c) * (J.J11 - c) + (J.J12 + s) * (J.J12 + s) + (J.J21 - s) * (J.J21 - s) +
              (J.J22 - c) * (J.J22 - c));
    }
    return sum;
  };
  rotationLoads(joined.mesh(), joined.blank(), {"ANGLE", ANGLE.data(), joined.small.elements},
                joined.loads());
  for (std::size_t i = 0; i < joined.RR.size(); ++i) {
    const double x = joined.small.RX[i], h = 1e-5;
    joined.small.RX[i] = x + h;
    const double ahead = distance();
    joined.small.RX[i] = x - h;
    const double behind = distance();
    joined.small.RX[i] = x;
    EXPECT_NEAR(joined.RR[i], -(ahead - behind) / (2 * h), 1e-8);
  }
}

TEST(MapJoining, ClosestRotationsServeTheLoadsDirectly) {
  JoinedMesh joined(4);
  std::vector<double> ANGLE(joined.small.elements);
  closestRotations(joined.mesh(), joined.blank(), {"ANGLE", ANGLE.data(), joined.small.elements});
  rotationLoads(joined.mesh(), joined.blank(), {"ANGLE", ANGLE.data(), joined.small.elements},
                joined.loads());
  const std::vector<double> byAngle = joined.RR;
  closestRotationLoads(joined.mesh(), joined.blank(), joined.loads());
  for (std::size_t i = 0; i < byAngle.size(); ++i) EXPECT_NEAR(joined.RR[i], byAngle[i], 1e-14);
  std::fill(joined.small.RX.begin(), joined.small.RX.end(), 0.0);  // no triangle has a rotation
  closestRotationLoads(joined.mesh(), joined.blank(), joined.loads());
  for (const double load : joined.RR) EXPECT_EQ(load, 0.0);
  EXPECT_EQ(largestTurn(joined.mesh(), joined.blank(), joined.step()), 0.0);
}

TEST(MapJoining, ARigidTurnIsMadeExactly) {
  JoinedMesh joined(3);
  constexpr double omega = 0.7;
  for (Int n = 0; n < joined.small.nodes; ++n) {
    joined.RB[2 * n] = -omega * joined.small.RX[2 * n + 1];
    joined.RB[2 * n + 1] = omega * joined.small.RX[2 * n];
  }
  EXPECT_NEAR(largestTurn(joined.mesh(), joined.blank(), joined.step()), omega, 1e-13);
  turnedLoads(joined.mesh(), joined.blank(), joined.step(), 2.0, joined.loads());
  const std::vector<double> loads = joined.RR;
  // the blank that answers them is the one turned by 2·omega: against its own maps nothing is left
  const double c = std::cos(2 * omega), s = std::sin(2 * omega);
  std::vector<double> ANGLE(joined.small.elements), before(joined.RR.size());
  closestRotations(joined.mesh(), joined.blank(), {"ANGLE", ANGLE.data(), joined.small.elements});
  rotationLoads(joined.mesh(), joined.blank(), {"ANGLE", ANGLE.data(), joined.small.elements},
                joined.loads());
  before = joined.RR;
  for (Int n = 0; n < joined.small.nodes; ++n) {
    const double u = joined.small.RX[2 * n], v = joined.small.RX[2 * n + 1];
    joined.small.RX[2 * n] = c * u - s * v, joined.small.RX[2 * n + 1] = s * u + c * v;
  }
  rotationLoads(joined.mesh(), joined.blank(), {"ANGLE", ANGLE.data(), joined.small.elements},
                joined.loads());
  for (std::size_t i = 0; i < loads.size(); ++i) EXPECT_NEAR(before[i] - joined.RR[i], loads[i], 1e-12);
}

TEST(MapJoining, SmallTurnsAndStretchesAreTheStraightStep) {
  JoinedMesh joined(3);
  for (std::size_t i = 0; i < joined.RB.size(); ++i)
    joined.RB[i] = 1e-4 * std::sin(3.0 * static_cast<double>(i));
  turnedLoads(joined.mesh(), joined.blank(), joined.step(), 1.0, joined.loads());
  const std::vector<double> curved = joined.RR;
  std::vector<double> ANGLE(joined.small.elements, 0.4), moved(joined.RR.size());
  rotationLoads(joined.mesh(), joined.blank(), {"ANGLE", ANGLE.data(), joined.small.elements},
                joined.loads());
  const std::vector<double> before = joined.RR;
  for (std::size_t i = 0; i < joined.RB.size(); ++i) joined.small.RX[i] += joined.RB[i];
  rotationLoads(joined.mesh(), joined.blank(), {"ANGLE", ANGLE.data(), joined.small.elements},
                joined.loads());
  for (std::size_t i = 0; i < moved.size(); ++i) EXPECT_NEAR(curved[i], before[i] - joined.RR[i], 1e-6);
}

TEST(MapJoining, StretchesAreComparedTriangleByTriangle) {
  JoinedMesh joined(3);
  const auto within = [&](double limit) {
    return stretchesWithin(joined.mesh(), joined.blank(), joined.step(), limit);
  };
  const double c = std::cos(0.7), s = std::sin(0.7);
  for (Int n = 0; n < joined.small.nodes; ++n) {  // turned and drawn out by 4 % everywhere
    const double u = joined.small.RX[2 * n], v = joined.small.RX[2 * n + 1];
    joined.RB[2 * n] = 1.04 * (c * u - s * v) + 5.0;
    joined.RB[2 * n + 1] = 1.04 * (s * u + c * v);
  }
  EXPECT_TRUE(within(0.0401));
  EXPECT_FALSE(within(0.0399));
  joined.RB[0] = std::nan("");
  EXPECT_FALSE(within(10.0));
}

TEST(MapJoining, TheStepToInversionIsTheFirstOne) {
  JoinedMesh joined(3);
  EXPECT_EQ(stepToInversion(joined.mesh(), joined.blank(), joined.step()),
            std::numeric_limits<double>::infinity());
  for (std::size_t i = 0; i < joined.RB.size(); ++i) joined.RB[i] = std::sin(7.0 * static_cast<double>(i));
  const double t = stepToInversion(joined.mesh(), joined.blank(), joined.step());
  ASSERT_TRUE(std::isfinite(t));
  const std::vector<double> start = joined.small.RX;
  const auto invertedAt = [&](double length) {
    for (std::size_t i = 0; i < start.size(); ++i) joined.small.RX[i] = start[i] + length * joined.RB[i];
    return blankShape(joined.mesh(), joined.blank()).inverted;
  };
  for (int k = 0; k < 100; ++k) EXPECT_EQ(invertedAt(0.999999 * t * k / 99), 0);
  EXPECT_EQ(invertedAt(1.000001 * t), 1);
}

}  // namespace
}  // namespace reference
