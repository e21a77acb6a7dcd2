// Normals and their gradients.
#include "element/part_curvature.hpp"

#include <cmath>

#include "element/part_frames.hpp"

namespace tornwalzen {

namespace {

struct Space {
  double x, y, z;
};
Space between(Table<const double> KNG, Int a, Int b) {
  return {KNG(b, 1) - KNG(a, 1), KNG(b, 2) - KNG(a, 2), KNG(b, 3) - KNG(a, 3)};
}
double dot(const Space& a, const Space& b) {
  return a.x * b.x + a.y * b.y + a.z * b.z;
}
Space cross(const Space& a, const Space& b) {
  return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
Space column(Table<const double> NORMALS, Int n) {
  return {NORMALS(1, n), NORMALS(2, n), NORMALS(3, n)};
}

}  // namespace

void nodeNormals(Table<const Int> INTA, Table<const double> KNG, Vector<const Int> PLANE,
                 Table<double> NORMALS) {
  for (Int64 n = 1; n <= NORMALS.columns(); ++n)
    for (Int i = 1; i <= 3; ++i) NORMALS(i, n) = 0.0;
  for (Int64 e = 1; e <= INTA.rows(); ++e)
    for (Int c = 0; c < 3; ++c) {
      const Int n = INTA(e, c + 1);
      const Space P = between(KNG, n, INTA(e, (c + 1) % 3 + 1)),
                  Q = between(KNG, n, INTA(e, (c + 2) % 3 + 1));
      const double weight = 1.0 / (dot(P, P) * dot(Q, Q));
      const Space normal = cross(P, Q);
      NORMALS(1, n) += weight * normal.x;
      NORMALS(2, n) += weight * normal.y;
      NORMALS(3, n) += weight * normal.z;
    }
  for (Int64 n = 1; n <= NORMALS.columns(); ++n) {
    if (PLANE(2 * n - 1) != 0) NORMALS(1, n) = 0.0;
    if (PLANE(2 * n) != 0) NORMALS(2, n) = 0.0;
    const Space normal = column(NORMALS, static_cast<Int>(n));
    const double length = std::sqrt(dot(normal, normal));
    if (length > 0.0)
      for (Int i = 1; i <= 3; ++i) NORMALS(i, n) /= length;
  }
}

void triangleCurvatures(Table<const Int> INTA, Table<const double> KNG, Table<const double> FRAMES,
                        Table<const double> NORMALS, Table<double> CURVATURE) {
  for (Int e = 1; e <= INTA.rows(); ++e) {
    const Int n1 = INTA(e, 1), n2 = INTA(e, 2), n3 = INTA(e, 3);
    const double a = FRAMES(frame::along, e), b = FRAMES(frame::tilt, e), c = FRAMES(frame::across, e);
    const Space P = between(KNG, n1, n2), Q = between(KNG, n1, n3);
    const Space e1{a * P.x, a * P.y, a * P.z};
    const Space e2{b * P.x + c * Q.x, b * P.y + c * Q.y, b * P.z + c * Q.z};
    const Space first = column(NORMALS, n1), second = column(NORMALS, n2), third = column(NORMALS, n3);
    const Space p{second.x - first.x, second.y - first.y, second.z - first.z};
    const Space q{third.x - first.x, third.y - first.y, third.z - first.z};
    const double p1 = dot(p, e1), p2 = dot(p, e2), q1 = dot(q, e1), q2 = dot(q, e2);
    CURVATURE(1, e) = a * p1;
    CURVATURE(2, e) = b * p2 + c * q2;
    CURVATURE(3, e) = 0.5 * (a * p2 + b * p1 + c * q1);
  }
}

}  // namespace tornwalzen
