// The call protocol of tornwalzen.h, and the probes of what it calls.
#include "sample_run.hpp"

#include <cmath>
#include <stdexcept>

#include "host_kit/default_run.hpp"
#include "quiet.hpp"
#include "tornwalzen.h"

namespace bench {

SampleRun::SampleRun(const shapes::Sheet& sheet) {
  host_.open(sheet.knots, sheet.inzi);
  const std::vector<std::int32_t> held = heldRigidMotion(sheet);
  for (std::size_t i = 0; i < held.size(); ++i) host_.ARFA[i] = 1 - held[i];
  const Quiet quiet;
  if (!host_.setUp()) throw std::runtime_error("the structure could not be set up");
}

std::vector<std::int32_t> heldRigidMotion(const shapes::Sheet& sheet) {
  const std::int32_t NN = sheet.nodes();
  std::vector<std::int32_t> held(2 * static_cast<std::size_t>(NN), 0);
  const auto x = [&](std::int32_t n) { return sheet.knots[3 * n]; };
  const auto y = [&](std::int32_t n) { return sheet.knots[3 * n + 1]; };
  double mx = 0.0, my = 0.0;
  for (std::int32_t n = 0; n < NN; ++n) {
    mx += x(n) / NN;
    my += y(n) / NN;
  }
  std::int32_t middle = 0, far = 0;
  for (std::int32_t n = 1; n < NN; ++n)
    if (std::hypot(x(n) - mx, y(n) - my) < std::hypot(x(middle) - mx, y(middle) - my)) middle = n;
  for (std::int32_t n = 1; n < NN; ++n)
    if (std::abs(x(n) - x(middle)) > std::abs(x(far) - x(middle))) far = n;
  held[2 * middle] = held[2 * middle + 1] = held[2 * far + 1] = 1;
  return held;
}

tornwalzen::DriverArrays SampleRun::arrays() {
  const tornwalzen::Int64 nn = nodes(), ne = triangles(), neq = 2 * nn, entries = host_.MNSYSM[0];
  host_kit::FixedHost<>& h = host_;
  return {{"INTA", h.INTA.data(), ne, 3},
          {"ARFA", h.ARFA.data(), neq},
          {"COLS", h.COLS.data(), neq + 1},
          {"ROWI", h.ROWI.data(), entries},
          {"WORK", h.WORK.data(), h.NIWOR[0]},
          {"RWORK", h.RWORK.data(), h.NRK[0]},
          {"RR", h.RR.data(), neq},
          {"RB", h.RB.data(), neq},
          {"RX", h.RX.data(), neq},
          {"TEMP", h.TEMP.data(), neq},
          {"KNG", h.KNG.data(), nn, 3},
          {"KNZ", h.KNZ.data(), nn, 3},
          {"KNA", h.KNA.data(), nn, 3},
          {"ELG", h.ELG.data(), ne, 5},
          {"SYSM", h.SYSM.data(), entries},
          {"RXA", h.RXA.data(), neq},
          {"WRHS", h.WRHS.data(), neq}};
}

void SampleRun::analyse(std::int32_t material) {
  const auto once = std::move(probes.beforeFirstFactorization);
  probes = Probes{};
  probes.beforeFirstFactorization = once;
  double lastFraction = 0.0;
  PlivaneSetProgressHdlr(
      [](void* fraction, const TornwalzenProgress* record) {
        if (record->kind == 0) *static_cast<double*>(fraction) = record->value;
      },
      &lastFraction);
  tornwalzen::run.ierrel = 0;  // a run that was given up must not end the next one
  {
    const Quiet quiet;
    host_.analyse(material);
  }
  PlivaneSetProgressHdlr(nullptr, nullptr);
  converged_ = host_.ISTAT[0] != -1 && lastFraction == 1.0 && !tornwalzen::failed(tornwalzen::run.ierrel);
  const long seen[] = {probes.development.calls, probes.unfoldIterations, probes.unfoldEvaluations,
                       probes.increments,        probes.newton.calls,     probes.tangent.calls,
                       probes.residual.calls,    probes.energy.calls,     probes.factorize.calls,
                       probes.solve.calls};
  for (long calls : seen)
    if (calls == 0) throw std::runtime_error("a procedure of the library is no longer seen by its probe");
}

}  // namespace bench
