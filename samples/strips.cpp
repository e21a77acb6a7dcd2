// Sheets bent along one direction. The nodes lie on straight generators of the surface, so the facets between
// two generators are plane and the triangulated sheet develops exactly: the flat width of a cell is its
// chord.
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

/// Connects (rows+1) × (columns+1) nodes, numbered row by row, so that row direction × column direction is
/// up.
void addCells(SurfaceMesh& mesh, int rows, int columns) {
  for (int i = 0; i < rows; ++i) {
    for (int j = 0; j < columns; ++j) {
      const std::int32_t a = i * (columns + 1) + j + 1, b = a + columns + 1;
      mesh.addCell(a, b, b + 1, a + 1, i + j);
    }
  }
}

/// Position j of a division, moved within the sheet where it is not an end.
double moved(SurfaceMesh& mesh, const std::vector<double>& at, std::size_t j) {
  if (j == 0 || j + 1 == at.size()) return at[j];
  return movedWithin(at[j - 1], at[j], at[j + 1], mesh.jitter());
}

double chord(const Point2& a, const Point2& b) {
  return std::hypot(b.x - a.x, b.y - a.y);
}

/// Draws the section (x, z) along y over -width/2..width/2.
Sheet extrude(const Profile& section, double width, const MeshChoice& choice) {
  SurfaceMesh mesh(choice.seed);
  const std::vector<Profile::Row> rows = section.rows(choice.size);
  std::vector<double> y = gradedDivision(width, choice.size, choice.size, choice.size);
  for (double& value : y) value -= 0.5 * width;
  double u = 0.0;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const Point2 p = section.point(rows[i].s);
    if (i > 0) u += chord(section.point(rows[i - 1].s), p);
    for (std::size_t j = 0; j < y.size(); ++j) {
      const double v = moved(mesh, y, j);
      mesh.addNode({p.x, v, p.y});
      mesh.addBlank(u, v);
    }
  }
  addCells(mesh, static_cast<int>(rows.size()) - 1, static_cast<int>(y.size()) - 1);
  return std::move(mesh.sheet());
}

/// The hat: flange, die radius, wall, punch radius, half the top, and the same back; symmetric to x = 0,
/// flanges at z = 0, top at z = height.
Profile hatSection(const Dimensions& dims) {
  const double top = dims.positive("top"), height = dims.positive("height"), flange = dims["flange"];
  const double rp = dims.positive("punch_radius"), rd = dims.positive("die_radius");
  const double draft = dims["draft"];
  if (draft < 0.0 || draft >= 45.0) throw std::invalid_argument("draft must lie in 0..45 degrees");
  if (flange < 0.0) throw std::invalid_argument("flange must not be negative");
  const Point2 wall = unitVector(90.0 - draft);  // direction of the rising wall
  const double length = (height - (rp + rd) * (1.0 - wall.x)) / wall.y;
  const double flat = top - 2.0 * rp * wall.y;  // `top` is measured where the rounded edges would be vertical
  if (length < 0.0) throw std::invalid_argument("height is too small for punch_radius and die_radius");
  if (flat < 0.0) throw std::invalid_argument("top is too small for punch_radius");
  const double half = flange + (rp + rd) * wall.y + length * wall.x + 0.5 * flat;
  Profile section({-half, 0.0}, 0.0);
  section.line(flange).arc(rd, 90.0 - draft).line(length).arc(rp, draft - 90.0).line(flat);
  return section.arc(rp, draft - 90.0).line(length).arc(rd, 90.0 - draft).line(flange);
}

}  // namespace

Sheet makePlate(const Dimensions& dims, const MeshChoice& choice) {
  const double length = dims.positive("length");
  return extrude(Profile({-0.5 * length, 0.0}, 0.0).line(length), dims.positive("width"), choice);
}

Sheet makeLBend(const Dimensions& dims, const MeshChoice& choice) {
  Profile section({-dims.positive("base"), 0.0}, 0.0);
  section.line(dims.positive("base")).arc(dims.positive("radius"), 90.0).line(dims.positive("wall"));
  return extrude(section, dims.positive("width"), choice);
}

