// A whole run through the exported functions alone: keeps what was told, and reduces all that it left to one number.
#pragma once

#include <cstdint>
#include <vector>

#include "host_kit/fixed_host.hpp"

namespace host_kit {

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

class WholeRun : public FixedHost<> {
 public:
  WholeRun(const HostPart& part, std::int32_t material) {
    open(part.knots, part.inzi, part.arfa);
    ICTRL[0] = material;
    if (!setUp()) return;
    PlivaneSetProgressHdlr(ProgressTold::take, &progress);
    analyse();
    PlivaneSetProgressHdlr(nullptr, nullptr);
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
    for (const auto* v : {&INTA, &COLS, &ROWI, &ISTAT}) add(v->data(), v->size() * sizeof(std::int32_t));
    add(progress.fractions.data(), progress.fractions.size() * sizeof(double));
    add(progress.texts.data(), progress.texts.size());
    return sum;
  }

  ProgressTold progress;
};

}  // namespace host_kit
