// Halving line search on the largest free residual component.
#include "driver/line_search.hpp"

#include <cmath>

#include "driver/driver_report.hpp"
#include "element/assembly.hpp"

namespace tornwalzen {

namespace {

/// RX = RX + f·RB; f: in, dimensionless.
void moveForward(Analysis& run, const DriverArrays& a, double f) {
  for (Int i = 1; i <= run.neq; ++i) a.RX(i) = a.RX(i) + f * a.RB(i);
}

/// RX = RX − f·RB. moved: out, whether that changed any entry.
void moveBack(Analysis& run, const DriverArrays& a, double f, bool& moved) {
  moved = false;
  for (Int i = 1; i <= run.neq; ++i) {
    const double x = a.RX(i) - f * a.RB(i);
    moved = moved || std::fabs(x - a.RX(i)) > 0.0;
    a.RX(i) = x;
  }
}

/// Residual and maxgrad at RX. degenerate: out, whether an element has no blank area; `ierrel` tells it as
/// well.
void evaluate(Analysis& run, const DriverArrays& a, bool& degenerate) {
  run.ierrel = 0;
  run.record.lineSearchTrials += 1;
  assemble(run, residualOnly, a);
  degenerate = failed(run.ierrel);
}

}  // namespace

void lineSearch(Analysis& run, Int LSMAX, const DriverArrays& a) {
  bool errPrev, errNow, moved;
  moveForward(run, a, 1.0);
  evaluate(run, a, errPrev);
  double gPrev = run.maxgrad;
  if (errPrev) reportDegenerateFullStep(run);

  double f = 0.5;
  for (Int it = 1;; ++it) {
    moveBack(run, a, f, moved);  // from the fraction 2f of the step to f
    evaluate(run, a, errNow);
    if (errNow) reportDegenerateHalving(run);
    const bool improving = run.maxgrad < gPrev && it <= LSMAX;
    const bool escaping = (errNow || errPrev) && moved;
    if (!improving && !escaping) break;
    f *= 0.5;
    gPrev = run.maxgrad;
    errPrev = errNow;
  }

  if (run.maxgrad > gPrev) {
    moveForward(run, a, f);
    run.lsfak = 2.0 * f;
  } else {
    moveBack(run, a, f, moved);
    run.lsfak = 0.0;
  }
  evaluate(run, a, errNow);
}

}  // namespace tornwalzen
