// Eight triangles at a time give what they give one by one, to the bit, with every instruction set.
#include "element/lanes/element_lanes.hpp"

#include <cstring>
#include <limits>

#include "element/lanes/lane_pass.hpp"
#include "ground/kernel_tables.hpp"
#include "host_kit/default_run.hpp"
#include "one_triangle.hpp"
#include "small_mesh.hpp"

namespace reference {
namespace {

using tornwalzen::ElementLanes;
using tornwalzen::LaneBatch;
using tornwalzen::laneCount;
using tornwalzen::Order;

std::vector<const ElementLanes*> tables() {
  const tornwalzen::KernelTables<ElementLanes>& tables = tornwalzen::elementLanesTables();
  return {tables.available, tables.available + tables.count};
}

class ElementLanesTest : public ElementTest, public ::testing::WithParamInterface<const ElementLanes*> {
 protected:
  void SetUp() override {
    ElementTest::SetUp();
    run.lanes = GetParam();
  }
  void TearDown() override { ElementTest::TearDown(); }
};

INSTANTIATE_TEST_SUITE_P(EveryTable, ElementLanesTest, ::testing::ValuesIn(tables()),
                         [](const auto& which) { return std::string(which.param->name); });

/// The same bits; any two NaNs are the same.
::testing::AssertionResult sameBits(double a, double b) {
  if (std::isnan(a) && std::isnan(b)) return ::testing::AssertionSuccess();
  if (std::memcmp(&a, &b, sizeof a) == 0) return ::testing::AssertionSuccess();
  return ::testing::AssertionFailure() << a << " and " << b;
}

/// Eight separate triangles: element e has the nodes 3e-2, 3e-1, 3e.
struct EightTriangles {
  std::vector<Int> INTA = std::vector<Int>(24);
  std::vector<double> RX = std::vector<double>(48), KNZ = std::vector<double>(72);
  LaneBatch batch;

  EightTriangles() {
    for (Int e = 0; e < 8; ++e)
      for (Int c = 0; c < 3; ++c) INTA[8 * c + e] = 3 * e + c + 1;
  }
  void place(Int e, const Blank& blank, const Part& part) {
    std::copy(blank.begin(), blank.end(), RX.begin() + 6 * e);
    for (int n = 0; n < 3; ++n)
      for (int i = 0; i < 3; ++i) KNZ[24 * i + 3 * e + n] = part[3 * n + i];
  }
  tornwalzen::Table<const Int> incidences() const { return {"INTA", INTA.data(), 8, 3}; }
  tornwalzen::Vector<const double> blank() const { return {"RX", RX.data(), 48}; }
  tornwalzen::Table<const double> part() const { return {"KNZ", KNZ.data(), 24, 3}; }
  bool take() { return tornwalzen::takeEight(tornwalzen::run, 1, incidences(), blank(), part(), batch); }

