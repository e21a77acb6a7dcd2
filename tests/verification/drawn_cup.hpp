// Drawn parts whose blank and thickness are known from forward simulations: how far the inverse run is from them.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "host_kit/parts.hpp"

namespace verification {

constexpr double cupThickness = 0.95;  // mm, of the rectangular cup

struct DrawnCup {
  host_kit::HostPart part;        // a quarter, held in its planes of symmetry
  std::vector<double> blank;      // u v per node (mm)
  std::vector<double> thickness;  // per triangle (mm), at the end of the stroke
};

/// Empty where the folder does not hold the part.
inline DrawnCup readDrawnPart(const std::string& folder, const std::string& name) {
  DrawnCup cup{host_kit::readObj(folder + "/" + name + ".obj"), {}, {}};
  if (!cup.part.knots.empty()) host_kit::holdSymmetryPlanes(cup.part);
  const host_kit::HostPart blank = host_kit::readObj(folder + "/" + name + ".flat_blank.obj");
  for (std::size_t n = 0; n < blank.knots.size() / 3; ++n)
    cup.blank.insert(cup.blank.end(), {blank.knots[3 * n], blank.knots[3 * n + 1]});
  std::ifstream file(folder + "/" + name + ".thickness.tsv");
  for (std::string line; std::getline(file, line);) {
    if (line.empty() || line[0] == '#') continue;
    std::istringstream numbers(line);
    double first, second, last;
    numbers >> first >> second >> last;
    cup.thickness.push_back(last);
  }
  return cup;
}

inline DrawnCup readDrawnCup(const std::string& folder) {
  return readDrawnPart(folder, "dfg_cup_quarter");
}

/// Edges of the sheet's outer edge: those with one triangle that do not lie in a plane of symmetry, as node
/// indices from 0.
inline std::vector<std::pair<std::size_t, std::size_t>> outerEdge(const host_kit::HostPart& part) {
  std::map<std::pair<std::int32_t, std::int32_t>, int> triangles;
  for (std::size_t e = 0; e < part.inzi.size(); e += 3)
    for (std::size_t c = 0; c < 3; ++c)
      ++triangles[std::minmax(part.inzi[e + c], part.inzi[e + (c + 1) % 3])];
  std::vector<std::pair<std::size_t, std::size_t>> edges;
  for (const auto& [nodes, count] : triangles) {
    const auto a = static_cast<std::size_t>(nodes.first) - 1, b = static_cast<std::size_t>(nodes.second) - 1;
    const auto inPlane = [&](std::size_t axis) {
      return std::fabs(part.knots[3 * a + axis]) < 1e-4 && std::fabs(part.knots[3 * b + axis]) < 1e-4;
    };
    if (count == 1 && !inPlane(0) && !inPlane(1)) edges.push_back({a, b});
  }
  return edges;
}

struct CupErrors {
  double edgeMean = 0,
         edgeLargest = 0;         // mm, between the nodes of our outer edge and the same nodes in the truth
  double edgeSigned = 0;          // mm, mean of how much farther from the middle ours lie
  double thicknessRms = 0;        // mm
  double correlation = 0;         // of the two thickness fields, dimensionless
  std::vector<double> thickness;  // mm, ours, per triangle
};

inline double triangleArea(const double* a, const double* b, const double* c) {
  const double P[3] = {b[0] - a[0], b[1] - a[1], b[2] - a[2]}, Q[3] = {c[0] - a[0], c[1] - a[1], c[2] - a[2]};
  return 0.5 * std::hypot(P[1] * Q[2] - P[2] * Q[1], P[2] * Q[0] - P[0] * Q[2], P[0] * Q[1] - P[1] * Q[0]);
}

/// RX: in, the blank found (mm). sheetThickness: in, of the blank (mm).
inline CupErrors compareCup(const DrawnCup& cup, const std::vector<double>& RX,
                            double sheetThickness = cupThickness) {
  CupErrors errors;
  const auto edges = outerEdge(cup.part);
  std::vector<std::size_t> nodes;
  for (const auto& [a, b] : edges) nodes.insert(nodes.end(), {a, b});
  std::sort(nodes.begin(), nodes.end());
  nodes.erase(std::unique(nodes.begin(), nodes.end()), nodes.end());
  for (const std::size_t n : nodes) {
    const double distance = std::hypot(RX[2 * n] - cup.blank[2 * n], RX[2 * n + 1] - cup.blank[2 * n + 1]);
    errors.edgeSigned +=
        (std::hypot(RX[2 * n], RX[2 * n + 1]) - std::hypot(cup.blank[2 * n], cup.blank[2 * n + 1])) /
        static_cast<double>(nodes.size());
    errors.edgeMean += distance / static_cast<double>(nodes.size());
    errors.edgeLargest = std::max(errors.edgeLargest, distance);
  }

  const std::size_t elements = cup.part.inzi.size() / 3;
  double square = 0, sum[2] = {0, 0}, products[3] = {0, 0, 0};
  for (std::size_t e = 0; e < elements; ++e) {
    double flat[3][3] = {};
    const double* corner[3];
    for (std::size_t c = 0; c < 3; ++c) {
      const std::size_t n = static_cast<std::size_t>(cup.part.inzi[3 * e + c]) - 1;
      corner[c] = &cup.part.knots[3 * n];
      flat[c][0] = RX[2 * n], flat[c][1] = RX[2 * n + 1];
    }
    const double strain =
        std::log(triangleArea(flat[0], flat[1], flat[2]) / triangleArea(corner[0], corner[1], corner[2]));
    const double ours = sheetThickness * std::exp(strain), truth = cup.thickness[e];
    errors.thickness.push_back(ours);
    square += (ours - truth) * (ours - truth);
    sum[0] += ours, sum[1] += truth;
  }
  const double count = static_cast<double>(elements);
  errors.thicknessRms = std::sqrt(square / count);
  for (std::size_t e = 0; e < elements; ++e) {
    const double a = errors.thickness[e] - sum[0] / count, b = cup.thickness[e] - sum[1] / count;
    products[0] += a * b, products[1] += a * a, products[2] += b * b;
  }
  errors.correlation = products[0] / std::sqrt(products[1] * products[2]);
  return errors;
}

}  // namespace verification
