// The strain measures of a singular value: true above the threshold, C2 across it, divided differences that hold
// where both values meet.
#include "element/extended_measure.hpp"

#include <gtest/gtest.h>

#include <random>

namespace tornwalzen {
namespace {

using Number = long double;

template <Measure measure>
Number plain(Number s, Number s0, int derivative) {
  const auto exact = [](Number at, int k) {
    if constexpr (measure == Measure::logarithmic)
      return k == 0 ? -std::log(at) : k == 1 ? -1 / at : 1 / (at * at);
    else
      return k == 0 ? 1 / (at * at) : k == 1 ? -2 / (at * at * at) : 6 / (at * at * at * at);
  };
  if (s >= s0) return exact(s, derivative);
  const Number d = s - s0;
  if (derivative == 0) return exact(s0, 0) + d * exact(s0, 1) + d * d / 2 * exact(s0, 2);
  return derivative == 1 ? exact(s0, 1) + d * exact(s0, 2) : exact(s0, 2);
}

/// Largest error over its scale, differences formed in long double from the definitions.
template <Measure measure>
double worstError(double s1, double s2, double s0) {
  const Spectrum X = extendedSpectrum<measure>(Order::hessian, s1, s2, s0);
  const auto f = [&](double s, int k) { return plain<measure>(s, s0, k); };
  const Number delta = static_cast<Number>(s1) - s2, f12 = (f(s1, 0) - f(s2, 0)) / delta;
  const Number exact[] = {f(s1, 0),
                          f(s2, 0),
                          f(s1, 1),
                          f(s2, 1),
                          f(s1, 2),
                          f(s2, 2),
                          f12,
                          (f(s1, 1) - f12) / delta,
                          (f12 - f(s2, 1)) / delta};
  const double found[] = {X.f1, X.f2, X.d1, X.d2, X.dd1, X.dd2, X.f12, X.f112, X.f122};
  double worst = 0.0;
  for (int k = 0; k < 9; ++k) {
    const Number scale = std::max<Number>(std::fabs(exact[k]), k < 2 ? 1 : 0);
    worst = std::max(worst, static_cast<double>(std::fabs(found[k] - exact[k]) / scale));
  }
  return worst;
}

template <Measure measure>
void compareAtRandomValues() {
  std::mt19937 random(5);
  std::uniform_real_distribution<double> unit(0.0, 1.0);
  for (int k = 0; k < 20000; ++k) {
    const double s1 = 0.05 + 2.0 * unit(random);
    // the definitions themselves lose digits where both are closer than this
    const double apart = std::pow(10.0, -3.0 * unit(random));
    const double s2 = std::max(-s1, s1 - apart), s0 = k % 2 == 0 ? 0.2 : 1.0;
    if (s2 < 1e-3 && s2 >= s0) continue;
    ASSERT_LT(worstError<measure>(s1, s2, s0), 1e-11) << s1 << " " << s2 << " " << s0;
  }
}

TEST(ExtendedMeasure, AgreesWithItsDefinitionAboveBelowAndAcrossTheThreshold) {
  compareAtRandomValues<Measure::logarithmic>();
  compareAtRandomValues<Measure::metric>();
}

TEST(ExtendedMeasure, EqualSingularValuesGiveTheDerivativesThemselves) {
  for (const double s : {0.1, 0.2, 1.0, 1.7}) {
    const Spectrum L = extendedSpectrum<Measure::logarithmic>(Order::hessian, s, s, 0.2);
    const Spectrum M = extendedSpectrum<Measure::metric>(Order::hessian, s, s, 0.2);
    for (const Spectrum& X : {L, M}) {
      EXPECT_NEAR(X.f12, X.d1, 1e-14 * std::fabs(X.d1));
      EXPECT_NEAR(X.f112, 0.5 * X.dd1, 1e-14 * X.dd1);
      EXPECT_NEAR(X.f122, 0.5 * X.dd1, 1e-14 * X.dd1);
    }
  }
}

TEST(ExtendedMeasure, SeriesAndClosedFormMeet) {
  const double m = 0.9;
  for (const double y : {0.0999999, 0.1000001}) {
    const double a = m * (1.0 + y), b = m * (1.0 - y);
    EXPECT_LT(worstError<Measure::logarithmic>(a, b, 0.2), 1e-13);
  }
}

TEST(ExtendedMeasure, ValueOrderGivesTheValuesAlone) {
  const Spectrum X = extendedSpectrum<Measure::logarithmic>(Order::value, 1.25, 0.5, 0.2);
  EXPECT_EQ(X.f1, -std::log(1.25));
  EXPECT_EQ(X.f2, -std::log(0.5));
  EXPECT_EQ(X.f12, 0.0);
}

}  // namespace
}  // namespace tornwalzen
