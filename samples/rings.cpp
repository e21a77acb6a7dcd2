// Sheets of rows round an axis: drawn cups, the box, the flanged hole. One quarter is meshed: columns run
// from the x-axis to the y-axis, rows outwards along the section (distance from the axis, height). The rows
// follow rounded squares; the whole part is four reflected quarters.
#include <algorithm>
#include <cmath>
#include <numbers>
#include <stdexcept>

#include "makers.hpp"
#include "profile.hpp"
#include "surface_mesh.hpp"

namespace shapes {

namespace {

constexpr double degree = std::numbers::pi / 180.0;

/// The columns of a quarter: `straight` cells along each side of the length `side`, `corner` (even) round it.
struct Columns {
  double side;
  int straight, corner;
  int count() const { return 2 * straight + corner; }
};

/// The column position t (0..count) on the rounded square of half width d ≥ side, whose corners have the
/// centre (side, side): the same point with x and y exchanged for count - t.
Point2 roundedSquare(const Columns& c, double d, double t) {
  if (2.0 * t > c.count()) {
    const Point2 p = roundedSquare(c, d, c.count() - t);
    return {p.y, p.x};
  }
  if (t < c.straight) return {d, c.side * t / c.straight};
  const Point2 n = unitVector(90.0 * (t - c.straight) / c.corner);
  return {c.side + (d - c.side) * n.x, c.side + (d - c.side) * n.y};
}

/// The edge of a sheet that was a square blank: drawn in more on the axes than on the diagonal. It is bowed
/// over three quarters of the way from the axis and straight from there to the corner. Near the axes the
/// columns keep the spacing of the straight side; they spread to the corner.
Point2 drawnEdge(const Columns& c, double onAxis, double onDiagonal, double t) {
  if (2.0 * t > c.count()) {
    const Point2 p = drawnEdge(c, onAxis, onDiagonal, c.count() - t);
    return {p.y, p.x};
  }
  const double w = 2.0 * t / c.count();
  const double slope = std::min(1.0, 0.5 * c.side * c.count() / (std::max(1, c.straight) * onDiagonal));
  const double y = slope * w + (1.0 - slope) * w * w;
  const double bow = unitVector(90.0 * std::min(1.0, y / 0.75)).y;
  return {onAxis + (onDiagonal - onAxis) * bow * bow, onDiagonal * y};
}

/// Where the ray at the angle of column t leaves the square of half width `half`.
Point2 squareEdge(const Columns& c, double half, double t) {
  if (2.0 * t > c.count()) {
    const Point2 p = squareEdge(c, half, c.count() - t);
    return {p.y, p.x};
  }
  const Point2 n = unitVector(90.0 * t / c.count());
  return {half, 2.0 * t == c.count() ? half : half * n.y / n.x};
}

/// Meshes a quarter: optionally a core about the axis, then rows of columns.
class RingMesh {
 public:
  RingMesh(const Columns& columns, std::uint64_t seed) : columns_(columns), mesh_(seed) {}

  /// The flat core: a block of (count/2)² cells over the square 0..half at the height z. Its edge is the
  /// first row.
  void core(double half, double z);
  /// A row whose node at column t is point(t). `fixed`: the nodes stay on their columns even in a jittered
  /// mesh.
  template <class PointAt>
  void row(PointAt point, bool fixed);
  /// Rows along the section from `from` to its end; `from` says whether its first row is already there.
  void sweep(const Profile& section, double size, bool firstRowIsThere);
  /// Flat rows at the height z between two closed lines inner(t) and outer(t), given by fractions in (0, 1].
  template <class Inner, class Outer>
  void fill(Inner inner, Outer outer, double z, const std::vector<double>& fractions, bool outerIsEdge);

  /// Column t on the edge of the core.
  Point2 coreEdge(double half, double t) const;
  double jitter() { return mesh_.jitter(); }
  Sheet take() { return std::move(mesh_.sheet()); }

