// The press model on a round cup as a boundary problem in one dimension, solved apart from the library: rings with the
// radius R in the blank and r on the part, the strains ln(L/ΔR) along and ln(r/R) around, the same work, free edge, bending
// and friction (N, mm, MPa).
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <vector>

#include "profile.hpp"

namespace verification {

struct RoundCup {
  double radius, punchRadius, dieRadius, depth, draft, edge;  // mm, degrees
};

struct RingLaw {
  double K, prestrain, n, young, r;  // Swift's law (MPa), Young's modulus (MPa), anisotropy
};

struct RingPress {
  double thickness, friction, binder;  // mm, dimensionless, N on the whole cup
  bool tools;                          // with free edge, bending kept, friction and binder
};

class AxisymmetricCup {
 public:
  AxisymmetricCup(const RoundCup& cup, const RingLaw& law, const RingPress& press, double size)
      : law_(law), press_(press) {
    const double quarter = std::numbers::pi / 2.0, turn = 90.0 - cup.draft;
    const double sine = std::cos(cup.draft * quarter / 90.0),
                 sunk = 1.0 - std::sin(cup.draft * quarter / 90.0);
    const double wall = (cup.depth - (cup.punchRadius + cup.dieRadius) * sunk) / sine;
    shapes::Profile section({0.0, cup.depth}, 0.0);
    const double flat = cup.radius - cup.punchRadius;
    section.line(flat).arc(cup.punchRadius, -turn).line(wall).arc(cup.dieRadius, turn);
    const double foot = section.end().x;
    section.line(cup.edge - foot);
    const double arc = quarter * turn / 90.0;
    const double lengths[] = {flat, cup.punchRadius * arc, wall, cup.dieRadius * arc, cup.edge - foot};
    const double curvatures[] = {0.0, 1.0 / cup.punchRadius, 0.0, -1.0 / cup.dieRadius, 0.0};
    double s = 0.0;
    r_.push_back(0.0);
    for (int piece = 0; piece < 5; ++piece) {
      const int cells = static_cast<int>(std::ceil(lengths[piece] / size));
      for (int k = 1; k <= cells; ++k) {
        const double to = s + lengths[piece] * k / cells;
        r_.push_back(piece == 4 && k == cells ? cup.edge : section.point(to).x);
        const shapes::Point2 normal = section.normal(s + lengths[piece] * (k - 0.5) / cells);
        rings_.push_back({lengths[piece] / cells, normal.y, curvatures[piece],
                          normal.x / (0.5 * (r_.back() + r_[r_.size() - 2])), piece == 4});
      }
      s += lengths[piece];
    }
  }

  /// Down the exponents to the work alone, then rounds with half of what free edge and friction change by. False: no
  /// equilibrium.
  bool solve() {
    R_.assign(1, 0.0);  // rings of the areas that they have on the part
    for (std::size_t e = 0; e < rings_.size(); ++e)
      R_.push_back(std::sqrt(R_[e] * R_[e] + (r_[e] + r_[e + 1]) * rings_[e].length));
    bool held = true;
    loads_.assign(rings_.size() + 1, 0.0);
    bent_ = 0.0;
    for (const double p : {2.0, 1.7, 1.4, 1.2, 1.1, 1.05, 1.0}) held = held && equilibrium(p);
    bent_ = press_.tools ? 1.0 : 0.0;
    double change = press_.tools ? INFINITY : 0.0;
    for (int round = 0; held && change > 1e-4; ++round) {
      const std::vector<double> now = loads();
      change = 0.0;
      for (std::size_t e = 0; e < now.size(); ++e) {
        change = std::max(change, std::fabs(now[e] - loads_[e]));
        loads_[e] += 0.5 * (now[e] - loads_[e]);
      }
      held = round < 200 && equilibrium(1.0);
    }
    return held;
  }
  double edge() const { return R_.back(); }
  double thickness(std::size_t ring) const {
    const double R = 0.5 * (R_[ring] + R_[ring + 1]), r = 0.5 * (r_[ring] + r_[ring + 1]);
    return press_.thickness * R * (R_[ring + 1] - R_[ring]) / (r * rings_[ring].length);
  }
  double thinnest() const {
    double least = INFINITY;
    for (std::size_t e = 0; e < rings_.size(); ++e) least = std::min(least, thickness(e));
    return least;
  }
  double thickest() const {
    double most = 0.0;
    for (std::size_t e = 0; e < rings_.size(); ++e) most = std::max(most, thickness(e));
    return most;
  }

