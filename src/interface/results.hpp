// What a host may ask for after a run, on any analysis; both C interfaces end here.
#pragma once

#include "ground/analysis.hpp"
#include "material/flow_curve.hpp"
#include "tornwalzen_ext.h"

namespace tornwalzen {

/// Fills the report, as tornwalzen_get_report says. Returns 0 or a code, kept as the refusal.
Int fillReport(Analysis& run, TornwalzenReport* report);

/// The flow curve that a selector loads, in its own memory, and what its stresses are divided by.
struct LoadedCurve {
  double table[curveRows * curveColumns];
  Int npkt = 0;
  double smin = 0.0;  // MPa

  /// False, with nothing loaded, for a selector without a curve. options: in, the host's curves.
  bool load(const RunOptions& options, Int selector);
  /// With the anisotropy r, > 0. Valid as long as this object.
  FlowCurve curve(double r);
};

/// Strains of one triangle. X: in, x y z of its corners on the part (mm); U: in, u v in the blank (mm). smin: in, MPa.
TornwalzenElementStrain elementStrain(const double (&X)[9], const double (&U)[6], const FlowCurve& CURVE,
                                      double smin);

}  // namespace tornwalzen
