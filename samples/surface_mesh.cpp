// Cells to triangles, and four quadrants to one sheet.
#include "surface_mesh.hpp"

#include <algorithm>

namespace shapes {

namespace {

Point3 minus(const Point3& a, const Point3& b) {
  return {a.x - b.x, a.y - b.y, a.z - b.z};
}
Point3 cross(const Point3& a, const Point3& b) {
  return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
double dot(const Point3& a, const Point3& b) {
  return a.x * b.x + a.y * b.y + a.z * b.z;
}

/// Area over the sum of the squared edges of the triangle a b c, negative where it is folded against `up`,
/// scaled by the length of `up`.
double quality(const Point3& a, const Point3& b, const Point3& c, const Point3& up) {
  const Point3 ab = minus(b, a), bc = minus(c, b), ca = minus(a, c);
  return dot(cross(ab, minus(c, a)), up) / (dot(ab, ab) + dot(bc, bc) + dot(ca, ca));
}

constexpr double nearlyEqual = 1.2;          // ratio of qualities below which either diagonal may be taken
constexpr double nearlyEqualJittered = 1.6;  // the same in a jittered mesh, whose diagonals shall vary

}  // namespace

std::uint64_t Random::next() {
  std::uint64_t z = (state_ += 0x9e3779b97f4a7c15u);
  z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9u;
  z = (z ^ (z >> 27)) * 0x94d049bb133111ebu;
  return z ^ (z >> 31);
}

double Random::within(double limit) {
  const double unit = static_cast<double>(next() >> 11) * 0x1.0p-53;  // 0 ≤ unit < 1
  return limit * (2.0 * unit - 1.0);
}

std::int32_t SurfaceMesh::addNode(const Point3& p) {
  sheet_.knots.insert(sheet_.knots.end(), {p.x, p.y, p.z});
  return sheet_.nodes();
}

void SurfaceMesh::addBlank(double u, double v) {
  sheet_.blank.insert(sheet_.blank.end(), {u, v});
}

Point3 SurfaceMesh::node(std::int32_t n) const {
  const double* p = &sheet_.knots[3 * (static_cast<std::size_t>(n) - 1)];
  return {p[0], p[1], p[2]};
}

void SurfaceMesh::addCell(std::int32_t a, std::int32_t b, std::int32_t c, std::int32_t d, int parity) {
  const Point3 A = node(a), B = node(b), C = node(c), D = node(d);
  const Point3 up = cross(minus(C, A), minus(D, B));
  const double ac = std::min(quality(A, B, C, up), quality(A, C, D, up));
  const double bd = std::min(quality(A, B, D, up), quality(B, C, D, up));
  const bool either = std::max(ac, bd) < (jittered_ ? nearlyEqualJittered : nearlyEqual) * std::min(ac, bd);
  const bool odd = jittered_ ? (random_.next() & 1u) != 0 : parity % 2 != 0;
  const bool alongAC = either ? !odd : ac > bd;
  auto& inzi = sheet_.inzi;
  if (alongAC) {
    inzi.insert(inzi.end(), {a, b, c, a, c, d});
  } else {
    inzi.insert(inzi.end(), {a, b, d, b, c, d});
  }
}

double movedWithin(double before, double at, double after, double t) {
  return t < 0.0 ? at + t * (at - before) : at + t * (after - at);
}

Sheet joinQuadrants(const Sheet (&quadrants)[4]) {
  constexpr double signX[4] = {1.0, -1.0, -1.0, 1.0}, signY[4] = {1.0, 1.0, -1.0, -1.0};
  Sheet whole;
  const std::int32_t nodes = quadrants[0].nodes();
  // number[q][n]: node n of quadrant q in the whole; what lies on a plane is taken from the quadrant before.
  std::vector<std::int32_t> number[4];
  for (int q = 0; q < 4; ++q) {
    number[q].resize(nodes);
    for (std::int32_t n = 0; n < nodes; ++n) {
      const double* p = &quadrants[q].knots[3 * static_cast<std::size_t>(n)];
      const bool onX0 = p[0] == 0.0, onY0 = p[1] == 0.0;
      int owner = q;
      if (onX0 && onY0)
        owner = 0;
      else if (onX0)
        owner = q < 2 ? 0 : 2;
      else if (onY0)
        owner = q == 1 || q == 2 ? 1 : 0;
      if (owner < q) {
        number[q][n] = number[owner][n];
        continue;
      }
      whole.knots.insert(whole.knots.end(),
                         {onX0 ? 0.0 : signX[q] * p[0], onY0 ? 0.0 : signY[q] * p[1], p[2]});
      number[q][n] = whole.nodes();
    }
    const bool reflected = signX[q] * signY[q] < 0.0;
    const auto& inzi = quadrants[q].inzi;
    for (std::size_t e = 0; e + 2 < inzi.size(); e += 3) {
      const std::int32_t a = number[q][inzi[e] - 1], b = number[q][inzi[e + 1] - 1],
                         c = number[q][inzi[e + 2] - 1];
      if (reflected) {
        whole.inzi.insert(whole.inzi.end(), {a, c, b});
      } else {
        whole.inzi.insert(whole.inzi.end(), {a, b, c});
      }
    }
  }
  return whole;
}

}  // namespace shapes
