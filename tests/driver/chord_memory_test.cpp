// The updates against the same in dense matrices, their secant equation, and what is not kept.
#include "driver/chord_memory.hpp"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <vector>

namespace tornwalzen {
namespace {

constexpr int n = 6;
using Column = std::array<double, n>;

double dot(const Column& a, const Column& b) {
  double sum = 0.0;
  for (int i = 0; i < n; ++i) sum += a[i] * b[i];
  return sum;
}

struct Steps {
  ChordMemory memory;
  std::array<Column, n> H{};  // the inverse, dense: of the factor 1/(i+1) in the beginning
  Column RX{}, RR{};

  Steps() {
    EXPECT_TRUE(memory.allocate(nullptr, n));
    for (int i = 0; i < n; ++i) H[i][i] = 1.0 / (i + 1.0);
  }
  static Vector<double> view(Column& a) { return {"A", a.data(), n}; }
  Column product(const Column& v) const {
    Column result;
    for (int i = 0; i < n; ++i) result[i] = dot(H[i], v);
    return result;
  }
  /// A step s that changes the gradient by y; the dense inverse follows where s·y > 0.
  void add(const Column& s, const Column& y) {
    memory.begin(view(RX), view(RR));
    for (int i = 0; i < n; ++i) {
      RX[i] += s[i];
      RR[i] -= y[i];
    }
    memory.end(view(RX), view(RR));
    const double sy = dot(s, y);
    if (!(sy > 0.0)) return;
    const Column Hy = product(y);
    const double yHy = dot(y, Hy);
    for (int i = 0; i < n; ++i)
      for (int j = 0; j < n; ++j)
        H[i][j] += (1.0 + yHy / sy) * s[i] * s[j] / sy - (Hy[i] * s[j] + s[i] * Hy[j]) / sy;
  }
  /// What before, a solve with the factor and after make of v.
  Column applied(Column v) {
    memory.before(view(v));
    for (int i = 0; i < n; ++i) v[i] /= i + 1.0;
    memory.after(view(v));
    return v;
  }
  void expectDense() {
    for (int k = 0; k < n; ++k) {
      Column unit{};
      unit[k] = 1.0;
      const Column found = applied(unit), exact = product(unit);
      for (int i = 0; i < n; ++i) EXPECT_NEAR(found[i], exact[i], 1e-12) << i << " " << k;
    }
  }
};

Column wave(double a, double b) {
  Column c;
  for (int i = 0; i < n; ++i) c[i] = std::sin(a * i + b);
  return c;
}
/// A change of the gradient that goes with s: positive definite, not the factor's.
Column changeOf(const Column& s, double stiff) {
  Column y;
  for (int i = 0; i < n; ++i) y[i] = stiff * (i + 1.0) * s[i] + 0.2 * (s[(i + 1) % n] + s[(i + n - 1) % n]);
  return y;
}

TEST(ChordMemory, WithoutPairsLeavesTheFactorAlone) {
  Steps steps;
  steps.expectDense();
}

TEST(ChordMemory, IsTheDenseUpdateAndMeetsItsSecant) {
  Steps steps;
  for (int k = 0; k < 4; ++k) {
    const Column s = wave(1.0 + 0.7 * k, 0.3 * k), y = changeOf(s, 1.0 + 0.2 * k);
    steps.add(s, y);
    steps.expectDense();
    const Column back = steps.applied(y);
    for (int i = 0; i < n; ++i) EXPECT_NEAR(back[i], s[i], 1e-12);
  }
}

TEST(ChordMemory, KeepsNoPairAgainstTheGradientAndNoneBeyondItsRoom) {
  Steps steps;
  Column s = wave(1.0, 0.2), y = changeOf(s, 1.0);
  for (double& v : y) v = -v;
  steps.add(s, y);
  steps.expectDense();  // the dense one ignores it too
  for (Int k = 0; k < ChordMemory::mostPairs; ++k) {
    s = wave(0.9 + 0.3 * k, 0.1 * k);
    steps.add(s, changeOf(s, 1.5));
  }
  const Column full = steps.applied(wave(2.0, 0.0));
  const auto dense = steps.H;
  s = wave(0.4, 1.0);
  steps.add(s, changeOf(s, 3.0));
  EXPECT_EQ(steps.applied(wave(2.0, 0.0)), full);
  steps.H = dense;
  steps.expectDense();
}

TEST(ChordMemory, ForgetsAndPutsBackToTheBit) {
  Steps steps;
  const Column s = wave(1.0, 0.2);
  steps.add(s, changeOf(s, 2.0));
  Column RX = wave(3.0, 0.1), RR = wave(4.0, 0.2);
  const Column keptX = RX, keptR = RR;
  steps.memory.begin(Steps::view(RX), Steps::view(RR));
  RX.fill(1.0);
  RR.fill(2.0);
  steps.memory.putBack(Steps::view(RX), Steps::view(RR));
  EXPECT_EQ(RX, keptX);
  EXPECT_EQ(RR, keptR);
  steps.memory.forget();
  steps.H = Steps().H;
  steps.expectDense();
}

TEST(ChordMemory, TellsThatThereIsNoMemory) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "skipped: the address checker ends the process at such a size";
#endif
  ChordMemory memory;
  EXPECT_FALSE(memory.allocate(nullptr, Int64{1} << 56));
}

}  // namespace
}  // namespace tornwalzen
