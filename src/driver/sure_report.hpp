// What the sure path tells: lines on the message channel, fractions and information lines on the progress channel.
#pragma once

#include "ground/analysis.hpp"

namespace tornwalzen {

/// Opens the progress scale 0..1 and reports its beginning.
void openSureProgress(Analysis& run);

/// The start: seen along the mean normal, or along that of a flat patch; triangles whose rotation
/// came over hinges; triangles turned over; smallest singular value (dimensionless).
void reportSureStart(Analysis& run, bool flatPatch, Int hinged, Int inverted, double smallest);

/// One Newton iteration: how the tangent was softened (0 exact, 1 in full), way and length of the step, gradient
/// (mm), smallest singular value, energy (mm²).
void reportSureIteration(Analysis& run, Int iteration, double theta, bool curved, double length,
                         double gradient, double smallest, double energy);
/// Tells the host's monitor where the iteration stands. False: the host asks for the end.
bool reportSureStep(Analysis& run, Int iteration, double gradient);
void reportSureChord(Analysis& run, double gradient, double smallest, double energy);
void reportSureThreshold(Analysis& run, double s0);

/// The energy over the blank takes the place of that over the part.
void reportSureReference(Analysis& run);

/// The end of the path: the fraction 1 where it converged, then two time texts as at the end of the fixed path.
void reportSureEnd(Analysis& run, bool converged, Int factorizations, Int solves, double gradient,
                   double smallest);

/// Why a surface cannot be a sheet: code of tornwalzen_ext.h with index and value, as part_topology.hpp has them; kept
/// for the report.
void reportSureTopology(Analysis& run, Int code, Int index, double value);

/// A sentence why the path gives up; kept for the report. value: in, put behind the text where it is finite.
void reportSureRefusal(Analysis& run, const char* text, double value);

}  // namespace tornwalzen
