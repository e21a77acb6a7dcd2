// From the sum of the terms in J to the coordinates of the corners, and over all triangles.
//
// J = p·N2ᵀ + q·N3ᵀ with the blank's edges p, q and the shape gradients N2 = (a, b), N3 = (0, c) of
// part_frames.hpp. In the frames of J that is K = Uᵀ·dp·(Vᵀ·N2)ᵀ + Uᵀ·dq·(Vᵀ·N3)ᵀ.
#include "element/potential_sums.hpp"

#include "element/expansion.hpp"
#include "element/tangent_places.hpp"

namespace tornwalzen {

namespace {

/// MOVES[i][k]: what coordinate i of (pu, pv, qu, qv) does to entry k of K (1/mm).
void entriesOfMoves(const PrincipalMap& map, double a, double b, double c, double (&MOVES)[4][4]) {
  const double N[2][2] = {{map.cv * a + map.sv * b, -map.sv * a + map.cv * b}, {map.sv * c, map.cv * c}};
  const double U[2][2] = {{map.cu, -map.su},
                          {map.su, map.cu}};  // U[i][j]: component j of Uᵀ·(unit move along i)
  for (int n = 0; n < 2; ++n)
    for (int i = 0; i < 2; ++i) {
      double(&row)[4] = MOVES[2 * n + i];
      row[entry::k11] = U[i][0] * N[n][0];
      row[entry::k12] = U[i][0] * N[n][1];
      row[entry::k21] = U[i][1] * N[n][0];
      row[entry::k22] = U[i][1] * N[n][1];
    }
}

/// Visits the triangles in order. `use(e, sum-of-one)` takes value, gradient and Hessian of each.
template <class Use>
double overTriangles(Order order, const PotentialMesh& mesh, Vector<const double> RX,
                     const ExtendedPotential& potential, Use use) {
  double energy = 0.0, GRADIENT[6], HESSIAN[36];
  for (Int e = 1; e <= mesh.FRAMES.columns(); ++e) {
    energy += trianglePotential(order, e, mesh, RX, potential, GRADIENT, HESSIAN);
    use(e, GRADIENT, HESSIAN);
  }
  return energy;
}

void subtractGradient(Int e, Table<const Int> INTA, const double (&GRADIENT)[6], Vector<double> RR) {
  for (Int corner = 1; corner <= 3; ++corner) {
    const Int n = INTA(e, corner);
    RR(2 * n - 1) -= GRADIENT[2 * corner - 2];
    RR(2 * n) -= GRADIENT[2 * corner - 1];
  }
}

void clear(Vector<double> values) {
  for (Int64 i = 1; i <= values.length(); ++i) values(i) = 0.0;
}

}  // namespace

double trianglePotential(Order order, Int e, const PotentialMesh& mesh, Vector<const double> RX,
                         const ExtendedPotential& potential, double (&GRADIENT)[6], double (&HESSIAN)[36]) {
  const BlankMap J = blankMap(e, mesh.INTA, mesh.FRAMES, RX);
  TrianglePoint at{e, {}, mesh.FRAMES(frame::weight, e), potential.s0};
  at.map = principalMap(J);
  MapSum sum;
  potential.terms.add(order, at, sum);
  if (order == Order::value) return sum.value;

  double MOVES[4][4];
  entriesOfMoves(at.map, mesh.FRAMES(frame::along, e), mesh.FRAMES(frame::tilt, e),
                 mesh.FRAMES(frame::across, e), MOVES);
  for (int i = 0; i < 4; ++i)
    GRADIENT[i + 2] =
        MOVES[i][0] * sum.P[0] + MOVES[i][1] * sum.P[1] + MOVES[i][2] * sum.P[2] + MOVES[i][3] * sum.P[3];
  GRADIENT[0] = -(GRADIENT[2] + GRADIENT[4]);
  GRADIENT[1] = -(GRADIENT[3] + GRADIENT[5]);
  if (order != Order::hessian) return sum.value;

  softenNegative(potential.theta, sum);
  double EDGE[4][4];
  for (int i = 0; i < 4; ++i) {
    double row[4];
    for (int k = 0; k < 4; ++k)
      row[k] = MOVES[i][0] * sum.H[0][k] + MOVES[i][1] * sum.H[1][k] + MOVES[i][2] * sum.H[2][k] +
               MOVES[i][3] * sum.H[3][k];
    for (int j = 0; j <= i; ++j)
      EDGE[i][j] = EDGE[j][i] =
          row[0] * MOVES[j][0] + row[1] * MOVES[j][1] + row[2] * MOVES[j][2] + row[3] * MOVES[j][3];
  }
  expandHessian(EDGE, HESSIAN);
  return sum.value;
}

double potentialEnergy(const PotentialMesh& mesh, Vector<const double> RX,
                       const ExtendedPotential& potential) {
  return overTriangles(Order::value, mesh, RX, potential,
                       [](Int, const double(&)[6], const double(&)[36]) {});
}

double potentialResidual(const PotentialMesh& mesh, Vector<const double> RX,
                         const ExtendedPotential& potential, Vector<double> RR) {
  clear(RR);
  return overTriangles(Order::gradient, mesh, RX, potential,
                       [&](Int e, const double(&GRADIENT)[6], const double(&)[36]) {
                         subtractGradient(e, mesh.INTA, GRADIENT, RR);
                       });
}

double potentialTangent(const PotentialMesh& mesh, Vector<const double> RX,
                        const ExtendedPotential& potential, Vector<const Int> COLS, Vector<const Int> ROWI,
                        Vector<double> RR, Vector<double> SYSM) {
  clear(RR);
  clear(SYSM);
  const TangentPlaces places(COLS, ROWI, SYSM);
  return overTriangles(Order::hessian, mesh, RX, potential,
                       [&](Int e, const double(&GRADIENT)[6], const double(&HESSIAN)[36]) {
                         subtractGradient(e, mesh.INTA, GRADIENT, RR);
                         const Int corner[3] = {mesh.INTA(e, 1), mesh.INTA(e, 2), mesh.INTA(e, 3)};
                         places.add<1>(corner, HESSIAN);
                       });
}

BlankShape blankShape(const PotentialMesh& mesh, Vector<const double> RX) {
  BlankShape shape{0.0, 0};
  for (Int e = 1; e <= mesh.FRAMES.columns(); ++e) {
    const double s2 = singularValues(blankMap(e, mesh.INTA, mesh.FRAMES, RX)).s2;
    if (!(s2 > 0.0)) ++shape.inverted;
    if (e == 1 || !(s2 >= shape.smallest)) shape.smallest = s2;
  }
  return shape;
}

}  // namespace tornwalzen
