// Checks of what a host sets.
#include "interface/settings.hpp"

#include <cmath>
#include <utility>

#include "material/curve_check.hpp"
#include "tornwalzen_ext.h"

namespace tornwalzen {

namespace {

bool usableFactor(double factor) {
  return factor > 0.0 && factor <= 1.0;
}

}  // namespace

Int refuseWhileRunning(Analysis& run) {
  return run.running ? refuse(run.refusal, TORNWALZEN_BUSY, 0, 0.0) : TORNWALZEN_OK;
}

Int setFlowCurve(Analysis& run, Int selector, Int n, const double* strain, const double* stress) {
  if (const Int busy = refuseWhileRunning(run)) return busy;
  if (selector < 0 || selector >= curveSelectors)
    return refuse(run.refusal, TORNWALZEN_BAD_SELECTOR, 0, selector);
  if (n == 0) {
    run.options.curves[selector] = HostCurve{};
    return TORNWALZEN_OK;
  }
  if (n < leastCurvePoints || n > mostCurvePoints)
    return refuse(run.refusal, TORNWALZEN_BAD_POINT_COUNT, 0, n);
  if (strain == nullptr) return refuse(run.refusal, TORNWALZEN_NULL_POINTER, 3, 0.0);
  if (stress == nullptr) return refuse(run.refusal, TORNWALZEN_NULL_POINTER, 4, 0.0);
  const Int code = checkHostCurve(run.refusal, n, strain, stress);
  if (code == TORNWALZEN_OK) run.options.curves[selector] = hostCurve(n, strain, stress);
  return code;
}

Int setNormalAnisotropy(Analysis& run, double r) {
  if (const Int busy = refuseWhileRunning(run)) return busy;
  if (!(r > 0.0) || !std::isfinite(r)) return refuse(run.refusal, TORNWALZEN_BAD_ANISOTROPY, 0, r);
  run.options.anisotropy = r;
  return TORNWALZEN_OK;
}

Int setEnergyReference(Analysis& run, Int reference) {
  if (const Int busy = refuseWhileRunning(run)) return busy;
  if (reference != 0 && reference != 1) return refuse(run.refusal, TORNWALZEN_BAD_REFERENCE, 0, reference);
  run.options.partReference = reference == 1;
  return TORNWALZEN_OK;
}

Int setToleranceFactors(Analysis& run, double finalFactor, double pathFactor) {
  if (const Int busy = refuseWhileRunning(run)) return busy;
  if (!usableFactor(finalFactor)) return refuse(run.refusal, TORNWALZEN_BAD_TOLERANCE, 1, finalFactor);
  if (!usableFactor(pathFactor)) return refuse(run.refusal, TORNWALZEN_BAD_TOLERANCE, 2, pathFactor);
  run.options.finalTolerance = finalFactor;
  run.options.pathTolerance = pathFactor;
  return TORNWALZEN_OK;
}

Int setPath(Analysis& run, Int path) {
  if (const Int busy = refuseWhileRunning(run)) return busy;
  if (path != 0 && path != 1) return refuse(run.refusal, TORNWALZEN_BAD_PATH, 0, path);
  run.options.surePath = path == 1;
  return TORNWALZEN_OK;
}

Int setThreads(Analysis& run, Int threads) {
  if (const Int busy = refuseWhileRunning(run)) return busy;
  if (threads < 1 || threads > mostThreads) return refuse(run.refusal, TORNWALZEN_BAD_THREADS, 0, threads);
  if (threads == threadsOf(run)) return TORNWALZEN_OK;
  std::unique_ptr<ThreadPool> pool;
  if (threads > 1) pool = ThreadPool::start(threads);
  if (threads > 1 && !pool) return refuse(run.refusal, TORNWALZEN_NO_THREAD, 0, threads);
  run.pool = std::move(pool);
  return TORNWALZEN_OK;
}

Int setStart(Analysis& run, Int start) {
  if (const Int busy = refuseWhileRunning(run)) return busy;
  if (start != 0 && start != 1) return refuse(run.refusal, TORNWALZEN_BAD_START, 0, start);
  run.options.patchStart = start == 1;
  return TORNWALZEN_OK;
}

}  // namespace tornwalzen
