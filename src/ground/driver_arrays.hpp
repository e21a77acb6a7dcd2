// The seventeen arrays that OSMAIN hands through the driver to development, Newton step and assembly. The host
// owns them all; the views live for one call, and the host may move arrays between calls.
#pragma once

#include "ground/array_view.hpp"

namespace tornwalzen {

struct DriverArrays {
  Table<Int> INTA;          //  1 incidences, maxele × 3
  Vector<const Int> ARFA;   //  2 flags of the unknowns, neq: 1 free, 0 held
  Vector<const Int> COLS;   //  3 column pointers of the lower triangle, neq + 1
  Vector<const Int> ROWI;   //  4 row indices of the lower triangle, mnsysm
  Vector<Int> WORK;         //  5 integer work of the solver, niwor
  Vector<double> RWORK;     //  6 real work of the solver, nrk: factor and fronts
  Vector<double> RR;        //  7 residual (negative gradient), neq
  Vector<double> RB;        //  8 direction of the development, correction of the Newton step (mm), neq
  Vector<double> RX;        //  9 blank positions (mm), neq: u of node n at 2n-1, v at 2n
  Vector<double> TEMP;      // 10 neq; the assembly of the tangent sets it to zero
  Table<const double> KNG;  // 11 the formed part (mm), maxkno × 3
  Table<double> KNZ;        // 12 target geometry of the increment (mm), maxkno × 3
  Table<double> KNA;        // 13 starting blank (mm), maxkno × 3; column 3 is never touched
  Table<double> ELG;        // 14 element table, maxele × 5: -(E11+E22), density, smallest angle (degrees),
                            //    unfolding penalty, area of the part's triangle (mm²)
  Vector<double> SYSM;      // 15 values of the lower triangle, mnsysm
  Vector<double> RXA;       // 16 blank positions at the start of the increment (mm), neq
  Vector<double> WRHS;      // 17 right-hand side in elimination order, neq
};

}  // namespace tornwalzen
