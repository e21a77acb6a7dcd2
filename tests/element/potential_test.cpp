// The potential in the singular values of J: the element's own above the threshold, its C2 continuation below.
#include <memory>

#include "element/lanes/element_lanes.hpp"
#include "element/potential_sums.hpp"
#include "ground/kernel_tables.hpp"
#include "one_triangle.hpp"
#include "small_mesh.hpp"

namespace reference {
namespace {

using tornwalzen::Order;

struct Choice {
  const char* name;
  Int istat, curve;
  double r;
  bool partReference;
};

void PrintTo(const Choice& choice, std::ostream* out) {
  *out << choice.name;
}

/// The library's term of a choice, on the curve that is loaded.
struct BuiltInTerm {
  tornwalzen::FlowCurve CURVE{tornwalzen::run};
  tornwalzen::PlasticWorkTerm work;
  tornwalzen::GeometricTerm geometric;
  tornwalzen::DensityTerms terms;

  explicit BuiltInTerm(const Choice& choice)
      : work(CURVE, choice.partReference), geometric(choice.partReference) {
    if (choice.istat == 0)
      terms.append(geometric);
    else
      terms.append(work);
  }
};

/// One triangle by way of J.
struct ByMap {
  Int INTA[3] = {1, 2, 3};
  double FRAMES[4] = {};
  double value = 0.0, gradient[6] = {}, hessian[36] = {};

