// Every kernel table against plain elimination, and against the portable table, on fronts of all small
// shapes.
#include "sparse/kernels/dense_kernels.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <memory>
#include <new>
#include <random>
#include <vector>

#include "ground/kernel_tables.hpp"
#include "sparse/kernels/front_layout.hpp"
#include "sparse/work_layout.hpp"

using namespace tornwalzen;

namespace {

struct FreeDeleter {
  void operator()(double* p) const { ::operator delete(p, std::align_val_t(64)); }
};
using AlignedDoubles = std::unique_ptr<double[], FreeDeleter>;

AlignedDoubles aligned(Int64 count) {
  const std::size_t bytes = (static_cast<std::size_t>(count) * sizeof(double) + 63) / 64 * 64;
  double* p = static_cast<double*>(::operator new(bytes, std::align_val_t(64)));
  std::fill(p, p + bytes / sizeof(double), 3.0);
  return AlignedDoubles(p);
}

// A diagonally dominant front, lower triangle, row by row as a full matrix.
std::vector<double> randomFront(Int64 c, unsigned seed) {
  std::mt19937 random(seed);
  std::uniform_real_distribution<double> value(-1.0, 1.0);
  std::vector<double> a(c * c, 0.0);
  for (Int64 j = 0; j < c; ++j)
    for (Int64 i = j; i < c; ++i) a[j * c + i] = i == j ? (j % 3 ? 2.0 : -2.0) * c : value(random);
  return a;
}

// Plain right-looking elimination of w columns.
void eliminatePlainly(std::vector<double>& a, Int64 c, Int64 w) {
  for (Int64 k = 0; k < w; ++k)
    for (Int64 j = k + 1; j < c; ++j) {
      const double l = a[k * c + j] / a[k * c + k];
      for (Int64 i = j; i < c; ++i) a[j * c + i] -= a[k * c + i] * l;
    }
  for (Int64 k = 0; k < w; ++k)
    for (Int64 j = k + 1; j < c; ++j) a[k * c + j] /= a[k * c + k];
}

class EveryTable : public testing::TestWithParam<int> {
 protected:
  const DenseKernels* table() {
    const KernelTables<DenseKernels>& tables = denseKernelTables();
    return GetParam() < tables.count ? tables.available[GetParam()] : nullptr;
  }
};

// The front in its blocks, by columns so that [i] is row i; what is no entry holds `filler`, what lies behind
// the front `guard`.
constexpr double filler = 1.0, guard = 77.0;

struct BlockedFront {
  Int64 length = 0;
  AlignedDoubles F;
  std::vector<double*> column;

  BlockedFront(Int64 c, Int64 w) : length(frontDoubles(c, w) - frontAlignment), F(aligned(length + 64)) {
    std::fill(F.get(), F.get() + length, filler);
    std::fill(F.get() + length, F.get() + length + 64, guard);
    FrontBlock b = firstBlock(c, w);
    for (Int64 j = 0; j < c; ++j) {
      if (j == b.end) b = blockAfter(b, c, w);
      column.push_back(F.get() + columnPlace(b, j));
    }
  }
  bool guardStands() const {
    return std::all_of(F.get() + length, F.get() + length + 64, [](double v) { return v == guard; });
  }
};

void expectFrontEliminated(const DenseKernels& kernels, Int64 c, Int64 w) {
  std::vector<double> reference = randomFront(c, static_cast<unsigned>(1000 * c + w));
  BlockedFront front(c, w);
  AlignedDoubles packing = aligned(packingDoubles(c));
  for (Int64 j = 0; j < c; ++j)
    for (Int64 i = j; i < c; ++i) front.column[j][i] = reference[j * c + i];
  ASSERT_EQ(kernels.factorFront(front.F.get(), c, w, packing.get()), 0);
  ASSERT_TRUE(front.guardStands()) << kernels.name << ", c " << c << ", w " << w;
  eliminatePlainly(reference, c, w);
  const double limit =
      10.0 * static_cast<double>(c) * 2.0 * static_cast<double>(c) * 2.2e-16;  // n · norm · ε
  for (Int64 j = 0; j < c; ++j)
    for (Int64 i = j; i < c; ++i)
      ASSERT_NEAR(front.column[j][i], reference[j * c + i], limit)
          << kernels.name << ", c " << c << ", w " << w << ", entry " << i << ", " << j;
}

}  // namespace

