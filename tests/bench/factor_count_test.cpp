// Counted fill against elimination on a dense pattern.
#include "factor_count.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <random>

#include "contender_tornwalzen.hpp"

namespace {

using bench::Numbering;

bench::Fill denseFill(const bench::SymmetricMatrix& a, const std::vector<std::int32_t>& order) {
  std::vector<std::vector<bool>> full(a.n, std::vector<bool>(a.n, false));
  for (std::int32_t j = 0; j < a.n; ++j)
    for (std::int32_t k = a.start[j]; k < a.start[j + 1]; ++k) full[a.row[k]][j] = full[j][a.row[k]] = true;
  bench::Fill fill;
  for (std::int32_t k = 0; k < a.n; ++k) {
    std::vector<std::int32_t> rest;
    for (std::int32_t l = k; l < a.n; ++l)
      if (full[order[l]][order[k]]) rest.push_back(order[l]);
    for (std::int32_t i : rest)
      for (std::int32_t j : rest) full[i][j] = true;
    const double c = static_cast<double>(rest.size());
    fill.entries += c;
    fill.flops += c * c;
  }
  return fill;
}

TEST(FactorCount, equalsEliminationOnADensePattern) {
  const bench::SymmetricMatrix a =
      bench::membraneMatrix(bench::jitteredDelaunayMesh(144, Numbering::mesher, 1), 2);
  std::vector<std::int32_t> order(a.n);
  std::iota(order.begin(), order.end(), 0);
  std::mt19937 random(4);
  for (int k = 0; k < 3; ++k) {
    const bench::Fill counted = bench::countFactor(a, order), dense = denseFill(a, order);
    EXPECT_EQ(counted.entries, dense.entries);
    EXPECT_EQ(counted.flops, dense.flops);
    std::shuffle(order.begin(), order.end(), random);
  }
}

TEST(FactorCount, ownOrderingStoresAtLeastItsFillAndSolves) {
  const bench::SymmetricMatrix a =
      bench::membraneMatrix(bench::jitteredDelaunayMesh(900, Numbering::mesher, 1), 2);
  bench::Tornwalzen solver(a);
  solver.analyse();
  solver.factorize();
  EXPECT_GE(solver.storedEntries(), solver.fill().entries);
  std::vector<double> x, b(a.n, 1.0);
  solver.solve(b, x);
  EXPECT_LT(a.backwardError(x, b), 1e-15);
  x[5] += 1e-6;
  EXPECT_GT(a.backwardError(x, b), 1e-10);
}

}  // namespace
