// Material set-up: loads one of the built-in flow curves, or what the host put in its place, and prepares its
// interpolation.
#pragma once

#include "ground/analysis.hpp"

namespace tornwalzen {

/// Fills the flow-curve table FC and `npkt` of the state for the curve that ICTRL selects.
/// ICTRL: in; 0, 1, 2 or 10; any other value changes nothing (an empty curve after load has npkt = 0).
/// FC, 50 × 7: column 1 plastic strain (dimensionless, increasing), column 2 flow stress over the curve's
/// smallest stress (dimensionless), column 3 secant slopes, columns 4 to 7 the coefficients A, B, C, D of
/// σ(ε) = A·ε³ + B·ε² + C·ε + D on the segment that starts at the row's strain. Cannot fail.
void materialSetup(Analysis& run, Int ICTRL);

/// materialSetup, and the run status that goes with the selector: `istat` = 1 for 0, 1 and 2, else 0.
void selectMaterial(Analysis& run, Int ICTRL);

/// The same into any table. options: in, the host's curves. npkt: out, rows in use; smin: out, the smallest stress (MPa), by which column 2 is
/// divided. Returns false, with nothing written, for a selector without a curve.
bool loadFlowCurve(const RunOptions& options, Int selector, Table<double> FC, Int& npkt, double& smin);

/// Columns 1 and 2 from the host's points (MPa, not normalised), with the far point along the last slope.
/// curve.points: in, 3..49. npkt: out, one more.
void copyHostCurve(const HostCurve& curve, Table<double> FC, Int& npkt);

/// Columns 3 to 7 from columns 1 and 2: a C¹ piecewise cubic. Inner points get the mean of the adjacent secant
/// slopes; the first segment is a quadratic, all others cubic Hermite pieces (C. de Boor, A Practical Guide to
/// Splines, ch. IV). npkt: in, rows in use, 2..50.
void prepareFlowCurve(Table<double> FC, Int npkt);

}  // namespace tornwalzen
