// One run by the path that the host chose, and what its result is worth.
#pragma once

#include "ground/analysis.hpp"
#include "ground/driver_arrays.hpp"

namespace tornwalzen {

/// Can the mesh have a blank? Asked before the sure path, which needs a disc with holes.
/// INTA, KNG: in. Returns 0, or a code of tornwalzen_ext.h with place and value kept as the refusal, or
/// TORNWALZEN_NO_MEMORY.
Int refuseTopology(Analysis& run, Table<const Int> INTA, Table<const double> KNG);

/// press: in, what of the press lies on the mesh. a: all seventeen arrays, in and out as tornwalzen.h states. EVAL: out, 5 per element. Record: how the run ended, and
/// the figures of the blank that checkResult finds. Failure: as the path's own header says.
void runAnalysis(Analysis& run, const DriverArrays& a, Vector<double> EVAL, const PressArrays& press = {});

}  // namespace tornwalzen
