// What driver and line search tell: lines on the message channel, fractions and information lines on the
// progress channel.
#pragma once

#include "driver/load_path.hpp"

namespace tornwalzen {

/// Opens the progress scale 0..1.
void openProgress(const LoadPath& path);

/// Start of an increment: heading lines, fraction, information line, processor time.
void reportIncrement(const LoadPath& path);

/// One Newton iteration: maxgrad and lsfak of the run state and EN (mm²).
void reportIteration(double EN);

void reportRepeat();
void reportMinimumStep();
void reportDegenerateFullStep();
void reportDegenerateHalving();

}  // namespace tornwalzen
