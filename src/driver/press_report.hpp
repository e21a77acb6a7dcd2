// What the press path tells on the message channel.
#pragma once

#include "ground/analysis.hpp"

namespace tornwalzen {

/// One member of the family of works, by its exponent: did it come to equilibrium? Gradient (mm), smallest singular value.
void reportPressWork(Analysis& run, double exponent, bool held, double gradient, double smallest);
/// The member at which a family that stalled has ended, or 1.
void reportPressExponent(Analysis& run, double exponent);
/// One round of standing loads.
void reportPressRound(Analysis& run, Int round, double gradient, double smallest);
/// All loads at once on the work itself: did they come to equilibrium?
void reportPressLoads(Analysis& run, bool held, double gradient);
/// What the record says at the end.
void reportPressEnd(Analysis& run);

}  // namespace tornwalzen
