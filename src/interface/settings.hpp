// What a host may set, on any analysis; both C interfaces end here.
#pragma once

#include "ground/analysis.hpp"

namespace tornwalzen {

/// Each returns 0 or a code of tornwalzen_ext.h with index and value kept as the analysis' refusal; then nothing was
/// changed. All refuse while the analysis runs.
Int setFlowCurve(Analysis& run, Int selector, Int n, const double* strain, const double* stress);
Int setNormalAnisotropy(Analysis& run, double r);
Int setEnergyReference(Analysis& run, Int reference);
Int setToleranceFactors(Analysis& run, double finalFactor, double pathFactor);
Int setPath(Analysis& run, Int path);
Int setThreads(Analysis& run, Int threads);
Int setStart(Analysis& run, Int start);

/// 0, or TORNWALZEN_BUSY while the analysis runs.
Int refuseWhileRunning(Analysis& run);

}  // namespace tornwalzen
