// Blank development: projection, shape check, orientation, descent.
#include "develop/unfold.hpp"

#include "develop/part_shape.hpp"
#include "develop/unfold_descent.hpp"
#include "develop/unfold_report.hpp"
#include "ground/progress.hpp"
#include "ground/run_state.hpp"

namespace tornwalzen {

namespace {

void projectOntoPlane(const DriverArrays& a) {
  for (Int n = 1; n <= run.nkno; ++n) {
    a.RX(2 * n - 1) = a.KNG(n, 1);
    a.RX(2 * n) = a.KNG(n, 2);
  }
}

void keepBlank(const DriverArrays& a) {
  for (Int n = 1; n <= run.nkno; ++n) {
    a.KNA(n, 1) = a.RX(2 * n - 1);
    a.KNA(n, 2) = a.RX(2 * n);
  }
}

}  // namespace

void unfoldBlank(const DriverArrays& a) {
  inipgr(&targetMeasure);
  projectOntoPlane(a);
  Int sharp;
  measureAngles(a, sharp);
  reportSharpElements(sharp);
  measureAreas(a);
  orientCounterClockwise(a);
  VisitedElements visited(run.nele);
  unfoldDescent(a, visited);
  keepBlank(a);
}

}  // namespace tornwalzen
