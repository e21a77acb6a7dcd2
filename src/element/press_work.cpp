// The density of the press work and what follows from it.
#include "element/press_work.hpp"

#include <cmath>

namespace tornwalzen {

namespace {

constexpr double place3 = 0.77459666924148337704, end3 = 5.0 / 18.0, middle3 = 8.0 / 18.0;
constexpr double outer5 = 0.90617984593866399280, inner5 = 0.53846931010568309104;
constexpr double weightOuter5 = 0.11846344252809454376, weightInner5 = 0.23931433524968323402,
                 weightMiddle5 = 0.28444444444444444444;

/// Area of the blank over that of the part as a factor of F.
void perPartArea(Order order, const Spectrum& X, Density& F) {
  const double area = std::exp(-(X.f1 + X.f2));
  multiply(order, F, {area, -area, -area, 0.0, area, area, 0.0, area, 0.0, 0.0});
}

}  // namespace

PressWorkTerm::PressWorkTerm(const SheetWork& work, const Anisotropy& r, const Section& section,
                             Table<const double> CURVATURE, Table<double> TURNED)
    : work_(work),
      quadratic_(hillStrain(r)),
      rollingCosine_(std::cos(r.rolling)),
      rollingSine_(std::sin(r.rolling)),
      planar_(r.planar()),
      bending_(section.bending),
      points_(section.bending == Bending::none ? 1 : section.points),
      heights_{0.0},
      weights_{1.0},
      CURVATURE_(CURVATURE),
      TURNED_(TURNED) {
  const double half = 0.5 * section.thickness;
  if (points_ == 3) {
    const double places[] = {-place3, 0.0, place3}, weights[] = {end3, middle3, end3};
    for (int k = 0; k < 3; ++k) heights_[k] = half * places[k], weights_[k] = weights[k];
  } else if (points_ == 5) {
    const double places[] = {-outer5, -inner5, 0.0, inner5, outer5},
                 weights[] = {weightOuter5, weightInner5, weightMiddle5, weightInner5, weightOuter5};
    for (int k = 0; k < 5; ++k) heights_[k] = half * places[k], weights_[k] = weights[k];
  }
}

void PressWorkTerm::atPoint(Order order, const StrainQuadratic& Q, const double (&X)[3], double weight,
                            Density& F) const {
  const double y1 = Q.a11 * X[0] + Q.a12 * X[1] + Q.a13 * X[2];
  const double y2 = Q.a12 * X[0] + Q.a22 * X[1] + Q.a23 * X[2];
  const double y3 = Q.a13 * X[0] + Q.a23 * X[1] + Q.a33 * X[2];
  const WorkOfSquare work = work_.at(X[0] * y1 + X[1] * y2 + X[2] * y3);
  F.phi += weight * work.value;
  if (order == Order::value) return;
  const double rate = 2.0 * weight * work.rate;
  F.g1 += rate * y1;
  F.g2 += rate * y2;
  F.g3 += rate * y3;
  if (order != Order::hessian) return;
  const double curve = 4.0 * weight * work.curve;
  F.h11 += curve * y1 * y1 + rate * Q.a11;
  F.h22 += curve * y2 * y2 + rate * Q.a22;
  F.h33 += curve * y3 * y3 + rate * Q.a33;
  F.h12 += curve * y1 * y2 + rate * Q.a12;
  F.h13 += curve * y1 * y3 + rate * Q.a13;
  F.h23 += curve * y2 * y3 + rate * Q.a23;
}

/// Seen from the frame U of the map, or V where the sheet is the same in all directions.
void PressWorkTerm::density(Order order, const TrianglePoint& at, const Spectrum& X, Density& F) const {
  F = Density{};
  StrainQuadratic Q = quadratic_;
  double c = at.map.cv, s = at.map.sv;
  if (planar_) {
    c = at.map.cu, s = at.map.su;
    Q = turned(quadratic_, c * rollingCosine_ + s * rollingSine_, s * rollingCosine_ - c * rollingSine_);
  }
  double K[3] = {0.0, 0.0, 0.0};
  if (bending_ != Bending::none) {
    const Table<const double> K0 = planar_ ? Table<const double>(TURNED_) : CURVATURE_;
    const double k11 = K0(1, at.e), k22 = K0(2, at.e), k12 = K0(3, at.e);
    K[0] = c * c * k11 + 2.0 * c * s * k12 + s * s * k22;
    K[1] = s * s * k11 - 2.0 * c * s * k12 + c * c * k22;
    K[2] = c * s * (k22 - k11) + (c * c - s * s) * k12;
  }
  for (Int k = 0; k < points_; ++k) {
    const double z = heights_[k];
    const double bent[3] = {z * K[0], z * K[1], z * K[2]};
    const double strain[3] = {X.f1 + bent[0], X.f2 + bent[1], bent[2]};
    atPoint(order, Q, strain, weights_[k], F);
    if (bending_ == Bending::released) F.phi -= weights_[k] * work_.at(Q.at(bent[0], bent[1], bent[2])).value;
  }
}

void PressWorkTerm::add(Order order, const TrianglePoint& at, MapSum& sum) const {
  const Spectrum X = extendedSpectrum<Measure::logarithmic>(order, at.map.s1, at.map.s2, at.s0);
  Density F;
  density(order, at, X, F);
  perPartArea(order, X, F);
  if (planar_)
    addDensity<StrainSide::blank>(order, at.map, X, F, at.weight, sum);
  else
    addDensity<StrainSide::part>(order, at.map, X, F, at.weight, sum);
}

void PressWorkTerm::turnCurvature(const PotentialMesh& mesh, Vector<const double> RX) const {
  if (!planar_ || bending_ == Bending::none) return;
  for (Int e = 1; e <= mesh.FRAMES.columns(); ++e) {
    const PrincipalMap m = principalMap(blankMap(e, mesh.INTA, mesh.FRAMES, RX));
    const double c = m.cu * m.cv + m.su * m.sv, s = m.su * m.cv - m.cu * m.sv;  // U·Vᵀ
    const double k11 = CURVATURE_(1, e), k22 = CURVATURE_(2, e), k12 = CURVATURE_(3, e);
    TURNED_(1, e) = c * c * k11 - 2.0 * c * s * k12 + s * s * k22;
    TURNED_(2, e) = s * s * k11 + 2.0 * c * s * k12 + c * c * k22;
    TURNED_(3, e) = c * s * (k11 - k22) + (c * c - s * s) * k12;
  }
}

/// A move L of the part changes J by -J·L: k(i,j) = -s(i)·L(i,j) seen from V, and the work per volume of the blank by
/// N:L·det J/t0 over ... so N(i,j) = -det J·s(i)·P(i,j).
PressWorkTerm::State PressWorkTerm::state(const TrianglePoint& at) const {
  const Spectrum X = extendedSpectrum<Measure::logarithmic>(Order::gradient, at.map.s1, at.map.s2, at.s0);
  Density F;
  density(Order::gradient, at, X, F);
  MapSum sum;
  if (planar_)
    addDensity<StrainSide::blank>(Order::gradient, at.map, X, F, 1.0, sum);
  else
    addDensity<StrainSide::part>(Order::gradient, at.map, X, F, 1.0, sum);
  const double s1 = at.map.s1, s2 = at.map.s2, area = s1 * s2, c = at.map.cv, s = at.map.sv;
  const double n11 = -area * s1 * sum.P[entry::k11], n22 = -area * s2 * sum.P[entry::k22],
               n12 = -0.5 * area * (s1 * sum.P[entry::k12] + s2 * sum.P[entry::k21]);
  return {F.phi,
          {c * c * n11 - 2.0 * c * s * n12 + s * s * n22, s * s * n11 + 2.0 * c * s * n12 + c * c * n22,
           c * s * (n11 - n22) + (c * c - s * s) * n12}};
}

}  // namespace tornwalzen
