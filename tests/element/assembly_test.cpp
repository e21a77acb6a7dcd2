// Assembly against a dense sum of element results and against differences of the total potential.
#include "element/assembly.hpp"

#include <algorithm>
#include <limits>

#include "one_triangle.hpp"
#include "small_mesh.hpp"

namespace reference {
namespace {

using tornwalzen::residualAndMatrix;
using tornwalzen::residualOnly;

class AssemblyTest : public ElementTest, public ::testing::WithParamInterface<int> {
 protected:
  void SetUp() override {
    ElementTest::SetUp();
    run.istat = GetParam();
  }
};

INSTANTIATE_TEST_SUITE_P(BothDensities, AssemblyTest, ::testing::Values(0, 1),
                         [](const auto& which) { return which.param == 0 ? "geometric" : "plasticWork"; });

/// Sum of the element measures in element order.
double totalPotential(const SmallMesh& mesh) {
  std::vector<double> ELG(5 * mesh.elements);
  double total = 0.0;
  for (Int e = 1; e <= mesh.elements; ++e) {
    double potential = 0.0;
    tornwalzen::elementMeasure(tornwalzen::run, e, mesh.incidences(), mesh.blank(), mesh.target(),
                               tornwalzen::FlowCurve(run), potential, {"ELG", ELG.data(), mesh.elements, 5});
    total += potential;
  }
  return total;
}

TEST_P(AssemblyTest, EqualsTheDenseSumOfTheElementsToTheBit) {
  SmallMesh mesh(6);
  mesh.assemble(residualAndMatrix);
  ASSERT_EQ(run.ierrel, 0);
  const std::size_t n = mesh.equations;
  std::vector<double> dense(n * n, 0.0), residual(n, 0.0);
  for (Int e = 1; e <= mesh.elements; ++e) {
    double potential, gradient[6], hessian[36];
    tornwalzen::elementRoutine(tornwalzen::run, e, 1, mesh.incidences(), mesh.blank(), mesh.target(),
                               tornwalzen::FlowCurve(run), potential, gradient, hessian);
    const auto eq = mesh.equationsOf(e);
    for (int k = 0; k < 6; ++k) {
      residual[eq[k] - 1] -= gradient[k];
      for (int j = 0; j < 6; ++j) dense[(eq[k] - 1) * n + eq[j] - 1] += hessian[6 * k + j];
    }
  }
  double norm = 0.0;
  for (Int c = 1; c <= mesh.equations; ++c) {
    EXPECT_EQ(mesh.RR[c - 1], residual[c - 1]);
    norm = std::max(norm, std::fabs(residual[c - 1]));
    for (Int r = c; r <= mesh.equations; ++r) EXPECT_EQ(mesh.entry(r, c), dense[(c - 1) * n + r - 1]);
  }
  EXPECT_EQ(run.maxgrad, norm);
}

// The pattern is the host's memory: an entry that it lacks must not be written anywhere.
TEST_P(AssemblyTest, LeavesOutAPairThatThePatternLacks) {
  SmallMesh whole(2), lacking(2);
  const auto lacks = [](Int row, Int column) { return (row + 1) / 2 == 9 && (column + 1) / 2 == 5; };
  std::vector<Int> COLS{1}, ROWI;
  for (Int c = 1; c <= whole.equations; ++c) {
    for (Int p = whole.COLS[c - 1]; p < whole.COLS[c]; ++p)
      if (!lacks(whole.ROWI[p - 1], c)) ROWI.push_back(whole.ROWI[p - 1]);
    COLS.push_back(static_cast<Int>(ROWI.size()) + 1);
  }
  ASSERT_EQ(ROWI.size() + 4, whole.ROWI.size());
  lacking.COLS = COLS;
  lacking.ROWI = ROWI;
  lacking.SYSM.assign(ROWI.size(), 77.0);
  whole.assemble(residualAndMatrix);
  lacking.assemble(residualAndMatrix);
  for (Int c = 1; c <= whole.equations; ++c)
    for (Int r = c; r <= whole.equations; ++r)
      EXPECT_EQ(lacking.entry(r, c), lacks(r, c) ? 0.0 : whole.entry(r, c)) << r << " " << c;
  EXPECT_EQ(lacking.TEMP, std::vector<double>(lacking.equations, 0.0));
}

TEST_P(AssemblyTest, ResidualEqualsCentralDifferencesOfTheTotalPotential) {
  SmallMesh mesh(3);
  mesh.assemble(residualOnly);
  const double h = 1e-6, scale = run.maxgrad;
  for (Int i = 0; i < mesh.equations; ++i) {
    const double x = mesh.RX[i];
    mesh.RX[i] = x + h;
    const double plus = totalPotential(mesh);
    mesh.RX[i] = x - h;
    const double minus = totalPotential(mesh);
    mesh.RX[i] = x;
    EXPECT_NEAR(mesh.RR[i], (minus - plus) / (2 * h), 1e-8 * std::max(scale, 1.0));  // ε·Π/h
  }
}

TEST_P(AssemblyTest, TangentEqualsMixedSecondDifferencesOfTheTotalPotential) {
  SmallMesh mesh(3);
  mesh.assemble(residualAndMatrix);
  const double h = 1e-4;
  const double scale = *std::max_element(mesh.SYSM.begin(), mesh.SYSM.end());
  for (Int c = 1; c <= mesh.equations; ++c) {
    for (Int p = mesh.COLS[c - 1]; p < mesh.COLS[c]; ++p) {
      const Int r = mesh.ROWI[p - 1];
      const auto at = [&](double first, double second) {
        const double x = mesh.RX[r - 1], y = mesh.RX[c - 1];
        mesh.RX[r - 1] += first;
        mesh.RX[c - 1] += second;
        const double total = totalPotential(mesh);
        mesh.RX[c - 1] = y;
        mesh.RX[r - 1] = x;
        return total;
      };
      const double pp = at(h, h), mp = at(-h, h), mm = at(-h, -h), pm = at(h, -h);
      // h times the jump of the third derivative at the points of the flow curve, ε·Π/h²
      EXPECT_NEAR(mesh.SYSM[p - 1], (pp - mp - pm + mm) / (4 * h * h), 3e-5 * scale) << r << ' ' << c;
    }
  }
}

TEST_P(AssemblyTest, NoElementsGiveNoResidualAndNoNorm) {
  SmallMesh mesh(2);
  mesh.setCorners({});
  run.maxgrad = 5.0;
  mesh.assemble(residualAndMatrix);
  for (const double r : mesh.RR) EXPECT_EQ(r, 0.0);
  for (const double k : mesh.SYSM) EXPECT_EQ(k, 0.0);
  EXPECT_EQ(run.maxgrad, 0.0);
}

TEST_P(AssemblyTest, NoNodesAreAnEmptyPass) {
  SmallMesh mesh(0);
  mesh.nodes = mesh.equations = 0;
  mesh.setCorners({});
  run.maxgrad = 5.0;
  mesh.assemble(residualAndMatrix);
  EXPECT_EQ(run.maxgrad, 0.0);
}

TEST_P(AssemblyTest, ElementsSharingAnEdgeAddInTheSamePlaces) {
  SmallMesh both(1), first(1), second(1);
  first.setCorners({both.corners(1)});
  second.setCorners({both.corners(2)});
  for (SmallMesh* mesh : {&both, &first, &second}) mesh->assemble(residualAndMatrix);
  int shared = 0;
  for (Int c = 1; c <= both.equations; ++c) {
    EXPECT_EQ(both.RR[c - 1], first.RR[c - 1] + second.RR[c - 1]);
    for (Int r = c; r <= both.equations; ++r) {
      EXPECT_EQ(both.entry(r, c), first.entry(r, c) + second.entry(r, c));
      shared += first.entry(r, c) != 0.0 && second.entry(r, c) != 0.0;
    }
  }
  EXPECT_EQ(shared, 10) << "two nodes, four equations";
}

TEST_P(AssemblyTest, OrderOfTheElementsDoesNotMatterButForRounding) {
  SmallMesh mesh(6), turned = mesh;
  std::vector<std::array<Int, 3>> corners;
  for (Int e = mesh.elements; e >= 1; --e) corners.push_back(mesh.corners(e));
  turned.setCorners(corners);
  mesh.assemble(residualAndMatrix);
  const double norm = run.maxgrad;
  turned.assemble(residualAndMatrix);
  constexpr double rounding = 6 * 2.3e-16;  // some six elements meet in a node
  const double scale = *std::max_element(mesh.SYSM.begin(), mesh.SYSM.end());
  EXPECT_NEAR(run.maxgrad, norm, rounding * norm);
  for (std::size_t i = 0; i < mesh.RR.size(); ++i) EXPECT_NEAR(mesh.RR[i], turned.RR[i], rounding * norm);
  for (std::size_t p = 0; p < mesh.SYSM.size(); ++p)
    EXPECT_NEAR(mesh.SYSM[p], turned.SYSM[p], rounding * scale);
}

TEST_P(AssemblyTest, OnlyFlagOneCountsInTheNorm) {
  SmallMesh mesh(3), held = mesh;
  mesh.assemble(residualOnly);
  const Int largestAt =
      static_cast<Int>(std::max_element(mesh.RR.begin(), mesh.RR.end(),
                                        [](double a, double b) { return std::fabs(a) < std::fabs(b); }) -
                       mesh.RR.begin());
  EXPECT_EQ(run.maxgrad, std::fabs(mesh.RR[largestAt]));
  for (const Int flag : {0, 2, -1}) {
    held.ARFA[largestAt] = flag;
    held.assemble(residualOnly);
    EXPECT_EQ(held.RR, mesh.RR) << "held unknowns are assembled like all others";
    double norm = 0.0;
    for (Int i = 0; i < mesh.equations; ++i)
      if (i != largestAt) norm = std::max(norm, std::fabs(mesh.RR[i]));
    EXPECT_EQ(run.maxgrad, norm);
    EXPECT_LT(norm, std::fabs(mesh.RR[largestAt]));
  }
  held.ARFA.assign(held.ARFA.size(), 0);
  held.assemble(residualOnly);
  EXPECT_EQ(run.maxgrad, 0.0) << "no free unknown";
}

TEST_P(AssemblyTest, ResidualThatIsNoNumberMakesTheNormNoNumber) {
  SmallMesh mesh(3);
  // first, middle and last equation: what follows in the sweep must not cover it up
  for (const Int i : {0, mesh.equations / 2, mesh.equations - 1}) {
    SmallMesh broken = mesh;
    broken.RX[i] = std::numeric_limits<double>::quiet_NaN();
    broken.assemble(residualOnly);
    EXPECT_EQ(run.ierrel, 0);
    EXPECT_TRUE(std::isnan(run.maxgrad));
    for (Int k = 0; k < mesh.equations; ++k)
      if (std::isnan(broken.RR[k])) broken.ARFA[k] = 0;
    broken.assemble(residualOnly);
    EXPECT_FALSE(std::isnan(run.maxgrad)) << "a held residual does not count";
  }
}

TEST_P(AssemblyTest, ResidualOnlyKeepsTheMatrixOfThePassBefore) {
  SmallMesh mesh(3);
  mesh.assemble(residualAndMatrix);
  const std::vector<double> matrix = mesh.SYSM, residual = mesh.RR;
  const double norm = run.maxgrad;
  mesh.assemble(residualOnly);
  EXPECT_EQ(mesh.SYSM, matrix);
  EXPECT_EQ(mesh.RR, residual) << "the same residual in both modes";
  EXPECT_EQ(run.maxgrad, norm);
  mesh.RX[3] += 0.01;
  mesh.TEMP.assign(mesh.TEMP.size(), 3.0);
  mesh.assemble(residualOnly);
  EXPECT_EQ(mesh.SYSM, matrix);
  EXPECT_NE(mesh.RR, residual);
  for (const double t : mesh.TEMP) EXPECT_EQ(t, 3.0) << "nor is the scatter vector touched";
}

TEST_P(AssemblyTest, ScatterVectorIsZeroAfterAPassWithMatrix) {
  SmallMesh mesh(4);
  mesh.assemble(residualAndMatrix);
  for (const double t : mesh.TEMP) EXPECT_EQ(t, 0.0);
}

TEST_P(AssemblyTest, StopsAtTheFirstDegenerateElement) {
  SmallMesh mesh(3);
  auto corners = std::vector<std::array<Int, 3>>();
  for (Int e = 1; e <= mesh.elements; ++e) corners.push_back(mesh.corners(e));
  std::swap(corners[4][1], corners[4][2]);
  mesh.setCorners(corners);
  SmallMesh before = mesh;
  corners.resize(4);
  before.setCorners(corners);
  before.assemble(residualAndMatrix);
  run.maxgrad = 5.0;
  mesh.assemble(residualAndMatrix);
  EXPECT_EQ(run.ierrel, -1);
  EXPECT_EQ(run.maxgrad, 5.0) << "the norm is not updated";
  EXPECT_EQ(mesh.RR, before.RR) << "the elements before it are in, none after it";
  for (const double t : mesh.TEMP) EXPECT_EQ(t, 0.0);
}

TEST_P(AssemblyTest, TranslationsAreInTheNullSpaceOfTheTangent) {
  SmallMesh mesh(4);
  mesh.assemble(residualAndMatrix);
  const double scale = *std::max_element(mesh.SYSM.begin(), mesh.SYSM.end());
  for (Int r = 1; r <= mesh.equations; ++r) {
    double sum[2] = {};
    for (Int c = 1; c <= mesh.equations; ++c) sum[c % 2] += mesh.entry(std::max(r, c), std::min(r, c));
    EXPECT_NEAR(sum[0], 0.0, 50 * 2.3e-16 * scale);
    EXPECT_NEAR(sum[1], 0.0, 50 * 2.3e-16 * scale);
  }
}

}  // namespace
}  // namespace reference
