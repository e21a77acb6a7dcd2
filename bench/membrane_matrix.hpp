// The stiffness matrix of a plane membrane in the pattern of this system: two unknowns per node, lower
// triangle by columns, diagonal first.
//
// Sum of the plane-stress stiffness matrices of linear triangles (O. C. Zienkiewicz, R. L. Taylor, The Finite
// Element Method, vol. 1), E = 1, ν = 0.3, thickness per element 0.5 to 1.5 at random, plus a shift of the
// diagonal that removes the rigid motion: positive definite for every contender. Values dimensionless.
#pragma once

#include <cstdint>
#include <vector>

#include "plane_mesh.hpp"

namespace bench {

/// Symmetric matrix by its lower triangle. The pattern is held in both index bases, so that no contender
/// converts.
struct SymmetricMatrix {
  std::int32_t n = 0;
  std::vector<std::int32_t> COLS, ROWI;  // one-based
  std::vector<std::int32_t> start, row;  // the same, zero-based
  std::vector<double> SYSM;              // values, in the order of ROWI

  /// ‖A·x − b‖∞ / (‖A‖∞·‖x‖∞ + ‖b‖∞), the normwise backward error of x.
  double backwardError(const std::vector<double>& x, const std::vector<double>& b) const;
};

/// Throws std::runtime_error if the library's structure builder fails.
SymmetricMatrix membraneMatrix(const PlaneMesh& mesh, std::uint64_t seed);

}  // namespace bench
