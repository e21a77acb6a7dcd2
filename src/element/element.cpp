// Potential, gradient and Hessian of one triangle: kinematics, density, expansion to the six coordinates.
#include "element/element.hpp"

#include "element/density_geometric.hpp"
#include "element/density_plastic.hpp"
#include "element/expansion.hpp"
#include "element/kinematics.hpp"
#include "ground/messages.hpp"

namespace tornwalzen {

namespace {

constexpr char degenerateText[] = " DEGENERIERTES ELEMENT ";

/// Kinematics and density of element e. False, with `ierrel` set, if its blank triangle is degenerate.
/// One procedure for all callers: measure, residual and tangent must belong to the same potential.
template <Order order>
bool evaluate(Analysis& run, Int e, Table<const Int> INTA, Vector<const double> RX, Table<const double> KNZ,
              const FlowCurve& CURVE, Kinematics& K, Density& F) {
  const Int n1 = INTA(e, 1), n2 = INTA(e, 2), n3 = INTA(e, 3);
  blankKinematics(n1, n2, n3, RX, K);
  if (degenerate(K)) {
    run.ierrel = errorSet;
    return false;
  }
  metric(n1, n2, n3, KNZ, K);
  if (run.istat == 0) {
    geometricDensity<order>(K.C11, K.C22, K.C12, F);
  } else {
    plasticDensity<order>(K.C11, K.C22, K.C12, CURVE, F);
  }
  return true;
}

/// What the density is weighed with where the part's triangle is the reference of the energy: it does not
/// change with the blank.
double partWeight(Int e, Table<const Int> INTA, Table<const double> KNZ) {
  return twicePartArea(INTA(e, 1), INTA(e, 2), INTA(e, 3), KNZ);
}

}  // namespace

void elementRoutine(Analysis& run, Int e, Int mode, Table<const Int> INTA, Vector<const double> RX,
                    Table<const double> KNZ, const FlowCurve& CURVE, double& POTENTIAL, double (&GRADIENT)[6],
                    double (&HESSIAN)[36]) {
  Kinematics K;
  Density F;
  const bool accepted = mode == 1 ? evaluate<Order::hessian>(run, e, INTA, RX, KNZ, CURVE, K, F)
                                  : evaluate<Order::gradient>(run, e, INTA, RX, KNZ, CURVE, K, F);
  if (!accepted) return;
  if (run.options.partReference) {
    const double A = partWeight(e, INTA, KNZ);
    POTENTIAL = A * F.phi;
    weighedGradient(K, F, A, GRADIENT);
    if (mode == 1) weighedHessian(K, F, A, HESSIAN);
    return;
  }
  POTENTIAL = K.D * F.phi;
  potentialGradient(K, F, GRADIENT);
  if (mode == 1) potentialHessian(K, F, HESSIAN);
}

void elementMeasure(Analysis& run, Int e, Table<const Int> INTA, Vector<const double> RX,
                    Table<const double> KNZ, const FlowCurve& CURVE, double& POTENTIAL, Table<double> ELG) {
  Kinematics K;
  Density F;
  if (!evaluate<Order::value>(run, e, INTA, RX, KNZ, CURVE, K, F)) {
    printText(run.messages, degenerateText);
    return;
  }
  POTENTIAL = (run.options.partReference ? partWeight(e, INTA, KNZ) : K.D) * F.phi;
  ELG(e, 1) = -(0.5 * (K.C11 - 1.0) + 0.5 * (K.C22 - 1.0));
  ELG(e, 2) = F.phi;
}

}  // namespace tornwalzen
