// Global residual and tangent: a sum over the triangles, element entries placed through a dense scatter
// vector.
#include "element/assembly.hpp"

#include <cmath>

#include "element/element.hpp"
#include "interface/run_state.hpp"

namespace tornwalzen {

namespace {

/// Adds the lower triangle of one element tangent to SYSM. A column of the element is spread over TEMP by
/// equation number, one sweep over the stored column picks it up and leaves TEMP zero: no search for
/// positions. eq: the six equations of the element. AMAT: element tangent, 6 × 6 column-major.
void addTangent(const Int (&eq)[6], const double (&AMAT)[36], Vector<const Int> COLS, Vector<const Int> ROWI,
                Vector<double> TEMP, Vector<double> SYSM) {
  for (int k = 0; k < 6; ++k) {
    const Int c = eq[k];
    for (int j = 0; j < 6; ++j)
      if (eq[j] >= c) TEMP(eq[j]) = AMAT[6 * k + j];
    const Int end = COLS(c + 1);
    for (Int p = COLS(c); p < end; ++p) {
      const Int row = ROWI(p);
      SYSM(p) += TEMP(row);
      TEMP(row) = 0.0;
    }
  }
}

/// Largest |RR(i)| of the free unknowns. A NaN stays: a residual that is no number must not pass for a small
/// one.
double residualNorm(Vector<const Int> ARFA, Vector<const double> RR) {
  double largest = 0.0;
  for (Int i = 1; i <= run.neq; ++i) {
    if (ARFA(i) != 1) continue;
    const double size = std::fabs(RR(i));
    if (size > largest || std::isnan(size)) largest = size;
  }
  return largest;
}

}  // namespace

void assemble(Int mode, const DriverArrays& a, Table<const double> FC) {
  const bool withMatrix = mode == residualAndMatrix;
  for (Int i = 1; i <= run.neq; ++i) a.RR(i) = 0.0;
  if (withMatrix) {
    for (Int p = 1; p <= run.nsysm; ++p) a.SYSM(p) = 0.0;
    for (Int i = 1; i <= run.neq; ++i) a.TEMP(i) = 0.0;
  }

  const FlowCurve CURVE(FC);
  for (Int e = 1; e <= run.nele; ++e) {
    double potential, GRADIENT[6], AMAT[36];
    elementRoutine(e, mode, a.INTA, a.RX, a.KNZ, CURVE, potential, GRADIENT, AMAT);
    if (failed(run.ierrel)) return;
    Int eq[6];
    for (int corner = 0; corner < 3; ++corner) {
      const Int n = a.INTA(e, corner + 1);
      eq[2 * corner] = 2 * n - 1;
      eq[2 * corner + 1] = 2 * n;
    }
    for (int k = 0; k < 6; ++k) a.RR(eq[k]) -= GRADIENT[k];
    if (withMatrix) addTangent(eq, AMAT, a.COLS, a.ROWI, a.TEMP, a.SYSM);
  }
  run.maxgrad = residualNorm(a.ARFA, a.RR);
}

}  // namespace tornwalzen
