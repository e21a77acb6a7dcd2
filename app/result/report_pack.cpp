// Packs the mesh of a report; see the header.
#include "result/report_pack.hpp"

#include <zlib.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

#include "system/failure.hpp"

namespace host {

namespace {

using Whole = std::vector<std::int64_t>;

constexpr double finest = 65535.0;  // steps along the longest side
constexpr int deflateLevel = 9;

// Nodes and triangles in one of the orders, as whole numbers.
struct Streams {
  std::vector<Whole> columns;
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
  for (std::size_t axis = 0; axis < axes; ++axis)
    for (const std::int32_t n : nodes)
      steps[axis].push_back(
          std::llround((points[axes * static_cast<std::size_t>(n) + axis] - origin[axis]) / step));
  return steps;
}

// The bits of a coordinate, two places between each.
std::uint64_t spread(std::int64_t coordinate) {
  std::uint64_t bits = 0;
  for (int b = 0; b < 16; ++b) bits |= (static_cast<std::uint64_t>(coordinate) >> b & 1u) << (3 * b);
  return bits;
}

std::vector<std::int32_t> alongMorton(const std::vector<Whole>& part) {
  std::vector<std::uint64_t> code;
  for (std::size_t n = 0; n < part[0].size(); ++n)
    code.push_back(spread(part[0][n]) | spread(part[1][n]) << 1 | spread(part[2][n]) << 2);
  std::vector<std::int32_t> order(code.size());
  std::iota(order.begin(), order.end(), 0);
  std::stable_sort(order.begin(), order.end(), [&](std::int32_t a, std::int32_t b) {
    return code[static_cast<std::size_t>(a)] < code[static_cast<std::size_t>(b)];
  });
  return order;
}

// The triangles with the place of each corner among the nodes, turned so that the first is the least.
std::vector<std::array<std::int64_t, 3>> placedCorners(const ReportData& report,
                                                       const std::vector<std::int64_t>& place) {
  std::vector<std::array<std::int64_t, 3>> corners;
  for (std::size_t c = 0; c < report.corners.size(); c += 3) {
    std::array<std::int64_t, 3> corner{};
    for (std::size_t k = 0; k < 3; ++k) corner[k] = place[static_cast<std::size_t>(report.corners[c + k])];
    std::rotate(corner.begin(), std::min_element(corner.begin(), corner.end()), corner.end());
    corners.push_back(corner);
  }
  return corners;
}

Whole differences(const Whole& numbers) {
  Whole steps;
  std::int64_t before = 0;
  for (const std::int64_t number : numbers) {
    steps.push_back(number - before);
    before = number;
  }
  return steps;
}

// The triangles by a key, equal ones in their order. values: per field, in the order of storage.
std::vector<std::int32_t> alongKey(const std::vector<KeyTerm>& terms, const std::vector<Whole>& values,
                                   std::size_t triangles) {
  std::vector<double> key(triangles, 0.0);
  for (const KeyTerm& term : terms)
    for (std::size_t e = 0; e < triangles; ++e) {
      double product = term.factor * static_cast<double>(values[static_cast<std::size_t>(term.first)][e]);
      if (term.second >= 0) product *= static_cast<double>(values[static_cast<std::size_t>(term.second)][e]);
      key[e] += product;
    }
  std::vector<std::int32_t> order(triangles);
  std::iota(order.begin(), order.end(), 0);
  std::stable_sort(order.begin(), order.end(), [&](std::int32_t a, std::int32_t b) {
    return key[static_cast<std::size_t>(a)] < key[static_cast<std::size_t>(b)];
  });
  return order;
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
      double most = 0.0;
      for (const double value : report.fields[other].values)
        if (std::isfinite(value)) most = std::max(most, std::abs(value));
      size *= most / std::pow(10.0, fields[other].power) + 1.0;
    }
    largest += std::abs(term.factor) * size;
  }
  if (!(largest < 4503599627370496.0)) key.clear();  // 2^52: the difference of two keys is exact too
  return key;
}

// The values of a field in whole steps; where there is none, zero.
Whole wholeValues(const ReportField& field, const std::vector<std::int32_t>& triangles, double step) {
  Whole values;
  for (const std::int32_t e : triangles) {
    const double value = field.values[static_cast<std::size_t>(e)];
    values.push_back(std::isfinite(value) ? std::llround(value / step) : 0);
  }
  return values;
}

