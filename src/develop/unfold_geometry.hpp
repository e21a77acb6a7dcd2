// The objective of the unfolding and its gradient: a penalty on each triangle's ratio of planar to spatial
// area.
//
//   r = A / A3,   b = 2·max(0, ½ − r),   a = max(0, −r),   q = b² + 10·a²,   E = Σ q⁴
//
// A is the signed area in the plane (mm²), A3 the area of the part's triangle (mm²); r, q, E are
// dimensionless. q is 0 while a triangle keeps half its area, 1 when it has collapsed, and ten times dearer
// when turned over. A ratio that is not a number gives a measure and a penalty that are none either.
#pragma once

#include "develop/visited_elements.hpp"
#include "ground/analysis.hpp"
#include "ground/driver_arrays.hpp"

namespace tornwalzen {

/// Measure of one triangle. e: in, element, 1..nele. a.INTA, a.RX, a.ELG column 5 (A3): in.
/// PENALTY: out, q⁴. AREA: out, A (mm²). Run state: raises qmax to q where q is larger. Nothing guards A3 =
/// 0.
void unfoldElementMeasure(Analysis& run, Int e, const DriverArrays& a, double& PENALTY, double& AREA);

/// Objective over the visited elements; arrays as above. All others must be undisturbed and without penalty.
/// a.ELG: out, column 4, q⁴ of the visited elements. degenerate: out, number of elements with A ≤ 0.
/// E: out, the objective. Run state: qmax = largest q.
void unfoldObjective(Analysis& run, const DriverArrays& a, const VisitedElements& visited, Int& degenerate,
                     double& E);

/// As unfoldElementMeasure, with the gradient. GRADIENT: out, 6 (1/mm), ∂(q⁴)/∂(x1, y1, x2, y2, x3, y3);
/// exactly zero where q is zero.
void unfoldElementGradient(Analysis& run, Int e, const DriverArrays& a, double& PENALTY, double& AREA,
                           double (&GRADIENT)[6]);

/// Forces of the visited elements; all others must be without penalty. a.RR: out, neq (1/mm), −∂E/∂RX.
/// Run state: maxgrad = largest |RR(i)| over the unknowns with ARFA(i) = 1, 0 if there is none; a component
/// that is not a number is passed over, so that one bad element leaves the others a direction.
void unfoldForces(Analysis& run, const DriverArrays& a, const VisitedElements& visited);

}  // namespace tornwalzen
