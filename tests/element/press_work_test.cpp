// The press work of a triangle against differences, its membrane forces against tension, curvatures against sphere and
// cylinder.
#include "element/press_work.hpp"

#include <gtest/gtest.h>

#include <array>
#include <cmath>

#include "element/part_curvature.hpp"
#include "ground/analysis.hpp"
#include "material/material_setup.hpp"

namespace tornwalzen {
namespace {

struct Case {
  const char* name;
  Anisotropy r;
  Bending bending;
  double exponent;
};
void PrintTo(const Case& which, std::ostream* out) {
  *out << which.name;
}

/// One triangle of 10 × 8 mm with a curved part.
struct PressWorkTest : ::testing::TestWithParam<Case> {
  Analysis run;
  Int INTA[3] = {1, 2, 3};
  double KNG[9] = {0.0, 10.0, 3.0, 0.0, 1.0, 8.0, 0.0, 2.0, 1.0};
  double FRAMES[4], CURVATURE[3] = {0.05, -0.02, 0.013}, TURNED[3] = {};
  PotentialMesh mesh{{"INTA", INTA, 1, 3}, {"FRAMES", FRAMES, 4, 1}};
  std::array<double, 6> blank{0.3, -0.2, 9.1, 0.9, 2.2, 8.9};

  void SetUp() override {
    materialSetup(run, 1);
    ASSERT_EQ(measurePartFrames(mesh.INTA, {"KNG", KNG, 3, 3}, {"FRAMES", FRAMES, 4, 1}), 0);
  }
  Vector<const double> at(const std::array<double, 6>& x) const { return {"RX", x.data(), 6}; }
};

INSTANTIATE_TEST_SUITE_P(
    Cases, PressWorkTest,
    ::testing::Values(Case{"work", {}, Bending::none, 1.0},
                      Case{"workOfR", {0.81, 0.81, 0.81, 0}, Bending::none, 1.4},
                      Case{"released", {}, Bending::released, 1.0}, Case{"kept", {}, Bending::kept, 1.0},
                      Case{"keptEarly", {}, Bending::kept, 1.7},
                      Case{"rolling", {1.79, 1.51, 2.27, 0.4}, Bending::none, 1.0},
                      Case{"rollingAndBending", {1.79, 1.51, 2.27, 0.4}, Bending::released, 1.2}),
    [](const auto& which) { return which.param.name; });

TEST_P(PressWorkTest, GradientAndTangentAreThoseOfTheWork) {
  const FlowCurve CURVE(run);
  SheetWork work(CURVE, 206000.0 / run.smin, 50.0 / run.smin);
  work.choose(GetParam().exponent);
  PressWorkTerm term(work, GetParam().r, {5, 1.0, GetParam().bending}, {"CURVATURE", CURVATURE, 3, 1},
                     {"TURNED", TURNED, 3, 1});
  term.turnCurvature(mesh, at(blank));
  DensityTerms terms;
  terms.append(term);
  const ExtendedPotential potential{terms, 0.2, 0.0};
  double gradient[6], hessian[36], up[6], down[6], unused[36];
  trianglePotential(Order::hessian, 1, mesh, at(blank), potential, gradient, hessian);
  const double h = 1e-5;
  for (std::size_t i = 0; i < 6; ++i) {
    auto more = blank, less = blank;
    more[i] += h, less[i] -= h;
    const double above = trianglePotential(Order::gradient, 1, mesh, at(more), potential, up, unused);
    const double below = trianglePotential(Order::gradient, 1, mesh, at(less), potential, down, unused);
    EXPECT_NEAR(gradient[i], (above - below) / (2 * h), 1e-7) << i;
    for (std::size_t j = 0; j < 6; ++j)
      EXPECT_NEAR(hessian[6 * i + j], (up[j] - down[j]) / (2 * h), 1e-6) << i << ' ' << j;
  }
}

TEST_P(PressWorkTest, ATurnOfTheBlankCostsNothingUnlessTheSheetHasARollingDirection) {
  const FlowCurve CURVE(run);
  SheetWork work(CURVE, 206000.0 / run.smin, 50.0 / run.smin);
  work.choose(GetParam().exponent);
  PressWorkTerm term(work, GetParam().r, {3, 1.0, GetParam().bending}, {"CURVATURE", CURVATURE, 3, 1},
                     {"TURNED", TURNED, 3, 1});
  DensityTerms terms;
  terms.append(term);
  const auto energy = [&](double angle) {
    std::array<double, 6> x;
    for (std::size_t n = 0; n < 6; n += 2) {
      x[n] = std::cos(angle) * blank[n] - std::sin(angle) * blank[n + 1];
      x[n + 1] = std::sin(angle) * blank[n] + std::cos(angle) * blank[n + 1];
    }
    term.turnCurvature(mesh, at(x));
    double gradient[6], unused[36];
    return trianglePotential(Order::value, 1, mesh, at(x), {terms, 0.2, 0.0}, gradient, unused);
  };
  const double straight = energy(0.0), turned = energy(0.7);
  EXPECT_EQ(std::fabs(turned - straight) < 1e-12 * straight, term.turnable());
  EXPECT_EQ(term.turnable(), !GetParam().r.planar());
}

TEST_P(PressWorkTest, AnUnstrainedTriangleWhoseBendingIsReleasedCostsNothing) {
  const FlowCurve CURVE(run);
  SheetWork work(CURVE, 206000.0 / run.smin, 50.0 / run.smin);
  work.choose(GetParam().exponent);
  const PressWorkTerm term(work, GetParam().r, {3, 1.0, GetParam().bending}, {"CURVATURE", CURVATURE, 3, 1},
                           {"TURNED", TURNED, 3, 1});
  // the part's triangle laid flat, turned by 0.3
  const double l = 1.0 / FRAMES[0], h = 1.0 / FRAMES[2], c = -FRAMES[1] * l * h, t = std::cos(0.3),
               s = std::sin(0.3);
  const std::array<double, 6> flat{0, 0, t * l, s * l, t * c - s * h, s * c + t * h};
  term.turnCurvature(mesh, at(flat));
  DensityTerms terms;
  terms.append(term);
  double gradient[6], unused[36];
  const double value =
      trianglePotential(Order::gradient, 1, mesh, at(flat), {terms, 0.2, 0.0}, gradient, unused);
  if (GetParam().bending != Bending::kept) {
    EXPECT_NEAR(value, 0.0, 1e-12);
    for (const double g : gradient) EXPECT_NEAR(g, 0.0, 1e-12);
  } else {
    EXPECT_GT(value, 0.1);
  }
}

// Uniaxial tension: N11 = t0·σ·λ2·λ3 ratio, the sheet's force over its width now, and nothing across.
TEST_F(PressWorkTest, MembraneForcesOfTension) {
  const FlowCurve CURVE(run);
  const SheetWork work(CURVE, 206000.0 / run.smin, 50.0 / run.smin);
  const PressWorkTerm term(work, {}, {3, 1.0, Bending::none}, {"CURVATURE", CURVATURE, 3, 1}, {});
  const double e = 0.12;
  // J = F⁻¹ along and across the triangle's first axis
  const PrincipalMap map = principalMap({std::exp(-e), 0.0, 0.0, std::exp(0.5 * e)});
  const PressWorkTerm::State state = term.state({1, map, 1.0, 0.2});
  EXPECT_NEAR(state.N[0], work.at(e * e).sigma * std::exp(-0.5 * e), 1e-12);  // thickness now over t0
  EXPECT_NEAR(state.N[1], 0.0, 1e-12);
  EXPECT_NEAR(state.N[2], 0.0, 1e-12);
}

/// A grid of n × n squares of two triangles over [0, 1]², mapped by `place`.
template <class Place>
void curvaturesOf(Place place, Int n, std::vector<double>& CURVATURE) {
  const Int nodes = (n + 1) * (n + 1), elements = 2 * n * n;
  std::vector<Int> INTA(3 * static_cast<std::size_t>(elements)),
      PLANE(2 * static_cast<std::size_t>(nodes), 0);
  std::vector<double> KNG(3 * static_cast<std::size_t>(nodes)), NORMALS(KNG.size()),
      FRAMES(4 * INTA.size() / 3);
  CURVATURE.assign(INTA.size(), 0.0);
  const Table<Int> T("INTA", INTA.data(), elements, 3);
  const Table<double> X("KNG", KNG.data(), nodes, 3);
  for (Int j = 0; j <= n; ++j)
    for (Int i = 0; i <= n; ++i) place(1.0 * i / n, 1.0 * j / n, X, j * (n + 1) + i + 1);
  Int e = 0;
  for (Int j = 0; j < n; ++j)
    for (Int i = 0; i < n; ++i) {
      const Int a = j * (n + 1) + i + 1, b = a + 1, c = a + n + 2, d = a + n + 1;
      ++e, T(e, 1) = a, T(e, 2) = b, T(e, 3) = c;
      ++e, T(e, 1) = a, T(e, 2) = c, T(e, 3) = d;
    }
  measurePartFrames(T, X, {"FRAMES", FRAMES.data(), 4, elements});
  nodeNormals(T, X, {"PLANE", PLANE.data(), 2 * nodes}, {"NORMALS", NORMALS.data(), 3, nodes});
  triangleCurvatures(T, X, {"FRAMES", FRAMES.data(), 4, elements}, {"NORMALS", NORMALS.data(), 3, nodes},
                     {"CURVATURE", CURVATURE.data(), 3, elements});
}

TEST(PartCurvatureTest, OfASphereIsOneOverItsRadius) {
  std::vector<double> K;
  curvaturesOf(
      [](double s, double t, Table<double> X, Int n) {
        const double x = 10 * (s - 0.5), y = 10 * (t - 0.5);
        X(n, 1) = x, X(n, 2) = y, X(n, 3) = std::sqrt(400.0 - x * x - y * y);
      },
      10, K);
  for (std::size_t e = 0; e < K.size() / 3; ++e) {
    const std::size_t i = e / 2 % 10, j = e / 20;
    if (i == 0 || i == 9 || j == 0 || j == 9) continue;  // normals at the rim know one side alone
    EXPECT_NEAR(K[3 * e], 0.05, 2e-3) << e;
    EXPECT_NEAR(K[3 * e + 1], 0.05, 2e-3) << e;
    EXPECT_NEAR(K[3 * e + 2], 0.0, 2e-3) << e;
  }
}

TEST(PartCurvatureTest, OfACylinderActsAcrossItsAxisAlone) {
  std::vector<double> K;
  curvaturesOf([](double s, double t, Table<double> X,
                  Int n) { X(n, 1) = 20 * std::sin(s), X(n, 2) = 10 * t, X(n, 3) = 20 * std::cos(s); },
               20, K);
  for (std::size_t e = 0; e < K.size() / 3; ++e) {
    const bool rim = e % 40 < 2 || e % 40 >= 38;  // normals at the ends know one side alone
    if (rim) continue;
    EXPECT_NEAR(K[3 * e] + K[3 * e + 1], 0.05, 1e-3) << e;
    EXPECT_NEAR(K[3 * e] * K[3 * e + 1] - K[3 * e + 2] * K[3 * e + 2], 0.0, 1e-4) << e;
  }
}

}  // namespace
}  // namespace tornwalzen