  tornwalzen::PotentialMesh mesh() const { return {{"INTA", INTA, 1, 3}, {"FRAMES", FRAMES, 4, 1}}; }
  Int place(const Part& part) {
    double KNG[9];
    for (int n = 0; n < 3; ++n)
      for (int i = 0; i < 3; ++i) KNG[3 * i + n] = part[3 * n + i];
    return tornwalzen::measurePartFrames({"INTA", INTA, 1, 3}, {"KNG", KNG, 3, 3}, {"FRAMES", FRAMES, 4, 1});
  }
  void evaluate(const tornwalzen::DensityTerms& terms, Order order, const Blank& blank, double s0,
                double theta = 0.0) {
    value =
        trianglePotential(order, 1, mesh(), {"RX", blank.data(), 6}, {terms, s0, theta}, gradient, hessian);
  }
};

class PotentialTest : public ElementTest, public ::testing::WithParamInterface<Choice> {
 protected:
  void SetUp() override {
    ElementTest::SetUp();
    run.istat = GetParam().istat;
    tornwalzen::materialSetup(run, GetParam().curve);
    run.options.anisotropy = GetParam().r;
    run.options.partReference = GetParam().partReference;
  }
};

INSTANTIATE_TEST_SUITE_P(Choices, PotentialTest,
                         ::testing::Values(Choice{"work0", 1, 0, 1.0, true}, Choice{"work1", 1, 1, 1.0, true},
                                           Choice{"work2", 1, 2, 1.0, true},
                                           Choice{"work1OverTheBlank", 1, 1, 1.0, false},
                                           Choice{"work1LowR", 1, 1, 0.6, true},
                                           Choice{"work1HighROverTheBlank", 1, 1, 1.9, false},
                                           Choice{"geometric", 0, 10, 1.0, true},
                                           Choice{"geometricOverTheBlank", 0, 10, 1.0, false}),
                         [](const auto& which) { return which.param.name; });

double distance(const double* a, const double* b, int count) {
  double size = 0.0;
  for (int i = 0; i < count; ++i) size = std::max(size, std::fabs(a[i] - b[i]));
  return size;
}

// As in derivatives_test.cpp: rounding of the metric, multiplied by the shapes of the triangles.
constexpr double roundOff = 1e-10;

TEST_P(PotentialTest, IsTheElementsOwnAboveTheThreshold) {
  const BuiltInTerm term(GetParam());
  RandomTriangles random(21);
  OneTriangle element;
  ByMap map;
  for (int k = 0; k < 3000; ++k) {
    const Blank blank = random.blank(10.0);
    const double size = std::pow(10.0, random.between(-6.0, 0.0));
    const double C11 = 1.0 + 0.7 * random.between(-size, size), C22 = 1.0 + 0.7 * random.between(-size, size);
    const double C12 = random.between(-0.9 * size, 0.9 * size) * std::sqrt(C11 * C22);
    if (std::fabs(C12) < 1e-7) continue;  // at 1e-8 and below the element leaves the shear out
    const Part part = random.part(blank, C11, C22, C12, 100.0);
    element.place(blank, part);
    element.evaluate(1);
    ASSERT_EQ(map.place(part), 0);
    map.evaluate(term.terms, Order::hessian, blank, 1e-3);
    const double scaleH = largest(element.hessian, 36), move = 1e-3 * largest(blank.data(), 6);
    ASSERT_LT(std::fabs(map.value - element.potential),
              roundOff * std::max(element.potential, move * move * scaleH));
    ASSERT_LT(distance(map.gradient, element.gradient, 6),
              roundOff * std::max(largest(element.gradient, 6), move * scaleH));
    ASSERT_LT(distance(map.hessian, element.hessian, 36), roundOff * scaleH);
  }
}

/// Random corners of either orientation, so that every singular value between -1 and 2 is met.
Blank anyBlank(RandomTriangles& random) {
  Blank blank;
  for (double& x : blank) x = random.between(-10.0, 10.0);
  return blank;
}

TEST_P(PotentialTest, DerivativesBelowTheThresholdAgreeWithDifferences) {
  const BuiltInTerm term(GetParam());
  RandomTriangles random(22);
  ByMap at, ahead, behind;
  constexpr double h = 1e-5;
  double worstGradient = 0.0, worstHessian = 0.0;
  for (int k = 0; k < 400; ++k) {
    const Blank partInPlane = random.blank(8.0);
    Part part;
    for (int n = 0; n < 3; ++n)
      part[3 * n] = partInPlane[2 * n], part[3 * n + 1] = partInPlane[2 * n + 1], part[3 * n + 2] = 0.3 * n;
    for (ByMap* m : {&at, &ahead, &behind}) ASSERT_EQ(m->place(part), 0);
    const Blank blank = anyBlank(random);
    const auto s = singularValues(blankMap(1, at.mesh().INTA, at.mesh().FRAMES, {"RX", blank.data(), 6}));
    if (s.s1 + s.s2 < 0.2) continue;  // near a reflection the axes themselves turn fast
    constexpr double s0 = 0.4;
    at.evaluate(term.terms, Order::hessian, blank, s0);
    for (int i = 0; i < 6; ++i) {
      Blank moved = blank;
      moved[i] += h;
      ahead.evaluate(term.terms, Order::gradient, moved, s0);
      moved[i] = blank[i] - h;
      behind.evaluate(term.terms, Order::gradient, moved, s0);
      const double slope = (ahead.value - behind.value) / (2.0 * h);
      worstGradient = std::max(
          worstGradient, std::fabs(slope - at.gradient[i]) / (1e-6 * at.value + largest(at.gradient, 6)));
      double column[6];
      for (int j = 0; j < 6; ++j) column[j] = (ahead.gradient[j] - behind.gradient[j]) / (2.0 * h);
      worstHessian =
          std::max(worstHessian, distance(column, at.hessian + 6 * i, 6) / largest(at.hessian, 36));
    }
  }
  EXPECT_LT(worstGradient, 1e-6);
  EXPECT_LT(worstHessian, 1e-4);  // third derivatives jump at the threshold and at the curve's points
}

TEST_P(PotentialTest, SoftenedTangentHasNoNegativeDirection) {
  const BuiltInTerm term(GetParam());
  RandomTriangles random(23);
  ByMap map;
  int negative = 0;
  for (int k = 0; k < 500; ++k) {
    ASSERT_EQ(map.place(random.part(random.blank(10.0), 1.0, 1.0, 0.0, 10.0)), 0);
    const Blank blank = anyBlank(random);
    const auto quadratic = [&](const Blank& x) {
      double q = 0.0;
      for (int i = 0; i < 36; ++i) q += x[i % 6] * map.hessian[i] * x[i / 6];
      return q;
    };
    const Blank direction = anyBlank(random);
    map.evaluate(term.terms, Order::hessian, blank, 0.2, 0.0);
    const double exact = quadratic(direction), scale = largest(map.hessian, 36);
    negative += exact < 0.0;
    map.evaluate(term.terms, Order::hessian, blank, 0.2, 1.0);
    ASSERT_GT(quadratic(direction), -1e-9 * scale);
    ASSERT_GT(quadratic(direction), exact - 1e-9 * scale);
  }
  EXPECT_GT(negative, 10);
}

TEST_P(PotentialTest, TurningTheBlankChangesATurnableTermByNothing) {
  const BuiltInTerm term(GetParam());
  EXPECT_EQ(term.terms.turnable(), GetParam().istat != 0);
  RandomTriangles random(24);
  ByMap map;
  ASSERT_EQ(map.place(random.part(random.blank(10.0), 1.2, 0.9, 0.1, 10.0)), 0);
  const Blank blank = random.blank(10.0);
  Blank turned = blank;
  for (int n = 0; n < 3; ++n) {
    turned[2 * n] = 0.8 * blank[2 * n] - 0.6 * blank[2 * n + 1];
    turned[2 * n + 1] = 0.6 * blank[2 * n] + 0.8 * blank[2 * n + 1];
  }
  map.evaluate(term.terms, Order::value, blank, 0.01);
  const double straight = map.value;
  map.evaluate(term.terms, Order::value, turned, 0.01);
  EXPECT_EQ(std::fabs(map.value - straight) < 1e-9 * straight, term.terms.turnable());
}

class PotentialSums : public ElementTest {};

TEST_F(PotentialSums, AgreeWithTheAssembly) {
  run.options.partReference = true;
  SmallMesh small(5);
  small.assemble(1);
  std::vector<double> FRAMES(4 * small.elements), RR(small.equations, 7.0), SYSM(small.ROWI.size(), 7.0);
  ASSERT_EQ(
      measurePartFrames(small.incidences(), small.target(), {"FRAMES", FRAMES.data(), 4, small.elements}), 0);
  const BuiltInTerm term(Choice{"work1", 1, 1, 1.0, true});
  const tornwalzen::PotentialMesh mesh{small.incidences(), {"FRAMES", FRAMES.data(), 4, small.elements}};
  const tornwalzen::ExtendedPotential potential{term.terms, 0.01, 0.0};
  const double energy = potentialTangent(
      mesh, small.blank(), potential, {"COLS", small.COLS.data(), small.equations + 1},
      {"ROWI", small.ROWI.data(), static_cast<Int>(small.ROWI.size())}, {"RR", RR.data(), small.equations},
      {"SYSM", SYSM.data(), static_cast<Int>(SYSM.size())});
  EXPECT_LT(distance(RR.data(), small.RR.data(), small.equations),
            1e-12 * largest(small.RR.data(), small.equations));
  EXPECT_LT(distance(SYSM.data(), small.SYSM.data(), static_cast<int>(SYSM.size())),
            1e-11 * largest(small.SYSM.data(), static_cast<int>(SYSM.size())));
  EXPECT_EQ(potentialEnergy(mesh, small.blank(), potential), energy);
  std::vector<double> again(RR);
  EXPECT_EQ(potentialResidual(mesh, small.blank(), potential, {"RR", again.data(), small.equations}), energy);
  EXPECT_EQ(again, RR);
}

/// Energy, residual and tangent of one blank.
struct Summed {
  double energy;
  std::vector<double> RR, SYSM;
};
Summed summed(const SmallMesh& small, const tornwalzen::PotentialMesh& mesh,
              const tornwalzen::ExtendedPotential& potential) {
  Summed s{0.0, std::vector<double>(small.equations), std::vector<double>(small.ROWI.size())};
  const tornwalzen::Vector<double> RR("RR", s.RR.data(), small.equations);
  const tornwalzen::Vector<const double> RX("RX", small.RX.data(), small.equations);
  const double energy = potentialEnergy(mesh, RX, potential);
  EXPECT_EQ(potentialResidual(mesh, RX, potential, RR), energy);
  const std::vector<double> alone = s.RR;
  s.energy = potentialTangent(mesh, RX, potential, {"COLS", small.COLS.data(), small.equations + 1},
                              {"ROWI", small.ROWI.data(), static_cast<Int>(small.ROWI.size())}, RR,
                              {"SYSM", s.SYSM.data(), static_cast<Int>(s.SYSM.size())});
  EXPECT_EQ(s.energy, energy);
  EXPECT_EQ(s.RR, alone);
  return s;
}

// From slight strains to those beyond the curve, with negative eigenvalues and without; 98 triangles, two of them alone.
TEST_F(PotentialSums, EightAtATimeAreThoseOneByOne) {
  SmallMesh small(7);
  std::vector<double> FRAMES(4 * small.elements);
  ASSERT_EQ(
      measurePartFrames(small.incidences(), small.target(), {"FRAMES", FRAMES.data(), 4, small.elements}), 0);
  const BuiltInTerm term(Choice{"work1", 1, 1, 1.4, true});
  const std::vector<double> start = small.RX;
  for (const double stretch : {1.0, 0.7, 0.4, 1.8, 5.0})
    for (const double theta : {0.0, 0.3, 1.0}) {
      for (Int n = 0; n < small.nodes; ++n) small.RX[2 * n] = stretch * start[2 * n] + 0.1 * start[2 * n + 1];
      tornwalzen::PotentialMesh mesh{small.incidences(), {"FRAMES", FRAMES.data(), 4, small.elements}};
      const tornwalzen::ExtendedPotential potential{term.terms, 0.01, theta};
      const Summed one = summed(small, mesh, potential);
      const auto& tables = tornwalzen::elementLanesTables();
      std::vector<Summed> lanes;
      for (int k = 0; k < tables.count; ++k) {
        mesh.lanes = tables.available[k];
        lanes.push_back(summed(small, mesh, potential));
        EXPECT_EQ(lanes[k].energy, lanes[0].energy) << mesh.lanes->name;
        EXPECT_EQ(lanes[k].RR, lanes[0].RR) << mesh.lanes->name;
        EXPECT_EQ(lanes[k].SYSM, lanes[0].SYSM) << mesh.lanes->name;
      }
      EXPECT_NEAR(lanes[0].energy, one.energy, 1e-13 * one.energy);
      EXPECT_LT(distance(lanes[0].RR.data(), one.RR.data(), small.equations),
                1e-12 * largest(one.RR.data(), small.equations));
      EXPECT_LT(distance(lanes[0].SYSM.data(), one.SYSM.data(), static_cast<int>(one.SYSM.size())),
                1e-11 * largest(one.SYSM.data(), static_cast<int>(one.SYSM.size())));
      if ((stretch == 0.4 || stretch == 5.0) && theta == 1.0) {  // turns and stretches of negative curvature
        const Summed exact = summed(small, mesh, {term.terms, 0.01, 0.0});
        EXPECT_NE(exact.SYSM, lanes.back().SYSM) << "nothing was softened";
      }
    }
}

// Where a triangle lies below the threshold, or another term acts, the eight go one by one.
TEST_F(PotentialSums, WhatLanesDoNotServeGoesOneByOne) {
  SmallMesh small(4);
  std::vector<double> FRAMES(4 * small.elements);
  ASSERT_EQ(
      measurePartFrames(small.incidences(), small.target(), {"FRAMES", FRAMES.data(), 4, small.elements}), 0);
  const BuiltInTerm part(Choice{"work1", 1, 1, 1.0, true}), blank(Choice{"work1", 1, 1, 1.0, false}),
      geometric(Choice{"geometric", 0, 10, 1.0, true});
  tornwalzen::PotentialMesh mesh{small.incidences(), {"FRAMES", FRAMES.data(), 4, small.elements}};
  for (const auto& [term, s0] : {std::pair{&part, 3.0}, {&blank, 0.01}, {&geometric, 0.01}}) {
    const tornwalzen::ExtendedPotential potential{term->terms, s0, 1.0};
    mesh.lanes = nullptr;
    const Summed one = summed(small, mesh, potential);
    mesh.lanes = &tornwalzen::elementLanesTables().best();
    const Summed eight = summed(small, mesh, potential);
    EXPECT_EQ(eight.energy, one.energy);
    EXPECT_EQ(eight.RR, one.RR);
    EXPECT_EQ(eight.SYSM, one.SYSM);
  }
  small.RX[0] = std::nan("");
  EXPECT_TRUE(std::isnan(potentialEnergy(mesh, small.blank(), {part.terms, 0.01, 1.0})));
}

TEST_F(PotentialSums, TheShapeOfTheBlankCountsTurnedTriangles) {
  SmallMesh small(3);
  std::vector<double> FRAMES(4 * small.elements);
  ASSERT_EQ(
      measurePartFrames(small.incidences(), small.target(), {"FRAMES", FRAMES.data(), 4, small.elements}), 0);
  const tornwalzen::PotentialMesh mesh{small.incidences(), {"FRAMES", FRAMES.data(), 4, small.elements}};
  EXPECT_EQ(blankShape(mesh, small.blank()).inverted, 0);
  EXPECT_GT(blankShape(mesh, small.blank()).smallest, 0.3);
  for (Int n = 0; n < small.nodes; ++n) small.RX[2 * n] = -small.RX[2 * n];
  EXPECT_EQ(blankShape(mesh, small.blank()).inverted, small.elements);
  EXPECT_LT(blankShape(mesh, small.blank()).smallest, -0.3);
  std::fill(small.RX.begin(), small.RX.end(), 1.0);
  EXPECT_EQ(blankShape(mesh, small.blank()).inverted, small.elements);
  EXPECT_EQ(blankShape(mesh, small.blank()).smallest, 0.0);
}

TEST(PartFrames, ATriangleWithoutAreaIsNamed) {
  Int INTA[6] = {1, 1, 2, 2, 3, 4};  // triangles 1 2 3 and 1 2 4
  double KNG[12] = {0, 1, 0, 2, 0, 0, 1, 0, 0, 0, 0, 0}, FRAMES[8];
  const auto measure = [&] {
    return tornwalzen::measurePartFrames({"INTA", INTA, 2, 3}, {"KNG", KNG, 4, 3}, {"FRAMES", FRAMES, 4, 2});
  };
  EXPECT_EQ(measure(), 2);  // node 4 on the line of 1 and 2
  KNG[7] = 1e-13;
  EXPECT_EQ(measure(), 2);
  KNG[7] = 1e-6;
  EXPECT_EQ(measure(), 0);
  KNG[1] = KNG[3] = 0.0;
  EXPECT_EQ(measure(), 1);  // an edge of no length
}

TEST(DensityTermsList, TakesNoMoreThanItsRoom) {
  const tornwalzen::GeometricTerm term(true);
  tornwalzen::DensityTerms terms;
  EXPECT_TRUE(terms.turnable());
  for (Int k = 0; k < tornwalzen::DensityTerms::mostTerms; ++k) EXPECT_TRUE(terms.append(term));
  EXPECT_FALSE(terms.append(term));
  EXPECT_FALSE(terms.turnable());
}

}  // namespace
}  // namespace reference