// Two streams per field: where it has no value, and its values.
void addFields(const ReportData& report, const PackedMesh& mesh, const std::vector<std::int32_t>& triangles,
               Streams& streams) {
  std::vector<Whole> values;
  for (std::size_t f = 0; f < report.fields.size(); ++f)
    values.push_back(wholeValues(report.fields[f], triangles, std::pow(10.0, mesh.fields[f].power)));
  for (const int index : mesh.fieldOrder) {
    const auto f = static_cast<std::size_t>(index);
    const ReportField& field = report.fields[f];
    Whole none, sorted;
    for (std::size_t e = 0; e < triangles.size(); ++e)
      if (!std::isfinite(field.values[static_cast<std::size_t>(triangles[e])]))
        none.push_back(static_cast<std::int64_t>(e));
    streams.columns.push_back(differences(none));
    if (mesh.fields[f].key.empty()) {
      streams.columns.push_back(differences(values[f]));
      continue;
    }
    for (const std::int32_t e : alongKey(mesh.fields[f].key, values, triangles.size()))
      sorted.push_back(values[f][static_cast<std::size_t>(e)]);
    streams.columns.push_back(differences(sorted));
  }
}

Streams streamsOf(const ReportData& report, const PackedMesh& mesh, const std::vector<std::int32_t>& used,
                  const std::vector<Whole>& part, const std::vector<Whole>& blank, bool morton) {
  std::vector<std::int32_t> nodes(used.size()), triangles(report.corners.size() / 3);
  std::iota(nodes.begin(), nodes.end(), 0);
  std::iota(triangles.begin(), triangles.end(), 0);
  if (morton) nodes = alongMorton(part);
  std::vector<std::int64_t> place(report.partPoints.size() / 3, -1);
  for (std::size_t n = 0; n < nodes.size(); ++n)
    place[static_cast<std::size_t>(used[static_cast<std::size_t>(nodes[n])])] = static_cast<std::int64_t>(n);
  const std::vector<std::array<std::int64_t, 3>> corners = placedCorners(report, place);
  if (morton)
    std::stable_sort(triangles.begin(), triangles.end(), [&](std::int32_t a, std::int32_t b) {
      return corners[static_cast<std::size_t>(a)] < corners[static_cast<std::size_t>(b)];
    });

  Streams streams;
  for (const std::vector<Whole>* shape : {&part, &blank})
    for (const Whole& axis : *shape) {
      Whole sorted;
      for (const std::int32_t n : nodes) sorted.push_back(axis[static_cast<std::size_t>(n)]);
      streams.columns.push_back(differences(sorted));
    }
  Whole first, second, third, number;
  for (const std::int32_t e : triangles) {
    const std::array<std::int64_t, 3>& corner = corners[static_cast<std::size_t>(e)];
    first.push_back(corner[0]);
    second.push_back(corner[1] - corner[0]);
    third.push_back(corner[2] - corner[1]);
    number.push_back(report.number.empty() ? e + 1 : report.number[static_cast<std::size_t>(e)]);
  }
  streams.columns.insert(streams.columns.end(), {differences(first), second, third, differences(number)});
  addFields(report, mesh, triangles, streams);
  return streams;
}

// The bytes of all streams in planes, lowest first; widths: out, bytes per number.
std::string planesOf(const Streams& streams, std::vector<int>& widths) {
  std::string planes;
  widths.clear();
  for (const Whole& column : streams.columns) {
    std::vector<std::uint64_t> folded;
    std::uint64_t all = 0;
    for (const std::int64_t number : column) {
      const auto bits = static_cast<std::uint64_t>(number);
      folded.push_back(number < 0 ? ~(bits << 1) : bits << 1);
      all |= folded.back();
    }
    int width = 0;
    for (; all != 0; all >>= 8) ++width;
    widths.push_back(width);
    for (int plane = 0; plane < width; ++plane)
      for (const std::uint64_t number : folded) planes += static_cast<char>(number >> (8 * plane) & 255u);
  }
  return planes;
}

std::string deflated(const std::string& planes) {
  uLongf length = compressBound(static_cast<uLong>(planes.size()));
  std::string bytes(length, '\0');
  if (compress2(reinterpret_cast<Bytef*>(bytes.data()), &length,
                reinterpret_cast<const Bytef*>(planes.data()), static_cast<uLong>(planes.size()),
                deflateLevel) != Z_OK)
    throw Failure("not enough memory to pack the report");
  bytes.resize(length);
  return bytes;
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
  const double largest = std::max(std::abs(low), std::abs(high));
  if (!field.classes.empty() || !(low <= high) || largest == 0.0) return packed;
  const double wanted = std::max((high - low) / 1e3, largest / 1e6);
  packed.power = static_cast<int>(std::floor(std::log10(wanted)));
  return packed;
}

PackedMesh packMesh(const ReportData& report) {
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
  for (const bool morton : {false, true}) {
    std::vector<int> widths;
    std::string bytes = deflated(planesOf(streamsOf(report, mesh, used, part, blank, morton), widths));
    if (morton && bytes.size() >= mesh.bytes.size()) break;
    mesh.bytes = std::move(bytes);
    mesh.widths = std::move(widths);
  }
  return mesh;
}

}  // namespace host
