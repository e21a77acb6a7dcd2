// From the sum of the terms in J to the coordinates of the corners, and over all triangles.
//
// J = p·N2ᵀ + q·N3ᵀ with the blank's edges p, q and the shape gradients N2 = (a, b), N3 = (0, c) of
// part_frames.hpp. In the frames of J that is K = Uᵀ·dp·(Vᵀ·N2)ᵀ + Uᵀ·dq·(Vᵀ·N3)ᵀ.
#include "element/potential_sums.hpp"

#include <cmath>

#include "element/element_shares.hpp"
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

/// Edges and frames of the triangles e .. e+7.
void takeEight(Int e, const PotentialMesh& mesh, Vector<const double> RX, MapBatch& batch) {
  for (Int l = 0; l < laneCount; ++l) {
    const Int n1 = mesh.INTA(e + l, 1), n2 = mesh.INTA(e + l, 2), n3 = mesh.INTA(e + l, 3);
    for (Int i = 0; i < 2; ++i) {
      const double x1 = RX(2 * n1 - 1 + i);
      batch.p[i][l] = RX(2 * n2 - 1 + i) - x1;
      batch.q[i][l] = RX(2 * n3 - 1 + i) - x1;
    }
    batch.ALONG[l] = mesh.FRAMES(frame::along, e + l);
    batch.TILT[l] = mesh.FRAMES(frame::tilt, e + l);
    batch.ACROSS[l] = mesh.FRAMES(frame::across, e + l);
    batch.WEIGHT[l] = mesh.FRAMES(frame::weight, e + l);
  }
}

/// Where gradients and Hessians of the triangles go. places: null without Hessians.
struct Derivatives {
  Table<const Int> INTA;
  Vector<double> RR;
  const TangentPlaces* places;

  template <class Owns>
  void add(Int e, const double* GRADIENT, const double* HESSIAN, Owns owns) const {
    const Int corner[3] = {INTA(e, 1), INTA(e, 2), INTA(e, 3)};
    for (int c = 0; c < 3; ++c) {
      if (!owns(corner[c])) continue;
      RR(2 * corner[c] - 1) -= GRADIENT[laneCount * (2 * c)];
      RR(2 * corner[c]) -= GRADIENT[laneCount * (2 * c + 1)];
    }
    if (places != nullptr) places->add<laneCount>(corner, HESSIAN, owns);
  }
};

/// Σ POTENTIAL[e] in the order of the triangles.
double sumInOrder(const double* POTENTIAL, Int count) {
  double sum = 0.0;
  for (Int e = 0; e < count; ++e) sum += POTENTIAL[e];
  return sum;
}

/// Up to eight triangles, by lanes where they serve.
struct TrianglesByEights {
  Order order;
  const PotentialMesh& mesh;
  Vector<const double> RX;
  const ExtendedPotential& potential;
  const FlowCurve* CURVE;  // for the lanes; null: one by one

  Int operator()(Int e, Int n, MapBatch& batch) const {
    if (n == laneCount && CURVE != nullptr) {
      takeEight(e, mesh, RX, batch);
      if (mesh.lanes->evaluateOverPart(order, LaneCurve(*CURVE), potential.s0, potential.theta, batch))
        return n;
    }
    double GRADIENT[6], HESSIAN[36];
    for (Int l = 0; l < n; ++l) {
      batch.POTENTIAL[l] = trianglePotential(order, e + l, mesh, RX, potential, GRADIENT, HESSIAN);
      if (order == Order::value) continue;
      for (int k = 0; k < 6; ++k) batch.GRADIENT[k][l] = GRADIENT[k];
      if (order != Order::hessian) continue;
      for (int k = 0; k < 36; ++k) batch.HESSIAN[k][l] = HESSIAN[k];
    }
    return n;
  }
};

TrianglesByEights byEights(Order order, const PotentialMesh& mesh, Vector<const double> RX,
                           const ExtendedPotential& potential) {
  return {order, mesh, RX, potential, mesh.lanes != nullptr ? potential.terms.plasticOverPart() : nullptr};
}

