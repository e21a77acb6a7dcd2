// Packs the mesh of a report; see the header.
#include "result/report_pack.hpp"

#include <algorithm>
#include <cmath>
#include <future>
#include <limits>
#include <numeric>
#include <utility>

#include "result/byte_planes.hpp"
#include "result/deflater.hpp"
#include "system/background.hpp"
#include "system/failure.hpp"
#include "system/stable_order.hpp"

namespace host {

namespace {

using Whole = std::vector<std::int64_t>;

constexpr double finest = 65535.0;  // steps along the longest side
// Level 4 takes 1.4 times as long as 2 for six percent, level 9 ten times for twelve. Along the Morton curve planes are
// noisy, and searching pays more. Short blocks suit planes that differ.
constexpr int fileLevel = 2, mortonLevel = 7, memoryLevel = 6;

// Nodes and triangles in an order, from 0.
struct Order {
  std::vector<std::int32_t> nodes, triangles;
  std::vector<std::array<std::int64_t, 3>> corners;  // of each triangle, as places among the nodes
};

// What is stored of part and blank in an order.
struct Candidate {
  Order order;
  BytePlanes planes;
};

void check(const ReportData& report) {
  const std::size_t triangles = report.corners.size() / 3, nodes = report.partPoints.size() / 3;
  bool fits = report.corners.size() == 3 * triangles && report.partPoints.size() == 3 * nodes &&
              report.blankPoints.size() == 2 * nodes &&
              (report.number.empty() || report.number.size() == triangles);
  for (const ReportField& field : report.fields) {
    fits = fits && field.values.size() == triangles;
    const auto classes = static_cast<double>(field.classes.size());
    if (classes > 0)
      for (const double value : field.values)
        fits = fits &&
               (!std::isfinite(value) || (value >= 0.0 && value < classes && value == std::floor(value)));
  }
  for (const std::int32_t corner : report.corners)
    fits = fits && corner >= 0 && static_cast<std::size_t>(corner) < nodes;
  for (std::size_t f = 0; f < report.fields.size(); ++f)
    for (const KeyTerm& term : report.fields[f].key)
      for (const int index : {term.first, term.second < 0 ? term.first : term.second})
        fits = fits && index >= 0 && static_cast<std::size_t>(index) < report.fields.size() &&
               (static_cast<std::size_t>(index) < f ||
                report.fields[static_cast<std::size_t>(index)].key.empty());
  if (!fits) throw Failure("the report's mesh and fields do not fit each other");
}

// The nodes of triangles, in their order.
std::vector<std::int32_t> usedNodes(const ReportData& report) {
  std::vector<bool> used(report.partPoints.size() / 3, false);
  for (const std::int32_t corner : report.corners) used[static_cast<std::size_t>(corner)] = true;
  std::vector<std::int32_t> nodes;
  for (std::size_t n = 0; n < used.size(); ++n)
    if (used[n]) nodes.push_back(static_cast<std::int32_t>(n));
  return nodes;
}

// The nearest whole number, within 2^52; of two as near the one farther from zero.
std::int64_t nearest(double value) {
  return static_cast<std::int64_t>(value + (value < 0.0 ? -0.5 : 0.5));
}

// Whole steps of each of `axes` coordinates of the nodes; origin and step: out.
std::vector<Whole> inSteps(const std::vector<double>& points, std::size_t axes,
                           const std::vector<std::int32_t>& nodes, double* origin, double& step) {
  double longest = 0.0;
  for (std::size_t axis = 0; axis < axes; ++axis) {
    double low = std::numeric_limits<double>::infinity(), high = -low;
    for (const std::int32_t n : nodes) {
      const double x = points[axes * static_cast<std::size_t>(n) + axis];
      if (!std::isfinite(x)) throw Failure("the report's mesh has a coordinate that is not finite");
      low = std::min(low, x);
      high = std::max(high, x);
    }
    origin[axis] = nodes.empty() ? 0.0 : low;
    if (!nodes.empty()) longest = std::max(longest, high - low);
  }
  step = longest > 0.0 ? longest / finest : 1.0;
  std::vector<Whole> steps(axes);
  for (std::size_t axis = 0; axis < axes; ++axis) {
    steps[axis].reserve(nodes.size());
    for (const std::int32_t n : nodes)
      steps[axis].push_back(
          nearest((points[axes * static_cast<std::size_t>(n) + axis] - origin[axis]) / step));
  }
  return steps;
}

// The 16 bits of a coordinate, two places between each: halves, quarters and so on of them are moved apart.
std::uint64_t spread(std::int64_t coordinate) {
  auto bits = static_cast<std::uint64_t>(coordinate);
  bits = (bits | bits << 16) & 0x0000FF0000FFu;
  bits = (bits | bits << 8) & 0x00F00F00F00Fu;
  bits = (bits | bits << 4) & 0x0C30C30C30C3u;
  return (bits | bits << 2) & 0x249249249249u;
}

std::vector<std::int32_t> mortonOrder(const std::vector<Whole>& part) {
  std::vector<std::uint64_t> code;
  code.reserve(part[0].size());
  for (std::size_t n = 0; n < part[0].size(); ++n)
    code.push_back(spread(part[0][n]) | spread(part[1][n]) << 1 | spread(part[2][n]) << 2);
  return stableOrder(code);
}

// The triangles with the place of each corner among the nodes, turned so that the first is the least.
std::vector<std::array<std::int64_t, 3>> placedCorners(const ReportData& report,
                                                       const std::vector<std::int64_t>& place) {
  std::vector<std::array<std::int64_t, 3>> corners;
  corners.reserve(report.corners.size() / 3);
  for (std::size_t c = 0; c < report.corners.size(); c += 3) {
    std::array<std::int64_t, 3> corner{};
    for (std::size_t k = 0; k < 3; ++k) corner[k] = place[static_cast<std::size_t>(report.corners[c + k])];
    std::rotate(corner.begin(), std::min_element(corner.begin(), corner.end()), corner.end());
    corners.push_back(corner);
  }
  return corners;
}

// The triangles by a key, equal ones in their order. values: per field, in the order of storage.
std::vector<std::int32_t> alongKey(const std::vector<KeyTerm>& terms, const std::vector<Whole>& values,
                                   std::size_t triangles) {
  std::vector<double> key(triangles);  // whole numbers
  double least = std::numeric_limits<double>::infinity();
  for (std::size_t e = 0; e < triangles; ++e) {
    double sum = 0.0;
    for (const KeyTerm& term : terms) {
      const double product =
          term.factor * static_cast<double>(values[static_cast<std::size_t>(term.first)][e]);
      sum += term.second < 0
                 ? product
                 : product * static_cast<double>(values[static_cast<std::size_t>(term.second)][e]);
    }
    key[e] = sum;
    least = std::min(least, sum);
  }
  std::vector<std::uint64_t> keys;
  keys.reserve(triangles);
  for (const double k : key) keys.push_back(static_cast<std::uint64_t>(k - least));
  return stableOrder(keys);
}

// The key of a field for whole numbers: each value counts in the finest step of those that the key is made of. Empty
// where the key would not be exact in double precision.
std::vector<KeyTerm> wholeKey(const ReportData& report, const std::vector<PackedField>& fields,
                              std::size_t f) {
  int finestPower = std::numeric_limits<int>::max();
  for (const KeyTerm& term : report.fields[f].key)
    for (const int index : {term.first, term.second < 0 ? term.first : term.second})
      finestPower = std::min(finestPower, fields[static_cast<std::size_t>(index)].power);
  std::vector<KeyTerm> key = report.fields[f].key;
  double largest = 0.0;
  for (KeyTerm& term : key) {
    double size = 1.0;
    for (const int index : {term.first, term.second}) {
      if (index < 0) continue;
      const auto other = static_cast<std::size_t>(index);
      term.factor *= std::pow(10.0, fields[other].power - finestPower);
      size *= fields[other].largest / std::pow(10.0, fields[other].power) + 1.0;
    }
    largest += std::abs(term.factor) * size;
  }
  if (!(largest < 4503599627370496.0)) key.clear();  // 2^52: the difference of two keys is exact too
  return key;
}

// The values of a field in whole steps; where there is none, zero.
Whole wholeValues(const ReportField& field, const std::vector<std::int32_t>& triangles, double step) {
  Whole values;
  values.reserve(triangles.size());
  for (const std::int32_t e : triangles) {
    const double value = field.values[static_cast<std::size_t>(e)];
    values.push_back(std::isfinite(value) ? nearest(value / step) : 0);
  }
  return values;
}

// In the file's order, or nodes along the Morton curve and triangles by their first two nodes.
Order orderOf(const ReportData& report, const std::vector<std::int32_t>& used, const std::vector<Whole>& part,
              bool morton) {
  Order order;
  if (morton) {
    order.nodes = mortonOrder(part);
  } else {
    order.nodes.resize(used.size());
    std::iota(order.nodes.begin(), order.nodes.end(), 0);
  }
  std::vector<std::int64_t> place(report.partPoints.size() / 3, -1);
  for (std::size_t n = 0; n < order.nodes.size(); ++n)
    place[static_cast<std::size_t>(used[static_cast<std::size_t>(order.nodes[n])])] =
        static_cast<std::int64_t>(n);
  order.corners = placedCorners(report, place);
  std::vector<std::uint64_t> first(order.corners.size(), 0);  // all equal: as they are
  if (morton)
    for (std::size_t e = 0; e < first.size(); ++e)
      first[e] = static_cast<std::uint64_t>(order.corners[e][0]) << 32 |
                 static_cast<std::uint64_t>(order.corners[e][1]);
  order.triangles = stableOrder(first);
  return order;
}

// Nodes and triangles in the order. axes: the whole coordinates of part and blank, per node.
BytePlanes shapePlanes(const ReportData& report, const Order& order, const std::vector<const Whole*>& axes) {
  BytePlanes planes;
  const std::size_t triangles = order.triangles.size();
  const auto triangle = [&](std::size_t k) { return static_cast<std::size_t>(order.triangles[k]); };
  for (const Whole* axis : axes)
    planes.addDifferences(order.nodes.size(),
                          [&](std::size_t k) { return (*axis)[static_cast<std::size_t>(order.nodes[k])]; });
  planes.addDifferences(triangles, [&](std::size_t k) { return order.corners[triangle(k)][0]; });
  for (const std::size_t c : {std::size_t{1}, std::size_t{2}})
    planes.add(triangles, [&](std::size_t k) {
      const std::array<std::int64_t, 3>& corner = order.corners[triangle(k)];
      return corner[c] - corner[c - 1];
    });
  planes.addDifferences(triangles, [&](std::size_t k) {
    return report.number.empty() ? static_cast<std::int64_t>(triangle(k)) + 1
                                 : std::int64_t{report.number[triangle(k)]};
  });
  return planes;
}

// Two streams per field: where it has no value, and its values.
BytePlanes fieldPlanes(const ReportData& report, const PackedMesh& mesh,
                       const std::vector<std::int32_t>& triangles) {
  BytePlanes planes;
  std::vector<Whole> values;
  for (std::size_t f = 0; f < report.fields.size(); ++f)
    values.push_back(wholeValues(report.fields[f], triangles, std::pow(10.0, mesh.fields[f].power)));
  for (const int index : mesh.fieldOrder) {
    const auto f = static_cast<std::size_t>(index);
    Whole none;
    for (std::size_t e = 0; e < triangles.size(); ++e)
      if (!std::isfinite(report.fields[f].values[static_cast<std::size_t>(triangles[e])]))
        none.push_back(static_cast<std::int64_t>(e));
    planes.addDifferences(none.size(), [&](std::size_t k) { return none[k]; });
    if (mesh.fields[f].key.empty()) {
      planes.addDifferences(triangles.size(), [&](std::size_t k) { return values[f][k]; });
      continue;
    }
    const std::vector<std::int32_t> along = alongKey(mesh.fields[f].key, values, triangles.size());
    planes.addDifferences(triangles.size(),
                          [&](std::size_t k) { return values[f][static_cast<std::size_t>(along[k])]; });
  }
  return planes;
}

}  // namespace

PackedField stepsOf(const ReportField& field) {
  PackedField packed;
  double low = std::numeric_limits<double>::infinity(), high = -low;
  for (const double value : field.values) {
    if (!std::isfinite(value)) {
      ++packed.none;
      continue;
    }
    low = std::min(low, value);
    high = std::max(high, value);
  }
  if (low <= high) packed.largest = std::max(std::abs(low), std::abs(high));
  if (!field.classes.empty() || packed.largest == 0.0) return packed;
  const double wanted = std::max((high - low) / 1e3, packed.largest / 1e6);
  packed.power = static_cast<int>(std::floor(std::log10(wanted)));
  return packed;
}

PackedMesh packMesh(const ReportData& report, bool threads) {
  check(report);
  PackedMesh mesh;
  const std::vector<std::int32_t> used = usedNodes(report);
  mesh.nodes = static_cast<std::int64_t>(used.size());
  mesh.triangles = static_cast<std::int64_t>(report.corners.size() / 3);
  const std::vector<Whole> part = inSteps(report.partPoints, 3, used, mesh.partOrigin.data(), mesh.partStep);
  const std::vector<Whole> blank =
      inSteps(report.blankPoints, 2, used, mesh.blankOrigin.data(), mesh.blankStep);
  for (const ReportField& field : report.fields) mesh.fields.push_back(stepsOf(field));
  for (std::size_t f = 0; f < report.fields.size(); ++f)
    mesh.fields[f].key = wholeKey(report, mesh.fields, f);
  for (const bool keyed : {false, true})
    for (std::size_t f = 0; f < report.fields.size(); ++f)
      if (report.fields[f].key.empty() != keyed) mesh.fieldOrder.push_back(static_cast<int>(f));
  const std::vector<const Whole*> axes{&part[0], &part[1], &part[2], &blank[0], &blank[1]};
  const auto inOrder = [&](bool morton) {
    Candidate candidate{orderOf(report, used, part, morton), {}};
    candidate.planes = shapePlanes(report, candidate.order, axes);
    return candidate;
  };
  std::future<Candidate> morton = inBackgroundIf(threads, [&] { return inOrder(true); });
  Candidate best = inOrder(false);
  Candidate other = morton.get();
  const bool alongMorton = other.planes.bits() < best.planes.bits();
  if (alongMorton) best = std::move(other);
  std::future<BytePlanes> fields =
      inBackgroundIf(threads, [&] { return fieldPlanes(report, mesh, best.order.triangles); });
  Deflater deflater(alongMorton ? mortonLevel : fileLevel, memoryLevel);
  deflater.add(best.planes.bytes);
  const BytePlanes ofFields = fields.get();
  deflater.add(ofFields.bytes);
  mesh.bytes = deflater.finish();
  mesh.widths = std::move(best.planes.widths);
  mesh.widths.insert(mesh.widths.end(), ofFields.widths.begin(), ofFields.widths.end());
  return mesh;
}

}  // namespace host
