// Taking some triangles of a mesh; see the header.
#include "mesh/submesh.hpp"

#include <algorithm>
#include <cmath>

namespace host {

namespace {
constexpr std::size_t mostNamed = 3;
}

void keepTriangles(const std::vector<bool>& keep, Mesh& mesh) {
  std::size_t kept = 0;
  for (std::size_t e = 0; e < mesh.elements(); ++e) {
    if (!keep[e]) continue;
    for (std::size_t k = 0; k < 3; ++k) mesh.corners[3 * kept + k] = mesh.corners[3 * e + k];
    for (auto* ids : {&mesh.ids.element, &mesh.ids.part})
      if (!ids->empty()) (*ids)[kept] = (*ids)[e];
    ++kept;
  }
  mesh.corners.resize(3 * kept);
  for (auto* ids : {&mesh.ids.element, &mesh.ids.part})
    if (!ids->empty()) ids->resize(kept);
}

void dropUnusedNodes(Mesh& mesh) {
  std::vector<std::int64_t> number(mesh.nodes(), 0);
  for (const std::int64_t node : mesh.corners) number[static_cast<std::size_t>(node) - 1] = 1;
  std::size_t kept = 0;
  for (std::size_t n = 0; n < number.size(); ++n) {
    if (number[n] == 0) continue;
    for (std::size_t axis = 0; axis < 3; ++axis) mesh.points[3 * kept + axis] = mesh.points[3 * n + axis];
    if (!mesh.ids.node.empty()) mesh.ids.node[kept] = mesh.ids.node[n];
    if (!mesh.flags.empty())
      for (std::size_t k = 0; k < 2; ++k) mesh.flags[2 * kept + k] = mesh.flags[2 * n + k];
    number[n] = static_cast<std::int64_t>(++kept);
  }
  mesh.points.resize(3 * kept);
  if (!mesh.ids.node.empty()) mesh.ids.node.resize(kept);
  if (!mesh.flags.empty()) mesh.flags.resize(2 * kept);
  for (std::int64_t& node : mesh.corners) node = number[static_cast<std::size_t>(node) - 1];
}

bool isSound(const Mesh& mesh) {
  const auto nodes = static_cast<std::int64_t>(mesh.nodes());
  return nodes < INT32_MAX && mesh.elements() < INT32_MAX &&
         std::all_of(mesh.corners.begin(), mesh.corners.end(),
                     [&](std::int64_t node) { return node >= 1 && node <= nodes; }) &&
         std::all_of(mesh.points.begin(), mesh.points.end(), [](double x) { return std::isfinite(x); });
}

std::string firstElements(const Mesh& mesh, const std::vector<std::size_t>& triangles) {
  std::string text = triangles.size() == 1 ? "element " : "elements ";
  for (std::size_t k = 0; k < std::min(triangles.size(), mostNamed); ++k)
    text += (k > 0 ? ", " : "") + (mesh.ids.element.empty() ? std::to_string(triangles[k] + 1)
                                                            : std::to_string(mesh.ids.element[triangles[k]]));
  return text + (triangles.size() > mostNamed ? ", ..." : "");
}

std::string nodeNumber(const Mesh& mesh, std::size_t node) {
  return std::to_string(mesh.ids.node.empty() ? static_cast<std::int64_t>(node) + 1 : mesh.ids.node[node]);
}

}  // namespace host
