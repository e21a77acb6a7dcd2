// Eight triangles by vectors of VL doubles. A file that includes this one defines VL and squareRoot(Lanes)
// first. Every template here is made for Lanes, whose width no other file uses, so that the linker cannot
// take code for one processor as the copy for all; nothing of the standard library may be instantiated.

using LaneMask = long long __attribute__((vector_size(VL * sizeof(double))));

extern "C" double log(double) noexcept;  // of the mathematics library: compiled for every processor

namespace tornwalzen {

template <>
struct LaneMath<Lanes> {
  static Lanes root(Lanes x) { return squareRoot(x); }
  static Lanes logarithm(Lanes x) {  // lane by lane: the same function, the same bits as for one element
    for (int l = 0; l < VL; ++l) x[l] = ::log(x[l]);
    return x;
  }
  static Lanes offDiagonal(Lanes C12) {
    const LaneMask small = (C12 <= diagonalLimit) & (C12 >= -diagonalLimit);
    return small ? Lanes{} : C12;
  }
  template <Order order>
  static SquaredDifference<Lanes> squaredDifference(Lanes x, Lanes y) {
    SquaredDifference<Lanes> t = seriesDifference(x, y);
    for (int l = 0; l < VL; ++l)
      if (!(x[l] < seriesLimit)) {
        const SquaredDifference<double> one = closedDifference(x[l], y[l], order == Order::hessian);
        t.g[l] = one.g;
        t.h[l] = one.h;
      }
    return t;
  }
};

namespace {

StressOf<Lanes> laneStress(const LaneCurve& curve, Lanes strain) {
  double largest = 0.0;
  for (int l = 0; l < VL; ++l)
    if (strain[l] > largest) largest = strain[l];
  LaneMask row = {}, beyond = ~LaneMask{};  // row: zero-based, of the segment that reaches up to the strain
  for (Int j = 1; j + 1 < curve.npkt && curve.FC[j] < largest; ++j) {
    beyond &= curve.FC[j] < strain;
    row -= beyond;
  }
  Lanes start, A, B, C, D, full;
  for (int l = 0; l < VL; ++l) {
    const double* at = curve.FC + row[l];
    start[l] = at[0];
    A[l] = at[3 * curveRows];
    B[l] = at[4 * curveRows];
    C[l] = at[5 * curveRows];
    D[l] = at[6 * curveRows];
    full[l] = curve.WFULL[row[l]];
  }
  return {full + cubicWork(A, B, C, D, start, strain), ((A * strain + B) * strain + C) * strain + D,
          (3.0 * A * strain + 2.0 * B) * strain + C};
}

inline Lanes load(const double* p) {
  return *reinterpret_cast<const Lanes*>(p);
}
inline void store(double* p, Lanes v) {
  *reinterpret_cast<Lanes*>(p) = v;
}

// weighed: with WEIGHT in place of twice the blank's area.
template <Order order, bool weighed>
void evaluateLanes(const LaneCurve& curve, LaneBatch& b) {
  for (int l = 0; l < laneCount; l += VL) {
    KinematicsOf<Lanes> K;
    blankOfEdges(load(b.p[0] + l), load(b.p[1] + l), load(b.q[0] + l), load(b.q[1] + l), K);
    const Lanes P[3] = {load(b.P[0] + l), load(b.P[1] + l), load(b.P[2] + l)};
    const Lanes Q[3] = {load(b.Q[0] + l), load(b.Q[1] + l), load(b.Q[2] + l)};
    metricOfEdges(P, Q, K);
    DensityOf<Lanes> F;
    densityOfMetric<order>(
        K.C11, K.C22, K.C12, curve.weights, [&](Lanes strain) { return laneStress(curve, strain); }, F);
    ElementOf<Lanes> E;
    expandElement<order, weighed>(K, F, weighed ? load(b.WEIGHT + l) : Lanes{}, E);
    store(b.POTENTIAL + l, E.potential);
    if constexpr (order == Order::value) {
      store(b.PHI + l, E.phi);
      store(b.STRAIN + l, E.strain);
    } else {
      for (int k = 0; k < 6; ++k) store(b.GRADIENT[k] + l, E.gradient[k]);
    }
    if constexpr (order == Order::hessian)
      for (int k = 0; k < 36; ++k) store(b.HESSIAN[k] + l, E.hessian[k]);
  }
}

template <Order order>
void evaluateBatch(const LaneCurve& curve, LaneBatch& batch) {
  if (batch.weighed) return evaluateLanes<order, true>(curve, batch);
  evaluateLanes<order, false>(curve, batch);
}

void evaluate(Order order, const LaneCurve& curve, LaneBatch& batch) {
  switch (order) {
    case Order::value:
      return evaluateBatch<Order::value>(curve, batch);
    case Order::gradient:
      return evaluateBatch<Order::gradient>(curve, batch);
    case Order::hessian:
      return evaluateBatch<Order::hessian>(curve, batch);
  }
}

}  // namespace

}  // namespace tornwalzen