TEST_P(EveryTable, EliminatesFrontsOfAllShapesUpTo300) {
  if (!table()) GTEST_SKIP() << "skipped: this processor has no such kernel table";
  for (Int64 c = 1; c <= 40; ++c)
    for (Int64 w = 1; w <= c; ++w) expectFrontEliminated(*table(), c, w);
  for (Int64 c : {41,  63,  64,  65,  96,  97,  103, 104, 105, 127, 128,
                  129, 160, 191, 192, 193, 200, 255, 256, 257, 299, 300})
    for (Int64 w : {1, 2, 5, 8, 9, 31, 63, 64, 65, 71, 128, 129, 191, 300})
      if (w <= c) expectFrontEliminated(*table(), c, w);
}

TEST_P(EveryTable, EliminatesFrontsThatPassTheRowBlocks) {
  if (!table()) GTEST_SKIP() << "skipped: this processor has no such kernel table";
  for (auto [c, w] : {std::pair<Int64, Int64>{480, 70}, {575, 130}, {601, 10}, {1100, 66}})
    expectFrontEliminated(*table(), c, w);
}

TEST_P(EveryTable, NamesTheColumnOfAZeroPivot) {
  if (!table()) GTEST_SKIP() << "skipped: this processor has no such kernel table";
  for (Int64 c : {1, 9, 30, 100})
    for (Int64 zero = 0; zero < c; ++zero) {
      BlockedFront front(c, c);
      AlignedDoubles packing = aligned(packingDoubles(c));
      for (Int64 j = 0; j < c; ++j)
        for (Int64 i = j; i < c; ++i) front.column[j][i] = i == j && j != zero ? 1.0 : 0.0;
      EXPECT_EQ(table()->factorFront(front.F.get(), c, c, packing.get()), zero + 1);
    }
}

TEST_P(EveryTable, ForwardAndBackwardMatchPlainSubstitution) {
  if (!table()) GTEST_SKIP() << "skipped: this processor has no such kernel table";
  std::mt19937 random(5);
  std::uniform_real_distribution<double> value(-1.0, 1.0);
  for (Int64 c : {1, 2, 3, 5, 8, 13, 20, 33, 64, 100, 301})
    for (Int64 w = 1; w <= c; w += (c < 21 ? 1 : 7)) {
      const double nan = std::nan("");  // in the margins, which may be read but must not matter
      const Int64 entries = trapezoidEntries(w, c);
      std::vector<double> L(entries + solveMargin, nan), y(c + solveMargin, nan);
      for (Int64 k = 0; k < entries; ++k) L[k] = value(random) / static_cast<double>(c);
      for (Int64 i = 0; i < c; ++i) y[i] = value(random);
      const auto entry = [&](Int64 i, Int64 p) { return L[p * c - p * (p + 1) / 2 + i - p - 1]; };
      std::vector<double> fy = y, by = y;
      for (Int64 i = w; i < c; ++i) fy[i] = 0.0;
      for (Int64 p = 0; p < w; ++p)
        for (Int64 i = p + 1; i < c; ++i) fy[i] -= entry(i, p) * fy[p];
      for (Int64 p = w - 1; p >= 0; --p)
        for (Int64 i = p + 1; i < c; ++i) by[p] -= entry(i, p) * by[i];
      const double limit = 10.0 * static_cast<double>(c) * 2.2e-16;
      std::vector<double> ky = y;
      for (Int64 i = w; i < c; ++i) ky[i] = nan;
      table()->forward(L.data(), w, c, ky.data());
      for (Int64 i = 0; i < c; ++i)
        ASSERT_NEAR(ky[i], fy[i], limit) << table()->name << " c " << c << " w " << w;
      ky = y;
      table()->backward(L.data(), w, c, ky.data());
      for (Int64 i = 0; i < c; ++i)
        ASSERT_NEAR(ky[i], by[i], limit) << table()->name << " c " << c << " w " << w;
    }
}

// c - a·b as the table rounds it: once but for the portable one, whatever the build.
double minusProduct(const DenseKernels& kernels, double c, double a, double b) {
  return &kernels == &portableKernels ? c - a * b : std::fma(-a, b, c);
}

// The runtime library of Windows rounds std::fma twice, and with it this oracle.
#ifdef __MINGW32__
constexpr bool oracleRoundsOnce = false;
#else
constexpr bool oracleRoundsOnce = true;
#endif

