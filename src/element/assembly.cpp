// Global residual and tangent: a sum over the triangles in order, each entry at its place in the pattern.
#include "element/assembly.hpp"

#include <cmath>

#include "element/element.hpp"
#include "element/lanes/lane_pass.hpp"
#include "element/tangent_places.hpp"

namespace tornwalzen {

namespace {

/// What one element adds to the global sums. Its gradient and tangent lie `stride` doubles from entry to
/// entry.
struct ElementSums {
  const DriverArrays& a;
  const TangentPlaces& places;
  bool withMatrix;

  template <int stride>
  void add(Int e, const double* GRADIENT, const double* AMAT) const {
    const Int corner[3] = {a.INTA(e, 1), a.INTA(e, 2), a.INTA(e, 3)};
    for (int c = 0; c < 3; ++c) {
      a.RR(2 * corner[c] - 1) -= GRADIENT[stride * (2 * c)];
      a.RR(2 * corner[c]) -= GRADIENT[stride * (2 * c + 1)];
    }
    if (withMatrix) places.add<stride>(corner, AMAT);
  }
};

/// Largest |RR(i)| of the free unknowns. A NaN stays: a residual that is no number must not pass for a small
/// one.
double residualNorm(Vector<const Int> ARFA, Vector<const double> RR) {
  double largest = 0.0;
  for (Int i = 1; i <= ARFA.length(); ++i) {
    if (ARFA(i) != 1) continue;
    const double size = std::fabs(RR(i));
    if (size > largest || std::isnan(size)) largest = size;
  }
  return largest;
}

/// One pass over all triangles in order: their gradients and, withMatrix, their tangents. At the first degenerate
/// element `ierrel` is set and the pass ends.
void addElements(Analysis& run, bool withMatrix, const DriverArrays& a) {
  const FlowCurve CURVE(run);
  const TangentPlaces places(a.COLS, a.ROWI, a.SYSM);
  const ElementSums sums{a, places, withMatrix};
  const LaneCurve laneCurve(CURVE);
  LaneBatch batch;
  for (Int e = 1; e <= run.nele;) {
    if (e + laneCount - 1 <= run.nele && lanesServe(run) && takeEight(run, e, a.INTA, a.RX, a.KNZ, batch)) {
      lanesOf(run).evaluate(withMatrix ? Order::hessian : Order::gradient, laneCurve, batch);
      for (int l = 0; l < laneCount; ++l, ++e)
        sums.add<laneCount>(e, &batch.GRADIENT[0][l], &batch.HESSIAN[0][l]);
      continue;
    }
    const Int last = e + laneCount - 1 < run.nele ? e + laneCount - 1 : run.nele;
    for (; e <= last; ++e) {
      double potential, GRADIENT[6], AMAT[36];
      elementRoutine(run, e, withMatrix ? 1 : 0, a.INTA, a.RX, a.KNZ, CURVE, potential, GRADIENT, AMAT);
      if (failed(run.ierrel)) return;
      sums.add<1>(e, GRADIENT, AMAT);
    }
  }
}

/// The potentials of all triangles in order, with columns 1 and 2 of the element table.
void addElementEnergy(Analysis& run, const DriverArrays& a, double& EN) {
  double sum;
  measureElements(run, a.INTA, a.RX, a.KNZ, FlowCurve(run), sum, a.ELG);
  EN += sum;
}

/// Everything that adds to the total potential: its energy, its share of residual and tangent. A force with a potential
/// or a load is one row more.
struct PotentialTerm {
  void (*derivatives)(Analysis& run, bool withMatrix, const DriverArrays& a);
  void (*energy)(Analysis& run, const DriverArrays& a, double& EN);
};
constexpr PotentialTerm terms[] = {{addElements, addElementEnergy}};

}  // namespace

void assemble(Analysis& run, Int mode, const DriverArrays& a) {
  const bool withMatrix = mode == residualAndMatrix;
  for (Int i = 1; i <= run.neq; ++i) a.RR(i) = 0.0;
  if (withMatrix) {
    for (Int p = 1; p <= run.solver.nsysm; ++p) a.SYSM(p) = 0.0;
    for (Int i = 1; i <= run.neq; ++i) a.TEMP(i) = 0.0;
  }
  for (const PotentialTerm& term : terms) {
    term.derivatives(run, withMatrix, a);
    if (failed(run.ierrel)) return;
  }
  run.maxgrad = residualNorm(a.ARFA, a.RR);
}

void energySum(Analysis& run, double& EN, const DriverArrays& a) {
  EN = 0.0;
  for (const PotentialTerm& term : terms) {
    term.energy(run, a, EN);
    if (failed(run.ierrel)) return;
  }
}

}  // namespace tornwalzen
