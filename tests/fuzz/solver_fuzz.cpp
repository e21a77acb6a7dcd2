// The solver on random patterns and values against dense elimination with pivoting in extended precision. A
// matrix with a dominant diagonal must be solved to rounding; any other must end, inside its arrays, with or
// without an error.
#include <cmath>
#include <cstdlib>
#include <limits>
#include <utility>
#include <vector>

#include "fuzz/byte_source.hpp"
#include "fuzz/fuzz_target.hpp"
#include "host_kit/default_run.hpp"
#include "sparse/phases.hpp"

namespace {

using namespace tornwalzen;

void require(bool condition) {
  if (!condition) std::abort();
}

struct Problem {
  Int n = 0;
  bool dominant = false;
  std::vector<double> dense;  // n × n, symmetric
  std::vector<Int> COLS, ROWI;
  std::vector<double> SYSM, b;
  double& at(Int i, Int j) { return dense[static_cast<std::size_t>(i) * n + j]; }
};

Problem draw(fuzz::ByteSource& bytes) {
  Problem p;
  p.n = static_cast<Int>(bytes.below(40));
  p.dominant = bytes.below(2) == 0;
  p.dense.assign(static_cast<std::size_t>(p.n) * p.n, 0.0);
  std::vector<bool> stored(p.dense.size(), false);
  const auto place = [&](Int i, Int j, double value) {
    p.at(i, j) = p.at(j, i) = value;
    stored[static_cast<std::size_t>(std::max(i, j)) * p.n + std::min(i, j)] = true;
  };
  for (unsigned k = p.n > 0 ? bytes.byte() : 0; k > 0; --k) {
    const Int i = static_cast<Int>(bytes.below(p.n)), j = static_cast<Int>(bytes.below(p.n));
    const double value = bytes.number();
    if (i != j) place(i, j, p.dominant && !(std::fabs(value) < 100.0) ? 1.0 : value);
  }
  for (Int i = 0; i < p.n; ++i) {
    double sum = 0.125;
    for (Int j = 0; j < p.n; ++j) sum += i != j ? std::fabs(p.at(i, j)) : 0.0;
    const double value = bytes.number();
    place(i, i, p.dominant ? (bytes.below(2) == 0 ? sum : -sum) : value);
    p.b.push_back(static_cast<int>(bytes.byte()) - 128);
  }
  p.COLS.push_back(1);
  for (Int j = 0; j < p.n; ++j) {
    for (Int i = j; i < p.n; ++i)
      if (stored[static_cast<std::size_t>(i) * p.n + j]) {
        p.ROWI.push_back(i + 1);
        p.SYSM.push_back(p.at(i, j));
      }
    p.COLS.push_back(static_cast<Int>(p.ROWI.size()) + 1);
  }
  return p;
}

// Gauss with partial pivoting.
std::vector<long double> denseSolution(const Problem& p) {
  const Int n = p.n;
  std::vector<long double> a(p.dense.begin(), p.dense.end()), x(p.b.begin(), p.b.end());
  const auto at = [&](Int i, Int j) -> long double& { return a[static_cast<std::size_t>(i) * n + j]; };
  for (Int k = 0; k < n; ++k) {
    Int pivot = k;
    for (Int i = k + 1; i < n; ++i)
      if (std::fabs(at(i, k)) > std::fabs(at(pivot, k))) pivot = i;
    for (Int j = 0; j < n; ++j) std::swap(at(k, j), at(pivot, j));
    std::swap(x[k], x[pivot]);
    for (Int i = k + 1; i < n; ++i) {
      const long double factor = at(i, k) / at(k, k);
      for (Int j = k; j < n; ++j) at(i, j) -= factor * at(k, j);
      x[i] -= factor * x[k];
    }
  }
  for (Int k = n - 1; k >= 0; --k) {
    for (Int j = k + 1; j < n; ++j) x[k] -= at(k, j) * x[j];
    x[k] /= at(k, k);
  }
  return x;
}

class Solver {
 public:
  explicit Solver(const Problem& p) : p_(p), x_(p.n, -7.0), wrhs_(p.n, -7.0) {
    freshState();
    run.neq = run.solver.neq = p.n;
    run.solver.nsysm = run.solver.mnsysm = static_cast<Int>(p.ROWI.size());
  }
  void step(Int ido) {
    solverStep(
        run, run.solver, static_cast<SolverStep>(ido), {"COLS", p_.COLS.data(), p_.n + 1},
        {"ROWI", p_.ROWI.data(), run.solver.mnsysm}, {"WORK", work_.data(), static_cast<Int64>(work_.size())},
        {"RWORK", rwork_.data(), static_cast<Int64>(rwork_.size())}, {"RR", p_.b.data(), p_.n},
        {"RB", x_.data(), p_.n}, {"SYSM", p_.SYSM.data(), run.solver.mnsysm}, {"WRHS", wrhs_.data(), p_.n});
    if (ido < 11 || ido > 13) return;
    require(!failed(run.ierrso));
    run.solver.niwor = run.solver.niwreq;
    run.solver.nrk = run.solver.nrkreq;
    work_.resize(run.solver.niwor, -123456789);
    work_.shrink_to_fit();
    rwork_.resize(run.solver.nrk, std::numeric_limits<double>::quiet_NaN());
    rwork_.shrink_to_fit();
  }
  const std::vector<double>& solution() const { return x_; }

 private:
  const Problem& p_;
  std::vector<Int> work_;
  std::vector<double> rwork_, x_, wrhs_;
};

void requireSolved(const Problem& p, const std::vector<double>& x) {
  const std::vector<long double> reference = denseSolution(p);
  long double norm = 0.0, difference = 0.0, size = 1.0;
  for (Int i = 0; i < p.n; ++i) {
    long double sum = 0.0;
    for (Int j = 0; j < p.n; ++j) sum += std::fabs(p.dense[static_cast<std::size_t>(i) * p.n + j]);
    norm = std::max(norm, sum);
    difference = std::max(difference, std::fabs(reference[i] - x[i]));
    size = std::max(size, std::fabs(reference[i]));
  }
  // The diagonal exceeds its row by 1/8: the inverse is at most 8 in norm, the growth of the elimination at
  // most 2.
  require(difference <= 10.0L * p.n * 2.0L * 8.0L * norm * size * std::numeric_limits<double>::epsilon());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::ByteSource bytes(data, size);
  const Problem p = draw(bytes);
  Solver solver(p);
  for (const Int ido : {11, 12, 13}) solver.step(ido);
  solver.step(44);
  if (p.dominant) require(!failed(run.ierrso));
  solver.step(1);
  if (p.dominant) requireSolved(p, solver.solution());
  return 0;
}
