// The objective of the unfolding and its gradient; the equations stand in the header.
#include "develop/unfold_geometry.hpp"

#include <algorithm>
#include <cmath>

namespace tornwalzen {

namespace {

constexpr double spreadRatio = 0.5;       // area ratio from which on a triangle costs nothing
constexpr double inversionWeight = 10.0;  // weight of a triangle turned over against one that shrinks

struct PlaneTriangle {
  double x1, y1, x2, y2, x3, y3;  // corners (mm)
};

struct AreaMeasure {
  double area;       // A (mm²)
  double shortfall;  // max(0, ½ − r)
  double inversion;  // max(0, −r)
  double q;
};

PlaneTriangle planeTriangle(Int e, const DriverArrays& a) {
  const Int i = a.INTA(e, 1), j = a.INTA(e, 2), k = a.INTA(e, 3);
  return {a.RX(2 * i - 1), a.RX(2 * i), a.RX(2 * j - 1), a.RX(2 * j), a.RX(2 * k - 1), a.RX(2 * k)};
}

AreaMeasure areaMeasure(const PlaneTriangle& t, double spatialArea) {
  AreaMeasure m;
  m.area = 0.5 * (t.x1 * (t.y2 - t.y3) + t.x2 * (t.y3 - t.y1) + t.x3 * (t.y1 - t.y2));
  const double r = m.area / spatialArea;
  // The order of the operands matters: std::max hands on its first one where the comparison fails for a NaN.
  m.shortfall = std::max(spreadRatio - r, 0.0);
  m.inversion = std::max(-r, 0.0);
  const double b = 2.0 * m.shortfall;
  m.q = b * b + inversionWeight * (m.inversion * m.inversion);
  return m;
}

void raiseWorst(Analysis& run, double q) {
  if (q > run.qmax || std::isnan(q)) run.qmax = q;
}

double fourthPower(double q) {
  return (q * q) * (q * q);
}

}  // namespace

void unfoldElementMeasure(Analysis& run, Int e, const DriverArrays& a, double& PENALTY, double& AREA) {
  const AreaMeasure m = areaMeasure(planeTriangle(e, a), a.ELG(e, 5));
  PENALTY = fourthPower(m.q);
  AREA = m.area;
  raiseWorst(run, m.q);
}

void unfoldObjective(Analysis& run, const DriverArrays& a, const VisitedElements& visited, Int& degenerate,
                     double& E) {
  E = 0.0;
  degenerate = 0;
  run.qmax = 0.0;
  for (Int s = 1; s <= visited.count(); ++s) {
    const Int e = visited(s);
    double penalty, area;
    unfoldElementMeasure(run, e, a, penalty, area);
    if (area <= 0.0) ++degenerate;
    a.ELG(e, 4) = penalty;
    E += penalty;
  }
}

void unfoldElementGradient(Analysis& run, Int e, const DriverArrays& a, double& PENALTY, double& AREA,
                           double (&GRADIENT)[6]) {
  const PlaneTriangle t = planeTriangle(e, a);
  const double spatialArea = a.ELG(e, 5);
  const AreaMeasure m = areaMeasure(t, spatialArea);
  PENALTY = fourthPower(m.q);
  AREA = m.area;
  raiseWorst(run, m.q);
  std::fill(GRADIENT, GRADIENT + 6, 0.0);
  if (m.q == 0.0) return;

  // q = 4·shortfall² + 10·inversion², and both fall at the rate 1 with r.
  const double dqdr = -8.0 * m.shortfall - 2.0 * inversionWeight * m.inversion;
  const double factor = 4.0 * (m.q * m.q * m.q) * dqdr;
  const double dA[6] = {0.5 * (t.y2 - t.y3), 0.5 * (t.x3 - t.x2), 0.5 * (t.y3 - t.y1),
                        0.5 * (t.x1 - t.x3), 0.5 * (t.y1 - t.y2), 0.5 * (t.x2 - t.x1)};
  for (int u = 0; u < 6; ++u) GRADIENT[u] = factor * (dA[u] / spatialArea);
}

void unfoldForces(Analysis& run, const DriverArrays& a, const VisitedElements& visited) {
  for (Int i = 1; i <= run.neq; ++i) a.RR(i) = 0.0;
  for (Int s = 1; s <= visited.count(); ++s) {
    const Int e = visited(s);
    double penalty, area, g[6];
    unfoldElementGradient(run, e, a, penalty, area, g);
    if (penalty == 0.0) continue;
    for (int corner = 1; corner <= 3; ++corner) {
      const Int n = a.INTA(e, corner);
      a.RR(2 * n - 1) -= g[2 * corner - 2];
      a.RR(2 * n) -= g[2 * corner - 1];
    }
  }
  run.maxgrad = 0.0;
  for (Int i = 1; i <= run.neq; ++i)
    if (a.ARFA(i) == 1) run.maxgrad = std::max(run.maxgrad, std::fabs(a.RR(i)));
}

}  // namespace tornwalzen
