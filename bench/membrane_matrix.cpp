// Pattern by the library's structure builder, values by the triangles' stiffness matrices.
#include "membrane_matrix.hpp"

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <utility>

#include "host_kit/fixed_host.hpp"
#include "quiet.hpp"
#include "surface_mesh.hpp"  // shapes::Random

namespace bench {

namespace {

constexpr double poisson = 0.3;
constexpr double shift = 1e-3;  // of the mean diagonal entry

void buildPattern(const PlaneMesh& mesh, SymmetricMatrix& a) {
  std::vector<double> knots;
  for (std::int32_t n = 0; n < mesh.nodes(); ++n)
    knots.insert(knots.end(), {mesh.xy[2 * n], mesh.xy[2 * n + 1], 0.0});
  host_kit::FixedHost<> host;
  host.open(knots, mesh.corners);
  const Quiet quiet;
  if (host.init(1) != 0) throw std::runtime_error("the pattern could not be built");
  host_kit::ExactMemory::resize(host.ROWI, host.MNSYSM[0]);
  a.n = host.NEQ[0];
  a.COLS = std::move(host.COLS);
  a.ROWI = std::move(host.ROWI);
  a.start.resize(a.COLS.size());
  a.row.resize(a.ROWI.size());
  std::transform(a.COLS.begin(), a.COLS.end(), a.start.begin(), [](std::int32_t i) { return i - 1; });
  std::transform(a.ROWI.begin(), a.ROWI.end(), a.row.begin(), [](std::int32_t i) { return i - 1; });
}

/// K(6, 6), corners as listed, thickness t.
void triangleStiffness(const PlaneMesh& mesh, const std::int32_t* corner, double t, double (&K)[6][6]) {
  double x[3], y[3];
  for (int i = 0; i < 3; ++i) {
    x[i] = mesh.xy[2 * (corner[i] - 1)];
    y[i] = mesh.xy[2 * (corner[i] - 1) + 1];
  }
  const double twiceArea = (x[1] - x[0]) * (y[2] - y[0]) - (x[2] - x[0]) * (y[1] - y[0]);
  const double plane = t / (1.0 - poisson * poisson) / (2.0 * twiceArea), shear = 0.5 * (1.0 - poisson);
  for (int i = 0; i < 3; ++i)
    for (int j = 0; j < 3; ++j) {
      const double bi = y[(i + 1) % 3] - y[(i + 2) % 3], ci = x[(i + 2) % 3] - x[(i + 1) % 3];
      const double bj = y[(j + 1) % 3] - y[(j + 2) % 3], cj = x[(j + 2) % 3] - x[(j + 1) % 3];
      K[2 * i][2 * j] = plane * (bi * bj + shear * ci * cj);
      K[2 * i][2 * j + 1] = plane * (poisson * bi * cj + shear * ci * bj);
      K[2 * i + 1][2 * j] = plane * (poisson * ci * bj + shear * bi * cj);
      K[2 * i + 1][2 * j + 1] = plane * (ci * cj + shear * bi * bj);
    }
}

void addTriangle(const std::int32_t* corner, const double (&K)[6][6], SymmetricMatrix& a) {
  for (int p = 0; p < 6; ++p)
    for (int q = 0; q < 6; ++q) {
      const std::int32_t i = 2 * (corner[p / 2] - 1) + p % 2, j = 2 * (corner[q / 2] - 1) + q % 2;
      if (i < j) continue;
      const auto first = a.row.begin() + a.start[j], last = a.row.begin() + a.start[j + 1];
      a.SYSM[std::lower_bound(first, last, i) - a.row.begin()] += K[p][q];
    }
}

}  // namespace

SymmetricMatrix membraneMatrix(const PlaneMesh& mesh, std::uint64_t seed) {
  SymmetricMatrix a;
  buildPattern(mesh, a);
  a.SYSM.assign(a.ROWI.size(), 0.0);
  shapes::Random random(seed);
  for (std::int32_t e = 0; e < mesh.triangles(); ++e) {
    double K[6][6];
    triangleStiffness(mesh, &mesh.corners[3 * e], 1.0 + random.within(0.5), K);
    addTriangle(&mesh.corners[3 * e], K, a);
  }
  double trace = 0.0;
  for (std::int32_t j = 0; j < a.n; ++j) trace += a.SYSM[a.start[j]];
  for (std::int32_t j = 0; j < a.n; ++j) a.SYSM[a.start[j]] += shift * trace / a.n;
  return a;
}

double SymmetricMatrix::backwardError(const std::vector<double>& x, const std::vector<double>& b) const {
  std::vector<double> residual = b, rowSum(n, 0.0);
  for (std::int32_t j = 0; j < n; ++j)
    for (std::int32_t k = start[j]; k < start[j + 1]; ++k) {
      const std::int32_t i = row[k];
      residual[i] -= SYSM[k] * x[j];
      rowSum[i] += std::abs(SYSM[k]);
      if (i == j) continue;
      residual[j] -= SYSM[k] * x[i];
      rowSum[j] += std::abs(SYSM[k]);
    }
  const auto largest = [](const std::vector<double>& v) {
    double m = 0.0;
    for (double e : v) m = std::abs(e) > m || std::isnan(e) ? std::abs(e) : m;
    return m;
  };
  return largest(residual) / (largest(rowSum) * largest(x) + largest(b));
}

}  // namespace bench
