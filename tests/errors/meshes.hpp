// Small parts for hostile hosts.
#pragma once

#include <cmath>
#include <cstdint>
#include <functional>
#include <vector>

namespace hostile {

struct Mesh {
  std::vector<double> knots;       // x, y, z of node 1, of node 2, ... (mm)
  std::vector<std::int32_t> inzi;  // three nodes per triangle, from 1
  std::int32_t nodes() const { return static_cast<std::int32_t>(knots.size() / 3); }
  std::int32_t triangles() const { return static_cast<std::int32_t>(inzi.size() / 3); }
};

/// A grid of `cells` x `cells` squares of 10 mm, two triangles each, counter-clockwise seen from +z, lifted
/// by z(x, y).
inline Mesh gridMesh(int cells, const std::function<double(double, double)>& height) {
  Mesh mesh;
  for (int j = 0; j <= cells; ++j)
    for (int i = 0; i <= cells; ++i) {
      const double x = 10.0 * i, y = 10.0 * j;
      mesh.knots.insert(mesh.knots.end(), {x, y, height(x, y)});
    }
  for (int j = 0; j < cells; ++j)
    for (int i = 0; i < cells; ++i) {
      const int a = j * (cells + 1) + i + 1, b = a + 1, c = a + cells + 1, d = c + 1;
      mesh.inzi.insert(mesh.inzi.end(), {a, b, d, a, d, c});
    }
  return mesh;
}

/// A shallow dome: runs to convergence in a few increments.
inline Mesh dome(int cells = 4) {
  const double middle = 5.0 * cells;
  return gridMesh(cells, [=](double x, double y) {
    const double r2 = (x - middle) * (x - middle) + (y - middle) * (y - middle);
    return 6.0 * std::exp(-r2 / (middle * middle));
  });
}

inline Mesh plate(int cells = 3) {
  return gridMesh(cells, [](double, double) { return 0.0; });
}

/// Both meshes in one, the second one's numbers behind the first one's.
inline Mesh together(Mesh first, const Mesh& second) {
  const std::int32_t shift = first.nodes();
  first.knots.insert(first.knots.end(), second.knots.begin(), second.knots.end());
  for (const std::int32_t node : second.inzi) first.inzi.push_back(node + shift);
  return first;
}

/// 1 free, 0 held: u and v of node 1 and v of node `other` are held.
inline std::vector<std::int32_t> pinned(const Mesh& mesh, std::int32_t other) {
  std::vector<std::int32_t> flags(2 * mesh.knots.size() / 3, 1);
  if (flags.empty()) return flags;
  flags[0] = flags[1] = flags[2 * other - 1] = 0;
  return flags;
}

}  // namespace hostile
