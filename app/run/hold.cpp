// Which unknowns of the blank are held; see the header.
#include "run/hold.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string_view>

#include "system/failure.hpp"
#include "system/input_file.hpp"
#include "system/text.hpp"

namespace host {

namespace {

constexpr double planeTolerance = 1e-6;  // of the part's size: what counts as on a plane, or as equally far

enum Axis : int { X = 0, Y = 1 };

double along(const Part& part, std::int64_t node, Axis axis) {
  return axis == X ? part.x(node) : part.y(node);
}

void holdOne(Hold& hold, std::int64_t node, Axis axis) {
  hold.ARFA[static_cast<std::size_t>(2 * node - 2 + axis)] = 0;
}

bool isHeld(const Hold& hold, std::int64_t node, Axis axis) {
  return hold.ARFA[static_cast<std::size_t>(2 * node - 2 + axis)] == 0;
}

// The centroid of the surface seen from +z, in the part's unit. Weighing by area makes it independent of the mesh density.
std::array<double, 2> centroid(const Part& part) {
  double area = 0.0;
  std::array<double, 2> moment{};
  for (std::int64_t e = 1; e <= part.elements(); ++e) {
    const std::int64_t i = part.corner(e, 0), j = part.corner(e, 1), k = part.corner(e, 2);
    const double ax = part.x(j) - part.x(i), ay = part.y(j) - part.y(i), az = part.z(j) - part.z(i);
    const double bx = part.x(k) - part.x(i), by = part.y(k) - part.y(i), bz = part.z(k) - part.z(i);
    const double a = std::hypot(ay * bz - az * by, az * bx - ax * bz, ax * by - ay * bx);
    area += a;
    for (const Axis axis : {X, Y})
      moment[axis] += a * (along(part, i, axis) + along(part, j, axis) + along(part, k, axis)) / 3.0;
  }
  return {moment[X] / area, moment[Y] / area};
}

// Of the nodes in triangles the first with the smallest measure(node).
template <class Measure>
std::int64_t firstSmallest(const Part& part, Measure measure) {
  std::int64_t best = 0;
  double smallest = std::numeric_limits<double>::infinity();
  for (std::int64_t n = 1; n <= part.nodes(); ++n) {
    if (!part.inTriangle[static_cast<std::size_t>(n) - 1]) continue;
    const double m = measure(n);
    if (m < smallest) {
      smallest = m;
      best = n;
    }
  }
  return best;
}

double distanceFrom(const std::array<double, 2>& point, const Part& part, std::int64_t node) {
  return std::hypot(part.x(node) - point[X], part.y(node) - point[Y]);
}

// The node farthest along the axis. A straight edge has many of them: the one that lies least to the side,
// since holding a node off the axis would turn the blank against the part.
template <class Distance>
std::int64_t farthest(const Part& part, Axis axis, Distance distance) {
  const std::int64_t first = firstSmallest(part, [&](std::int64_t n) { return -distance(n, axis); });
  const double reach = distance(first, axis) - planeTolerance * part.size;
  const Axis side = axis == X ? Y : X;
  return firstSmallest(part, [&](std::int64_t n) {
    return distance(n, axis) < reach ? std::numeric_limits<double>::infinity() : distance(n, side);
  });
}

void holdAutomatically(const Part& part, Hold& hold) {
  const std::array<double, 2> center = centroid(part);
  const std::int64_t middle =
      firstSmallest(part, [&](std::int64_t n) { return distanceFrom(center, part, n); });
  const auto distance = [&](std::int64_t n, Axis axis) {
    return std::abs(along(part, n, axis) - along(part, middle, axis));
  };
  const std::int64_t farX = farthest(part, X, distance), farY = farthest(part, Y, distance);
  holdOne(hold, middle, X);
  holdOne(hold, middle, Y);
  if (distance(farX, X) >= distance(farY, Y))
    holdOne(hold, farX, Y);
  else
    holdOne(hold, farY, X);
}

// Holds the unknown across the plane x = 0 or y = 0 in all nodes on it.
void holdPlane(const Part& part, Axis axis, Hold& hold) {
  bool any = false;
  double nearest = std::numeric_limits<double>::infinity();
  for (std::int64_t n = 1; n <= part.nodes(); ++n) {
    if (!part.inTriangle[static_cast<std::size_t>(n) - 1]) continue;
    nearest = std::min(nearest, std::abs(along(part, n, axis)));
    if (std::abs(along(part, n, axis)) > planeTolerance * part.size) continue;
    holdOne(hold, n, axis);
    any = true;
  }
  const std::string plane = axis == X ? "x" : "y";
  if (!any)
    throw Failure("--hold " + plane + "0: no node lies on the plane " + plane + " = 0; the nearest is " +
                  decimal(nearest) + " " + part.unit + " away");
}

// Of the nodes held on the plane, the one nearest the centroid keeps its place along the plane too.
void holdAlongPlane(const Part& part, Axis axis, Hold& hold) {
  const std::array<double, 2> center = centroid(part);
  const std::int64_t node = firstSmallest(part, [&](std::int64_t n) {
    return isHeld(hold, n, axis) ? distanceFrom(center, part, n) : std::numeric_limits<double>::infinity();
  });
  holdOne(hold, node, axis == X ? Y : X);
}

void holdFromFile(const Part& part, const std::string& file, Hold& hold) {
  const std::string content = readInputFile(file);
  const std::int64_t equations = 2 * part.nodes();
  std::size_t position = 0, lineNumber = 0;
  std::string_view line;
  while (nextLine(content, position, line)) {
    ++lineNumber;
    std::size_t inLine = 0;
    const std::string_view word = nextWord(line, inLine);
    if (word.empty() || word.front() == '#') continue;
    std::int64_t number = 0;
    if (!readInteger(word, number) || !nextWord(line, inLine).empty())
      throw Failure(file + ", line " + std::to_string(lineNumber) +
                    ": one equation number expected, found \"" + shown(line) + "\"");
    if (number < 1 || number > equations)
      throw Failure(file + ", line " + std::to_string(lineNumber) + ": equation number " +
                    std::to_string(number) + " is out of range; the part has " + std::to_string(equations));
    hold.ARFA[static_cast<std::size_t>(number) - 1] = 0;
  }
}

void holdFromDeck(const Part& part, Hold& hold) {
  if (part.deckFlags.empty()) throw Failure("--hold deck: " + part.file + " is not a mesh deck");
  hold.ARFA = part.deckFlags;
}

// The largest difference of the coordinate `across` over the nodes whose unknown along `axis` is held;
// negative if none is held.
double spreadOfHeld(const Part& part, const Hold& hold, Axis axis, Axis across) {
  double low = std::numeric_limits<double>::infinity(), high = -low;
  for (std::int64_t n = 1; n <= part.nodes(); ++n) {
    if (!part.inTriangle[static_cast<std::size_t>(n) - 1] || !isHeld(hold, n, axis)) continue;
    low = std::min(low, along(part, n, across));
    high = std::max(high, along(part, n, across));
  }
  return high >= low ? high - low : -1.0;
}

// A blank that can still move as a whole makes the matrix singular. Rotation about (x0, y0) moves u by -(y -
// y0) and v by x - x0: it is free if all held u lie at one y and all held v at one x.
void checkRigidMotion(const Part& part, const Hold& hold, const std::string& rule) {
  const double spreadU = spreadOfHeld(part, hold, X, Y), spreadV = spreadOfHeld(part, hold, Y, X);
  const std::string start = "--hold " + rule + ": the blank can still ";
  if (spreadU < 0.0) throw Failure(start + "move in x; no u is held");
  if (spreadV < 0.0) throw Failure(start + "move in y; no v is held");
  if (std::max(spreadU, spreadV) <= planeTolerance * part.size)
    throw Failure(start + "rotate; all held u have the same y and all held v the same x");
}

}  // namespace

Hold holdUnknowns(const Part& part, const std::string& rule) {
  Hold hold;
  hold.ARFA.assign(static_cast<std::size_t>(2 * part.nodes()), 1);
  if (rule == "auto") {
    holdAutomatically(part, hold);
  } else if (rule == "x0") {
    holdPlane(part, X, hold);
    holdAlongPlane(part, X, hold);
  } else if (rule == "y0") {
    holdPlane(part, Y, hold);
    holdAlongPlane(part, Y, hold);
  } else if (rule == "x0,y0" || rule == "y0,x0") {
    holdPlane(part, X, hold);
    holdPlane(part, Y, hold);
  } else if (rule == "deck") {
    holdFromDeck(part, hold);
  } else {
    holdFromFile(part, rule, hold);
  }
  checkRigidMotion(part, hold, rule);

  for (std::int64_t n = 1; n <= part.nodes(); ++n)
    for (const Axis axis : {X, Y}) {
      if (!part.inTriangle[static_cast<std::size_t>(n) - 1])
        holdOne(hold, n, axis);
      else if (isHeld(hold, n, axis))
        ++hold.held;
    }
  return hold;
}

std::string holdFile(const std::string& rule) {
  for (const char* word : {"", "auto", "x0", "y0", "x0,y0", "y0,x0", "deck"})
    if (rule == word) return "";
  return rule;
}

std::string holdRule(const Part& part, const std::string& rule) {
  if (!rule.empty()) return rule;
  return part.deckFlags.empty() ? "auto" : "deck";
}

}  // namespace host
