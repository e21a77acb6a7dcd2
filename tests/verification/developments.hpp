// Sheets whose blank is known exactly, and the run as the host program makes it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "blank_error.hpp"
#include "host_kit/parts.hpp"
#include "tornwalzen_ext.h"

namespace verification {

struct Development {
  const char* name;
  const char* shape;  // of the samples
  std::vector<shapes::Change> changes;
};

inline const std::vector<Development>& developments() {
  static const std::vector<Development> all{{"L-bend, wall 80 mm", "l_bend", {{"wall", 80.0}}},
                                            {"L-bend, wall 150 mm", "l_bend", {{"wall", 150.0}}},
                                            {"half pipe, 75 degrees", "half_pipe", {{"half_angle", 75.0}}},
                                            {"half pipe, 90 degrees", "half_pipe", {{"half_angle", 90.0}}},
                                            {"cone", "cone_sector", {}},
                                            {"hat", "hat", {}}};
  return all;
}

struct Tolerance {
  double final, path;
};

struct Developed {
  double error;             // mm, largest, after a rigid fit
  TornwalzenReport report;  // of the last run
  int runs;
};

/// One run. part: with its exact blank.
inline Developed develop(const shapes::Sheet& sheet, int curve, bool partReference, Tolerance tolerance) {
  tornwalzen_reset();
  tornwalzen_set_energy_reference(partReference ? 1 : 0);
  tornwalzen_set_tolerance_factors(tolerance.final, tolerance.path);
  const host_kit::WholeRun run(host_kit::fromSheet(sheet), curve);
  Developed result{largestError(run.RX, sheet.blank), {}, 1};
  result.report.size = sizeof result.report;
  tornwalzen_get_report(&result.report);
  tornwalzen_reset();
  return result;
}

/// The defaults of the host program: tight at the end, over the part, and where that does not converge,
/// tighter on the way.
inline Developed developAsTheHost(const shapes::Sheet& sheet, int curve) {
  Developed result = develop(sheet, curve, true, {0.001, 1.0});
  int runs = 1;
  for (const double path : {0.1, 0.01}) {
    if (result.report.converged) break;
    result = develop(sheet, curve, true, {0.001, path});
    result.runs = ++runs;
  }
  return result;
}

}  // namespace verification
