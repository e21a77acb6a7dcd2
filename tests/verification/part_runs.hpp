// A run of a part on a handle, at the host program's tolerance and energy, and measures that do not depend on how the
// part lies.
#pragma once

#include <algorithm>
#include <cmath>
#include <vector>

#include "interface/handle.hpp"
#include "verification/blank_error.hpp"

namespace verification {

struct PartRun {
  TornwalzenReport report{};
  std::vector<double> blank;  // u v per node (mm); where the run did not converge, what it left
  double energy = NAN;        // over the part (mm^2), of a run that converged
  bool converged() const { return report.converged != 0; }
};

/// path: 0 fixed, 1 sure; curve: 0, 1, 2.
inline PartRun runPart(const host_kit::HostPart& part, int path, int curve = 1) {
  const extension::Handle handle = extension::newHandle();
  TornwalzenAnalysis* a = handle.get();
  tornwalzen_analysis_set_path(a, path);
  tornwalzen_analysis_set_material(a, curve);
  tornwalzen_analysis_set_energy_reference(a, 1);
  tornwalzen_analysis_set_tolerance_factors(a, 0.001, 1.0);
  PartRun run;
  const bool ran = extension::take(handle, part) == 0 && tornwalzen_analysis_run(a) == 0;
  run.report = extension::reportOf(handle);
  if (!ran) return run;
  const double *blank = tornwalzen_analysis_blank(a), *table = tornwalzen_analysis_element_table(a);
  run.blank.assign(blank, blank + 2 * part.nodes());
  if (!run.converged()) return run;
  run.energy = 0.0;
  for (std::int32_t e = 0; e < part.elements(); ++e)
    run.energy += table[5 * e + 1] * table[5 * e + 4];  // density times area
  return run;
}

/// Diagonal of the part's box (mm).
inline double sizeOf(const host_kit::HostPart& part) {
  double least[3], most[3];
  for (std::size_t i = 0; i < 3; ++i) least[i] = most[i] = part.knots[i];
  for (std::size_t n = 0; n < part.knots.size(); ++n) {
    least[n % 3] = std::min(least[n % 3], part.knots[n]);
    most[n % 3] = std::max(most[n % 3], part.knots[n]);
  }
  return std::hypot(most[0] - least[0], most[1] - least[1], most[2] - least[2]);
}

/// Largest distance of two blanks after a rigid fit (mm); seen from the other side a blank is its mirror image, and the
/// fit may choose.
inline double distance(const std::vector<double>& found, const std::vector<double>& wanted) {
  std::vector<double> mirrored = found;
  for (std::size_t i = 0; i < mirrored.size(); i += 2) mirrored[i] = -mirrored[i];
  return std::min(largestError(found, wanted), largestError(mirrored, wanted));
}

}  // namespace verification
