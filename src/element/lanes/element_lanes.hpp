// The element with the plastic-work density for eight triangles at a time, one per lane of the processor's
// vector registers: the same operations in the same order as elementRoutine and elementMeasure, so the same
// bits, whatever the width of the registers. One table per instruction set, the widest that the processor has
// chosen once at load.
#pragma once

#include "element/density.hpp"
#include "material/flow_curve.hpp"

namespace tornwalzen {

constexpr int laneCount = 8;

/// Eight triangles. Arrays by lane last.
struct LaneBatch {
  // in: edges from corner 1 to corners 2 and 3, of the blank (mm) and of the part (mm)
  alignas(64) double p[2][laneCount], q[2][laneCount], P[3][laneCount], Q[3][laneCount];
  // in: twice the areas on the part (mm²), and whether they weigh the density in place of the blank's
  alignas(64) double WEIGHT[laneCount];
  bool weighed = false;
  // out: potential (mm²); with Order::value also density and -(E11 + E22); with Order::gradient and above the
  // gradient (mm), with Order::hessian the Hessian (dimensionless), shaped as elementRoutine's
  alignas(64) double POTENTIAL[laneCount], PHI[laneCount], STRAIN[laneCount];
  alignas(64) double GRADIENT[6][laneCount], HESSIAN[36][laneCount];
};

/// Eight triangles for the sure path. Arrays by lane last.
struct MapBatch {
  // in: edges from corner 1 to corners 2 and 3 of the blank (mm), and the part's frames of part_frames.hpp
  alignas(64) double p[2][laneCount], q[2][laneCount];
  alignas(64) double ALONG[laneCount], TILT[laneCount], ACROSS[laneCount], WEIGHT[laneCount];
  // out: potential (mm²), gradient (mm), Hessian (dimensionless), as of trianglePotential and as far as asked for
  alignas(64) double POTENTIAL[laneCount], GRADIENT[6][laneCount], HESSIAN[36][laneCount];
};

/// The flow curve as plain memory.
struct LaneCurve {
  Int npkt;
  const double* FC;     // curveRows × curveColumns, column-major
  const double* WFULL;  // curveRows
  StrainWeights weights;

  explicit LaneCurve(const FlowCurve& CURVE)
      : npkt(CURVE.npkt), FC(CURVE.FC.data()), WFULL(CURVE.WFULL), weights(CURVE.weights) {}
};

struct ElementLanes {
  const char* name;
  void (*evaluate)(Order order, const LaneCurve& curve, LaneBatch& batch);
  /// The plastic work over the part, without any other term, in all eight. s0, theta: in, as of ExtendedPotential. False if
  /// a singular value lies below s0 or is not a number: the output is then undefined.
  bool (*evaluateOverPart)(Order order, const LaneCurve& curve, double s0, double theta, MapBatch& batch);
};

template <class Table>
struct KernelTables;

/// All tables that this processor can run, the portable one first; an analysis uses the last, unless it names one.
const KernelTables<ElementLanes>& elementLanesTables();

extern const ElementLanes portableElementLanes;
#ifdef TORNWALZEN_X86_KERNELS
extern const ElementLanes avx2ElementLanes;
extern const ElementLanes avx512ElementLanes;
#endif

}  // namespace tornwalzen
