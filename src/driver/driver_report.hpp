// What driver and line search tell: lines on the message channel, fractions and information lines on the
// progress channel.
#pragma once

#include "driver/load_path.hpp"
#include "ground/analysis.hpp"

namespace tornwalzen {

/// Opens the progress scale 0..1.
void openProgress(Analysis& run, const LoadPath& path);

/// Start of an increment: heading lines, fraction, information line, processor time.
void reportIncrement(Analysis& run, const LoadPath& path);

/// One Newton iteration: maxgrad and lsfak of the run state and EN (mm²).
void reportIteration(Analysis& run, double EN);

void reportRepeat(Analysis& run);
void reportMinimumStep(Analysis& run);
void reportDegenerateFullStep(Analysis& run);
void reportDegenerateHalving(Analysis& run);

}  // namespace tornwalzen
