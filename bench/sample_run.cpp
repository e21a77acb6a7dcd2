// The call protocol of tornwalzen.h.
#include "sample_run.hpp"

#include <cmath>
#include <stdexcept>

#include "host_kit/default_run.hpp"
#include "quiet.hpp"
#include "tornwalzen.h"

namespace bench {

SampleRun::SampleRun(const shapes::Sheet& sheet)
    : NN_(sheet.nodes()), NE_(sheet.triangles()), NEQ_(2 * NN_), MNSYSM_(4 * (NN_ + 3 * NE_) - NN_) {
  const std::size_t nn = NN_, ne = NE_, neq = NEQ_;
  INTA_.resize(3 * ne);
  COLS_.resize(neq + 1);
  ROWI_.resize(MNSYSM_);
  for (auto* v : {&KNG_, &KNZ_, &KNA_}) v->resize(3 * nn);
  for (auto* v : {&ELG_, &EVAL_}) v->resize(5 * ne);
  for (auto* v : {&RR_, &RB_, &RX_, &TEMP_, &RXA_, &WRHS_}) v->resize(neq);
  const Quiet quiet;
  for (std::int32_t mode : {1, 2, 3}) setUp(mode, sheet);
  SYSM_.resize(MNSYSM_);
  hold(sheet);
}

void SampleRun::setUp(std::int32_t mode, const shapes::Sheet& sheet) {
  std::int32_t ISTAT = 0;
  OSINIT(&mode, &NN_, &NE_, &NEQ_, &MNSYSM_, &NIWOR_, &NRK_, sheet.knots.data(), sheet.inzi.data(),
         INTA_.data(), nullptr, COLS_.data(), ROWI_.data(), WORK_.data(), RWORK_.data(), nullptr, nullptr,
         nullptr, nullptr, KNG_.data(), nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, &ISTAT);
  if (ISTAT != 0) throw std::runtime_error("the structure could not be set up");
  ROWI_.resize(MNSYSM_);
  WORK_.resize(NIWOR_);
  if (mode > 1) RWORK_.resize(NRK_);
}

void SampleRun::hold(const shapes::Sheet& sheet) {
  ARFA_ = heldRigidMotion(sheet);
  for (std::int32_t& flag : ARFA_) flag = 1 - flag;
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
  const tornwalzen::Int64 nn = NN_, ne = NE_, neq = NEQ_, entries = MNSYSM_;
  return {{"INTA", INTA_.data(), ne, 3},   {"ARFA", ARFA_.data(), neq},    {"COLS", COLS_.data(), neq + 1},
          {"ROWI", ROWI_.data(), entries}, {"WORK", WORK_.data(), NIWOR_}, {"RWORK", RWORK_.data(), NRK_},
          {"RR", RR_.data(), neq},         {"RB", RB_.data(), neq},        {"RX", RX_.data(), neq},
          {"TEMP", TEMP_.data(), neq},     {"KNG", KNG_.data(), nn, 3},    {"KNZ", KNZ_.data(), nn, 3},
          {"KNA", KNA_.data(), nn, 3},     {"ELG", ELG_.data(), ne, 5},    {"SYSM", SYSM_.data(), entries},
          {"RXA", RXA_.data(), neq},       {"WRHS", WRHS_.data(), neq}};
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
  std::int32_t ISTAT = 0;
  {
    const Quiet quiet;
    OSMAIN(INTA_.data(), ARFA_.data(), COLS_.data(), ROWI_.data(), WORK_.data(), RWORK_.data(), RR_.data(),
           RB_.data(), RX_.data(), TEMP_.data(), KNG_.data(), KNZ_.data(), KNA_.data(), ELG_.data(),
           SYSM_.data(), RXA_.data(), WRHS_.data(), &material, EVAL_.data(), &ISTAT);
  }
  PlivaneSetProgressHdlr(nullptr, nullptr);
  converged_ = ISTAT != -1 && lastFraction == 1.0 && !tornwalzen::failed(tornwalzen::run.ierrel);
  const long seen[] = {probes.development.calls, probes.unfoldIterations, probes.unfoldEvaluations,
                       probes.increments,        probes.newton.calls,     probes.tangent.calls,
                       probes.residual.calls,    probes.energy.calls,     probes.factorize.calls,
                       probes.solve.calls};
  for (long calls : seen)
    if (calls == 0) throw std::runtime_error("a procedure of the library is no longer seen by its probe");
}

}  // namespace bench