 private:
  struct Ring {
    double length, level, along, around;  // mm; cosine of the slope; curvatures (1/mm)
    bool flange;
  };
  struct Density {
    double value, along, around;  // ψ and its derivatives (MPa)
  };

  /// W_p over the total strain and its derivative.
  std::array<double, 2> work(double strain, double p) const {
    const double E = 0.1 * law_.young, yield = law_.K * std::pow(law_.prestrain, law_.n), scale = 50.0;
    double W, sigma;
    if (strain <= yield / E) {
      W = 0.5 * E * strain * strain, sigma = E * strain;
    } else {
      double low = 0.0, high = strain;  // plastic strain, by halving
      for (int k = 0; k < 100; ++k) {
        const double plastic = 0.5 * (low + high);
        (plastic + law_.K * std::pow(law_.prestrain + plastic, law_.n) / E < strain ? low : high) = plastic;
      }
      sigma = law_.K * std::pow(law_.prestrain + low, law_.n);
      W = law_.K / (1.0 + law_.n) *
              (std::pow(law_.prestrain + low, 1.0 + law_.n) - std::pow(law_.prestrain, 1.0 + law_.n)) +
          0.5 * sigma * sigma / E;
    }
    if (p == 1.0) return {W, sigma};
    const double foot = 0.5 * yield * yield / E, base = (W + foot) / scale;
    return {scale / p * (std::pow(base, p) - std::pow(foot / scale, p)), std::pow(base, p - 1.0) * sigma};
  }

  Density density(const Ring& ring, double along, double around, double p) const {
    const double a = (1.0 + law_.r) * (1.0 + law_.r) / (1.0 + 2.0 * law_.r), b = law_.r / (1.0 + law_.r);
    const double places[] = {-std::sqrt(0.6), 0.0, std::sqrt(0.6)},
                 weights[] = {5.0 / 18, 8.0 / 18, 5.0 / 18};
    Density sum{};
    for (int k = 0; k < 3; ++k) {
      const double z = bent_ * 0.5 * press_.thickness * places[k];
      const double x = along + z * ring.along, y = around + z * ring.around;
      const double strain = std::sqrt(a * (x * x + y * y + 2.0 * b * x * y) + 1e-30);
      const auto [W, sigma] = work(strain, p);
      sum.value += weights[k] * W;
      sum.along += weights[k] * sigma * a * (x + b * y) / strain;
      sum.around += weights[k] * sigma * a * (y + b * x) / strain;
    }
    return sum;
  }

  /// Pressure of the rigid binder (MPa) per ring.
  std::vector<double> grip() const {
    std::vector<double> pressure(rings_.size(), 0.0);
    double low = 0.0, high = 10.0 * press_.thickness;
    for (int k = 0; k < 100; ++k) {
      const double gap = 0.5 * (low + high);
      double force = 0.0;
      for (std::size_t e = 0; e < rings_.size(); ++e) {
        pressure[e] = rings_[e].flange ? 2000.0 * std::max(0.0, thickness(e) - gap) : 0.0;
        force += pressure[e] * std::numbers::pi * (r_[e] + r_[e + 1]) * rings_[e].length;
      }
      (force > press_.binder ? low : high) = gap;
    }
    return pressure;
  }

