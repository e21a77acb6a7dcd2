// Blank development: projection, shape check, orientation, descent.
#include "develop/unfold.hpp"

#include "develop/part_shape.hpp"
#include "develop/unfold_descent.hpp"
#include "develop/unfold_report.hpp"
#include "ground/progress.hpp"

namespace tornwalzen {

namespace {

void projectOntoPlane(Analysis& run, const DriverArrays& a) {
  for (Int n = 1; n <= run.nkno; ++n) {
    a.RX(2 * n - 1) = a.KNG(n, 1);
    a.RX(2 * n) = a.KNG(n, 2);
  }
}

void keepBlank(Analysis& run, const DriverArrays& a) {
  for (Int n = 1; n <= run.nkno; ++n) {
    a.KNA(n, 1) = a.RX(2 * n - 1);
    a.KNA(n, 2) = a.RX(2 * n);
  }
}

}  // namespace

void unfoldBlank(Analysis& run, const DriverArrays& a) {
  openScale(run.progress, targetMeasure);
  if (!hostContinues(run.progress, {RunPhase::development, 0.0})) return;
  projectOntoPlane(run, a);
  Int sharp;
  measureAngles(run, a, sharp);
  reportSharpElements(run, sharp);
  measureAreas(run, a);
  orientCounterClockwise(run, a);
  VisitedElements visited(run.nele);
  unfoldDescent(run, a, visited);
  keepBlank(run, a);
}

}  // namespace tornwalzen