  void expectSameAsOneByOne() {
    const tornwalzen::FlowCurve CURVE(run);
    const tornwalzen::LaneCurve laneCurve(CURVE);
    ASSERT_TRUE(take());
    for (const Int mode : {0, 1}) {
      tornwalzen::lanesOf(run).evaluate(mode == 1 ? Order::hessian : Order::gradient, laneCurve, batch);
      for (Int e = 1; e <= 8; ++e) {
        double potential, gradient[6], hessian[36];
        tornwalzen::elementRoutine(tornwalzen::run, e, mode, incidences(), blank(), part(), CURVE, potential,
                                   gradient, hessian);
        EXPECT_TRUE(sameBits(batch.POTENTIAL[e - 1], potential)) << "element " << e;
        for (int k = 0; k < 6; ++k)
          EXPECT_TRUE(sameBits(batch.GRADIENT[k][e - 1], gradient[k])) << e << " " << k;
        for (int k = 0; mode == 1 && k < 36; ++k)
          EXPECT_TRUE(sameBits(batch.HESSIAN[k][e - 1], hessian[k])) << "element " << e << ", entry " << k;
      }
    }
    tornwalzen::lanesOf(run).evaluate(Order::value, laneCurve, batch);
    for (Int e = 1; e <= 8; ++e) {
      double potential;
      std::vector<double> ELG(40);
      tornwalzen::elementMeasure(tornwalzen::run, e, incidences(), blank(), part(), CURVE, potential,
                                 {"ELG", ELG.data(), 8, 5});
      EXPECT_TRUE(sameBits(batch.POTENTIAL[e - 1], potential));
      EXPECT_TRUE(sameBits(batch.STRAIN[e - 1], ELG[e - 1]));
      EXPECT_TRUE(sameBits(batch.PHI[e - 1], ELG[8 + e - 1]));
    }
  }
};

/// A right triangle of 10 mm, stretched by λu, λv and sheared, in a plane that leans.
void stretched(double lu, double lv, double shear, Blank& blank, Part& part) {
  blank = {1.0, 2.0, 11.0, 2.5, 0.5, 12.0};
  for (int n = 0; n < 3; ++n) {
    const double u = lu * blank[2 * n] + shear * blank[2 * n + 1], v = lv * blank[2 * n + 1];
    part[3 * n] = 0.8 * u;
    part[3 * n + 1] = v;
    part[3 * n + 2] = 0.6 * u;
  }
}

// From no strain over the series' end (11 % between the stretches) to stretches beyond the last point of the
// curve, all segments of the curve among them, different ones in the lanes of one batch.
TEST_P(ElementLanesTest, EqualsTheElementRoutineAtAllStrains) {
  for (const Int curve : {0, 1, 2}) {
    tornwalzen::selectMaterial(run, curve);
    EightTriangles eight;
    for (int k = 0; k < 160; ++k) {
      Blank blank;
      Part part;
      stretched(std::exp(0.02 * k), k % 3 == 0 ? std::exp(-0.02 * k) : 1.0 + 0.001 * k,
                k % 4 == 0 ? 0.0 : 0.01 * (k % 7), blank, part);
      eight.place(k % 8, blank, part);
      if (k % 8 == 7) eight.expectSameAsOneByOne();
    }
  }
}

TEST_P(ElementLanesTest, EqualsTheElementRoutineWithThePartAsReference) {
  tornwalzen::run.options.partReference = true;
  EightTriangles eight;
  for (int k = 0; k < 80; ++k) {
    Blank blank;
    Part part;
    stretched(std::exp(0.03 * k), 1.0 - 0.002 * k, k % 4 == 0 ? 0.0 : 0.01 * (k % 7), blank, part);
    eight.place(k % 8, blank, part);
    if (k % 8 == 7) eight.expectSameAsOneByOne();
  }
}

TEST_P(ElementLanesTest, EqualsTheElementRoutineWithAnisotropy) {
  tornwalzen::run.options.anisotropy = 1.7;
  EightTriangles eight;
  for (int k = 0; k < 8; ++k) {
    Blank blank;
    Part part;
    stretched(1.0 + 0.03 * k, 1.0 - 0.01 * k, 0.02 * k, blank, part);
    eight.place(k, blank, part);
  }
  eight.expectSameAsOneByOne();
}

TEST_P(ElementLanesTest, ACoordinateThatIsNoNumberStaysInItsLane) {
  EightTriangles eight;
  for (int k = 0; k < 8; ++k) {
    Blank blank;
    Part part;
    stretched(1.1, 1.0, 0.0, blank, part);
    if (k == 3) blank[2] = std::numeric_limits<double>::quiet_NaN();
    if (k == 5) part[4] = std::numeric_limits<double>::infinity();
    if (k == 6) part = Part{};  // shrunk to a point: metric of zeros
    eight.place(k, blank, part);
  }
  eight.expectSameAsOneByOne();
  EXPECT_TRUE(std::isfinite(eight.batch.POTENTIAL[2]));
  EXPECT_TRUE(std::isnan(eight.batch.POTENTIAL[3]));
}

TEST_P(ElementLanesTest, ATriangleWithoutBlankAreaIsLeftToTheElementRoutine) {
  EightTriangles eight;
  for (int k = 0; k < 8; ++k) {
    Blank blank;
    Part part;
    stretched(1.1, 1.0, 0.0, blank, part);
    eight.place(k, blank, part);
  }
  EXPECT_TRUE(eight.take());
  std::swap(eight.INTA[8 + 4], eight.INTA[16 + 4]);  // element 5 turned over
  EXPECT_FALSE(eight.take());
}

// 98 elements: twelve batches and a rest of two.
TEST_P(ElementLanesTest, PassesStopAtADegenerateElementAsOneByOne) {
  for (const Int bad : {1, 12, 98}) {
    SmallMesh mesh(7);
    mesh.enter();
    std::swap(mesh.INTA[mesh.elements + bad - 1], mesh.INTA[2 * mesh.elements + bad - 1]);
    std::vector<double> residual(mesh.equations, 0.0), ELG(5 * mesh.elements, -3.0), expected = ELG;
    double sum = 0.0, measured;
    for (Int e = 1; e < bad; ++e) {
      double potential, gradient[6], hessian[36];
      tornwalzen::elementRoutine(tornwalzen::run, e, 0, mesh.incidences(), mesh.blank(), mesh.target(),
                                 tornwalzen::FlowCurve(tornwalzen::run), potential, gradient, hessian);
      for (int k = 0; k < 6; ++k) residual[mesh.equationsOf(e)[k] - 1] -= gradient[k];
      tornwalzen::elementMeasure(tornwalzen::run, e, mesh.incidences(), mesh.blank(), mesh.target(),
                                 tornwalzen::FlowCurve(run), potential,
                                 {"ELG", expected.data(), mesh.elements, 5});
      sum += potential;
    }
    mesh.assemble(tornwalzen::residualOnly);
    EXPECT_EQ(run.ierrel, -1);
    EXPECT_EQ(mesh.RR, residual);
    run.ierrel = 0;
    tornwalzen::measureElements(tornwalzen::run, mesh.incidences(), mesh.blank(), mesh.target(),
                                tornwalzen::FlowCurve(run), measured, {"ELG", ELG.data(), mesh.elements, 5});
    EXPECT_EQ(run.ierrel, -1);
    EXPECT_EQ(measured, sum);
    EXPECT_EQ(ELG, expected);
    run.ierrel = 0;
  }
}

}  // namespace
}  // namespace reference
