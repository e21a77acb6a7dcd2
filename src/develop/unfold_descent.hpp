// The steepest descent that opens the projection of the part.
#pragma once

#include "develop/visited_elements.hpp"
#include "ground/analysis.hpp"
#include "ground/driver_arrays.hpp"

namespace tornwalzen {

/// True if the descent may end: the worst measure is not above 0.8, no element is degenerate and at least
/// twenty iterations are done. A measure that is not a number is not above 0.8. qmax: in (dimensionless);
/// degenerate: in, ≥ 0; iteration: in, from 1.
bool unfoldConverged(double qmax, Int degenerate, Int iteration);

/// Moves a.RX from the projection to an opened blank; a.INTA, a.ARFA, a.ELG column 5: in; a.ELG column 4:
/// out; a.RR, a.RB: scratch. visited: scratch, handed in as all elements. Run state: qmax, maxgrad. No
/// convergence in 5000 iterations: `ierrel` = -1 and a line to the progress channel.
void unfoldDescent(Analysis& run, const DriverArrays& a, VisitedElements& visited);

}  // namespace tornwalzen
