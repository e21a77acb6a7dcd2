// Gradient and Hessian of the element against exact differentiation of the unbranched potential and against
// differences of the element's own values.
#include <ostream>

#include "one_triangle.hpp"

namespace reference {
namespace {

struct Errors {
  double value = 0.0, gradient = 0.0, hessian = 0.0;
};

/// Largest errors of one triangle, each over the scale of its quantity. The scale of the gradient is h·|H|
/// with h a strain of 1e-3 in mm (a gradient near equilibrium is a difference of larger numbers), that of the
/// value D times the density of the same strain.
Errors compare(OneTriangle& t, const Blank& blank, const Part& part) {
  double value, gradient[6], hessian[36];
  differentiate(blank, part, value, gradient, hessian);
  t.place(blank, part);
  t.evaluate(1);
  EXPECT_EQ(run.ierrel, 0);
  double difference[36];
  Errors errors;
  const double scaleH = largest(hessian, 36);
  for (int i = 0; i < 36; ++i) difference[i] = t.hessian[i] - hessian[i];
  errors.hessian = largest(difference, 36) / scaleH;
  const double move = 1e-3 * largest(blank.data(), 6);
  for (int i = 0; i < 6; ++i) difference[i] = t.gradient[i] - gradient[i];
  errors.gradient = largest(difference, 6) / std::max(largest(gradient, 6), move * scaleH);
  errors.value = std::fabs(t.potential - value) / std::max(std::fabs(value), move * move * scaleH);
  return errors;
}

void take(Errors& worst, const Errors& e) {
  worst.value = std::max(worst.value, e.value);
  worst.gradient = std::max(worst.gradient, e.gradient);
  worst.hessian = std::max(worst.hessian, e.hessian);
}

struct Choice {
  const char* name;
  Int istat;
  double r;            // normal anisotropy
  bool partReference;  // weigh the density with the target's area
};

// Otherwise GoogleTest prints the bytes, those between the members too.
void PrintTo(const Choice& choice, std::ostream* out) {
  *out << choice.name;
}

class DerivativesTest : public ElementTest, public ::testing::WithParamInterface<Choice> {
 protected:
  void SetUp() override {
    ElementTest::SetUp();
    run.istat = GetParam().istat;
    tornwalzen::run.options.anisotropy = GetParam().r;
    tornwalzen::run.options.partReference = GetParam().partReference;
  }
};

INSTANTIATE_TEST_SUITE_P(BothDensities, DerivativesTest,
                         ::testing::Values(Choice{"geometric", 0, 1.0, false},
                                           Choice{"plasticWork", 1, 1.0, false},
                                           Choice{"plasticWorkLowAnisotropy", 1, 0.6, false},
                                           Choice{"plasticWorkHighAnisotropy", 1, 1.9, false},
                                           Choice{"geometricOverThePart", 0, 1.0, true},
                                           Choice{"plasticWorkOverThePart", 1, 1.0, true},
                                           Choice{"plasticWorkAnisotropicOverThePart", 1, 1.5, true}),
                         [](const auto& which) { return which.param.name; });

// The metric carries rounding of some ε of its size (the part lies up to 100 mm from the origin, the
// triangles measure some 10 mm); derivatives multiply it by the stretch ratio and by 1/(height of the
// triangle).
constexpr double roundOff = 1e-11;

TEST_P(DerivativesTest, AgreeWithExactDifferentiationAtRandomDeformations) {
  RandomTriangles random(11);
  OneTriangle t;
  Errors worst;
  for (int k = 0; k < 3000; ++k) {
    const Blank blank = random.blank(10.0);
    const double C11 = random.between(0.4, 2.5), C22 = random.between(0.4, 2.5);
    const double C12 = random.between(-0.9, 0.9) * std::sqrt(C11 * C22);
    take(worst, compare(t, blank, random.part(blank, C11, C22, C12, 100.0)));
  }
  EXPECT_LT(worst.value, roundOff);
  EXPECT_LT(worst.gradient, roundOff);
  EXPECT_LT(worst.hessian, roundOff);
}

TEST_P(DerivativesTest, AgreeWithExactDifferentiationAtSmallStrains) {
  RandomTriangles random(12);
  OneTriangle t;
  Errors worst;
  for (int k = 0; k < 3000; ++k) {
    const Blank blank = random.blank(10.0);
    const double size = std::pow(10.0, random.between(-7.0, -1.0));
    const double C11 = 1.0 + random.between(-size, size), C22 = 1.0 + random.between(-size, size);
    take(worst, compare(t, blank, random.part(blank, C11, C22, random.between(-size, size), 100.0)));
  }
  // Rounding of 1e-14 in the strains against the 1e-5 over which the regularised root bends. Where |C12| ≤
  // 1e-8 is left out, the gradient misses that over the strain of 1e-3 it is measured by, the tangent a third
  // derivative.
  EXPECT_LT(worst.value, 1e-10);
  EXPECT_LT(worst.gradient, run.istat == 0 ? roundOff : 1e-5);
  EXPECT_LT(worst.hessian, run.istat == 0 ? roundOff : 1e-7);
}

TEST_P(DerivativesTest, AgreeWithExactDifferentiationAtExtremeStretches) {
  RandomTriangles random(13);
  OneTriangle t;
  Errors worst;
  for (int k = 0; k < 500; ++k) {
    const Blank blank = random.blank(10.0);
    const double C11 = std::pow(10.0, random.between(-3.0, 3.0)),
                 C22 = std::pow(10.0, random.between(-3.0, 3.0));
    const double C12 = random.between(-0.9, 0.9) * std::sqrt(C11 * C22);
    take(worst, compare(t, blank, random.part(blank, C11, C22, C12, 10.0)));
  }
  EXPECT_LT(worst.value, 1e-9);  // det C loses the square of a stretch ratio of up to 1000
  EXPECT_LT(worst.gradient, 1e-9);
  EXPECT_LT(worst.hessian, 1e-9);
}

TEST_P(DerivativesTest, AgreeOnBothSidesOfTheSeamOfSeriesAndLogarithm) {
  RandomTriangles random(14);
  OneTriangle t;
  Errors worst;
  for (int k = 0; k < 400; ++k) {
    // principal values 1 ± ρ with ρ² around 0.01, at every angle to the axes
    const double rho = 0.1 + random.between(-1e-3, 1e-3), angle = random.between(0.0, 6.3);
    const double C11 = 1.0 + rho * std::cos(angle), C22 = 1.0 - rho * std::cos(angle);
    const Blank blank = random.blank(10.0);
    take(worst, compare(t, blank, random.part(blank, C11, C22, rho * std::sin(angle), 100.0)));
  }
  EXPECT_LT(worst.value, roundOff);
  EXPECT_LT(worst.gradient, roundOff);
  EXPECT_LT(worst.hessian, roundOff);
}

/// Largest errors over random metrics whose C12 is `size` times 1e-8 with either sign; part near the origin,
/// so that rounding does not carry C12 over the threshold. C11 = C22 in every other triangle.
Errors errorsAtThreshold(double size) {
  RandomTriangles random(15);
  OneTriangle t;
  Errors worst;
  for (int k = 0; k < 1000; ++k) {
    const Blank blank = random.blank(1.0);
    const double C11 = random.between(0.5, 2.0), C22 = k % 2 ? C11 : random.between(0.5, 2.0);
    const double C12 = (k % 4 < 2 ? 1e-8 : -1e-8) * size;
    take(worst, compare(t, blank, random.part(blank, C11, C22, C12, 1.0)));
  }
  return worst;
}

TEST_P(DerivativesTest, AgreeJustAboveTheThresholdOfC12) {
  const Errors worst = errorsAtThreshold(1.001);
  EXPECT_LT(worst.value, roundOff);
  EXPECT_LT(worst.gradient, roundOff);
  EXPECT_LT(worst.hessian,
            1e-10);  // the reference differentiates eigenvalues 2e-8 apart: 1e-19/1e-8 a few times
}

TEST_P(DerivativesTest, AgreeWithTheUnbranchedFunctionInsideTheShortcut) {
  for (const double size : {0.999, 0.5, 1e-3}) {
    const Errors worst = errorsAtThreshold(size);
    EXPECT_LT(worst.value, roundOff);  // leaves out C12² ≤ 1e-16
    EXPECT_LT(worst.gradient, 1e-5);   // leaves out a curvature times C12, over a strain of 1e-3
    EXPECT_LT(worst.hessian, 1e-7);    // leaves out a third derivative times C12
  }
}

TEST_P(DerivativesTest, AgreeWithSecondDifferencesOfTheUnbranchedPotentialAtTheIdentity) {
  RandomTriangles random(16);
  for (int sample = 0; sample < 20; ++sample) {
    const Blank blank = random.blank(1.0);
    OneTriangle t(blank, random.part(blank, 1.0, 1.0, 0.0, 1.0));
    t.evaluate(1);
    Part part;
    for (int n = 0; n < 3; ++n)
      for (int i = 0; i < 3; ++i) part[3 * n + i] = t.KNZ[3 * i + n];
    const long double h = 1e-7L;
    std::array<long double, 6> w;
    std::copy(blank.begin(), blank.end(), w.begin());
    const double scale = largest(t.hessian, 36);
    for (int k = 0; k < 6; ++k) {
      for (int l = 0; l < 6; ++l) {
        const auto at = [&](int a, int b) {
          std::array<long double, 6> moved = w;
          moved[k] += a * h;
          moved[l] += b * h;
          return potential(moved, part);
        };
        const long double second = (at(1, 1) - at(-1, 1) - at(1, -1) + at(-1, -1)) / (4 * h * h);
        // the regularised root bends over strains of 1e-5: (h/1e-5)² times the part that is not quadratic
        EXPECT_NEAR(t.hessian[6 * k + l], static_cast<double>(second), 1e-7 * scale) << k << ' ' << l;
      }
    }
  }
}

TEST_P(DerivativesTest, AgreeWithDifferencesOfTheElementItself) {
  RandomTriangles random(17);
  // one smooth segment: differences across a point of the curve would show its jump of the third derivative
  const auto FC = tornwalzen::flowCurve();
  run.npkt = 2;
  FC(1, 1) = 0.0, FC(1, 2) = 1.0, FC(2, 1) = 1.0, FC(2, 2) = 3.0;
  tornwalzen::prepareFlowCurve(FC, run.npkt);
  for (int sample = 0; sample < 200; ++sample) {
    const Blank blank = random.blank(1.0);
    OneTriangle t(blank, random.part(blank, random.between(0.5, 2.0), random.between(0.5, 2.0),
                                     random.between(-0.3, 0.3), 1.0));
    t.evaluate(1);
    OneTriangle moved = t;
    const double h = 1e-4;
    const double scale = largest(t.hessian, 36);
    for (int k = 0; k < 6; ++k) {
      // fourth-order central differences: truncation h⁴, rounding ε/h
      double potentialSlope = 0.0, gradientSlope[6] = {};
      for (const auto& [step, weight] : {std::pair{-2, 1.0}, {-1, -8.0}, {1, 8.0}, {2, -1.0}}) {
        moved.RX = blank;
        moved.RX[k] += step * h;
        moved.evaluate(0);
        potentialSlope += weight * moved.potential / (12.0 * h);
        for (int l = 0; l < 6; ++l) gradientSlope[l] += weight * moved.gradient[l] / (12.0 * h);
      }
      EXPECT_NEAR(t.gradient[k], potentialSlope, 1e-9 * scale);
      for (int l = 0; l < 6; ++l) EXPECT_NEAR(t.hessian[6 * k + l], gradientSlope[l], 1e-8 * scale);
    }
  }
}

TEST_P(DerivativesTest, TangentIsSymmetricToTheBit) {
  RandomTriangles random(18);
  for (int sample = 0; sample < 500; ++sample) {
    const Blank blank = random.blank(10.0);
    OneTriangle t(blank, random.part(blank, 1.4, 0.8, random.between(-0.5, 0.5), 10.0));
    t.evaluate(1);
    for (int k = 0; k < 6; ++k)
      for (int l = 0; l < k; ++l) EXPECT_EQ(t.hessian[6 * k + l], t.hessian[6 * l + k]);
  }
}

TEST_P(DerivativesTest, TranslationOfTheBlankChangesNothing) {
  RandomTriangles random(19);
  constexpr double ulp = 2.3e-16;
  for (int sample = 0; sample < 500; ++sample) {
    const Blank blank = random.blank(10.0);
    OneTriangle t(blank, random.part(blank, 1.4, 0.8, random.between(-0.5, 0.5), 10.0));
    t.evaluate(1);
    const double limitG = 4.0 * ulp * largest(t.gradient, 6), limitH = 4.0 * ulp * largest(t.hessian, 36);
    for (int i = 0; i < 2; ++i) {
      EXPECT_NEAR(t.gradient[i] + t.gradient[i + 2] + t.gradient[i + 4], 0.0, limitG);
      for (int k = 0; k < 6; ++k) {
        const double* column = t.hessian + 6 * k;
        EXPECT_NEAR(column[i] + column[i + 2] + column[i + 4], 0.0, limitH);
      }
    }
  }
}

TEST_P(DerivativesTest, CyclicCornersGiveTheSameElement) {
  RandomTriangles random(20);
  const Blank blank = random.blank(10.0);
  OneTriangle t(blank, random.part(blank, 1.4, 0.8, 0.2, 10.0)), turned = t;
  turned.INTA[0] = 2, turned.INTA[1] = 3, turned.INTA[2] = 1;
  t.evaluate(1);
  turned.evaluate(1);
  EXPECT_NEAR(t.potential, turned.potential, roundOff * t.potential);
  for (int k = 0; k < 6; ++k) {
    EXPECT_NEAR(t.gradient[(k + 2) % 6], turned.gradient[k], roundOff * largest(t.gradient, 6));
    for (int l = 0; l < 6; ++l)
      EXPECT_NEAR(t.hessian[6 * ((k + 2) % 6) + (l + 2) % 6], turned.hessian[6 * k + l],
                  roundOff * largest(t.hessian, 36));
  }
}

}  // namespace
}  // namespace reference
