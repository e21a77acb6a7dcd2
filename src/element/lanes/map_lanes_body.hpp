// The plastic work over the part in the maps of eight triangles: what trianglePotential of potential_sums.hpp computes,
// where the term stands alone and no singular value lies below the threshold. The density is then a function of the
// singular values, and its Hessian in J two blocks of two (map_sum.hpp). Included behind element_lanes_body.hpp, whose
// rules hold.

namespace tornwalzen {

namespace {

inline Lanes chosen(LaneMask which, Lanes yes, Lanes no) {
  return which ? yes : no;
}

inline Lanes negativePart(Lanes x) {
  return chosen(x < 0.0, x, Lanes{});
}

struct LanePrincipal {
  Lanes s1, s2, cu, su, cv, sv;  // as PrincipalMap
};

/// False if a singular value lies below s0 or is not a number; P is then undefined.
inline bool principalLanes(const MapBatch& b, int l, double s0, LanePrincipal& P) {
  const Lanes along = load(b.ALONG + l), tilt = load(b.TILT + l), across = load(b.ACROSS + l);
  const Lanes pu = load(b.p[0] + l), pv = load(b.p[1] + l), qu = load(b.q[0] + l), qv = load(b.q[1] + l);
  const Lanes J11 = along * pu, J12 = tilt * pu + across * qu, J21 = along * pv,
              J22 = tilt * pv + across * qv;
  const Lanes E = 0.5 * (J11 + J22), H = 0.5 * (J21 - J12), F = 0.5 * (J11 - J22), G = 0.5 * (J21 + J12);
  P.s1 = squareRoot(E * E + H * H) + squareRoot(F * F + G * G);
  P.s2 = (J11 * J22 - J12 * J21) / P.s1;
  const LaneMask above = P.s2 >= s0;
  for (int k = 0; k < VL; ++k)
    if (above[k] == 0) return false;
  const Lanes x = F * E + G * H, y = G * E - F * H, size = squareRoot(x * x + y * y);
  const LaneMask right = x >= 0.0, turned = size > 0.0;
  P.cv = chosen(turned, chosen(right, size + x, y), Lanes{} + 1.0);
  P.sv = chosen(turned, chosen(right, y, size - x), Lanes{});
  const Lanes perLength = 1.0 / squareRoot(P.cv * P.cv + P.sv * P.sv);
  P.cv *= perLength;
  P.sv *= perLength;
  const Lanes per1 = 1.0 / P.s1;
  P.cu = (J11 * P.cv + J12 * P.sv) * per1;
  P.su = (J21 * P.cv + J22 * P.sv) * per1;
  return true;
}

struct LaneBlock {  // symmetric
  Lanes ii, jj, ij;
};

/// Takes the part theta from the negative eigenvalues, as softenNegative.
inline void soften(double theta, LaneBlock& B) {
  const Lanes m = 0.5 * (B.ii + B.jj), d = 0.5 * (B.ii - B.jj), r = squareRoot(d * d + B.ij * B.ij);
  const Lanes high = -theta * negativePart(m + r), low = -theta * negativePart(m - r);
  const LaneMask split = r > 0.0;
  const Lanes c = chosen(split, d / r, Lanes{} + 1.0), s = chosen(split, B.ij / r, Lanes{});
  const Lanes sum = 0.5 * (high + low), difference = 0.5 * (high - low);
  B.ii += sum + difference * c;
  B.jj += sum - difference * c;
  B.ij += difference * s;
}

/// Derivatives in K, as MapSum: P11, P22 (mm²) and the two blocks (mm²).
struct LaneDerivatives {
  Lanes P11, P22;
  LaneBlock stretch, twist;  // (k11, k22) and (k21, k12)
};

/// The density at the singular values, times `weight`; POTENTIAL and, as far as `order` asks, D: out.
template <Order order>
inline Lanes plasticLanes(const LaneCurve& curve, const LanePrincipal& at, Lanes weight, LaneDerivatives& D) {
  const Lanes a = at.s1, b = at.s2;
  const Lanes f1 = -LaneMath<Lanes>::logarithm(a), f2 = -LaneMath<Lanes>::logarithm(b);
  const double sw = curve.weights.sumWeight, dw = curve.weights.differenceWeight;
  const Lanes s = f1 + f2, t = f1 - f2, S = sw * (s * s) + dw * (t * t) + strainRegulariser,
              root = squareRoot(S);
  const StressOf<Lanes> stress = laneStress(curve, curve.weights.strainFactor * root);
  const Lanes potential = weight * (0.5 * (stress.work * stress.work));
  if constexpr (order == Order::value) return potential;

  const Lanes d1 = -1.0 / a, d2 = -1.0 / b;
  const Lanes S1 = 2.0 * (sw * s + dw * t), S2 = 2.0 * (sw * s - dw * t);
  const Lanes strainRate = curve.weights.rateFactor / root;
  const Lanes rate = weight * (stress.work * stress.sigma * strainRate);
  const Lanes g1 = rate * S1, g2 = rate * S2;
  D.P11 = g1 * d1;
  D.P22 = g2 * d2;
  if constexpr (order != Order::hessian) return potential;

  const Lanes curvature =
      weight * ((stress.sigma * stress.sigma + stress.work * stress.slope) * (strainRate * strainRate)) -
      0.5 * rate / S;
  const Lanes h11 = curvature * (S1 * S1) + 2.0 * rate * (sw + dw);
  const Lanes h22 = curvature * (S2 * S2) + 2.0 * rate * (sw + dw);
  const Lanes h12 = curvature * (S1 * S2) + 2.0 * rate * (sw - dw), h33 = 8.0 * rate * dw;

  // the divided differences of extended_measure.hpp
  const Lanes m = 0.5 * (a + b), y = 0.5 * (a - b) / m, yy = y * y;
  Lanes series = Lanes{} + 1.0 / 19.0;
  for (int k = 7; k >= 0; --k) series = series * yy + 1.0 / (2.0 * k + 3.0);
  const Lanes h = chosen(y < 0.1, series, (0.5 * (f2 - f1) / y - 1.0) / yy);
  const Lanes half = 0.5 / (m * m), f112 = half * (1.0 / (1.0 + y) + y * h),
              f122 = half * (1.0 / (1.0 - y) - y * h);
  const Lanes w = 0.5 / m, gamma = -(1.0 + yy * h) / m * w;

  D.stretch = {h11 * d1 * d1 + g1 * (d1 * d1), h22 * d2 * d2 + g2 * (d2 * d2), h12 * d1 * d2};
  const Lanes A = (f112 - gamma) * w, B = (f122 - gamma) * w, turn = h33 * gamma * gamma;
  D.twist = {turn * a * a + g1 * a * A + g2 * (b * f122 + gamma * (b + 2.0 * a)) * w,
             turn * b * b + g2 * b * B + g1 * (a * f112 + gamma * (a + 2.0 * b)) * w,
             turn * a * b + g1 * b * A + g2 * a * B};
  return potential;
}

/// MOVES of potential_sums.cpp: what coordinate i of (pu, pv, qu, qv) does to the entries of K (1/mm).
struct LaneMoves {
  Lanes k11[4], k22[4], k21[4], k12[4];

