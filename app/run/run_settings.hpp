// What a run of the library is made with beside the part: material, anisotropy, reference of the energy,
// tolerances.
#ifndef TORNWALZEN_APP_RUN_SETTINGS_HPP
#define TORNWALZEN_APP_RUN_SETTINGS_HPP

#include <string>
#include <vector>

#include "tornwalzen_analysis.h"

namespace host {

struct FlowCurve {
  std::vector<double> strain;  // plastic strain, dimensionless; empty: the built-in curve of the material
  std::vector<double> stress;  // MPa
  std::string source;          // as the user gave it; empty: built in
};

struct RunSettings {
  int material = 1;  // 0, 1, 2 or 10; a curve of the user stands in for that of the number
  FlowCurve curve;
  double r = 1.0;             // mean normal anisotropy
  bool partReference = true;  // energy weighed with the target's area instead of the blank's
  double finalFactor = 1e-3, pathFactor = 1.0;  // of the gradient tolerance, at the end and before
  bool mayRepeat = true;  // repeat a run that does not converge with a smaller pathFactor
};

// Sets what was chosen. Throws Failure with the library's own words where it refuses.
void applySettings(const RunSettings& settings, TornwalzenAnalysis* analysis);

// Throws Failure as applySettings would; nothing else happens.
void checkSettings(const RunSettings& settings);

}  // namespace host

#endif
