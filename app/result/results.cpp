// The results of a run per element and per node; see the header.
#include "result/results.hpp"

#include <algorithm>
#include <cmath>
#include <limits>

#include "system/vector.hpp"

namespace host {

namespace {

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

Vector difference(const std::vector<double>& points, std::int32_t to, std::int32_t from) {
  Vector d{};
  for (std::size_t axis = 0; axis < 3; ++axis)
    d[axis] = points[3 * static_cast<std::size_t>(to) - 3 + axis] -
              points[3 * static_cast<std::size_t>(from) - 3 + axis];
  return d;
}

void computeElements(const RunOutput& run, const std::vector<double>& partPoints, Results& results) {
  const std::size_t elements = run.corners.size() / 3;
  for (auto* values :
       {&results.partArea, &results.blankArea, &results.thicknessRatio, &results.thicknessStrain,
        &results.minusTraceE, &results.density, &results.smallestAngle})
    values->reserve(elements);
  for (std::size_t e = 0; e < elements; ++e) {
    const std::int32_t i = run.corners[3 * e], j = run.corners[3 * e + 1], k = run.corners[3 * e + 2];
    const Vector normal = cross(difference(partPoints, j, i), difference(partPoints, k, i));
    const Vector flat = cross(difference(results.blankPoints, j, i), difference(results.blankPoints, k, i));
    const double partArea = 0.5 * norm(normal), blankArea = 0.5 * flat[2];
    const double ratio = blankArea > 0.0 && results.developed ? blankArea / partArea : notANumber;
    results.partArea.push_back(partArea);
    results.blankArea.push_back(blankArea);
    results.thicknessRatio.push_back(ratio);
    results.thicknessStrain.push_back(std::log(ratio));
    results.minusTraceE.push_back(run.EVAL[5 * e]);
    results.density.push_back(run.EVAL[5 * e + 1]);
    results.smallestAngle.push_back(run.EVAL[5 * e + 2]);
    results.partAreaTotal += partArea;
    results.blankAreaTotal += blankArea;
    if (!(blankArea > 0.0)) ++results.folded;
  }
}

void findExtremes(Results& results) {
  const std::vector<double>& ratio = results.thicknessRatio;
  for (std::size_t e = 0; e < ratio.size(); ++e) {
    if (std::isnan(ratio[e])) continue;
    const auto number = static_cast<std::int64_t>(e) + 1;
    if (results.thinnest == 0 || ratio[e] < ratio[static_cast<std::size_t>(results.thinnest) - 1])
      results.thinnest = number;
    if (results.thickest == 0 || ratio[e] > ratio[static_cast<std::size_t>(results.thickest) - 1])
      results.thickest = number;
  }
}

void computeNodes(const PartData& part, const RunOutput& run, Results& results) {
  const auto nodes = static_cast<std::size_t>(part.nodes());
  std::vector<double> weight(nodes, 0.0);
  results.nodeThicknessStrain.assign(nodes, 0.0);
  for (std::size_t c = 0; c < run.corners.size(); ++c) {
    const std::size_t e = c / 3, n = static_cast<std::size_t>(run.corners[c]) - 1;
    if (std::isnan(results.thicknessStrain[e])) continue;
    weight[n] += results.partArea[e];
    results.nodeThicknessStrain[n] += results.partArea[e] * results.thicknessStrain[e];
  }
  for (std::size_t n = 0; n < nodes; ++n)
    results.nodeThicknessStrain[n] =
        weight[n] > 0.0 ? results.nodeThicknessStrain[n] / weight[n] : notANumber;
  results.displacement.reserve(results.blankPoints.size());
  for (std::size_t k = 0; k < results.blankPoints.size(); ++k)
    results.displacement.push_back(part.points[k] - results.blankPoints[k]);
}

double boxSide(const PartData& part, const std::vector<double>& points, std::size_t axis) {
  double low = std::numeric_limits<double>::infinity(), high = -low;
  for (std::size_t n = 0; n < part.inTriangle.size(); ++n) {
    if (!part.inTriangle[n]) continue;
    low = std::min(low, points[3 * n + axis]);
    high = std::max(high, points[3 * n + axis]);
  }
  return high - low;
}

Rectangle rectangleAround(const PartData& part, const std::vector<double>& points) {
  std::vector<PlanePoint> plane;
  for (std::size_t n = 0; n < part.inTriangle.size(); ++n)
    if (part.inTriangle[n]) plane.push_back({points[3 * n], points[3 * n + 1]});
  return smallestRectangle(std::move(plane));
}

// Whether a run that ended so came as far as the increments.
bool hasBlank(std::int32_t reason) {
  return reason == TORNWALZEN_CONVERGED || reason == TORNWALZEN_STEP_TOO_SMALL ||
         reason == TORNWALZEN_FINAL_UNCONVERGED || reason == TORNWALZEN_SOLVER_FAILED;
}

}  // namespace

bool blankIsFinite(const RunOutput& run) {
  return std::all_of(run.RX.begin(), run.RX.end(), [](double position) { return std::isfinite(position); });
}

Results computeResults(const PartData& part, const RunOutput& run, const Unit& unit) {
  Results results;
  results.developed = hasBlank(run.report.reason);
  results.blankPoints.reserve(run.RX.size() / 2 * 3);
  for (std::size_t n = 0; n < run.RX.size(); n += 2)
    results.blankPoints.insert(results.blankPoints.end(),
                               {run.RX[n] / unit.millimetres, run.RX[n + 1] / unit.millimetres, 0.0});
  computeElements(run, part.points, results);
  findExtremes(results);
  computeNodes(part, run, results);
  results.blankSizeX = boxSide(part, results.blankPoints, 0);
  results.blankSizeY = boxSide(part, results.blankPoints, 1);
  results.blankRectangle = rectangleAround(part, results.blankPoints);
  return results;
}

}  // namespace host
