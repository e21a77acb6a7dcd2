// Mixed steps on linear equations, which they solve in as many steps as there are unknowns, and steps that repeat.
#include "driver/step_mixing.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace tornwalzen::test {
namespace {

constexpr double K[3][3] = {{0.9, 0.2, 0.0}, {-0.3, 1.7, 0.1}, {0.05, 0.0, 0.4}}, c[3] = {1.0, -2.0, 0.5};

/// f = c - K·x, whose plain iteration x + f closes in slowly.
std::vector<double> at(const std::vector<double>& x) {
  std::vector<double> f(3);
  for (std::size_t i = 0; i < 3; ++i) f[i] = c[i] - K[i][0] * x[0] - K[i][1] * x[1] - K[i][2] * x[2];
  return f;
}

double largest(const std::vector<double>& f) {
  return std::max({std::fabs(f[0]), std::fabs(f[1]), std::fabs(f[2])});
}

struct Iteration {
  StepMixing mixing;
  std::vector<double> x{0.0, 0.0, 0.0};

  Iteration() { EXPECT_TRUE(mixing.prepare(3)); }
  std::vector<double> step(bool mixed) {
    std::vector<double> f = at(x);
    if (mixed) mixing.mix({"X", x.data(), 3}, {"F", f.data(), 3});
    for (std::size_t i = 0; i < 3; ++i) x[i] += f[i];
    return f;
  }
};

TEST(StepMixing, SolvesLinearEquationsInAsManyStepsAsUnknowns) {
  Iteration mixed, plain;
  for (int k = 0; k < 3; ++k) mixed.step(true), plain.step(false);
  EXPECT_GT(largest(at(mixed.x)), 1e-6);  // the fourth step knows three differences and is right
  mixed.step(true), plain.step(false);
  EXPECT_LT(largest(at(mixed.x)), 1e-12);
  EXPECT_GT(largest(at(plain.x)), 1e-3);
}

TEST(StepMixing, TheFirstStepIsTheStepItself) {
  Iteration one;
  EXPECT_EQ(one.step(true), at({0.0, 0.0, 0.0}));
  one.mixing.restart();
  const std::vector<double> f = at(one.x);
  EXPECT_EQ(one.step(true), f);
}

// A step that was taken before tells nothing new: the one behind it would divide by rounding.
TEST(StepMixing, StepsThatRepeatAreLeftOut) {
  Iteration once, again;
  once.step(true);
  again.step(true);
  const std::vector<double> here = again.x;
  std::vector<double> f = at(here);
  const std::vector<double> next = once.step(true);
  again.mixing.mix({"X", here.data(), 3}, {"F", f.data(), 3});
  EXPECT_EQ(f, next);
  for (int k = 0; k < 3; ++k) {  // the same place over and over: differences of nothing
    f = at(here);
    again.mixing.mix({"X", here.data(), 3}, {"F", f.data(), 3});
    for (const double one : f) EXPECT_TRUE(std::isfinite(one));
    EXPECT_EQ(f, at(here)) << "nothing is known but that the blank stands";
  }
}

}  // namespace
}  // namespace tornwalzen::test