  /// Friction along the section per ring, and what the free edge takes away (N).
  std::vector<double> loads() const {
    std::vector<double> forces = grip();
    for (std::size_t e = 0; e < rings_.size(); ++e) {
      const Ring& ring = rings_[e];
      const double R = 0.5 * (R_[e] + R_[e + 1]), r = 0.5 * (r_[e] + r_[e + 1]);
      const Density psi = density(ring, std::log(ring.length / (R_[e + 1] - R_[e])), std::log(r / R), 1.0);
      const double q = thickness(e) * (psi.along * ring.along + psi.around * ring.around);
      const double slip = (r - R) * ring.level, way = slip / std::sqrt(slip * slip + 0.04);
      forces[e] = -press_.friction * (std::fabs(q) + 2.0 * forces[e]) * 2.0 * std::numbers::pi * r *
                  ring.length * way;
      if (e + 1 == rings_.size())
        forces.push_back(press_.thickness * psi.value * 2.0 * std::numbers::pi * R_.back());
    }
    return forces;
  }

  std::vector<double> residual(double p) const {
    const double turn = 2.0 * std::numbers::pi, t0 = press_.thickness;
    std::vector<double> F(R_.size(), 0.0);
    for (std::size_t e = 0; e < rings_.size(); ++e) {
      const Ring& ring = rings_[e];
      const double R = 0.5 * (R_[e] + R_[e + 1]), step = R_[e + 1] - R_[e], r = 0.5 * (r_[e] + r_[e + 1]);
      const Density psi = density(ring, std::log(ring.length / step), std::log(r / R), p);
      F[e] += turn * t0 * ((0.5 * step - R) * psi.value + R * psi.along - 0.5 * step * psi.around);
      F[e + 1] += turn * t0 * ((0.5 * step + R) * psi.value - R * psi.along - 0.5 * step * psi.around);
      const double force = 0.5 * loads_[e] * ring.length / step;
      F[e] += force, F[e + 1] += force;
    }
    F.back() -= loads_.back();
    F[0] = 0.0;
    return F;
  }

  /// Newton's method, every third column of the tangent at a time by differences.
  bool equilibrium(double p) {
    const std::size_t n = R_.size();
    constexpr double h = 1e-6;
    std::vector<double> before = residual(p);
    for (int iteration = 0; iteration < 200; ++iteration) {
      double size = 0.0;
      for (const double f : before) size += f * f;
      if (std::sqrt(size) < 1e-5 * press_.thickness * law_.K) return true;
      std::vector<double> lower(n, 0.0), middle(n, 1.0), upper(n, 0.0);
      for (std::size_t color = 0; color < 3; ++color) {
        const std::vector<double> kept = R_;
        for (std::size_t i = color; i < n; i += 3) R_[i] += h;
        const std::vector<double> after = residual(p);
        R_ = kept;
        for (std::size_t i = 1; i < n; ++i)
          for (std::size_t j = i - 1; j <= std::min(i + 1, n - 1); ++j)
            if (j % 3 == color) (j < i ? lower : j > i ? upper : middle)[i] = (after[i] - before[i]) / h;
      }
      std::vector<double> step = before;
      for (std::size_t i = 1; i < n; ++i) {
        const double factor = lower[i] / middle[i - 1];
        middle[i] -= factor * upper[i - 1], step[i] -= factor * step[i - 1];
      }
      for (std::size_t i = n; i-- > 0;)
        step[i] = (step[i] - (i + 1 < n ? upper[i] * step[i + 1] : 0.0)) / middle[i];
      const std::vector<double> kept = R_;
      bool better = false;
      for (double t = 1.0; t > 1e-3 && !better; t *= 0.5) {
        bool ordered = true;
        for (std::size_t i = 1; i < n; ++i) R_[i] = kept[i] - t * step[i];
        for (std::size_t i = 1; i < n; ++i) ordered = ordered && R_[i] > R_[i - 1];
        if (!ordered) continue;
        const std::vector<double> after = residual(p);
        double now = 0.0;
        for (const double f : after) now += f * f;
        better = now < size;
        if (better) before = after;
      }
      if (!better) return false;
    }
    return false;
  }

  RingLaw law_;
  RingPress press_;
  std::vector<double> r_, R_, loads_;
  double bent_ = 0.0;  // is bending kept?
  std::vector<Ring> rings_;
};

}  // namespace verification
