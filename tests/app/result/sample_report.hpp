// The data of a page made by hand: a square blank drawn into a dome, on a grid.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numeric>
#include <utility>

#include "result/report_data.hpp"

// Two triangles per cell of side x side cells. The blank is 100 x 100 mm; the part point of (x, y) lies at
// (0.9 - (r/350)^2) (x, y) and the height 30 exp(-(r/30)^2). Fields as of a run: thinning, major, minor, equivalent strain (r = 1),
// flow stress, and classes of thinning.
inline host::ReportData sampleReport(int side) {
  host::ReportData report;
  report.part = "dome.obj";
  report.program = "tornwalzen";
  const auto node = [&](int i, int j) { return j * (side + 1) + i; };
  for (int j = 0; j <= side; ++j)
    for (int i = 0; i <= side; ++i) {
      const double x = 100.0 * i / side - 50.0, y = 100.0 * j / side - 50.0;
      report.blankPoints.insert(report.blankPoints.end(), {x, y});
      const double rr = x * x + y * y, shrink = 0.9 - rr / 122500.0;
      report.partPoints.insert(report.partPoints.end(),
                               {shrink * x, shrink * y, 30.0 * std::exp(-rr / 900.0)});
    }
  for (int j = 0; j < side; ++j)
    for (int i = 0; i < side; ++i)
      for (const int corner :
           {node(i, j), node(i + 1, j), node(i + 1, j + 1), node(i, j), node(i + 1, j + 1), node(i, j + 1)})
        report.corners.push_back(corner);
  report.fields.resize(6);
  const char* const names[] = {"thinning",          "major strain", "minor strain",
                               "equivalent strain", "flow stress",  "zone"};
  for (std::size_t f = 0; f < 6; ++f) report.fields[f].name = names[f];
  report.fields[0].unit = "%";
  report.fields[4].unit = "MPa";
  report.fields[0].aboutZero = true;
  report.fields[0].key = {{1.0, 1}, {1.0, 2}};
  report.fields[3].key = {{1.0, 1, 1}, {1.0, 2, 2}, {1.0, 1, 2}};
  report.fields[4].key = {{1.0, 3}};
  report.fields[5].classes = {{"safe", host::ClassColour::green},
                              {"marginal", host::ClassColour::amber},
                              {"split", host::ClassColour::red}};
  for (std::size_t c = 0; c < report.corners.size(); c += 3) {
    // principal stretches of the map from blank to part: eigenvalues of F^T F, F = part edges * inverse blank edges
    const auto n = [&](std::size_t k) { return static_cast<std::size_t>(report.corners[c + k]); };
    double B[2][2], P[2][3];
    for (std::size_t k = 0; k < 2; ++k) {
      for (std::size_t a = 0; a < 2; ++a)
        B[k][a] = report.blankPoints[2 * n(k + 1) + a] - report.blankPoints[2 * n(0) + a];
      for (std::size_t a = 0; a < 3; ++a)
        P[k][a] = report.partPoints[3 * n(k + 1) + a] - report.partPoints[3 * n(0) + a];
    }
    const double d = B[0][0] * B[1][1] - B[0][1] * B[1][0];
    double Fx[3], Fy[3], xx = 0, xy = 0, yy = 0;
    for (int a = 0; a < 3; ++a) {
      Fx[a] = (P[0][a] * B[1][1] - P[1][a] * B[0][1]) / d;
      Fy[a] = (P[1][a] * B[0][0] - P[0][a] * B[1][0]) / d;
      xx += Fx[a] * Fx[a];
      xy += Fx[a] * Fy[a];
      yy += Fy[a] * Fy[a];
    }
    const double mean = 0.5 * (xx + yy), half = std::hypot(0.5 * (xx - yy), xy);
    const double major = 0.5 * std::log(mean + half), minor = 0.5 * std::log(mean - half);
    const double thinning = 100.0 * (1.0 - std::exp(-major - minor));
    const double equivalent = std::sqrt(4.0 / 3.0 * (major * major + minor * minor + major * minor));
    const double values[] = {thinning,
                             major,
                             minor,
                             equivalent,
                             549.03 * std::pow(0.007 + equivalent, 0.22),
                             thinning > 0.0    ? 2.0
                             : thinning > -5.0 ? 1.0
                                               : 0.0};
    for (std::size_t f = 0; f < 6; ++f) report.fields[f].values.push_back(values[f]);
    report.number.push_back(static_cast<std::int32_t>(c / 3) + 11);
  }
  report.majorField = 1;
  report.minorField = 2;
  return report;
}

// 0 .. count-1 in an order without any order: Fisher and Yates with the generator of Park and Miller.
inline std::vector<std::size_t> disorder(std::size_t count) {
  std::vector<std::size_t> order(count);
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::uint64_t state = 1;
  for (std::size_t k = count; k > 1; --k) {
    state = state * 48271 % 2147483647;
    std::swap(order[k - 1], order[state % k]);
  }
  return order;
}

// The same triangles with their numbers and values, nodes and triangles in disorder.
inline host::ReportData shuffledReport(const host::ReportData& report) {
  host::ReportData other = report;
  const std::vector<std::size_t> place = disorder(report.partPoints.size() / 3),
                                 order = disorder(report.number.size());
  for (std::size_t n = 0; n < place.size(); ++n) {
    std::copy_n(&report.partPoints[3 * n], 3, &other.partPoints[3 * place[n]]);
    std::copy_n(&report.blankPoints[2 * n], 2, &other.blankPoints[2 * place[n]]);
  }
  for (std::size_t e = 0; e < order.size(); ++e) {
    for (std::size_t k = 0; k < 3; ++k)
      other.corners[3 * e + k] =
          static_cast<std::int32_t>(place[static_cast<std::size_t>(report.corners[3 * order[e] + k])]);
    other.number[e] = report.number[order[e]];
    for (std::size_t f = 0; f < report.fields.size(); ++f)
      other.fields[f].values[e] = report.fields[f].values[order[e]];
  }
  return other;
}
