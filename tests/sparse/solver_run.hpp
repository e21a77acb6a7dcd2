// The solver's protocol on one matrix, with work arrays of exactly the lengths that each step reports.
#pragma once

#include <functional>
#include <map>
#include <random>
#include <vector>

#include "host_kit/default_run.hpp"
#include "sparse/phases.hpp"

namespace tornwalzen::testing_support {

/// A symmetric matrix by the lower triangle in compressed columns, one-based, diagonal first.
struct SparseMatrix {
  Int n = 0;
  std::vector<Int> cols{1}, rowi;
  std::vector<double> values;

  /// From a map of (row, column) with row ≥ column; every diagonal entry must be present.
  static SparseMatrix fromEntries(Int n, const std::map<std::pair<Int, Int>, double>& byColumn) {
    SparseMatrix a;
    a.n = n;
    Int column = 1;
    for (const auto& [columnRow, value] : byColumn) {  // ordered by column, then row
      while (column < columnRow.first) {
        a.cols.push_back(static_cast<Int>(a.rowi.size()) + 1);
        ++column;
      }
      a.rowi.push_back(columnRow.second);
      a.values.push_back(value);
    }
    while (static_cast<Int>(a.cols.size()) < n + 1) a.cols.push_back(static_cast<Int>(a.rowi.size()) + 1);
    return a;
  }

  std::vector<double> times(const std::vector<double>& x) const {
    std::vector<double> y(x.size(), 0.0);
    for (Int j = 0; j < n; ++j)
      for (Int k = cols[j] - 1; k < cols[j + 1] - 1; ++k) {
        const Int i = rowi[k] - 1;
        y[i] += values[k] * x[j];
        if (i != j) y[j] += values[k] * x[i];
      }
    return y;
  }

  double norm() const {  // largest row sum
    std::vector<double> sum(n, 0.0);
    for (Int j = 0; j < n; ++j)
      for (Int k = cols[j] - 1; k < cols[j + 1] - 1; ++k) {
        const Int i = rowi[k] - 1;
        sum[i] += std::abs(values[k]);
        if (i != j) sum[j] += std::abs(values[k]);
      }
    double largest = 0.0;
    for (double s : sum) largest = std::max(largest, s);
    return largest;
  }
};

/// Owns the arrays and drives steps 11, 12, 13, 44 and 1. Guard words stand behind every array.
class SolverRun {
 public:
  explicit SolverRun(SparseMatrix matrix) : a(std::move(matrix)) {
    freshState();
    run.solver.neq = a.n;
    run.solver.nsysm = run.solver.mnsysm = static_cast<Int>(a.rowi.size());
  }
  void step(Int ido) {
    const std::size_t intGuard = work.size(), realGuard = rwork.size();
    work.insert(work.end(), 4, guardInt);
    rwork.insert(rwork.end(), 4, guardReal);
    solverStep(
        run, run.solver, static_cast<SolverStep>(ido), {"COLS", a.cols.data(), a.n + 1},
        {"ROWI", a.rowi.data(), run.solver.mnsysm}, {"WORK", work.data(), static_cast<Int64>(intGuard)},
        {"RWORK", rwork.data(), static_cast<Int64>(realGuard)},
        {"RR", rhs.data(), static_cast<Int64>(rhs.size())}, {"RB", x.data(), static_cast<Int64>(x.size())},
        {"SYSM", a.values.data(), run.solver.mnsysm}, {"WRHS", wrhs.data(), static_cast<Int64>(wrhs.size())});
    for (std::size_t i = 0; i < 4; ++i)
      guardsHeld = guardsHeld && work[intGuard + i] == guardInt && rwork[realGuard + i] == guardReal;
    work.resize(intGuard);
    rwork.resize(realGuard);
  }
  void supplyLengths() {
    run.solver.niwor = run.solver.niwreq;
    run.solver.nrk = run.solver.nrkreq;
    work.resize(run.solver.niwor, junkInt);
    rwork.resize(run.solver.nrk, std::numeric_limits<double>::quiet_NaN());
  }
  void analyse() {
    for (Int ido : {11, 12, 13}) {
      step(ido);
      supplyLengths();
    }
  }
  void factorize() { step(44); }
  std::vector<double> solve(const std::vector<double>& b) {
    rhs = b;
    x.assign(a.n, -7.0);
    wrhs.assign(a.n, -7.0);
    step(1);
    return x;
  }
  /// residual / (n · norm · largest x · machine precision)
  double scaledResidual(const std::vector<double>& b, const std::vector<double>& solution) const {
    const std::vector<double> product = a.times(solution);
    double residual = 0.0, largest = 0.0;
    for (Int i = 0; i < a.n; ++i) {
      residual = std::max(residual, std::abs(product[i] - b[i]));
      largest = std::max(largest, std::abs(solution[i]));
    }
    return residual / (a.n * a.norm() * std::max(largest, 1e-300) * std::numeric_limits<double>::epsilon());
  }

