// Potential, gradient and Hessian of one triangle: kinematics, density, expansion to the six coordinates.
#include "element/element.hpp"

#include <algorithm>

#include "element/density_geometric.hpp"
#include "element/density_plastic.hpp"
#include "element/expansion.hpp"
#include "element/kinematics.hpp"
#include "ground/messages.hpp"

namespace tornwalzen {

namespace {

constexpr char degenerateText[] = " DEGENERIERTES ELEMENT ";

/// Element e up to `order`. False if its blank triangle is degenerate.
/// One procedure for all callers: measure, residual and tangent must belong to the same potential.
template <Order order>
bool evaluate(const Analysis& run, Int e, Table<const Int> INTA, Vector<const double> RX,
              Table<const double> KNZ, const FlowCurve& CURVE, ElementOf<double>& E) {
  const Int n1 = INTA(e, 1), n2 = INTA(e, 2), n3 = INTA(e, 3);
  Kinematics K;
  blankKinematics(n1, n2, n3, RX, K);
  if (degenerate(K)) return false;
  metric(n1, n2, n3, KNZ, K);
  Density F;
  if (run.istat == 0)
    geometricDensity<order>(K.C11, K.C22, K.C12, F);
  else
    plasticDensity<order>(K.C11, K.C22, K.C12, CURVE, F);
  // where the part's triangle is the reference of the energy, the weight does not change with the blank
  if (run.options.partReference)
    expandElement<order, true>(K, F, twicePartArea(n1, n2, n3, KNZ), E);
  else
    expandElement<order, false>(K, F, 0.0, E);
  return true;
}

}  // namespace

bool evaluateElement(const Analysis& run, Order order, Int e, Table<const Int> INTA, Vector<const double> RX,
                     Table<const double> KNZ, const FlowCurve& CURVE, ElementOf<double>& E) {
  switch (order) {
    case Order::value:
      return evaluate<Order::value>(run, e, INTA, RX, KNZ, CURVE, E);
    case Order::gradient:
      return evaluate<Order::gradient>(run, e, INTA, RX, KNZ, CURVE, E);
    case Order::hessian:
      return evaluate<Order::hessian>(run, e, INTA, RX, KNZ, CURVE, E);
  }
  return false;
}

void tellDegenerate(Analysis& run, bool withMessage) {
  run.ierrel = errorSet;
  if (withMessage) printText(run.messages, degenerateText);
}

void elementRoutine(Analysis& run, Int e, Int mode, Table<const Int> INTA, Vector<const double> RX,
                    Table<const double> KNZ, const FlowCurve& CURVE, double& POTENTIAL, double (&GRADIENT)[6],
                    double (&HESSIAN)[36]) {
  ElementOf<double> E;
  const bool accepted = mode == 1 ? evaluate<Order::hessian>(run, e, INTA, RX, KNZ, CURVE, E)
                                  : evaluate<Order::gradient>(run, e, INTA, RX, KNZ, CURVE, E);
  if (!accepted) return tellDegenerate(run, false);
  POTENTIAL = E.potential;
  std::copy(E.gradient, E.gradient + 6, GRADIENT);
  if (mode == 1) std::copy(E.hessian, E.hessian + 36, HESSIAN);
}

void elementMeasure(Analysis& run, Int e, Table<const Int> INTA, Vector<const double> RX,
                    Table<const double> KNZ, const FlowCurve& CURVE, double& POTENTIAL, Table<double> ELG) {
  ElementOf<double> E;
  if (!evaluate<Order::value>(run, e, INTA, RX, KNZ, CURVE, E)) return tellDegenerate(run, true);
  POTENTIAL = E.potential;
  ELG(e, 1) = E.strain;
  ELG(e, 2) = E.phi;
}

}  // namespace tornwalzen
