// Strains of all elements from part and blank, for the results and the report; nothing of the run is changed.
#pragma once

#include "element/principal_strains.hpp"
#include "ground/analysis.hpp"
#include "ground/driver_arrays.hpp"

namespace tornwalzen {

/// Strains of one triangle. X: in, x y z of its three corners on the part (mm); U: in, u v of the same in the
/// blank (mm).
PrincipalStrains triangleStrains(const double (&X)[9], const double (&U)[6], const StrainWeights& weights);

/// Equivalent strains of all elements between a.RX and the whole part. STRAIN: out, nele (dimensionless); not finite
/// for an element without area.
void measureStrains(const Analysis& run, const DriverArrays& a, Vector<double> STRAIN);

/// Record: the largest equivalent strain, elements without blank area left out, and whether it lies beyond the flow
/// curve's data, which end one row before the far point. The geometric density reads no curve, so nothing lies
/// beyond it. STRAIN: in, of measureStrains; of length 0: the strains are formed one by one.
void recordLargestStrain(Analysis& run, const DriverArrays& a, Vector<const double> STRAIN);

}  // namespace tornwalzen
