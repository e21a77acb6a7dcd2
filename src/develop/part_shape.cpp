// Corner angles, areas and orientation of the formed part.
#include "develop/part_shape.hpp"

#include <algorithm>
#include <cmath>
#include <utility>

#include "develop/unfold_geometry.hpp"
#include "ground/triangle.hpp"

namespace tornwalzen {

namespace {

constexpr double degreesPerRadian = 57.295780181884766;  // 57.29578, held in single precision and widened
constexpr double sharpAngle = 10.0;                      // degrees

struct Spatial {
  double x, y, z;
};

Spatial operator-(const Spatial& p, const Spatial& q) {
  return {p.x - q.x, p.y - q.y, p.z - q.z};
}
double dot(const Spatial& p, const Spatial& q) {
  return p.x * q.x + p.y * q.y + p.z * q.z;
}
double length(const Spatial& p) {
  return std::sqrt(dot(p, p));
}
Spatial unit(const Spatial& p) {
  const double l = length(p);
  return {p.x / l, p.y / l, p.z / l};
}
Spatial partPoint(const DriverArrays& a, Int e, Int corner) {
  const Int n = a.INTA(e, corner);
  return {a.KNG(n, 1), a.KNG(n, 2), a.KNG(n, 3)};
}

/// Angle at p between the edges to q and s (radians).
double cornerAngle(const Spatial& p, const Spatial& q, const Spatial& s) {
  return std::acos(dot(unit(p - q), unit(p - s)));
}

}  // namespace

void measureAngles(Analysis& run, const DriverArrays& a, Int& sharp) {
  constexpr Int64 leastMeasured = 1024;  // triangles of a range
  inRanges(run.pool.get(), run.nele, leastMeasured, [&](Int64 first, Int64 last) {
    for (Int64 k = first; k <= last; ++k) {
      const Int e = static_cast<Int>(k);
      const Spatial pi = partPoint(a, e, 1), pj = partPoint(a, e, 2), pk = partPoint(a, e, 3);
      const double smallest =
          std::min({cornerAngle(pi, pj, pk), cornerAngle(pj, pk, pi), cornerAngle(pk, pi, pj)});
      a.ELG(e, 3) = smallest * degreesPerRadian;
    }
  });
  sharp = 0;
  for (Int e = 1; e <= run.nele; ++e)
    if (a.ELG(e, 3) < sharpAngle) ++sharp;
}

void measureAreas(Analysis& run, const DriverArrays& a) {
  run.atot = 0.0;
  for (Int e = 1; e <= run.nele; ++e) {
    const Spatial pi = partPoint(a, e, 1), P = partPoint(a, e, 2) - pi, Q = partPoint(a, e, 3) - pi;
    a.ELG(e, 5) = 0.5 * twiceArea({P.x, P.y, P.z}, {Q.x, Q.y, Q.z});
    run.atot += a.ELG(e, 5);
  }
}

void orientCounterClockwise(Analysis& run, const DriverArrays& a) {
  double signedSum = 0.0;
  for (Int e = 1; e <= run.nele; ++e) {
    double penalty, area;
    unfoldElementMeasure(run, e, a, penalty, area);
    signedSum += area;
  }
  if (!(signedSum < 0.0)) return;
  for (Int e = 1; e <= run.nele; ++e) std::swap(a.INTA(e, 2), a.INTA(e, 3));
}

}  // namespace tornwalzen
