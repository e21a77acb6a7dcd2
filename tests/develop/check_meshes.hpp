// Meshes for the checks of topology and blank, as lists that a test may change before it takes views of them.
#pragma once

#include <array>
#include <cmath>
#include <random>
#include <utility>
#include <vector>

#include "develop/mesh_edges.hpp"

namespace tornwalzen::test {

struct CheckMesh {
  std::vector<std::array<double, 3>> nodes;
  std::vector<std::array<Int, 3>> triangles;
  std::vector<double> blank;  // u, v of node 1, of node 2, ... (mm)

  /// Views of the lists as they are now; valid until the next call.
  PartMesh mesh() {
    const std::size_t nn = nodes.size(), ne = triangles.size();
    KNG_.resize(3 * nn + 1);
    INTA_.resize(3 * ne + 1);
    for (std::size_t i = 0; i < 3; ++i) {
      for (std::size_t n = 0; n < nn; ++n) KNG_[i * nn + n] = nodes[n][i];
      for (std::size_t e = 0; e < ne; ++e) INTA_[i * ne + e] = triangles[e][i];
    }
    PartMesh M;
    M.KNG = {"KNG", KNG_.data(), static_cast<Int64>(nn), 3};
    M.INTA = {"INTA", INTA_.data(), static_cast<Int64>(ne), 3};
    M.nkno = static_cast<Int>(nn);
    M.nele = static_cast<Int>(ne);
    return M;
  }
  Vector<const double> RX() const { return {"RX", blank.data(), static_cast<Int64>(blank.size())}; }

  void turnOver() {
    for (auto& t : triangles) std::swap(t[1], t[2]);
  }
  void turn(const double (&T)[3][3]) {
    for (auto& p : nodes) {
      const auto q = p;
      for (std::size_t i = 0; i < 3; ++i) p[i] = T[i][0] * q[0] + T[i][1] * q[1] + T[i][2] * q[2];
    }
  }
  /// Adds another mesh as a piece of its own.
  void add(const CheckMesh& other) {
    const Int shift = static_cast<Int>(nodes.size());
    nodes.insert(nodes.end(), other.nodes.begin(), other.nodes.end());
    blank.insert(blank.end(), other.blank.begin(), other.blank.end());
    for (const auto& t : other.triangles) triangles.push_back({t[0] + shift, t[1] + shift, t[2] + shift});
  }
  /// The blank is the part seen from +z.
  void projectBlank() {
    blank.clear();
    for (const auto& p : nodes) blank.insert(blank.end(), {p[0], p[1]});
  }

 private:
  std::vector<double> KNG_;
  std::vector<Int> INTA_;
};

/// Incidences of `columns` × `rows` squares over nodes numbered row by row, counter-clockwise.
inline std::vector<std::array<Int, 3>> gridIncidences(Int columns, Int rows) {
  std::vector<std::array<Int, 3>> triangles;
  for (Int r = 0; r < rows; ++r)
    for (Int c = 0; c < columns; ++c) {
      const Int n = r * (columns + 1) + c + 1, up = n + columns + 1;
      triangles.push_back({n, n + 1, up + 1});
      triangles.push_back({n, up + 1, up});
    }
  return triangles;
}

/// A flat sheet of unit squares in z = 0 whose blank is itself.
inline CheckMesh gridSheet(Int columns, Int rows) {
  CheckMesh sheet;
  for (Int r = 0; r <= rows; ++r)
    for (Int c = 0; c <= columns; ++c) sheet.nodes.push_back({double(c), double(r), 0.0});
  sheet.triangles = gridIncidences(columns, rows);
  sheet.projectBlank();
  return sheet;
}

/// A random rotation: a uniform unit quaternion.
inline void randomRotation(std::mt19937& generator, double (&T)[3][3]) {
  std::normal_distribution<double> normal;
  double q[4], length = 0.0;
  for (double& x : q) x = normal(generator), length += x * x;
  for (double& x : q) x /= std::sqrt(length);
  const double w = q[0], x = q[1], y = q[2], z = q[3];
  const double R[3][3] = {{1 - 2 * (y * y + z * z), 2 * (x * y - z * w), 2 * (x * z + y * w)},
                          {2 * (x * y + z * w), 1 - 2 * (x * x + z * z), 2 * (y * z - x * w)},
                          {2 * (x * z - y * w), 2 * (y * z + x * w), 1 - 2 * (x * x + y * y)}};
  for (int i = 0; i < 3; ++i)
    for (int j = 0; j < 3; ++j) T[i][j] = R[i][j];
}

}  // namespace tornwalzen::test
