// The work of deformation of the sheet between blank and part, per volume of the blank, as a term of the potential:
//
//   Π = Σ D·Σk wk·[W(ε̄(H + zk·κ)) - W(ε̄(zk·κ))],
//
// D twice the area in the blank, H = ½·ln C the logarithmic strains of the middle surface, zk and wk Gauss points through
// the thickness, κ the part's curvature, W of sheet_work.hpp, ε̄ of hill_strain.hpp. In forces it is ½·t0·σ0·Π, t0 the
// blank's thickness and σ0 the stress that the flow curve is divided by. The second work belongs to bending alone: taken
// off, a developable part costs nothing; kept, area that bends costs its work.
//
// Where the sheet is the same in all directions H and κ are seen on the part, and nothing is frozen. With a rolling
// direction they are seen in the blank; κ is turned there by the rotation of the polar decomposition and held while the
// blank moves, until turnCurvature() is called again.
#pragma once

#include "element/potential_sums.hpp"
#include "material/hill_strain.hpp"
#include "material/sheet_work.hpp"

namespace tornwalzen {

enum class Bending : Int { none, released, kept };

struct Section {
  Int points;        // 3 or 5 Gauss points
  double thickness;  // t0 (mm)
  Bending bending;
};

class PressWorkTerm final : public DensityTerm {
 public:
  /// CURVATURE: in, 3 × NE in the axes of part_frames.hpp (1/mm). TURNED: 3 × NE, scratch of a sheet with a rolling
  /// direction, else without length. Both outlive the term, as `work` does.
  PressWorkTerm(const SheetWork& work, const Anisotropy& r, const Section& section,
                Table<const double> CURVATURE, Table<double> TURNED);

  void add(Order order, const TrianglePoint& at, MapSum& sum) const override;
  bool turnable() const override { return !planar_; }

  /// Sees the curvature in the blank RX from now on; nothing where the sheet is the same in all directions.
  void turnCurvature(const PotentialMesh& mesh, Vector<const double> RX) const;

  /// W of a triangle, and the membrane forces N11, N22, N12 per length in its own axes, both per t0·σ0.
  struct State {
    double work, N[3];
  };
  State state(const TrianglePoint& at) const;

 private:
  void density(Order order, const TrianglePoint& at, const Spectrum& X, Density& F) const;
  void atPoint(Order order, const StrainQuadratic& Q, const double (&X)[3], double weight, Density& F) const;

  const SheetWork& work_;
  StrainQuadratic quadratic_;
  double rollingCosine_, rollingSine_;
  bool planar_;
  Bending bending_;
  Int points_;
  double heights_[5], weights_[5];
  Table<const double> CURVATURE_;
  Table<double> TURNED_;
};

}  // namespace tornwalzen
