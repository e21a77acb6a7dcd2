// The densities whose sum is the potential, as one list: energy, residual and tangent of a triangle all go through
// it, so a further density is one class here and its place in the list.
//
// The built-in terms are those of element.hpp, written in J = F⁻¹ of blank_map.hpp: the same potential wherever
// the singular values stand above the threshold s0, and its continuation below.
#pragma once

#include <array>

#include "element/map_sum.hpp"
#include "material/flow_curve.hpp"

namespace tornwalzen {

/// One triangle at one blank.
struct TrianglePoint {
  Int e;             // its number
  PrincipalMap map;  // J and its frames
  double weight;     // twice its area on the part (mm²)
  double s0;         // threshold of the extended measures (dimensionless)
};

class DensityTerm {
 public:
  /// Adds the term of the triangle to `sum` (mm²), derivatives as far as `order` asks.
  virtual void add(Order order, const TrianglePoint& at, MapSum& sum) const = 0;
  /// Does the term stay the same when the whole blank is turned?
  virtual bool turnable() const = 0;
  /// The flow curve, if the term is the plastic work over the part, which vectors compute too; else null.
  virtual const FlowCurve* plasticOverPart() const { return nullptr; }

 protected:
  ~DensityTerm() = default;  // nobody owns a term by its base
};

/// The terms that are minimised together. Owns none of them: they outlive the list.
class DensityTerms {
 public:
  static constexpr Int mostTerms = 8;

  /// False, and nothing changed, where the list is full.
  bool append(const DensityTerm& term) {
    if (count_ == mostTerms) return false;
    terms_[static_cast<std::size_t>(count_++)] = &term;
    return true;
  }
  void add(Order order, const TrianglePoint& at, MapSum& sum) const {
    for (Int k = 0; k < count_; ++k) terms_[static_cast<std::size_t>(k)]->add(order, at, sum);
  }
  /// The flow curve, if the plastic work over the part is the only term; else null.
  const FlowCurve* plasticOverPart() const { return count_ == 1 ? terms_[0]->plasticOverPart() : nullptr; }
  bool turnable() const {
    bool all = true;
    for (Int k = 0; k < count_; ++k) all = all && terms_[static_cast<std::size_t>(k)]->turnable();
    return all;
  }

 private:
  std::array<const DensityTerm*, mostTerms> terms_{};
  Int count_ = 0;
};

/// ½·W(ε̄)² of the logarithmic strains, per area of the part or of the blank.
class PlasticWorkTerm final : public DensityTerm {
 public:
  /// CURVE: in, the flow curve with its weights of the equivalent strain; outlives the term.
  PlasticWorkTerm(const FlowCurve& CURVE, bool partReference)
      : CURVE_(CURVE), partReference_(partReference) {}
  void add(Order order, const TrianglePoint& at, MapSum& sum) const override;
  bool turnable() const override { return true; }
  const FlowCurve* plasticOverPart() const override { return partReference_ ? &CURVE_ : nullptr; }

 private:
  const FlowCurve& CURVE_;
  bool partReference_;
};

/// E11² + E22² + E12² of the Green-Lagrange strains in the blank's axes, per area of the part or of the blank.
class GeometricTerm final : public DensityTerm {
 public:
  explicit GeometricTerm(bool partReference) : partReference_(partReference) {}
  void add(Order order, const TrianglePoint& at, MapSum& sum) const override;
  bool turnable() const override { return false; }

 private:
  bool partReference_;
};

/// F·G with the derivatives of the product. F: inout; G: in.
void multiply(Order order, Density& F, const Density& G);

}  // namespace tornwalzen
