// A whole run through the exported functions alone: owns the host's arrays, keeps what was told, and reduces
// all that it left to one number.
#pragma once

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "tornwalzen.h"

namespace extension {

/// A part as a host holds it.
struct HostPart {
  std::vector<double> knots;       // x y z of node 1, of node 2, ... (mm)
  std::vector<std::int32_t> inzi;  // three nodes per triangle, from 1
  std::vector<std::int32_t> arfa;  // 1 free, 0 held, per unknown

  std::int32_t nodes() const { return static_cast<std::int32_t>(knots.size() / 3); }
  std::int32_t elements() const { return static_cast<std::int32_t>(inzi.size() / 3); }
};

/// Holds u and v of the node nearest the centroid, and against rotation v of the node farthest from it in x,
/// or u of the farthest in y, whichever is farther.
inline void holdRigidMotion(HostPart& part) {
  const std::size_t nodes = part.knots.size() / 3;
  part.arfa.assign(2 * nodes, 1);
  double centre[3] = {0, 0, 0};
  for (std::size_t n = 0; n < nodes; ++n)
    for (std::size_t i = 0; i < 3; ++i) centre[i] += part.knots[3 * n + i] / static_cast<double>(nodes);
  const auto offset = [&](std::size_t n, std::size_t i) { return part.knots[3 * n + i] - centre[i]; };
  std::size_t nearest = 0;
  for (std::size_t n = 0; n < nodes; ++n) {
    const auto square = [&](std::size_t k) {
      return offset(k, 0) * offset(k, 0) + offset(k, 1) * offset(k, 1) + offset(k, 2) * offset(k, 2);
    };
    if (square(n) < square(nearest)) nearest = n;
  }
  std::size_t farthest[2] = {0, 0};
  double distance[2] = {0, 0};
  for (std::size_t n = 0; n < nodes; ++n)
    for (std::size_t i = 0; i < 2; ++i) {
      const double d = part.knots[3 * n + i] - part.knots[3 * nearest + i];
      if (d * d > distance[i]) distance[i] = d * d, farthest[i] = n;
    }
  part.arfa[2 * nearest] = part.arfa[2 * nearest + 1] = 0;
  if (distance[0] >= distance[1])
    part.arfa[2 * farthest[0] + 1] = 0;
  else
    part.arfa[2 * farthest[1]] = 0;
}

class WholeRun {
 public:
  WholeRun(const HostPart& part, std::int32_t material) : ICTRL(material) {
    setUp(part);
    analyse(part);
  }

  /// All arrays that the run left, its status, and the progress it reported but for the times
  /// (Fowler-Noll-Vo, on the bits).
  std::uint64_t hash() const {
    std::uint64_t sum = 14695981039346656037ull;
    const auto add = [&sum](const void* data, std::size_t bytes) {
      for (std::size_t i = 0; i < bytes; ++i)
        sum = (sum ^ static_cast<const unsigned char*>(data)[i]) * 1099511628211ull;
    };
    for (const auto* v : {&RR, &RB, &RX, &TEMP, &KNG, &KNZ, &KNA, &ELG, &SYSM, &RXA, &WRHS, &EVAL})
      add(v->data(), v->size() * sizeof(double));
    for (const auto* v : {&INTA, &COLS, &ROWI}) add(v->data(), v->size() * sizeof(std::int32_t));
    add(&ISTAT, sizeof ISTAT);
    add(fractions.data(), fractions.size() * sizeof(double));
    add(texts.data(), texts.size());
    return sum;
  }

  std::int32_t NN = 0, NE = 0, NEQ = 0, MNSYSM = 0, NIWOR = 0, NRK = 0, ICTRL, ISTAT = 0;
  std::vector<std::int32_t> INTA, COLS, ROWI, WORK;
  std::vector<double> RWORK, RR, RB, RX, TEMP, KNG, KNZ, KNA, ELG, SYSM, RXA, WRHS, EVAL;
  std::vector<double> fractions;  // as the handler was told
  std::string texts;              // likewise, times left out
  std::int32_t times = 0;         // time texts behind the last fraction

 private:
  static void take(void* self, const TornwalzenProgress* record) {
    auto& run = *static_cast<WholeRun*>(self);
    if (record->kind == 0) {
      run.fractions.push_back(record->value);
      run.times = 0;
    } else if (std::strncmp(record->text, "TIME:", 5) == 0) {
      ++run.times;
    } else {
      run.texts += std::string(record->text) + '\n';
    }
  }

  void setUp(const HostPart& part) {
    NN = part.nodes(), NE = part.elements(), NEQ = 2 * NN, MNSYSM = 4 * (NN + 3 * NE) - NN;
    const auto nodes = static_cast<std::size_t>(NN), elements = static_cast<std::size_t>(NE);
    INTA.resize(3 * elements), COLS.resize(2 * nodes + 1), ROWI.resize(static_cast<std::size_t>(MNSYSM));
    KNG.resize(3 * nodes);
    for (std::int32_t mode = 1; mode <= 3; ++mode) {
      OSINIT(&mode, &NN, &NE, &NEQ, &MNSYSM, &NIWOR, &NRK, part.knots.data(), part.inzi.data(), INTA.data(),
             nullptr, COLS.data(), ROWI.data(), WORK.data(), RWORK.data(), nullptr, nullptr, nullptr, nullptr,
             KNG.data(), nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, &ISTAT);
      if (ISTAT != 0) return;
      ROWI.resize(static_cast<std::size_t>(MNSYSM));
      WORK.resize(static_cast<std::size_t>(NIWOR));
      if (mode > 1) RWORK.resize(static_cast<std::size_t>(NRK));
    }
  }

  void analyse(const HostPart& part) {
    if (ISTAT != 0) return;
    for (auto* v : {&RR, &RB, &RX, &TEMP, &RXA, &WRHS}) v->assign(static_cast<std::size_t>(NEQ), 0.0);
    for (auto* v : {&KNZ, &KNA}) v->assign(KNG.size(), 0.0);
    for (auto* v : {&ELG, &EVAL}) v->assign(5 * static_cast<std::size_t>(NE), 0.0);
    SYSM.assign(static_cast<std::size_t>(MNSYSM), 0.0);
    PlivaneSetProgressHdlr(&WholeRun::take, this);
    OSMAIN(INTA.data(), part.arfa.data(), COLS.data(), ROWI.data(), WORK.data(), RWORK.data(), RR.data(),
           RB.data(), RX.data(), TEMP.data(), KNG.data(), KNZ.data(), KNA.data(), ELG.data(), SYSM.data(),
           RXA.data(), WRHS.data(), &ICTRL, EVAL.data(), &ISTAT);
    PlivaneSetProgressHdlr(nullptr, nullptr);
  }
};

}  // namespace extension
