// Laplacian, loads and turns of the maps from part to blank.
#include "element/map_joining.hpp"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <limits>
#include <utility>

#include "element/element_shares.hpp"

namespace tornwalzen {

namespace {

constexpr Int64 leastMeasured = 2048;  // triangles of a range

/// A·M·∇N at corners 2 and 3 of eight triangles, u and v (mm).
struct LoadBatch {
  double SECOND[2][laneCount], THIRD[2][laneCount];
};

/// RR: out, Σ A·M·∇N of all triangles, M = mapOf(e).
template <class MapOf>
void sumLoads(const PotentialMesh& mesh, MapOf mapOf, Vector<double> RR) {
  constexpr Int64 leastCleared = 32768;  // by a thread
  inRanges(mesh.pool, RR.length(), leastCleared, [&](Int64 first, Int64 last) {
    for (Int64 i = first; i <= last; ++i) RR(i) = 0.0;
  });
  overElements<LoadBatch>(
      mesh.parts, static_cast<Int>(mesh.FRAMES.columns()),
      [&](Int first, Int n, LoadBatch& batch) {
        for (Int l = 0; l < n; ++l) {
          const Int e = first + l;
          const BlankMap M = mapOf(e);
          const double A = mesh.FRAMES(frame::weight, e), a = A * mesh.FRAMES(frame::along, e),
                       b = A * mesh.FRAMES(frame::tilt, e), c = A * mesh.FRAMES(frame::across, e);
          batch.SECOND[0][l] = M.J11 * a + M.J12 * b;
          batch.SECOND[1][l] = M.J21 * a + M.J22 * b;
          batch.THIRD[0][l] = M.J12 * c;
          batch.THIRD[1][l] = M.J22 * c;
        }
        return n;
      },
      [&](auto owns, Int e, Int l, const LoadBatch& batch) {
        const Int n1 = mesh.INTA(e, 1), n2 = mesh.INTA(e, 2), n3 = mesh.INTA(e, 3);
        for (Int i = 0; i < 2; ++i) {
          if (owns(n2)) RR(2 * n2 - 1 + i) += batch.SECOND[i][l];
          if (owns(n3)) RR(2 * n3 - 1 + i) += batch.THIRD[i][l];
          if (owns(n1)) RR(2 * n1 - 1 + i) -= batch.SECOND[i][l] + batch.THIRD[i][l];
        }
      });
}

/// Rate of the closest rotation's angle at J along dJ; 0 where J has none.
double turnRate(const BlankMap& J, const BlankMap& dJ) {
  const double sine = J.J21 - J.J12, cosine = J.J11 + J.J22, square = sine * sine + cosine * cosine;
  const double turned = cosine * (dJ.J21 - dJ.J12) - sine * (dJ.J11 + dJ.J22);
  return square > 0.0 ? turned / square : 0.0;
}

void addEntry(Vector<const Int> COLS, Vector<const Int> ROWI, Int i, Int j, double value,
              Vector<double> SYSM) {
  if (i > j) std::swap(i, j);
  for (Int p = COLS(i); p < COLS(i + 1); ++p)
    if (ROWI(p) == j) {
      SYSM(p) += value;
      return;
    }
}

}  // namespace

void laplacian(const PotentialMesh& mesh, Vector<const Int> COLS, Vector<const Int> ROWI,
               Vector<double> SYSM) {
  for (Int64 p = 1; p <= SYSM.length(); ++p) SYSM(p) = 0.0;
  for (Int e = 1; e <= mesh.FRAMES.columns(); ++e) {
    const double A = mesh.FRAMES(frame::weight, e), a = mesh.FRAMES(frame::along, e),
                 b = mesh.FRAMES(frame::tilt, e), c = mesh.FRAMES(frame::across, e);
    const double N[3][2] = {{-a, -b - c}, {a, b}, {0.0, c}};
    for (Int i = 0; i < 3; ++i)
      for (Int j = 0; j <= i; ++j)
        addEntry(COLS, ROWI, mesh.INTA(e, i + 1), mesh.INTA(e, j + 1),
                 A * (N[i][0] * N[j][0] + N[i][1] * N[j][1]), SYSM);
  }
}

void closestRotations(const PotentialMesh& mesh, Vector<const double> RX, Vector<double> ANGLE) {
  inRanges(mesh.pool, mesh.FRAMES.columns(), leastMeasured, [&](Int64 first, Int64 last) {
    for (Int64 e = first; e <= last; ++e) {
      const BlankMap J = blankMap(static_cast<Int>(e), mesh.INTA, mesh.FRAMES, RX);
      ANGLE(e) = std::atan2(J.J21 - J.J12, J.J11 + J.J22);
    }
  });
}

void rotationLoads(const PotentialMesh& mesh, Vector<const double> RX, Vector<const double> ANGLE,
                   Vector<double> RR) {
  const auto mapOf = [&](Int e) -> BlankMap {
    const BlankMap J = blankMap(e, mesh.INTA, mesh.FRAMES, RX);
    const double c = std::cos(ANGLE(e)), s = std::sin(ANGLE(e));
    return {c - J.J11, -s - J.J12, s - J.J21, c - J.J22};
  };
  sumLoads(mesh, mapOf, RR);
}

void closestRotationLoads(const PotentialMesh& mesh, Vector<const double> RX, Vector<double> RR) {
  const auto mapOf = [&](Int e) -> BlankMap {
    const BlankMap J = blankMap(e, mesh.INTA, mesh.FRAMES, RX);
    const double x = J.J11 + J.J22, y = J.J21 - J.J12, length = std::sqrt(x * x + y * y);
    const double c = length > 0.0 ? x / length : 0.0, s = length > 0.0 ? y / length : 0.0;
    return {c - J.J11, -s - J.J12, s - J.J21, c - J.J22};
  };
  sumLoads(mesh, mapOf, RR);
}

double largestTurn(const PotentialMesh& mesh, Vector<const double> RX, Vector<const double> RB) {
  double largest = 0.0;
  const auto ofRange = [&](Int64 first, Int64 last) {
    double most = 0.0;
    for (Int64 k = first; k <= last; ++k) {
      const Int e = static_cast<Int>(k);
      const double turn = std::fabs(
          turnRate(blankMap(e, mesh.INTA, mesh.FRAMES, RX), blankMap(e, mesh.INTA, mesh.FRAMES, RB)));
      if (turn > most) most = turn;
    }
    return most;
  };
  mergeRanges(mesh.pool, mesh.FRAMES.columns(), leastMeasured, ofRange,
              [&](double most) { largest = std::max(largest, most); });
  return largest;
}

void turnedLoads(const PotentialMesh& mesh, Vector<const double> RX, Vector<const double> RB, double t,
                 Vector<double> RR) {
  const auto mapOf = [&](Int e) -> BlankMap {
    const BlankMap J = blankMap(e, mesh.INTA, mesh.FRAMES, RX), d = blankMap(e, mesh.INTA, mesh.FRAMES, RB);
    const double omega = turnRate(J, d), c = std::cos(t * omega), s = std::sin(t * omega);
    const BlankMap S{J.J11 + t * (d.J11 + omega * J.J21), J.J12 + t * (d.J12 + omega * J.J22),
                     J.J21 + t * (d.J21 - omega * J.J11), J.J22 + t * (d.J22 - omega * J.J12)};
    return {c * S.J11 - s * S.J21 - J.J11, c * S.J12 - s * S.J22 - J.J12, s * S.J11 + c * S.J21 - J.J21,
            s * S.J12 + c * S.J22 - J.J22};
  };
  sumLoads(mesh, mapOf, RR);
}

bool stretchesWithin(const PotentialMesh& mesh, Vector<const double> FROM, Vector<const double> TO,
                     double limit) {
  std::atomic<bool> within{true};
  inRanges(mesh.pool, mesh.FRAMES.columns(), leastMeasured, [&](Int64 first, Int64 last) {
    for (Int64 k = first; k <= last && within.load(std::memory_order_relaxed); ++k) {
      const Int e = static_cast<Int>(k);
      const SingularValues a = singularValues(blankMap(e, mesh.INTA, mesh.FRAMES, FROM)),
                           b = singularValues(blankMap(e, mesh.INTA, mesh.FRAMES, TO));
      if (!(std::fabs(b.s1 - a.s1) <= limit * a.s1 && std::fabs(b.s2 - a.s2) <= limit * std::fabs(a.s2)))
        within.store(false, std::memory_order_relaxed);
    }
  });
  return within.load();
}

double stepToInversion(const PotentialMesh& mesh, Vector<const double> RX, Vector<const double> RB) {
  constexpr double none = std::numeric_limits<double>::infinity();
  const auto ofRange = [&](Int64 first, Int64 last) {
    double least = none;
    for (Int64 k = first; k <= last; ++k) {
      const Int e = static_cast<Int>(k);
      const BlankMap J = blankMap(e, mesh.INTA, mesh.FRAMES, RX), d = blankMap(e, mesh.INTA, mesh.FRAMES, RB);
      const double c = J.determinant(), a = d.determinant();
      if (!(c > 0.0)) continue;
      const double b = J.J11 * d.J22 + d.J11 * J.J22 - J.J12 * d.J21 - d.J12 * J.J21;
      // a·t² + b·t + c = 0, c > 0: the smaller positive root as 2c/(-b + √(b² - 4ac)), which loses no digit
      const double under = b * b - 4.0 * a * c;
      if (!(under >= 0.0)) continue;
      const double divisor = -b + std::sqrt(under);
      if (divisor > 0.0) least = std::min(least, 2.0 * c / divisor);
    }
    return least;
  };
  double least = none;
  mergeRanges(mesh.pool, mesh.FRAMES.columns(), leastMeasured, ofRange,
              [&](double one) { least = std::min(least, one); });
  return least;
}

}  // namespace tornwalzen
