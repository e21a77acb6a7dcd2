// The increment-controlled Newton iteration. In every increment the target geometry
//   KNZ = λ·KNG + (1 − λ)·KNA  in the plane,   KNZ = λ·KNG  in height
// is fixed, and the blank positions RX are brought into equilibrium with it.
#include "driver/inverse_driver.hpp"

#include "develop/unfold.hpp"
#include "driver/driver_report.hpp"
#include "element/element_strains.hpp"
#include "driver/load_path.hpp"
#include "driver/newton_step.hpp"
#include "ground/progress.hpp"
#include "ground/run_record.hpp"
#include "ground/run_state.hpp"
#include "sparse/factor_record.hpp"

namespace tornwalzen {

namespace {

constexpr double minimumStep = 0.0051;       // an increment this short is accepted even unconverged
constexpr double lineSearchCollapse = 1e-8;  // an accepted fraction below it ends the increment

enum class Outcome { converged, repeat, acceptedUnconverged, endedUnconverged };

void saveUnknowns(const DriverArrays& a) {
  for (Int i = 1; i <= run.neq; ++i) a.RXA(i) = a.RX(i);
}

void restoreUnknowns(const DriverArrays& a) {
  for (Int i = 1; i <= run.neq; ++i) a.RX(i) = a.RXA(i);
}

void setTarget(double lambda, const DriverArrays& a) {
  for (Int i = 1; i <= run.nkno; ++i) {
    a.KNZ(i, 1) = a.KNG(i, 1) * lambda + a.KNA(i, 1) * (1.0 - lambda);
    a.KNZ(i, 2) = a.KNG(i, 2) * lambda + a.KNA(i, 2) * (1.0 - lambda);
    a.KNZ(i, 3) = a.KNG(i, 3) * lambda;
  }
}

void copyResults(Table<const double> ELG, Vector<double> EVAL) {
  for (Int e = 1; e <= run.nele; ++e)
    for (Int column = 1; column <= 5; ++column) EVAL(5 * (e - 1) + column) = ELG(e, column);
}

/// What becomes of an increment whose iteration stalled: repeated with a smaller step, or at the smallest
/// step accepted as it is, unless it is the last one.
Outcome stalled(const LoadPath& path) {
  if (path.dlam > minimumStep) return Outcome::repeat;
  return path.lambda == lambdaEnd ? Outcome::endedUnconverged : Outcome::acceptedUnconverged;
}

void acceptIncrement(const LoadPath& path) {
  record.increments += 1;
  record.progress = path.lambda;
}

/// Newton iterations of one increment; counts them in path.m.
Outcome iterate(LoadPath& path, double tol, const DriverArrays& a, Table<const double> FC) {
  double EN;
  energySum(EN, a, FC);
  run.lsfak = 1.0;
  for (;;) {
    path.m += 1;
    if (path.m > newtonLimit || run.lsfak < lineSearchCollapse) return stalled(path);
    newtonStep(EN, a, FC);
    record.newtonSteps += 1;
    if (failed(run.ierrel)) return Outcome::repeat;
    reportIteration(EN);
    const double limit = gradientLimit(tol, path.lambda) * toleranceFactor(path.lambda);
    record.lastGradient = run.maxgrad;
    record.gradientLimit = limit;
    // Written so that a residual that is not a number never counts as converged.
    if (path.m >= newtonLeast && run.maxgrad <= limit) return Outcome::converged;
  }
}

/// Increments until the part is reached or the path is given up; returns how it ended.
RunEnd followPath(const DriverArrays& a, Vector<double> EVAL, Table<const double> FC) {
  const double tol = gradientTolerance(run.istat);
  LoadPath path;
  openProgress(path);

  for (;;) {
    saveUnknowns(a);
    bool exhausted;
    path.adjustStep(exhausted);
    if (exhausted) {
      reportMinimumStep();
      run.ierrel = errorSet;
      return RunEnd::stepTooSmall;
    }
    path.advance();
    reportIncrement(path);
    setTarget(path.lambda, a);
    switch (iterate(path, tol, a, FC)) {
      case Outcome::converged:
        copyResults(a.ELG, EVAL);
        acceptIncrement(path);
        if (path.atEnd()) {
          procpu();
          return RunEnd::converged;
        }
        break;
      case Outcome::acceptedUnconverged:
        acceptIncrement(path);
        record.acceptedUnconverged += 1;
        path.m = newtonLimit + 1;  // the step rule then shrinks to the floor
        break;
      case Outcome::endedUnconverged:
        return RunEnd::finalUnconverged;
      case Outcome::repeat:
        restoreUnknowns(a);
        run.ierrel = 0;
        path.stepBack();
        reportRepeat();
        record.repeats += 1;
        break;
    }
  }
}

}  // namespace

void inverseDriver(const DriverArrays& a, Vector<double> EVAL) {
  const Table<const double> FC = flowCurve();
  record.end = RunEnd::running;
  const bool leftover = failed(run.ierrel);
  {
    const ProcessorTime time(record.development);
    unfoldBlank(a);
  }
  if (failed(run.ierrel)) {
    record.end = leftover ? RunEnd::leftoverError : RunEnd::notDeveloped;
    return;
  }
  record.end = followPath(a, EVAL, FC);
  recordFactor(a.WORK, a.RWORK);
  recordLargestStrain(a, FC);
}

}  // namespace tornwalzen