Sheet makeHalfPipe(const Dimensions& dims, const MeshChoice& choice) {
  const double radius = dims.positive("radius"), half = dims.positive("half_angle");
  if (half > 90.0) throw std::invalid_argument("half_angle must lie in 0..90 degrees");
  const Point2 end = unitVector(90.0 + half);
  return extrude(Profile({radius * end.x, radius * end.y}, half).arc(radius, -2.0 * half),
                 dims.positive("length"), choice);
}

Sheet makeHat(const Dimensions& dims, const MeshChoice& choice) {
  return extrude(hatSection(dims), dims.positive("length"), choice);
}

Sheet makeSRail(const Dimensions& dims, const MeshChoice& choice) {
  const Profile section = hatSection(dims);
  const double radius = dims.positive("bend_radius"), turn = dims.positive("bend_angle");
  const double straight = dims.positive("straight");
  if (radius <= -section.point(0.0).x)
    throw std::invalid_argument("bend_radius is too small for the section");
  Profile line({0.0, 0.0}, 0.0);
  line.line(straight).arc(radius, turn).arc(radius, -turn).line(straight);

  SurfaceMesh mesh(choice.seed);
  const std::vector<Profile::Row> along = line.rows(choice.size), across = section.rows(choice.size);
  const auto movedRow = [&mesh](const std::vector<Profile::Row>& rows, std::size_t i) {
    const double t = mesh.jitter();
    return rows[i].joint ? rows[i].s : movedWithin(rows[i - 1].s, rows[i].s, rows[i + 1].s, t);
  };
  for (std::size_t i = 0; i < along.size(); ++i) {
    for (std::size_t j = 0; j < across.size(); ++j) {
      const bool end = i == 0 || i + 1 == along.size() || j == 0 || j + 1 == across.size();
      const double s = end ? along[i].s : movedRow(along, i), t = end ? across[j].s : movedRow(across, j);
      const Point2 c = line.point(s), n = line.normal(s), p = section.point(t);
      mesh.addNode({c.x + p.x * n.x, c.y + p.x * n.y, p.y});
    }
  }
  addCells(mesh, static_cast<int>(along.size()) - 1, static_cast<int>(across.size()) - 1);
  return std::move(mesh.sheet());
}

// The cone lies along y, apex at the origin. In the blank a generator at the angle ψ from the middle one runs
// along (sin ψ, cos ψ); between two generators that are Δφ apart about the axis lies the plane angle
// 2 asin(sin α sin(Δφ/2)), α the cone's half angle.
Sheet makeConeSector(const Dimensions& dims, const MeshChoice& choice) {
  const double inner = dims.positive("inner_slant"), outer = dims.positive("outer_slant");
  const double alpha = dims.positive("cone_angle"), half = dims.positive("half_angle");
  if (inner >= outer) throw std::invalid_argument("outer_slant must exceed inner_slant");
  if (alpha >= 90.0) throw std::invalid_argument("cone_angle must lie in 0..90 degrees");
  if (half > 90.0) throw std::invalid_argument("half_angle must lie in 0..90 degrees");
  const Point2 cone = unitVector(alpha);
  const double middle = 0.5 * (inner + outer) * cone.y;  // radius about the axis
  const double arc = 2.0 * half * degree * middle;
  const double row = std::min(choice.size, middle * 15.0 * degree);
  const int n = std::max(2, static_cast<int>(std::ceil(arc / row - 1e-9)));
  const double flatStep = 2.0 * std::asin(cone.y * std::sin(half * degree / n));
  const std::vector<double> slant = gradedDivision(outer - inner, choice.size, choice.size, choice.size);

  SurfaceMesh mesh(choice.seed);
  for (int i = 0; i <= n; ++i) {
    const Point2 about = unitVector(90.0 - half * (2 * i - n) / n);
    const double psi = flatStep * (i - 0.5 * n);
    for (std::size_t j = 0; j < slant.size(); ++j) {
      const double r = inner + moved(mesh, slant, j);
      mesh.addNode({r * cone.y * about.x, r * cone.x, r * cone.y * about.y});
      mesh.addBlank(r * std::sin(psi), r * std::cos(psi));
    }
  }
  addCells(mesh, n, static_cast<int>(slant.size()) - 1);
  return std::move(mesh.sheet());
}

}  // namespace shapes
