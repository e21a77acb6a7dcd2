// Mean normal of a part, and the rotation that turns it to z.
#include "develop/mean_normal.hpp"

#include <cmath>

namespace tornwalzen {

namespace {

constexpr double alreadyZ = 1e-12;   // sine of the angle to z below which nothing is turned
constexpr double nearMinusZ = 1e-6;  // sine of the angle to −z below which half a turn about x comes first

double norm(const double (&S)[3]) {
  return std::sqrt(S[0] * S[0] + S[1] * S[1] + S[2] * S[2]);
}

void setNormal(const double (&SUM)[3], MeanNormal& R) {
  const double length = norm(SUM);
  for (int i = 0; i < 3; ++i) R.N[i] = SUM[i] / length;
}

/// Gathers the patch of triangle `seed`: what hangs together over edges and lies within the cone of its normal.
/// NORMAL: in, area normals, 3 per triangle. TWIN: in. PATCH: inout, 0 where a triangle is still free. QUEUE:
/// scratch, nele. SUM, area: out, of the patch (mm²).
void gatherPatch(Int seed, Vector<const double> NORMAL, Vector<const Int> TWIN, Vector<Int> PATCH,
                 Vector<Int> QUEUE, double (&SUM)[3], double& area) {
  const auto normalOf = [&](Int e, double(&S)[3]) {
    for (int i = 0; i < 3; ++i) S[i] = NORMAL(3 * Int64{e} - 2 + i);
  };
  double FIRST[3], S[3];
  normalOf(seed, FIRST);
  const double limit = flatPatchCosine * norm(FIRST);
  SUM[0] = SUM[1] = SUM[2] = area = 0.0;
  Int head = 1, tail = 1;
  QUEUE(1) = seed;
  PATCH(seed) = seed;
  for (; head <= tail; ++head) {
    const Int e = QUEUE(head);
    normalOf(e, S);
    for (int i = 0; i < 3; ++i) SUM[i] += S[i];
    area += norm(S);
    for (Int h = 3 * e - 2; h <= 3 * e; ++h) {
      if (TWIN(h) == 0) continue;
      const Int other = halfEdgeTriangle(TWIN(h));
      if (PATCH(other) != 0) continue;
      normalOf(other, S);
      if (!(S[0] * FIRST[0] + S[1] * FIRST[1] + S[2] * FIRST[2] >= limit * norm(S)) || norm(S) == 0.0)
        continue;
      PATCH(other) = seed;
      QUEUE(++tail) = other;
    }
  }
}

}  // namespace

void areaNormal(const PartMesh& M, Int e, double (&S)[3]) {
  double P[3], Q[3];
  for (int i = 0; i < 3; ++i) {
    const double x1 = M.KNG(M.INTA(e, 1), i + 1);
    P[i] = M.KNG(M.INTA(e, 2), i + 1) - x1;
    Q[i] = M.KNG(M.INTA(e, 3), i + 1) - x1;
  }
  for (int i = 0; i < 3; ++i)
    S[i] = 0.5 * (P[(i + 1) % 3] * Q[(i + 2) % 3] - P[(i + 2) % 3] * Q[(i + 1) % 3]);
  if (!std::isfinite(S[0] * S[0] + S[1] * S[1] + S[2] * S[2])) S[0] = S[1] = S[2] = 0.0;
}

bool findLargestPatch(const PartMesh& M, MeanNormal& R, OwnArray<Int>& PATCH, Int& first) {
  OwnArray<Int> twin("TWIN"), queue("QUEUE");
  OwnArray<double> normals("NORMAL");
  if (!pairHalfEdges(M, twin) || !PATCH.allocate(M.nele, 0) || !queue.allocate(M.nele) ||
      !normals.allocate(3 * Int64{M.nele}))
    return false;
  const Vector<double> NORMAL = normals.vector();
  double S[3], area, largest = 0.0;
  first = 0;
  for (Int e = 1; e <= M.nele; ++e) {
    areaNormal(M, e, S);
    for (int i = 0; i < 3; ++i) NORMAL(3 * Int64{e} - 2 + i) = S[i];
  }
  for (Int e = 1; e <= M.nele; ++e) {
    areaNormal(M, e, S);
    if (PATCH.vector()(e) != 0 || norm(S) == 0.0) continue;
    gatherPatch(e, NORMAL, twin.vector(), PATCH.vector(), queue.vector(), S, area);
    if (!(area > largest * (1.0 + largerPatchMargin))) continue;
    largest = area;
    first = e;
    setNormal(S, R);
  }
  R.fromPatch = true;
  return true;
}

bool findMeanNormal(const PartMesh& M, MeanNormal& R) {
  R = {};
  double SUM[3] = {0.0, 0.0, 0.0}, S[3], area = 0.0;
  for (Int e = 1; e <= M.nele; ++e) {
    areaNormal(M, e, S);
    for (int i = 0; i < 3; ++i) SUM[i] += S[i];
    area += norm(S);
  }
  if (!(area > 0.0) || !std::isfinite(area)) return true;
  MeanNormal found;
  found.area = area;
  found.share = norm(SUM) / area;
  if (found.share < vanishingShare) {
    OwnArray<Int> patch("PATCH");
    Int first;
    if (!findLargestPatch(M, found, patch, first)) return false;
  } else {
    setNormal(SUM, found);
  }
  R = found;
  return true;
}

void rotationToZ(const double (&N)[3], double (&Q)[3][3]) {
  const double sine = std::hypot(N[0], N[1]);
  const bool keep = N[2] > 0.0 && sine < alreadyZ, flip = N[2] < 0.0 && sine < nearMinusZ;
  // Half a turn about x takes (x, y, z) to (x, −y, −z).
  const double s = flip ? -1.0 : 1.0, x = keep ? 0.0 : N[0], y = keep ? 0.0 : s * N[1],
               c = keep ? 1.0 : s * N[2];
  // Rodrigues with the axis (y, −x, 0)/sine: Q = c·I + [v]× + v·vᵀ/(1 + c); near −z, 1/(1 + c) keeps its digits as
  // (1 − c)/sine².
  const double h = c >= 0.0 ? 1.0 / (1.0 + c) : (1.0 - c) / (sine * sine);
  const double T[3][3] = {{c + h * y * y, -h * x * y, -x}, {-h * x * y, c + h * x * x, -y}, {x, y, c}};
  for (int i = 0; i < 3; ++i)
    for (int j = 0; j < 3; ++j) Q[i][j] = j == 0 ? T[i][j] : s * T[i][j];
}

}  // namespace tornwalzen
