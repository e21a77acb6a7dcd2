// Mean normal, largest flat patch, and the turn to it.
#include "develop/part_attitude.hpp"

#include <cmath>

namespace tornwalzen {

namespace {

constexpr double leastMean = 0.05;    // of the area: below it the mean normal is chance
constexpr double patchCosine = 0.98;  // 11.5 degrees

double dot(Table<const double> N, Int e, Int f) {
  return N(1, e) * N(1, f) + N(2, e) * N(2, f) + N(3, e) * N(3, f);
}

double length(Table<const double> N, Int e) {
  return std::sqrt(dot(N, e, e));
}

/// Grows the patch of `seed` over triangles without a patch. OWNER: inout, the seed of each triangle's patch.
/// QUEUE: scratch. sum: out, its area vector. Returns its area.
double growPatch(Int seed, Table<const double> N, Table<const Int> NEIGHBOUR, Vector<Int> OWNER,
                 Vector<Int> QUEUE, double (&sum)[3]) {
  Int head = 1, tail = 1;
  QUEUE(1) = seed;
  OWNER(seed) = seed;
  double area = 0.0;
  for (double& s : sum) s = 0.0;
  while (head <= tail) {
    const Int e = QUEUE(head++);
    area += length(N, e);
    for (Int i = 0; i < 3; ++i) sum[i] += N(i + 1, e);
    for (Int k = 1; k <= 3; ++k) {
      const Int f = NEIGHBOUR(k, e);
      if (f == 0 || OWNER(f) != 0) continue;
      if (dot(N, seed, f) < patchCosine * length(N, seed) * length(N, f)) continue;
      OWNER(f) = seed;
      QUEUE(++tail) = f;
    }
  }
  return area;
}

Direction unitVector(const double (&sum)[3], bool flatPatch, Int seed) {
  const double l = std::sqrt(sum[0] * sum[0] + sum[1] * sum[1] + sum[2] * sum[2]);
  return {sum[0] / l, sum[1] / l, sum[2] / l, flatPatch, seed};
}

}  // namespace

void triangleNormals(Table<const Int> INTA, Table<const double> KNG, Table<double> NORMALS) {
  for (Int e = 1; e <= NORMALS.columns(); ++e) {
    double P[3], Q[3];
    for (Int i = 0; i < 3; ++i) {
      P[i] = KNG(INTA(e, 2), i + 1) - KNG(INTA(e, 1), i + 1);
      Q[i] = KNG(INTA(e, 3), i + 1) - KNG(INTA(e, 1), i + 1);
    }
    NORMALS(1, e) = 0.5 * (P[1] * Q[2] - P[2] * Q[1]);
    NORMALS(2, e) = 0.5 * (P[2] * Q[0] - P[0] * Q[2]);
    NORMALS(3, e) = 0.5 * (P[0] * Q[1] - P[1] * Q[0]);
  }
}

Direction largestPatch(Table<const double> NORMALS, Table<const Int> NEIGHBOUR, Vector<Int> PATCH) {
  const Int elements = static_cast<Int>(NORMALS.columns());
  const Vector<Int> OWNER("OWNER", PATCH.data(), elements), QUEUE("QUEUE", PATCH.data() + elements, elements);
  for (Int e = 1; e <= elements; ++e) OWNER(e) = 0;
  double largest = -1.0;
  Direction best{0.0, 0.0, 1.0, true, 1};
  for (Int e = 1; e <= elements; ++e) {
    if (OWNER(e) != 0) continue;
    double sum[3];
    const double area = growPatch(e, NORMALS, NEIGHBOUR, OWNER, QUEUE, sum);
    if (!(area > largest)) continue;
    largest = area;
    best = unitVector(sum, true, e);
  }
  return best;
}

Direction viewDirection(Table<const double> NORMALS, Table<const Int> NEIGHBOUR, Vector<Int> PATCH) {
  double sum[3] = {0.0, 0.0, 0.0}, area = 0.0;
  for (Int e = 1; e <= NORMALS.columns(); ++e) {
    for (Int i = 0; i < 3; ++i) sum[i] += NORMALS(i + 1, e);
    area += length(NORMALS, e);
  }
  const double size = std::sqrt(sum[0] * sum[0] + sum[1] * sum[1] + sum[2] * sum[2]);
  if (size < leastMean * area) return largestPatch(NORMALS, NEIGHBOUR, PATCH);
  return unitVector(sum, false, 0);
}

void axesOf(const Direction& view, double (&AXES)[3][3]) {
  // Rodrigues' turn about view × z with the cosine view.z
  const double x = view.x, y = view.y, z = view.z, h = 1.0 / (1.0 + z);
  AXES[0][0] = 1.0 - h * x * x;
  AXES[0][1] = -h * x * y;
  AXES[0][2] = -x;
  AXES[1][0] = -h * x * y;
  AXES[1][1] = 1.0 - h * y * y;
  AXES[1][2] = -y;
  AXES[2][0] = x;
  AXES[2][1] = y;
  AXES[2][2] = z;
}

}  // namespace tornwalzen