/// Gradients and Hessians of all triangles to their places; returns the energy.
double sumDerivatives(Order order, const PotentialMesh& mesh, Vector<const double> RX,
                      const ExtendedPotential& potential, const Derivatives& derivatives) {
  const Int count = static_cast<Int>(mesh.FRAMES.columns());
  const auto compute = byEights(order, mesh, RX, potential);
  double* const POTENTIAL = mesh.parts != nullptr ? mesh.pool->scratch(count) : nullptr;
  if (POTENTIAL == nullptr) {
    double energy = 0.0;
    overElements<MapBatch>(nullptr, count, compute, [&](auto owns, Int e, Int l, const MapBatch& batch) {
      energy += batch.POTENTIAL[l];
      derivatives.add(e, &batch.GRADIENT[0][l], &batch.HESSIAN[0][l], owns);
    });
    return energy;
  }
  overElements<MapBatch>(mesh.parts, count, compute, [&](auto owns, Int e, Int l, const MapBatch& batch) {
    if (owns(mesh.INTA(e, 1))) POTENTIAL[e - 1] = batch.POTENTIAL[l];
    derivatives.add(e, &batch.GRADIENT[0][l], &batch.HESSIAN[0][l], owns);
  });
  return sumInOrder(POTENTIAL, count);
}

void clear(ThreadPool* pool, Vector<double> values) {
  constexpr Int64 leastCleared = 32768;  // by a thread
  inRanges(pool, values.length(), leastCleared, [&](Int64 first, Int64 last) {
    for (Int64 i = first; i <= last; ++i) values(i) = 0.0;
  });
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
  const Int count = static_cast<Int>(mesh.FRAMES.columns());
  const auto compute = byEights(Order::value, mesh, RX, potential);
  double* const POTENTIAL =
      mesh.pool != nullptr && count >= leastShared ? mesh.pool->scratch(count) : nullptr;
  double energy = 0.0;
  if (POTENTIAL == nullptr) {
    everyElement<MapBatch>(nullptr, count, compute,
                           [&](Int, Int l, const MapBatch& batch) { energy += batch.POTENTIAL[l]; });
    return energy;
  }
  everyElement<MapBatch>(mesh.pool, count, compute,
                         [&](Int e, Int l, const MapBatch& batch) { POTENTIAL[e - 1] = batch.POTENTIAL[l]; });
  return sumInOrder(POTENTIAL, count);
}

double potentialResidual(const PotentialMesh& mesh, Vector<const double> RX,
                         const ExtendedPotential& potential, Vector<double> RR) {
  clear(mesh.pool, RR);
  const Derivatives derivatives{mesh.INTA, RR, nullptr};
  return sumDerivatives(Order::gradient, mesh, RX, potential, derivatives);
}

double potentialTangent(const PotentialMesh& mesh, Vector<const double> RX,
                        const ExtendedPotential& potential, Vector<const Int> COLS, Vector<const Int> ROWI,
                        Vector<double> RR, Vector<double> SYSM) {
  clear(mesh.pool, RR);
  clear(mesh.pool, SYSM);
  const TangentPlaces places(COLS, ROWI, SYSM);
  const Derivatives derivatives{mesh.INTA, RR, &places};
  return sumDerivatives(Order::hessian, mesh, RX, potential, derivatives);
}

BlankShape blankShape(const PotentialMesh& mesh, Vector<const double> RX) {
  constexpr Int64 leastLooked = 2048;  // triangles of a range
  const auto ofRange = [&](Int64 first, Int64 last) {
    BlankShape shape{INFINITY, 0};
    for (Int64 e = first; e <= last; ++e) {
      const double s2 = singularValues(blankMap(static_cast<Int>(e), mesh.INTA, mesh.FRAMES, RX)).s2;
      if (!(s2 > 0.0)) ++shape.inverted;
      if (s2 < shape.smallest || std::isnan(s2)) shape.smallest = s2;
    }
    return shape;
  };
  if (mesh.FRAMES.columns() == 0) return {0.0, 0};
  BlankShape whole{INFINITY, 0};
  mergeRanges(mesh.pool, mesh.FRAMES.columns(), leastLooked, ofRange, [&](const BlankShape& part) {
    whole.inverted += part.inverted;
    if (part.smallest < whole.smallest || std::isnan(part.smallest)) whole.smallest = part.smallest;
  });
  return whole;
}

}  // namespace tornwalzen
