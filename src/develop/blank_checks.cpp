// The figures of a blank, triangle by triangle, node by node, and of its outline.
#include "develop/blank_checks.hpp"

#include <algorithm>
#include <cmath>

#include "develop/overlapped_area.hpp"

namespace tornwalzen {

namespace {

PlanePoint blankPoint(Vector<const double> RX, Int n) {
  return {RX(2 * Int64{n} - 1), RX(2 * Int64{n})};
}

/// A part triangle in its own plane and its normal.
struct PartTriangle {
  double along;   // edge 1 to 2 (mm)
  double foot;    // corner 3 along that edge (mm)
  double height;  // corner 3 above it (mm)
  double NORMAL[3];
  double area;  // mm²
  bool sound;   // area positive and finite
};

PartTriangle partTriangle(const PartMesh& M, Int e) {
  double P[3], Q[3];
  for (int i = 0; i < 3; ++i) {
    const double x1 = M.KNG(M.INTA(e, 1), i + 1);
    P[i] = M.KNG(M.INTA(e, 2), i + 1) - x1;
    Q[i] = M.KNG(M.INTA(e, 3), i + 1) - x1;
  }
  PartTriangle t;
  for (int i = 0; i < 3; ++i) t.NORMAL[i] = P[(i + 1) % 3] * Q[(i + 2) % 3] - P[(i + 2) % 3] * Q[(i + 1) % 3];
  const double twice =
      std::sqrt(t.NORMAL[0] * t.NORMAL[0] + t.NORMAL[1] * t.NORMAL[1] + t.NORMAL[2] * t.NORMAL[2]);
  t.area = 0.5 * twice;
  t.sound = twice > 0.0 && std::isfinite(twice);
  for (double& n : t.NORMAL) n /= twice;
  t.along = std::sqrt(P[0] * P[0] + P[1] * P[1] + P[2] * P[2]);
  t.foot = (P[0] * Q[0] + P[1] * Q[1] + P[2] * Q[2]) / t.along;
  t.height = twice / t.along;
  return t;
}

/// The smaller signed singular value of J, from its sum and difference with the larger one: s1 is the sum of the
/// lengths of J's rotation-like and reflection-like halves, s2 = det J/s1 keeps its digits.
double smallerStretch(const PartTriangle& t, const PlanePoint& a, const PlanePoint& b, const PlanePoint& c) {
  const double j11 = (b.x - a.x) / t.along, j21 = (b.y - a.y) / t.along;
  const double j12 = (c.x - a.x - j11 * t.foot) / t.height, j22 = (c.y - a.y - j21 * t.foot) / t.height;
  const double m = j11 + j22, n = j21 - j12, p = j11 - j22, q = j21 + j12;
  const double s1 = 0.5 * (std::sqrt(m * m + n * n) + std::sqrt(p * p + q * q));
  return s1 > 0.0 ? (j11 * j22 - j12 * j21) / s1 : 0.0;
}

void countFirst(Int& count, Int& first, Int place) {
  if (count++ == 0) first = place;
}

/// The blank of triangle e: finite, sense, stretch, area.
void checkTriangle(const PartMesh& M, Int e, const PartTriangle& t, Vector<const double> RX,
                   signed char& sense, BlankChecks& B) {
  const PlanePoint a = blankPoint(RX, M.INTA(e, 1));
  const PlanePoint b = blankPoint(RX, M.INTA(e, 2));
  const PlanePoint c = blankPoint(RX, M.INTA(e, 3));
  const double largest = std::max(
      {std::fabs(a.x), std::fabs(a.y), std::fabs(b.x), std::fabs(b.y), std::fabs(c.x), std::fabs(c.y)});
  const double sum = a.x + a.y + b.x + b.y + c.x + c.y;  // what is not a number stays so
  if (!(largest <= largestCoordinate) || std::isnan(sum)) {
    countFirst(B.notFinite, B.firstNotFinite, e);
    return;
  }
  sense = static_cast<signed char>(orientation(a, b, c));
  if (sense <= 0) countFirst(B.inverted, B.firstInverted, e);
  B.blankArea += 0.5 * ((b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x));
  if (!t.sound) return;
  const double s2 = smallerStretch(t, a, b, c);
  if (B.smallestStretchTriangle != 0 && !(s2 < B.smallestStretch)) return;
  B.smallestStretch = s2;
  B.smallestStretchTriangle = e;
}

/// The areas beyond a limit, of triangle e; they become shares in the end.
void checkStrain(Int e, double area, const StrainCheck& S, BlankChecks& B) {
  if (S.STRAIN.length() == 0) return;
  const double strain = S.STRAIN(e);
  if (!(strain <= S.curveEnd)) {
    B.shareBeyondCurve += area;
    if (B.firstBeyondCurve == 0) B.firstBeyondCurve = e;
  }
  if (!(strain <= largeStrain)) {
    B.shareBeyondLarge += area;
    if (B.firstBeyondLarge == 0) B.firstBeyondLarge = e;
  }
}

/// SENSE: out, nele.
void checkTriangles(const PartMesh& M, const MeanNormal& F, Vector<const double> RX, const StrainCheck& S,
                    Vector<signed char> SENSE, BlankChecks& B) {
  for (Int e = 1; e <= M.nele; ++e) {
    const PartTriangle t = partTriangle(M, e);
    checkTriangle(M, e, t, RX, SENSE(e), B);
    if (!t.sound) {
      countFirst(B.withoutArea, B.firstWithoutArea, e);
      continue;
    }
    B.partArea += t.area;
    const double rise = t.NORMAL[0] * F.N[0] + t.NORMAL[1] * F.N[1] + t.NORMAL[2] * F.N[2];
    if (rise <= -undercutSine) B.undercutArea += t.area;
    checkStrain(e, t.area, S, B);
  }
  if (!(B.partArea > 0.0)) return;
  B.undercutShare = B.undercutArea / B.partArea;
  B.shareBeyondCurve /= B.partArea;
  B.shareBeyondLarge /= B.partArea;
}

/// p lies in the upper half plane round o, which holds the direction of u itself and not its opposite.
bool above(const PlanePoint& p, const PlanePoint& o) {
  return p.y > o.y || (p.y == o.y && p.x > o.x);
}

/// Inner nodes whose triangles do not close once. A counter-clockwise triangle sweeps less than half a turn round its
/// corner, so it passes the direction of u exactly where it comes from the lower half plane into the upper: the number
/// of these is the number of turns. TURNS: scratch, nkno, zero on entry.
void checkNodes(const PartMesh& M, const PartTopology& T, Vector<const double> RX,
                Vector<const signed char> SENSE, Vector<Int> TURNS, BlankChecks& B) {
  for (Int e = 1; e <= M.nele; ++e) {
    for (Int c = 1; c <= 3; ++c) {
      const Int n = M.INTA(e, c);
      const PlanePoint o = blankPoint(RX, n), p = blankPoint(RX, M.INTA(e, c % 3 + 1)),
                       q = blankPoint(RX, M.INTA(e, (c + 1) % 3 + 1));
      if (!above(p, o) && above(q, o)) ++TURNS(n);
    }
  }
  constexpr Int never = -1;
  for (Int e = 1; e <= M.nele; ++e)
    if (SENSE(e) <= 0)
      for (Int c = 1; c <= 3; ++c) TURNS(M.INTA(e, c)) = never;
  for (Int i = 1; i <= T.LOOPNODE.length(); ++i) TURNS(T.LOOPNODE.vector()(i)) = 1;  // nothing to close
  for (Int n = 1; n <= M.nkno; ++n)
    if (TURNS(n) == never || TURNS(n) > 1) countFirst(B.openNodes, B.firstOpenNode, n);
}

/// A blank without inverted triangles whose outline is simple and nested covers nothing twice: a point is covered as
/// often as the outline winds round it.
bool liesOnce(const BlankChecks& B) {
  return B.inverted == 0 && B.outline.crossings == 0 && B.outline.touches == 0 && B.outline.complete &&
         B.outline.misplacedLoops == 0;
}

}  // namespace

bool checkBlank(const PartMesh& M, const PartTopology& T, const MeanNormal& F, Vector<const double> RX,
                const StrainCheck& S, BlankChecks& B) {
  B = {};
  OwnArray<signed char> sense("SENSE");
  OwnArray<Int> turns("TURNS");
  if (!sense.allocate(M.nele, 0)) return false;
  checkTriangles(M, F, RX, S, sense.vector(), B);
  B.sheetChecked = T.edgesClean && B.notFinite == 0;
  if (!B.sheetChecked) return true;
  if (!turns.allocate(M.nkno, 0)) return false;
  checkNodes(M, T, RX, sense.vector(), turns.vector(), B);
  if (!checkOutline(T, RX, B.outline)) return false;
  return liesOnce(B) || measureOverlap(M, T.TWIN.vector(), sense.vector(), RX, B.overlappedArea);
}

}  // namespace tornwalzen
