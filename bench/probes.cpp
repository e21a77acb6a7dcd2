// Each wrapper has the mangled name that the linker calls in the procedure's place. A name that no longer
// exists would leave its probe silent: whoever reads the counts tests that they are not zero.
#include "probes.hpp"

#include "develop/visited_elements.hpp"
#include "driver/load_path.hpp"
#include "ground/run_state.hpp"

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

PROBED(assemble, "_ZN10tornwalzen8assembleEiRKNS_12DriverArraysENS_5TableIKdEE", Int mode,
       const DriverArrays& a, Table<const double> FC) {
  probe(mode == 1 ? bench::probes.tangent : bench::probes.residual, [&] { real_assemble(mode, a, FC); });
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

PROBED(loesys, "_ZN10tornwalzen6loesysEiNS_6VectorIKiEES2_NS0_IiEENS0_IdEENS0_IKdEES4_S6_S4_", Int IDO,
       Vector<const Int> COLS, Vector<const Int> ROWI, Vector<Int> WORK, Vector<double> RWORK,
       Vector<const double> RHS, Vector<double> SOLUTION, Vector<const double> SYSM, Vector<double> WRHS) {
  const auto step = [&] { real_loesys(IDO, COLS, ROWI, WORK, RWORK, RHS, SOLUTION, SYSM, WRHS); };
  if (IDO == 44)
    probe(bench::probes.factorize, step);
  else if (IDO == 1)
    probe(bench::probes.solve, step);
  else
    step();
}

PROBED(newtonStep, "_ZN10tornwalzen10newtonStepERdRKNS_12DriverArraysENS_5TableIKdEE", double& EN,
       const DriverArrays& a, Table<const double> FC) {
  probe(bench::probes.newton, [&] { real_newtonStep(EN, a, FC); });
}

PROBED(energySum, "_ZN10tornwalzen9energySumERdRKNS_12DriverArraysENS_5TableIKdEE", double& EN,
       const DriverArrays& a, Table<const double> FC) {
  probe(bench::probes.energy, [&] { real_energySum(EN, a, FC); });
}

PROBED(unfoldBlank, "_ZN10tornwalzen11unfoldBlankERKNS_12DriverArraysE", const DriverArrays& a) {
  probe(bench::probes.development, [&] { real_unfoldBlank(a); });
}

PROBED(unfoldForces, "_ZN10tornwalzen12unfoldForcesERKNS_12DriverArraysERKNS_15VisitedElementsE",
       const DriverArrays& a, const VisitedElements& visited) {
  ++bench::probes.unfoldIterations;
  real_unfoldForces(a, visited);
}

PROBED(unfoldObjective, "_ZN10tornwalzen15unfoldObjectiveERKNS_12DriverArraysERKNS_15VisitedElementsERiRd",
       const DriverArrays& a, const VisitedElements& visited, Int& degenerate, double& E) {
  ++bench::probes.unfoldEvaluations;
  real_unfoldObjective(a, visited, degenerate, E);
}

PROBED(reportIncrement, "_ZN10tornwalzen15reportIncrementERKNS_8LoadPathE", const LoadPath& path) {
  ++bench::probes.increments;
  real_reportIncrement(path);
}

}  // namespace tornwalzen

namespace bench {

Probes probes;

}  // namespace bench
