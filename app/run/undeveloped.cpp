// Why a part was not developed onto the plane; see the header.
#include "run/undeveloped.hpp"

#include <array>
#include <cmath>
#include <limits>

#include "system/text.hpp"

namespace host {

namespace {

using Vector = std::array<double, 3>;

Vector pointOf(const Part& part, std::int64_t node) {
  return {part.x(node), part.y(node), part.z(node)};
}

double areaOf(const Vector& a, const Vector& b, const Vector& c) {
  const Vector p{b[0] - a[0], b[1] - a[1], b[2] - a[2]}, q{c[0] - a[0], c[1] - a[1], c[2] - a[2]};
  return 0.5 * std::hypot(p[1] * q[2] - p[2] * q[1], p[2] * q[0] - p[0] * q[2], p[0] * q[1] - p[1] * q[0]);
}

// Per triangle its signed area in the starting blank over that on the part.
struct Opening {
  std::int64_t inverted = 0;                               // triangles without positive area in the plane
  std::int64_t worst = 0;                                  // element number in the run, from 1
  double ratio = std::numeric_limits<double>::infinity();  // of the worst
};

Opening openingOf(const Part& part, const RunOutput& run, double millimetres) {
  Opening opening;
  for (std::int64_t e = 1; e <= part.elements(); ++e) {
    // the library may have turned the triangles to run counter-clockwise in the plane
    const std::int32_t* corner = &run.corners[static_cast<std::size_t>(3 * e - 3)];
    const auto u = [&](int k) { return run.startingBlank[static_cast<std::size_t>(2 * corner[k] - 2)]; };
    const auto v = [&](int k) { return run.startingBlank[static_cast<std::size_t>(2 * corner[k] - 1)]; };
    const double plane = 0.5 * ((u(1) - u(0)) * (v(2) - v(0)) - (u(2) - u(0)) * (v(1) - v(0)));
    const double area = areaOf(pointOf(part, corner[0]), pointOf(part, corner[1]), pointOf(part, corner[2])) *
                        millimetres * millimetres;
    const double ratio = plane / area;
    if (!(ratio > 0.0)) ++opening.inverted;
    if (opening.worst == 0 || !(ratio >= opening.ratio)) {
      opening.worst = e;
      opening.ratio = ratio;
    }
  }
  return opening;
}

std::string placeOf(const Part& part, std::int64_t element) {
  Vector center{};
  for (int k = 0; k < 3; ++k) {
    const Vector point = pointOf(part, part.corner(element, k));
    for (std::size_t axis = 0; axis < 3; ++axis) center[axis] += point[axis] / 3.0;
  }
  return "element " + std::to_string(part.fileElement[static_cast<std::size_t>(element) - 1]) + " at (" +
         fixedDecimal(center[0], 3) + ", " + fixedDecimal(center[1], 3) + ", " + fixedDecimal(center[2], 3) +
         ") " + part.unit;
}

std::int64_t heldCorners(const Part& part, const Hold& hold, std::int64_t element) {
  std::int64_t held = 0;
  for (int k = 0; k < 3; ++k) {
    const auto u = static_cast<std::size_t>(2 * part.corner(element, k) - 2);
    if (hold.ARFA[u] == 0 || hold.ARFA[u + 1] == 0) ++held;
  }
  return held;
}

}  // namespace

std::string whyNotDeveloped(const Part& part, const Hold& hold, const RunOutput& run, double millimetres) {
  const Opening opening = openingOf(part, run, millimetres);
  const std::string place = placeOf(part, opening.worst),
                    ratio = fixedDecimal(100.0 * opening.ratio, 1) + " %";
  std::string sentence = "the part could not be developed onto the plane: ";
  if (opening.inverted > 0)
    sentence += counted(opening.inverted, "triangle") +
                " of the starting blank stayed inverted or closed, worst " + place + " (" + ratio +
                " of its area)";
  else
    sentence += "no triangle of the starting blank is inverted, but " + place + " stayed at " + ratio +
                " of its area, too close to a line";
  if (heldCorners(part, hold, opening.worst) >= 2)
    return sentence + "; its nodes are held, so hold fewer unknowns there, or try --hold auto";
  return sentence +
         "; turn the part so that z is its drawing direction and look there for an undercut, a wall that "
         "leans "
         "over, or slivers of the mesh";
}

}  // namespace host