  LaneMoves(const MapBatch& b, int l, const LanePrincipal& at) {
    const Lanes along = load(b.ALONG + l), tilt = load(b.TILT + l), across = load(b.ACROSS + l);
    const Lanes N[2][2] = {{at.cv * along + at.sv * tilt, at.cv * tilt - at.sv * along},
                           {at.sv * across, at.cv * across}};
    const Lanes U[2][2] = {{at.cu, -at.su}, {at.su, at.cu}};
    for (int n = 0; n < 2; ++n)
      for (int i = 0; i < 2; ++i) {
        k11[2 * n + i] = U[i][0] * N[n][0];
        k12[2 * n + i] = U[i][0] * N[n][1];
        k21[2 * n + i] = U[i][1] * N[n][0];
        k22[2 * n + i] = U[i][1] * N[n][1];
      }
  }
};

inline void storeGradient(const LaneMoves& M, const LaneDerivatives& D, MapBatch& b, int l) {
  Lanes g[4];
  for (int i = 0; i < 4; ++i) {
    g[i] = M.k11[i] * D.P11 + M.k22[i] * D.P22;
    store(b.GRADIENT[i + 2] + l, g[i]);
  }
  store(b.GRADIENT[0] + l, -(g[0] + g[2]));
  store(b.GRADIENT[1] + l, -(g[1] + g[3]));
}

inline void storeHessian(const LaneMoves& M, const LaneDerivatives& D, MapBatch& b, int l) {
  Lanes EDGE[4][4], HESSIAN[36];
  for (int i = 0; i < 4; ++i) {
    const Lanes first = M.k11[i] * D.stretch.ii + M.k22[i] * D.stretch.ij;
    const Lanes second = M.k11[i] * D.stretch.ij + M.k22[i] * D.stretch.jj;
    const Lanes third = M.k21[i] * D.twist.ii + M.k12[i] * D.twist.ij;
    const Lanes fourth = M.k21[i] * D.twist.ij + M.k12[i] * D.twist.jj;
    for (int j = 0; j <= i; ++j)
      EDGE[i][j] = EDGE[j][i] = first * M.k11[j] + second * M.k22[j] + third * M.k21[j] + fourth * M.k12[j];
  }
  expandHessian(EDGE, HESSIAN);
  for (int k = 0; k < 36; ++k) store(b.HESSIAN[k] + l, HESSIAN[k]);
}

template <Order order>
bool evaluateMaps(const LaneCurve& curve, double s0, double theta, MapBatch& b) {
  for (int l = 0; l < laneCount; l += VL) {
    LanePrincipal at;
    LaneDerivatives D;
    if (!principalLanes(b, l, s0, at)) return false;
    store(b.POTENTIAL + l, plasticLanes<order>(curve, at, load(b.WEIGHT + l), D));
    if constexpr (order == Order::value) continue;
    const LaneMoves M(b, l, at);
    storeGradient(M, D, b, l);
    if constexpr (order != Order::hessian) continue;
    if (theta != 0.0) {
      soften(theta, D.stretch);
      soften(theta, D.twist);
    }
    storeHessian(M, D, b, l);
  }
  return true;
}

bool evaluateOverPart(Order order, const LaneCurve& curve, double s0, double theta, MapBatch& batch) {
  switch (order) {
    case Order::value:
      return evaluateMaps<Order::value>(curve, s0, theta, batch);
    case Order::gradient:
      return evaluateMaps<Order::gradient>(curve, s0, theta, batch);
    case Order::hessian:
      return evaluateMaps<Order::hessian>(curve, s0, theta, batch);
  }
  return false;
}

}  // namespace

}  // namespace tornwalzen
