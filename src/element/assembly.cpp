// Global residual and tangent: a sum over the triangles in order, each entry at its place in the pattern.
#include "element/assembly.hpp"

#include <algorithm>
#include <cmath>

#include "element/element.hpp"
#include "element/element_shares.hpp"
#include "element/lanes/lane_pass.hpp"
#include "element/tangent_places.hpp"

namespace tornwalzen {

namespace {

constexpr Int64 leastOfThread = 32768;  // entries, where a thread does little with each

void setZero(ThreadPool* pool, Vector<double> values, Int64 count) {
  inRanges(pool, count, leastOfThread, [&](Int64 first, Int64 last) {
    for (Int64 i = first; i <= last; ++i) values(i) = 0.0;
  });
}

/// What one element adds to the global sums. Its gradient and tangent lie `stride` doubles from entry to
/// entry.
struct ElementSums {
  const DriverArrays& a;
  const TangentPlaces& places;
  bool withMatrix;

  /// owns(n): are the entries of node n to be added to?
  template <int stride, class Owns>
  void add(Int e, const double* GRADIENT, const double* AMAT, Owns owns) const {
    const Int corner[3] = {a.INTA(e, 1), a.INTA(e, 2), a.INTA(e, 3)};
    for (int c = 0; c < 3; ++c) {
      if (!owns(corner[c])) continue;
      a.RR(2 * corner[c] - 1) -= GRADIENT[stride * (2 * c)];
      a.RR(2 * corner[c]) -= GRADIENT[stride * (2 * c + 1)];
    }
    if (withMatrix) places.add<stride>(corner, AMAT, owns);
  }
};

/// Largest |RR(i)| of the free unknowns. A NaN stays: a residual that is no number must not pass for a small
/// one.
double residualNorm(ThreadPool* pool, Vector<const Int> ARFA, Vector<const double> RR) {
  const auto larger = [](double a, double b) { return b > a || std::isnan(b) ? b : a; };
  double largest = 0.0;
  mergeRanges(
      pool, ARFA.length(), leastOfThread,
      [&](Int64 first, Int64 last) {
        double part = 0.0;
        for (Int64 i = first; i <= last; ++i)
          if (ARFA(i) == 1) part = larger(part, std::fabs(RR(i)));
        return part;
      },
      [&](double part) { largest = larger(largest, part); });
  return largest;
}

/// One pass over all triangles in order: their gradients and, withMatrix, their tangents. False at a degenerate
/// element, where the pass ends.
bool addElements(Analysis& run, bool withMatrix, const ElementParts* parts, const DriverArrays& a) {
  const FlowCurve CURVE(run);
  const TangentPlaces places(a.COLS, a.ROWI, a.SYSM);
  const ElementSums sums{a, places, withMatrix};
  const Order order = withMatrix ? Order::hessian : Order::gradient;
  const Int degenerate = overElements<LaneBatch>(
      parts, run.nele,
      [&](Int e, Int n, LaneBatch& batch) {
        return evaluateUpToEight(run, order, e, n, a.INTA, a.RX, a.KNZ, CURVE, batch);
      },
      [&](auto owns, Int e, Int l, const LaneBatch& batch) {
        sums.add<laneCount>(e, &batch.GRADIENT[0][l], &batch.HESSIAN[0][l], owns);
      });
  return degenerate == 0;
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
  bool (*derivatives)(Analysis& run, bool withMatrix, const ElementParts* parts, const DriverArrays& a);
  void (*energy)(Analysis& run, const DriverArrays& a, double& EN);
};
constexpr PotentialTerm terms[] = {{addElements, addElementEnergy}};

/// The sums of all terms. False at a degenerate element: without parts they then hold all before it.
bool sumTerms(Analysis& run, bool withMatrix, const ElementParts* parts, const DriverArrays& a) {
  setZero(run.pool.get(), a.RR, run.neq);
  if (withMatrix) {
    setZero(run.pool.get(), a.SYSM, run.solver.nsysm);
    setZero(run.pool.get(), a.TEMP, run.neq);
  }
  for (const PotentialTerm& term : terms)
    if (!term.derivatives(run, withMatrix, parts, a)) return false;
  return true;
}

}  // namespace

void assemble(Analysis& run, Int mode, const DriverArrays& a) {
  const bool withMatrix = mode == residualAndMatrix;
  const ElementParts* const parts = run.pool ? run.parts.get() : nullptr;
  // once more in order where it fails: what is left behind is what one thread leaves
  if (!sumTerms(run, withMatrix, parts, a) && (parts == nullptr || !sumTerms(run, withMatrix, nullptr, a)))
    return tellDegenerate(run, false);
  run.maxgrad = residualNorm(run.pool.get(), a.ARFA, a.RR);
}

void energySum(Analysis& run, double& EN, const DriverArrays& a) {
  EN = 0.0;
  for (const PotentialTerm& term : terms) {
    term.energy(run, a, EN);
    if (failed(run.ierrel)) return;
  }
}

}  // namespace tornwalzen
