// Steps 11, 12, 13 (analysis), 44 (factorization), 1 (solve) of the library's solver.
#include "contender_tornwalzen.hpp"

#include <algorithm>

#include "factor_count.hpp"
#include "host_kit/default_run.hpp"
#include "sparse/phases.hpp"
#include "sparse/work_layout.hpp"

namespace bench {

namespace tw = tornwalzen;

// The run state belongs to the loaded library: what it must know of this matrix is set anew at every
// analysis.
void Tornwalzen::analyse() {
  tw::run.solver.neq = a_.n;
  tw::run.solver.nsysm = tw::run.solver.mnsysm = static_cast<tw::Int>(a_.ROWI.size());
  tw::run.ierrso = 0;
  for (std::int32_t code : {11, 12, 13}) {
    step(code, nullptr, nullptr);
    supplyLengths();
  }
}

void Tornwalzen::factorize() {
  step(44, nullptr, nullptr);
}

void Tornwalzen::solve(const std::vector<double>& b, std::vector<double>& x) {
  x.resize(a_.n);
  wrhs_.resize(a_.n);
  peakBytes_ = std::max(peakBytes_, 4.0 * work_.size() + 8.0 * (rwork_.size() + wrhs_.size() + x.size()));
  step(1, b.data(), x.data());
}

void Tornwalzen::step(std::int32_t code, const double* b, double* x) {
  const tw::Int64 n = a_.n, entries = static_cast<tw::Int64>(a_.ROWI.size());
  tw::solverStep(tw::run, tw::run.solver, static_cast<tw::SolverStep>(code), {"COLS", a_.COLS.data(), n + 1},
                 {"ROWI", a_.ROWI.data(), entries},
                 {"WORK", work_.data(), static_cast<tw::Int64>(work_.size())},
                 {"RWORK", rwork_.data(), static_cast<tw::Int64>(rwork_.size())}, {"RR", b, n}, {"RB", x, n},
                 {"SYSM", a_.SYSM.data(), entries}, {"WRHS", wrhs_.data(), n});
  if (tw::failed(tw::run.ierrso)) {
    tw::run.ierrso = 0;
    throw std::runtime_error(std::string(tw::run.messages.MSGSTR_solver, 60));
  }
}

void Tornwalzen::supplyLengths() {
  tw::run.solver.niwor = tw::run.solver.niwreq;
  tw::run.solver.nrk = tw::run.solver.nrkreq;
  work_.resize(tw::run.solver.niwor);
  rwork_.resize(tw::run.solver.nrk);
  peakBytes_ = std::max(peakBytes_, 4.0 * work_.size() + 8.0 * rwork_.size());
}

std::vector<std::int32_t> Tornwalzen::eliminationOrder() const {
  const tw::Vector<tw::Int> WORK("WORK", const_cast<tw::Int*>(work_.data()),
                                 static_cast<tw::Int64>(work_.size()));
  const tw::FactorStructure f = tw::factorStructure(WORK);
  std::vector<std::int32_t> order(a_.n);
  for (std::int32_t k = 0; k < a_.n; ++k) order[k] = f.PERM(k + 1) - 1;
  return order;
}

Fill Tornwalzen::fill() const {
  return countFactor(a_, eliminationOrder());
}

double Tornwalzen::storedEntries() const {
  return static_cast<double>(work_[tw::header::factorEntries - 1]) + a_.n;
}

std::unique_ptr<Contender> makeTornwalzen(const SymmetricMatrix& a) {
  return std::make_unique<Tornwalzen>(a);
}

}  // namespace bench
