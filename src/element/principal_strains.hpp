// The strain state of one triangle in principal axes, for the results; not used by the analysis.
#pragma once

#include "ground/array_view.hpp"
#include "material/flow_curve.hpp"

namespace tornwalzen {

struct PrincipalStrains {
  double e1, e2;        // logarithmic, e1 >= e2 (dimensionless)
  double blankAxis[2];  // unit vector of e1 in the blank
  double partAxis[3];   // unit vector of e1 on the part
  double thickness;     // logarithmic, -(e1 + e2): the volume stays
  double equivalent;    // as the plastic-work density has it, regulariser included (dimensionless)
};

/// P, Q: in, edges of the part's triangle from corner 1 to corners 2 and 3 (mm); p, q: in, the same in the
/// blank (mm), of either orientation. weights: in, of the equivalent strain. A triangle without area in the
/// blank or on the part gives values that are not finite. Where e1 = e2 the axis is that of u.
PrincipalStrains principalStrains(const double (&P)[3], const double (&Q)[3], const double (&p)[2],
                                  const double (&q)[2], const StrainWeights& weights);

}  // namespace tornwalzen
