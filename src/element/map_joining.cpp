// Laplacian, loads and turns of the maps from part to blank.
#include "element/map_joining.hpp"

#include <cmath>
#include <limits>
#include <utility>

namespace tornwalzen {

namespace {

/// Adds A·M·∇N of the three corners to RR.
void addLoads(Int e, const PotentialMesh& mesh, const BlankMap& M, Vector<double> RR) {
  const double A = mesh.FRAMES(frame::weight, e), a = A * mesh.FRAMES(frame::along, e),
               b = A * mesh.FRAMES(frame::tilt, e), c = A * mesh.FRAMES(frame::across, e);
  const double second[2] = {M.J11 * a + M.J12 * b, M.J21 * a + M.J22 * b};
  const double third[2] = {M.J12 * c, M.J22 * c};
  for (Int i = 0; i < 2; ++i) {
    RR(2 * mesh.INTA(e, 2) - 1 + i) += second[i];
    RR(2 * mesh.INTA(e, 3) - 1 + i) += third[i];
    RR(2 * mesh.INTA(e, 1) - 1 + i) -= second[i] + third[i];
  }
}

void clear(Vector<double> values) {
  for (Int64 i = 1; i <= values.length(); ++i) values(i) = 0.0;
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
  clear(SYSM);
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
  for (Int e = 1; e <= mesh.FRAMES.columns(); ++e) {
    const BlankMap J = blankMap(e, mesh.INTA, mesh.FRAMES, RX);
    ANGLE(e) = std::atan2(J.J21 - J.J12, J.J11 + J.J22);
  }
}

void rotationLoads(const PotentialMesh& mesh, Vector<const double> RX, Vector<const double> ANGLE,
                   Vector<double> RR) {
  clear(RR);
  for (Int e = 1; e <= mesh.FRAMES.columns(); ++e) {
    const BlankMap J = blankMap(e, mesh.INTA, mesh.FRAMES, RX);
    const double c = std::cos(ANGLE(e)), s = std::sin(ANGLE(e));
    addLoads(e, mesh, {c - J.J11, -s - J.J12, s - J.J21, c - J.J22}, RR);
  }
}

void closestRotationLoads(const PotentialMesh& mesh, Vector<const double> RX, Vector<double> RR) {
  clear(RR);
  for (Int e = 1; e <= mesh.FRAMES.columns(); ++e) {
    const BlankMap J = blankMap(e, mesh.INTA, mesh.FRAMES, RX);
    const double x = J.J11 + J.J22, y = J.J21 - J.J12, length = std::sqrt(x * x + y * y);
    const double c = length > 0.0 ? x / length : 0.0, s = length > 0.0 ? y / length : 0.0;
    addLoads(e, mesh, {c - J.J11, -s - J.J12, s - J.J21, c - J.J22}, RR);
  }
}

double largestTurn(const PotentialMesh& mesh, Vector<const double> RX, Vector<const double> RB) {
  double largest = 0.0;
  for (Int e = 1; e <= mesh.FRAMES.columns(); ++e) {
    const double turn =
        std::fabs(turnRate(blankMap(e, mesh.INTA, mesh.FRAMES, RX), blankMap(e, mesh.INTA, mesh.FRAMES, RB)));
    if (turn > largest) largest = turn;
  }
  return largest;
}

void turnedLoads(const PotentialMesh& mesh, Vector<const double> RX, Vector<const double> RB, double t,
                 Vector<double> RR) {
  clear(RR);
  for (Int e = 1; e <= mesh.FRAMES.columns(); ++e) {
    const BlankMap J = blankMap(e, mesh.INTA, mesh.FRAMES, RX), d = blankMap(e, mesh.INTA, mesh.FRAMES, RB);
    const double omega = turnRate(J, d), c = std::cos(t * omega), s = std::sin(t * omega);
    const BlankMap S{J.J11 + t * (d.J11 + omega * J.J21), J.J12 + t * (d.J12 + omega * J.J22),
                     J.J21 + t * (d.J21 - omega * J.J11), J.J22 + t * (d.J22 - omega * J.J12)};
    addLoads(e, mesh,
             {c * S.J11 - s * S.J21 - J.J11, c * S.J12 - s * S.J22 - J.J12, s * S.J11 + c * S.J21 - J.J21,
              s * S.J12 + c * S.J22 - J.J22},
             RR);
  }
}

bool stretchesWithin(const PotentialMesh& mesh, Vector<const double> FROM, Vector<const double> TO,
                     double limit) {
  for (Int e = 1; e <= mesh.FRAMES.columns(); ++e) {
    const SingularValues a = singularValues(blankMap(e, mesh.INTA, mesh.FRAMES, FROM)),
                         b = singularValues(blankMap(e, mesh.INTA, mesh.FRAMES, TO));
    if (!(std::fabs(b.s1 - a.s1) <= limit * a.s1 && std::fabs(b.s2 - a.s2) <= limit * std::fabs(a.s2)))
      return false;
  }
  return true;
}

double stepToInversion(const PotentialMesh& mesh, Vector<const double> RX, Vector<const double> RB) {
  double least = std::numeric_limits<double>::infinity();
  for (Int e = 1; e <= mesh.FRAMES.columns(); ++e) {
    const BlankMap J = blankMap(e, mesh.INTA, mesh.FRAMES, RX), d = blankMap(e, mesh.INTA, mesh.FRAMES, RB);
    const double c = J.determinant(), a = d.determinant();
    if (!(c > 0.0)) continue;
    const double b = J.J11 * d.J22 + d.J11 * J.J22 - J.J12 * d.J21 - d.J12 * J.J21;
    // a·t² + b·t + c = 0, c > 0: the smaller positive root as 2c/(-b + √(b² - 4ac)), which loses no digit
    const double under = b * b - 4.0 * a * c;
    if (!(under >= 0.0)) continue;
    const double divisor = -b + std::sqrt(under);
    if (divisor > 0.0 && 2.0 * c < least * divisor) least = 2.0 * c / divisor;
  }
  return least;
}

}  // namespace tornwalzen