  static constexpr Int guardInt = 0x5A5A5A5A, junkInt = -123456789;
  static constexpr double guardReal = 1.25e77;
  SparseMatrix a;
  std::vector<Int> work;
  std::vector<double> rwork, rhs, x, wrhs;
  bool guardsHeld = true;
};

/// Random symmetric pattern of n equations with about `perColumn` entries below each diagonal; the values are
/// diagonally dominant, the signs of the diagonal alternate if `indefinite`.
inline SparseMatrix randomMatrix(Int n, double perColumn, bool indefinite, unsigned seed) {
  std::mt19937 random(seed);
  std::uniform_real_distribution<double> value(-1.0, 1.0);
  std::map<std::pair<Int, Int>, double> entries;
  const Int count = static_cast<Int>(perColumn * n);
  for (Int e = 0; e < count && n > 1; ++e) {
    Int i = static_cast<Int>(random() % n) + 1, j = static_cast<Int>(random() % n) + 1;
    if (i == j) continue;
    if (i < j) std::swap(i, j);
    entries[{j, i}] = value(random);
  }
  std::vector<double> sum(n + 1, 0.5);
  for (const auto& [at, v] : entries) {
    sum[at.first] += std::abs(v);
    sum[at.second] += std::abs(v);
  }
  for (Int i = 1; i <= n; ++i) entries[{i, i}] = indefinite && random() % 2 ? -sum[i] : sum[i];
  return SparseMatrix::fromEntries(n, entries);
}

/// The pattern of a triangulated rectangle of nx × ny nodes, two equations per node, numbered as the library does.
inline SparseMatrix gridMatrix(Int nx, Int ny, unsigned seed) {
  std::mt19937 random(seed);
  std::uniform_real_distribution<double> value(-1.0, 1.0);
  std::map<std::pair<Int, Int>, double> entries;
  const auto node = [&](Int x, Int y) { return y * nx + x; };
  const auto couple = [&](Int a, Int b) {
    if (a > b) std::swap(a, b);
    for (Int p = 1; p <= 2; ++p)
      for (Int q = 1; q <= 2; ++q) {
        const Int i = 2 * a + p, j = 2 * b + q;
        if (j >= i) entries[{i, j}] = value(random);
      }
  };
  for (Int y = 0; y < ny; ++y)
    for (Int x = 0; x < nx; ++x) {
      couple(node(x, y), node(x, y));
      if (x + 1 < nx) couple(node(x, y), node(x + 1, y));
      if (y + 1 < ny) couple(node(x, y), node(x, y + 1));
      if (x + 1 < nx && y + 1 < ny) couple(node(x, y), node(x + 1, y + 1));
    }
  const Int n = 2 * nx * ny;
  std::vector<double> sum(n + 1, 0.1);
  for (const auto& [at, v] : entries)
    if (at.first != at.second) {
      sum[at.first] += std::abs(v);
      sum[at.second] += std::abs(v);
    }
  for (Int i = 1; i <= n; ++i) entries[{i, i}] = sum[i];
  return SparseMatrix::fromEntries(n, entries);
}

inline std::vector<double> randomVector(Int n, unsigned seed) {
  std::mt19937 random(seed);
  std::uniform_real_distribution<double> value(-1.0, 1.0);
  std::vector<double> v(n);
  for (double& e : v) e = value(random);
  return v;
}

}  // namespace tornwalzen::testing_support
