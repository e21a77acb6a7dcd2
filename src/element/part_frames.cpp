// Lengths and heights of the part's triangles.
#include "element/part_frames.hpp"

#include <cmath>

#include "ground/triangle.hpp"

namespace tornwalzen {

namespace {
constexpr double leastHeight = 1e-12;  // of the longest edge: below it the height is rounding
}

Int measurePartFrames(Table<const Int> INTA, Table<const double> KNG, Table<double> FRAMES) {
  for (Int e = 1; e <= FRAMES.columns(); ++e) {
    const Int n1 = INTA(e, 1), n2 = INTA(e, 2), n3 = INTA(e, 3);
    double P[3], Q[3], pp = 0.0, pq = 0.0, qq = 0.0;
    for (Int i = 0; i < 3; ++i) {
      P[i] = KNG(n2, i + 1) - KNG(n1, i + 1);
      Q[i] = KNG(n3, i + 1) - KNG(n1, i + 1);
      pp += P[i] * P[i];
      pq += P[i] * Q[i];
      qq += Q[i] * Q[i];
    }
    const double area = twiceArea(P, Q), l = std::sqrt(pp), h = area / l;
    const double longest = std::sqrt(std::fmax(std::fmax(pp, qq), pp + qq - 2.0 * pq));
    if (!(h > leastHeight * longest) || !std::isfinite(1.0 / h)) return e;
    FRAMES(frame::along, e) = 1.0 / l;
    FRAMES(frame::tilt, e) = -pq / (l * area);
    FRAMES(frame::across, e) = 1.0 / h;
    FRAMES(frame::weight, e) = area;
  }
  return 0;
}

}  // namespace tornwalzen
