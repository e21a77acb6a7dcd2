// Strains of all elements; the equations stand with the element.
#include "element/element_strains.hpp"

#include <cmath>

#include "ground/run_options.hpp"
#include "ground/run_record.hpp"

namespace tornwalzen {

PrincipalStrains triangleStrains(const double (&X)[9], const double (&U)[6], const StrainWeights& weights) {
  const double p[2] = {U[2] - U[0], U[3] - U[1]}, q[2] = {U[4] - U[0], U[5] - U[1]};
  const double P[3] = {X[3] - X[0], X[4] - X[1], X[5] - X[2]}, Q[3] = {X[6] - X[0], X[7] - X[1], X[8] - X[2]};
  return principalStrains(P, Q, p, q, weights);
}

namespace {

double equivalentStrain(const DriverArrays& a, Int e, const StrainWeights& weights) {
  double X[9], U[6];
  for (Int corner = 0; corner < 3; ++corner) {
    const Int n = a.INTA(e, corner + 1);
    for (Int i = 0; i < 3; ++i) X[3 * corner + i] = a.KNG(n, i + 1);
    U[2 * corner] = a.RX(2 * n - 1);
    U[2 * corner + 1] = a.RX(2 * n);
  }
  return triangleStrains(X, U, weights).equivalent;
}

}  // namespace

void measureStrains(const Analysis& run, const DriverArrays& a, Vector<double> STRAIN) {
  const StrainWeights weights(run.options.anisotropy);
  constexpr Int64 leastMeasured = 1024;  // triangles of a range
  inRanges(run.pool.get(), run.nele, leastMeasured, [&](Int64 first, Int64 last) {
    for (Int64 e = first; e <= last; ++e) STRAIN(e) = equivalentStrain(a, static_cast<Int>(e), weights);
  });
}

void recordLargestStrain(Analysis& run, const DriverArrays& a, Vector<const double> STRAIN) {
  const StrainWeights weights(run.options.anisotropy);
  run.record.largestStrain = 0.0;
  for (Int e = 1; e <= run.nele; ++e) {
    const double strain = STRAIN.length() > 0 ? STRAIN(e) : equivalentStrain(a, e, weights);
    if (std::isfinite(strain) && strain > run.record.largestStrain) run.record.largestStrain = strain;
  }
  run.record.beyondCurve =
      run.istat != 0 && run.npkt >= 2 && run.record.largestStrain > flowCurve(run)(run.npkt - 1, 1);
}

}  // namespace tornwalzen