TEST_P(EveryTable, EveryBuildRoundsAFrontAlike) {
  if (!table()) GTEST_SKIP() << "skipped: this processor has no such kernel table";
  if (!oracleRoundsOnce) GTEST_SKIP() << "skipped: std::fma of this system rounds twice";
  for (Int64 c : {9, 14, 33, 100, 130})
    for (Int64 w = 1; w <= 8; ++w) {  // one block of columns
      std::vector<double> a = randomFront(c, static_cast<unsigned>(c + w));
      BlockedFront front(c, w);
      AlignedDoubles packing = aligned(packingDoubles(c));
      for (Int64 j = 0; j < c; ++j)
        for (Int64 i = j; i < c; ++i) front.column[j][i] = a[j * c + i];
      ASSERT_EQ(table()->factorFront(front.F.get(), c, w, packing.get()), 0);
      const auto at = [&](Int64 i, Int64 j) -> double& { return a[j * c + i]; };
      std::vector<double> inverse(w);
      for (Int64 k = 0; k < w; ++k) {
        inverse[k] = 1.0 / at(k, k);
        for (Int64 j = k + 1; j < w; ++j) {
          const double l = at(j, k) * inverse[k];
          for (Int64 i = j; i < w; ++i) at(i, j) = minusProduct(*table(), at(i, j), at(i, k), l);
        }
        for (Int64 j = k + 1; j < w; ++j) at(j, k) *= inverse[k];
      }
      for (Int64 i = w; i < c; ++i) {
        for (Int64 k = 0; k < w; ++k)
          for (Int64 p = 0; p < k; ++p) at(i, k) = minusProduct(*table(), at(i, k), at(i, p), at(k, p));
        for (Int64 k = 0; k < w; ++k) at(i, k) *= inverse[k];
      }
      for (Int64 j = w; j < c; ++j)
        for (Int64 i = j; i < c; ++i)
          for (Int64 k = 0; k < w; ++k)
            at(i, j) = minusProduct(*table(), at(i, j), at(i, k), at(j, k) * at(k, k));
      for (Int64 j = 0; j < c; ++j)
        for (Int64 i = j; i < c; ++i)
          ASSERT_EQ(front.column[j][i], at(i, j)) << "c " << c << ", w " << w << ", entry " << i << ", " << j;
    }
}

TEST_P(EveryTable, EveryBuildRoundsAForwardSubstitutionAlike) {
  if (!table()) GTEST_SKIP() << "skipped: this processor has no such kernel table";
  if (!oracleRoundsOnce) GTEST_SKIP() << "skipped: std::fma of this system rounds twice";
  std::mt19937 random(6);
  std::uniform_real_distribution<double> value(-1.0, 1.0);
  for (Int64 c : {3, 8, 20, 33, 64, 101})
    for (Int64 w = 1; w <= c; w += 3) {
      std::vector<double> L(trapezoidEntries(w, c) + solveMargin), y(c + solveMargin);
      for (double& v : L) v = value(random);
      for (double& v : y) v = value(random);
      std::vector<double> plain = y;
      std::fill(plain.begin() + w, plain.begin() + c, 0.0);
      for (Int64 p = 0; p < w; ++p)
        for (Int64 i = p + 1; i < c; ++i)
          plain[i] = minusProduct(*table(), plain[i], L[p * c - p * (p + 1) / 2 + i - p - 1], plain[p]);
      table()->forward(L.data(), w, c, y.data());
      for (Int64 i = 0; i < c; ++i) ASSERT_EQ(y[i], plain[i]) << "c " << c << ", w " << w << ", row " << i;
    }
}

#ifdef TORNWALZEN_X86_KERNELS
TEST(DenseKernels, TheWidestTableOfTheProcessorIsInUse) {
  const bool avx2 = __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma");
  const bool avx512 = __builtin_cpu_supports("avx512f");
  const KernelTables<DenseKernels>& tables = denseKernelTables();
  EXPECT_EQ(tables.count, 1 + (avx2 ? 1 : 0) + (avx512 ? 1 : 0));
  EXPECT_STREQ(tables.available[0]->name, "portable");
  EXPECT_STREQ(tables.best().name, avx512 ? "avx512" : avx2 ? "avx2" : "portable");
}
#endif

INSTANTIATE_TEST_SUITE_P(Kernels, EveryTable, testing::Values(0, 1, 2), [](const auto& which) {
  return std::string(which.param == 0 ? "portable" : which.param == 1 ? "avx2" : "avx512");
});
