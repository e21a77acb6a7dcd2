// Gradient and Hessian of the element against exact differentiation of the unbranched potential and against
// differences of the element's own values.
#include "one_triangle.hpp"

namespace reference {
namespace {

struct Errors {
  double value = 0.0, gradient = 0.0, hessian = 0.0;
};

/// Largest errors of one triangle, each over the scale of its quantity. The scale of the gradient is h·|H| with
/// h a strain of 1e-3 in mm (a gradient near equilibrium is a difference of larger numbers), that of the value D
/// times the density of the same strain.
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

class DerivativesTest : public ElementTest, public ::testing::WithParamInterface<int> {
 protected:
  void SetUp() override {
    ElementTest::SetUp();
    run.istat = GetParam();
  }
};

INSTANTIATE_TEST_SUITE_P(BothDensities, DerivativesTest, ::testing::Values(0, 1),
                         [](const auto& which) { return which.param == 0 ? "geometric" : "plasticWork"; });

// The metric carries rounding of some ε of its size (the part lies up to 100 mm from the origin, the triangles
// measure some 10 mm); derivatives multiply it by the stretch ratio and by 1/(height of the triangle).
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
  ::testing::Test::RecordProperty("worst", std::to_string(worst.hessian));
  std::printf("%g %g %g\n", worst.value, worst.gradient, worst.hessian);
}

}  // namespace
}  // namespace reference
