// From the mesh to batches of eight triangles.
#pragma once

#include "element/lanes/element_lanes.hpp"
#include "ground/driver_arrays.hpp"

namespace tornwalzen {

/// Can the run's elements be taken by eights? So it is for the plastic-work density.
inline bool lanesServe() {
  return run.istat != 0;
}

/// Fills the input of `batch` with the elements e .. e + 7. INTA, RX, KNZ: in, as elementRoutine takes them.
/// Returns false if one of them has no blank area: then they must go one by one.
bool takeEight(Int e, Table<const Int> INTA, Vector<const double> RX, Table<const double> KNZ,
               LaneBatch& batch);

}  // namespace tornwalzen
