// The increment-controlled Newton iteration. In every increment the target geometry
//   KNZ = λ·KNG + (1 − λ)·KNA  in the plane,   KNZ = λ·KNG  in height
// is fixed, and the blank positions RX are brought into equilibrium with it.
#include "driver/inverse_driver.hpp"

#include "develop/unfold.hpp"
#include "driver/driver_report.hpp"
#include "driver/load_path.hpp"
#include "driver/newton_step.hpp"
#include "element/assembly.hpp"
#include "ground/progress.hpp"
#include "sparse/factor_statistics.hpp"

namespace tornwalzen {

namespace {

constexpr double minimumStep = 0.0051;       // an increment this short is accepted even unconverged
constexpr double lineSearchCollapse = 1e-8;  // an accepted fraction below it ends the increment

enum class Outcome { converged, repeat, acceptedUnconverged, endedUnconverged, stopped };

void saveUnknowns(Analysis& run, const DriverArrays& a) {
  for (Int i = 1; i <= run.neq; ++i) a.RXA(i) = a.RX(i);
}

void restoreUnknowns(Analysis& run, const DriverArrays& a) {
  for (Int i = 1; i <= run.neq; ++i) a.RX(i) = a.RXA(i);
}

void setTarget(Analysis& run, double lambda, const DriverArrays& a) {
  for (Int i = 1; i <= run.nkno; ++i) {
    a.KNZ(i, 1) = a.KNG(i, 1) * lambda + a.KNA(i, 1) * (1.0 - lambda);
    a.KNZ(i, 2) = a.KNG(i, 2) * lambda + a.KNA(i, 2) * (1.0 - lambda);
    a.KNZ(i, 3) = a.KNG(i, 3) * lambda;
  }
}

void copyResults(Analysis& run, Table<const double> ELG, Vector<double> EVAL) {
  for (Int e = 1; e <= run.nele; ++e)
    for (Int column = 1; column <= 5; ++column) EVAL(5 * (e - 1) + column) = ELG(e, column);
}

/// What becomes of an increment whose iteration stalled: repeated with a smaller step, or at the smallest
/// step accepted as it is, unless it is the last one.
Outcome stalled(const LoadPath& path) {
  if (path.dlam > minimumStep) return Outcome::repeat;
  return path.lambda == lambdaEnd ? Outcome::endedUnconverged : Outcome::acceptedUnconverged;
}

void acceptIncrement(Analysis& run, const LoadPath& path) {
  run.record.increments += 1;
  run.record.progress = path.lambda;
}

/// Newton iterations of one increment; counts them in path.m.
Outcome iterate(Analysis& run, LoadPath& path, double tol, const DriverArrays& a) {
  double EN;
  energySum(run, EN, a);
  run.lsfak = 1.0;
  for (;;) {
    path.m += 1;
    if (path.m > newtonLimit || run.lsfak < lineSearchCollapse) return stalled(path);
    newtonStep(run, EN, a);
    run.record.newtonSteps += 1;
    if (failed(run.ierrel)) return Outcome::repeat;
    reportIteration(run, EN);
    const double limit = gradientLimit(tol, path.lambda) * toleranceFactor(run, path.lambda);
    run.record.lastGradient = run.maxgrad;
    run.record.gradientLimit = limit;
    if (!hostContinues(run.progress,
                       {RunPhase::increments, path.lambda - path.dlam, path.k, path.m, run.maxgrad}))
      return Outcome::stopped;
    // Written so that a residual that is not a number never counts as converged.
    if (path.m >= newtonLeast && run.maxgrad <= limit) return Outcome::converged;
  }
}

/// Increments until the part is reached or the path is given up; returns how it ended.
RunEnd followPath(Analysis& run, const DriverArrays& a, Vector<double> EVAL) {
  const double tol = gradientTolerance(run.istat);
  LoadPath path;
  openProgress(run, path);

  for (;;) {
    saveUnknowns(run, a);
    bool exhausted;
    path.adjustStep(exhausted);
    if (exhausted) {
      reportMinimumStep(run);
      run.ierrel = errorSet;
      return RunEnd::stepTooSmall;
    }
    path.advance();
    reportIncrement(run, path);
    if (!hostContinues(run.progress, {RunPhase::increments, path.lambda - path.dlam, path.k, 0}))
      return RunEnd::stoppedByHost;
    setTarget(run, path.lambda, a);
    switch (iterate(run, path, tol, a)) {
      case Outcome::converged:
        copyResults(run, a.ELG, EVAL);
        acceptIncrement(run, path);
        if (path.atEnd()) {
          reportProcessorTime(run.progress);
          return RunEnd::converged;
        }
        break;
      case Outcome::acceptedUnconverged:
        acceptIncrement(run, path);
        run.record.acceptedUnconverged += 1;
        path.m = newtonLimit + 1;  // the step rule then shrinks to the floor
        break;
      case Outcome::endedUnconverged:
        return RunEnd::finalUnconverged;
      case Outcome::stopped:
        return RunEnd::stoppedByHost;
      case Outcome::repeat:
        restoreUnknowns(run, a);
        run.ierrel = 0;
        path.stepBack();
        reportRepeat(run);
        run.record.repeats += 1;
        break;
    }
  }
}

}  // namespace

void inverseDriver(Analysis& run, const DriverArrays& a, Vector<double> EVAL) {
  run.record.end = RunEnd::running;
  const bool leftover = failed(run.ierrel);
  {
    const ProcessorTime time(run.record.development);
    unfoldBlank(run, a);
  }
  if (run.progress.stopAsked) {
    run.record.end = RunEnd::stoppedByHost;
    return;
  }
  if (failed(run.ierrel)) {
    run.record.end = leftover ? RunEnd::leftoverError : RunEnd::notDeveloped;
    return;
  }
  run.record.end = followPath(run, a, EVAL);
  recordFactor(run.record, run.solver.protocol, a.WORK, a.RWORK);
}

}  // namespace tornwalzen
