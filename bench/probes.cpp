// Each wrapper has the mangled name that the linker calls in the procedure's place. A name that no longer
// exists would leave its probe silent: whoever reads the counts tests that they are not zero.
#include "probes.hpp"

#include "develop/visited_elements.hpp"
#include "driver/load_path.hpp"
#include "sparse/phases.hpp"

namespace tornwalzen {

#define PROBED(name, mangled, ...)                      \
  void real_##name(__VA_ARGS__) asm("__real_" mangled); \
  void wrap_##name(__VA_ARGS__) asm("__wrap_" mangled); \
  void wrap_##name(__VA_ARGS__)

namespace {

template <class Call>
void probe(bench::Probe& p, Call call) {
  const bench::Seconds t = bench::timed(call);
  ++p.calls;
  p.time.cpu += t.cpu;
  p.time.wall += t.wall;
}

}  // namespace

PROBED(assemble, "_ZN10tornwalzen8assembleERNS_8AnalysisEiRKNS_12DriverArraysE", Analysis& run, Int mode,
       const DriverArrays& a) {
  probe(mode == 1 ? bench::probes.tangent : bench::probes.residual, [&] { real_assemble(run, mode, a); });
  if (mode == 1 && bench::probes.beforeFirstFactorization) {
    const bench::Seconds start = bench::now();
    const auto once = std::move(bench::probes.beforeFirstFactorization);
    bench::probes.beforeFirstFactorization = nullptr;
    once(a);
    const bench::Seconds end = bench::now();
    bench::probes.newton.time.cpu -= end.cpu - start.cpu;
    bench::probes.newton.time.wall -= end.wall - start.wall;
  }
}

PROBED(solverStep,
       "_ZN10tornwalzen10solverStepERNS_8AnalysisERNS_11SolverStateE"
       "NS_10SolverStepENS_6VectorIKiEES7_NS5_IiEENS5_IdEENS5_IKdEES9_SB_S9_",
       Analysis& run, SolverState& system, SolverStep step, Vector<const Int> COLS, Vector<const Int> ROWI,
       Vector<Int> WORK, Vector<double> RWORK, Vector<const double> RHS, Vector<double> SOLUTION,
       Vector<const double> SYSM, Vector<double> WRHS) {
  const auto whole = [&] {
    real_solverStep(run, system, step, COLS, ROWI, WORK, RWORK, RHS, SOLUTION, SYSM, WRHS);
  };
  if (step == SolverStep::numeric)
    probe(bench::probes.factorize, whole);
  else if (step == SolverStep::solve)
    probe(bench::probes.solve, whole);
  else
    whole();
}

PROBED(newtonStep, "_ZN10tornwalzen10newtonStepERNS_8AnalysisERdRKNS_12DriverArraysE", Analysis& run,
       double& EN, const DriverArrays& a) {
  probe(bench::probes.newton, [&] { real_newtonStep(run, EN, a); });
}

PROBED(energySum, "_ZN10tornwalzen9energySumERNS_8AnalysisERdRKNS_12DriverArraysE", Analysis& run, double& EN,
       const DriverArrays& a) {
  probe(bench::probes.energy, [&] { real_energySum(run, EN, a); });
}

PROBED(unfoldBlank, "_ZN10tornwalzen11unfoldBlankERNS_8AnalysisERKNS_12DriverArraysE", Analysis& run,
       const DriverArrays& a) {
  probe(bench::probes.development, [&] { real_unfoldBlank(run, a); });
}

PROBED(unfoldForces,
       "_ZN10tornwalzen12unfoldForcesERNS_8AnalysisERKNS_12DriverArraysERKNS_15VisitedElementsE",
       Analysis& run, const DriverArrays& a, const VisitedElements& visited) {
  ++bench::probes.unfoldIterations;
  real_unfoldForces(run, a, visited);
}

PROBED(unfoldObjective,
       "_ZN10tornwalzen15unfoldObjectiveERNS_8AnalysisERKNS_12DriverArraysERKNS_15VisitedElementsERiRd",
       Analysis& run, const DriverArrays& a, const VisitedElements& visited, Int& degenerate, double& E) {
  ++bench::probes.unfoldEvaluations;
  real_unfoldObjective(run, a, visited, degenerate, E);
}

PROBED(reportIncrement, "_ZN10tornwalzen15reportIncrementERNS_8AnalysisERKNS_8LoadPathE", Analysis& run,
       const LoadPath& path) {
  ++bench::probes.increments;
  real_reportIncrement(run, path);
}

}  // namespace tornwalzen

namespace bench {

Probes probes;

}  // namespace bench
