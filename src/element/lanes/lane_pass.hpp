// From the mesh to batches of eight triangles.
#pragma once

#include "element/lanes/element_lanes.hpp"
#include "ground/analysis.hpp"

namespace tornwalzen {

/// Can the run's elements be taken by eights? So it is for the plastic-work density.
inline bool lanesServe(const Analysis& run) {
  return run.istat != 0;
}

/// The lanes that the analysis uses.
const ElementLanes& lanesOf(const Analysis& run);

/// Fills the input of `batch` with the elements e .. e + 7. INTA, RX, KNZ: in, as elementRoutine takes them.
/// Returns false if one of them has no blank area: then they must go one by one.
bool takeEight(const Analysis& run, Int e, Table<const Int> INTA, Vector<const double> RX,
               Table<const double> KNZ, LaneBatch& batch);

/// The elements e .. e + n - 1 up to `order` into the output of `batch`, n <= 8, by lanes where they serve. Nothing of the
/// analysis is changed. Returns how many of them, from the first one on, are not degenerate.
Int evaluateUpToEight(const Analysis& run, Order order, Int e, Int n, Table<const Int> INTA,
                      Vector<const double> RX, Table<const double> KNZ, const FlowCurve& CURVE,
                      LaneBatch& batch);

}  // namespace tornwalzen
