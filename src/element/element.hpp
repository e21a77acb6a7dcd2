// One membrane triangle: its potential Π = D·φ over the blank coordinates of its corners, with the exact
// gradient and Hessian. D is twice the blank area (mm²), φ the density (dimensionless) that the run status
// selects: istat = 0 the Green-Lagrange density E11² + E22² + E12², otherwise ½·W(ε̄)² of the flow curve. A
// host may have chosen the part as the reference of the energy: then Π = A·φ with A twice the target
// triangle's area.
#pragma once

#include "element/expansion.hpp"
#include "material/flow_curve.hpp"

namespace tornwalzen {

/// Potential, gradient and, in mode 1, Hessian of one triangle.
///
/// e: in, element, 1..nele. mode: in; 1 = with Hessian, anything else = without (HESSIAN is then untouched).
/// INTA: in, NE × 3 incidences. RX: in, blank positions (mm), u of node n at 2n-1, v at 2n.
/// KNZ: in, target positions (mm), maxkno × 3. CURVE: in, the flow curve (used when istat ≠ 0; a pass over
/// many elements makes it once). POTENTIAL: out (mm²). GRADIENT: out, 6
/// (mm), order u1 v1 u2 v2 u3 v3 of the corners in incidence order. HESSIAN: out in mode 1, 6 × 6
/// column-major (dimensionless), both triangles filled.
///
/// A blank triangle with D ≤ 0 is degenerate: `ierrel` = -1, outputs untouched, no message. A NaN D is not.
void elementRoutine(Analysis& run, Int e, Int mode, Table<const Int> INTA, Vector<const double> RX,
                    Table<const double> KNZ, const FlowCurve& CURVE, double& POTENTIAL, double (&GRADIENT)[6],
                    double (&HESSIAN)[36]);

/// The element up to `order`, and nothing of the analysis is changed. False if it is degenerate; E is then undefined.
bool evaluateElement(const Analysis& run, Order order, Int e, Table<const Int> INTA, Vector<const double> RX,
                     Table<const double> KNZ, const FlowCurve& CURVE, ElementOf<double>& E);

/// What elementRoutine and, withMessage, elementMeasure do about a degenerate element.
void tellDegenerate(Analysis& run, bool withMessage);

/// Potential of one triangle and its two result columns ELG(e,1) = -(E11 + E22), ELG(e,2) = φ; arguments as
/// above. POTENTIAL is the same to the bit as elementRoutine's. A degenerate triangle prints " DEGENERIERTES
/// ELEMENT ", sets `ierrel` = -1 and leaves the outputs untouched.
void elementMeasure(Analysis& run, Int e, Table<const Int> INTA, Vector<const double> RX,
                    Table<const double> KNZ, const FlowCurve& CURVE, double& POTENTIAL, Table<double> ELG);

/// elementMeasure for all elements in order, with the same bits. SUM: out, sum of their potentials in that
/// order (mm²). A degenerate element ends it as elementMeasure tells; SUM and ELG then hold what came before
/// it.
void measureElements(Analysis& run, Table<const Int> INTA, Vector<const double> RX, Table<const double> KNZ,
                     const FlowCurve& CURVE, double& SUM, Table<double> ELG);

}  // namespace tornwalzen