 private:
  Columns columns_;
  SurfaceMesh mesh_;
  std::vector<std::int32_t> last_;  // nodes of the last row; empty before the first
  int rows_ = 0;
};

Point2 RingMesh::coreEdge(double half, double t) const {
  const double middle = 0.5 * columns_.count();
  if (t > middle) {
    const Point2 p = coreEdge(half, columns_.count() - t);
    return {p.y, p.x};
  }
  // Half way between equal spacing and that of the straight side, which crowds at a small corner radius.
  const Point2 ring = roundedSquare(columns_, columns_.side + half, t);
  const Point2 corner = roundedSquare(columns_, columns_.side + half, middle);
  return {half, half * 0.5 * (t / middle + ring.y / corner.y)};
}

void RingMesh::core(double half, double z) {
  const int n = columns_.count() / 2;
  std::vector<double> at(n + 1);
  for (int k = 0; k <= n; ++k) at[k] = k == n ? half : coreEdge(half, k).y;
  std::vector<std::int32_t> block((n + 1) * (n + 1));
  for (int i = 0; i <= n; ++i) {
    for (int k = 0; k <= n; ++k) {
      const bool inside = i > 0 && i < n && k > 0 && k < n;
      const double tx = jitter(), ty = jitter();
      const double x = inside ? movedWithin(at[i - 1], at[i], at[i + 1], tx) : at[i];
      const double y = inside ? movedWithin(at[k - 1], at[k], at[k + 1], ty) : at[k];
      block[i * (n + 1) + k] = mesh_.addNode({x, y, z});
    }
  }
  for (int i = 0; i < n; ++i) {
    for (int k = 0; k < n; ++k) {
      const std::int32_t* a = &block[i * (n + 1) + k];
      mesh_.addCell(a[0], a[n + 1], a[n + 2], a[1], i + k);
    }
  }
  last_.clear();
  for (int k = 0; k <= n; ++k) last_.push_back(block[n * (n + 1) + k]);
  for (int i = n - 1; i >= 0; --i) last_.push_back(block[i * (n + 1) + n]);
  rows_ = n;
}

template <class PointAt>
void RingMesh::row(PointAt point, bool fixed) {
  std::vector<std::int32_t> nodes(columns_.count() + 1);
  for (int j = 0; j <= columns_.count(); ++j) {
    const double t = jitter(), across = jitter();
    const bool free = !fixed && j > 0 && j < columns_.count();
    nodes[j] = mesh_.addNode(point(free ? j + t : j, free ? across : 0.0));
  }
  for (int j = 0; j < columns_.count() && !last_.empty(); ++j) {
    mesh_.addCell(last_[j], nodes[j], nodes[j + 1], last_[j + 1], rows_ + j);
  }
  last_ = nodes;
  ++rows_;
}

void RingMesh::sweep(const Profile& section, double size, bool firstRowIsThere) {
  const std::vector<Profile::Row> rows = section.rows(size);
  for (std::size_t i = firstRowIsThere ? 1 : 0; i < rows.size(); ++i) {
    const auto point = [&](double t, double across) {
      const double s =
          rows[i].joint ? rows[i].s : movedWithin(rows[i - 1].s, rows[i].s, rows[i + 1].s, across);
      const Point2 p = section.point(s), q = roundedSquare(columns_, p.x, t);
      return Point3{q.x, q.y, p.y};
    };
    row(point, i == 0 || i + 1 == rows.size());
  }
}

template <class Inner, class Outer>
void RingMesh::fill(Inner inner, Outer outer, double z, const std::vector<double>& fractions,
                    bool outerIsEdge) {
  for (std::size_t i = 1; i < fractions.size(); ++i) {
    const bool last = i + 1 == fractions.size();
    const auto point = [&](double t, double across) {
      const Point2 b = outer(t);
      if (last) return Point3{b.x, b.y, z};
      const double f = movedWithin(fractions[i - 1], fractions[i], fractions[i + 1], across);
      const Point2 a = inner(t);
      return Point3{a.x + f * (b.x - a.x), a.y + f * (b.y - a.y), z};
    };
    row(point, last && outerIsEdge);
  }
}

std::vector<double> fractionsOf(std::vector<double> division) {
  const double length = division.back();
  for (double& s : division) s /= length;
  division.back() = 1.0;
  return division;
}

/// Meshes the quarter once, or once per quadrant with a seed of its own, and joins the four.
template <class Quarter>
Sheet quarterOrWhole(const MeshChoice& choice, Quarter quarter) {
  if (choice.quarter) return quarter(choice.seed);
  Sheet quadrants[4];
  for (std::uint64_t q = 0; q < 4; ++q) {
    quadrants[q] = quarter(choice.seed == 0 ? 0 : 4 * choice.seed + q);
  }
  return joinQuadrants(quadrants);
}

/// A cup: bottom at z = depth, flange at z = 0.
struct Cup {
  double halfWidth, corner, punchRadius, dieRadius, depth, draft;
  double edgeOnAxis, edgeOnDiagonal;  // coordinates of the sheet's edge; with `bowed` false an offset edge
  bool bowed;
};

/// The section from the end of the flat bottom over punch radius, wall and die radius to the flange.
Profile cupSection(const Cup& cup) {
  if (cup.draft < 0.0 || cup.draft >= 45.0) throw std::invalid_argument("draft must lie in 0..45 degrees");
  if (cup.corner > cup.halfWidth) throw std::invalid_argument("corner_radius must not exceed the half width");
  if (cup.punchRadius >= cup.corner)
    throw std::invalid_argument("punch_radius must stay below corner_radius");
  const Point2 wall = unitVector(90.0 - cup.draft);
  const double length = (cup.depth - (cup.punchRadius + cup.dieRadius) * (1.0 - wall.x)) / wall.y;
  if (length < 0.0) throw std::invalid_argument("depth is too small for punch_radius and die_radius");
  Profile section({cup.halfWidth - cup.punchRadius, cup.depth}, 0.0);
  return section.arc(cup.punchRadius, cup.draft - 90.0).line(length).arc(cup.dieRadius, 90.0 - cup.draft);
}

Sheet makeCup(const Cup& cup, const MeshChoice& choice) {
  const Profile section = cupSection(cup);
  const double h = choice.size, flat = cup.halfWidth - cup.punchRadius, foot = section.end().x;
  if (cup.edgeOnAxis <= foot) throw std::invalid_argument("the sheet's edge lies inside the die radius");
  if (cup.bowed && cup.edgeOnDiagonal < cup.edgeOnAxis) {
    throw std::invalid_argument("edge_on_diagonal must not be less than edge_on_axis");
  }
  Columns columns{cup.halfWidth - cup.corner, 0, 0};
  if (columns.side > 0.0)
    columns.straight = std::max(1, static_cast<int>(std::ceil(columns.side / h - 1e-9)));
  // The corner has cells of the size h at the wall, and no fewer than six.
  columns.corner =
      2 * std::max(3, static_cast<int>(std::ceil(0.25 * std::numbers::pi * cup.corner / h - 1e-9)));
  const double cornerOfFlat = columns.side + (flat - columns.side) * unitVector(45.0).x;
  const double half = 0.6 * cornerOfFlat;

  const double firstArc = std::min(h, cup.punchRadius * 15.0 * degree);
  const double lastArc = std::min(h, cup.dieRadius * 15.0 * degree);
  const std::vector<double> bottom = fractionsOf(gradedDivision(flat - half, h, h, firstArc));
  const double diagonal = (cup.edgeOnDiagonal - columns.side) / unitVector(45.0).x - (foot - columns.side);
  const double width = cup.bowed ? std::sqrt((cup.edgeOnAxis - foot) * diagonal) : cup.edgeOnAxis - foot;
  const std::vector<double> flange = fractionsOf(gradedDivision(width, lastArc, h, h));

  return quarterOrWhole(choice, [&](std::uint64_t seed) {
    RingMesh mesh(columns, seed);
    mesh.core(half, cup.depth);
    mesh.fill([&](double t) { return mesh.coreEdge(half, t); },
              [&](double t) { return roundedSquare(columns, flat, t); }, cup.depth, bottom, false);
    mesh.sweep(section, h, true);
    mesh.fill([&](double t) { return roundedSquare(columns, foot, t); },
              [&](double t) {
                return cup.bowed ? drawnEdge(columns, cup.edgeOnAxis, cup.edgeOnDiagonal, t)
                                 : roundedSquare(columns, cup.edgeOnAxis, t);
              },
              0.0, flange, true);
    return mesh.take();
  });
}

}  // namespace

Sheet makeSquareCup(const Dimensions& dims, const MeshChoice& choice) {
  return makeCup({dims.positive("half_width"), dims.positive("corner_radius"), dims.positive("punch_radius"),
                  dims.positive("die_radius"), dims.positive("depth"), dims["draft"],
                  dims.positive("edge_on_axis"), dims.positive("edge_on_diagonal"), true},
                 choice);
}

Sheet makeRoundCup(const Dimensions& dims, const MeshChoice& choice) {
  const double radius = dims.positive("radius");
  return makeCup({radius, radius, dims.positive("punch_radius"), dims.positive("die_radius"),
                  dims.positive("depth"), dims["draft"], dims.positive("edge_radius"), 0.0, false},
                 choice);
}

Sheet makeBox(const Dimensions& dims, const MeshChoice& choice) {
  const double half = dims.positive("half_width"), die = dims.positive("die_radius");
  return makeCup({half, dims.positive("corner_radius"), dims.positive("punch_radius"), die,
                  dims.positive("depth"), 0.0, half + die + dims.positive("flange"), 0.0, false},
                 choice);
}

// From the rim of the collar down to the flat sheet, and on to the square edge.
Sheet makeFlangedHole(const Dimensions& dims, const MeshChoice& choice) {
  const double h = choice.size, half = dims.positive("half_width"), radius = dims.positive("die_radius");
  const double collar = dims.positive("collar"), draft = dims["draft"];
  if (draft < 0.0 || draft >= 45.0) throw std::invalid_argument("draft must lie in 0..45 degrees");
  const Point2 down = unitVector(draft - 90.0);
  const double height = -collar * down.y + radius * (1.0 - down.x);
  Profile section({dims.positive("hole_radius"), height}, draft - 90.0);
  section.line(collar).arc(radius, 90.0 - draft);
  const double foot = section.end().x;
  if (half <= foot) throw std::invalid_argument("half_width is too small for hole_radius and die_radius");
  Columns columns{0.0, 0, 0};
  columns.corner = 2 * std::max(3, static_cast<int>(std::ceil(0.25 * std::numbers::pi * foot / h - 1e-9)));
  const double arc = std::min(h, radius * 15.0 * degree);
  const std::vector<double> flat =
      fractionsOf(gradedDivision(0.5 * (1.0 + std::numbers::sqrt2) * half - foot, arc, h, h));

  return quarterOrWhole(choice, [&](std::uint64_t seed) {
    RingMesh mesh(columns, seed);
    mesh.sweep(section, h, false);
    mesh.fill([&](double t) { return roundedSquare(columns, foot, t); },
              [&](double t) { return squareEdge(columns, half, t); }, 0.0, flat, true);
    return mesh.take();
  });
}

}  // namespace shapes
