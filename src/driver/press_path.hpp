// From the sure path's first blank to the one that the press needs: the work of deformation, straight or by way of
// smoother members of its family, then free edges and tools in rounds within which their forces stand.
#pragma once

#include <memory>

#include "driver/krylov.hpp"
#include "driver/step_mixing.hpp"
#include "driver/sure_newton.hpp"
#include "element/press_work.hpp"
#include "forces/draw_beads.hpp"
#include "forces/tool_forces.hpp"
#include "ground/driver_arrays.hpp"

namespace tornwalzen {

/// Which terms act.
struct PressTerms {
  Bending bending;
  bool edge, contact, binder, beads;
  bool tools() const { return contact || binder || beads; }
};

/// MIDDLE: out, NN × 3 (mm): the nodes moved by half the thickness from the side of the sheet that the mesh shows to its
/// middle, along normals that stay in planes of symmetry. TWIN: in, 3 × NE. False: no memory.
bool middleOfSheet(const PressOptions& options, const DriverArrays& a, Table<const Int> TWIN,
                   Table<double> MIDDLE);

/// What the host chose; where it left the choice: the work alone, and with friction and a binder or beads all of them,
/// the energy of bending kept.
PressTerms actingTerms(const PressOptions& options, const PressArrays& marks);

constexpr double looseGradient = 0.02;  // mm: on the way

/// Is the blank found that of a member?
inline bool holds(const NewtonOutcome& found) {
  return found.inverted == 0 && (found.end == SureEnd::minimum || found.end == SureEnd::stationary);
}
inline bool settled(const NewtonOutcome& found) {
  return holds(found) || found.end == SureEnd::stopped;
}

class PressPath {
 public:
  /// CURVE: in, outlives the path, as the arrays of `marks` do.
  PressPath(Analysis& run, const PressArrays& marks, const FlowCurve& CURVE);

  /// Curvature, edges, planes and flange of the part. TWIN: in, 3 × NE. AXES: in, rows of the axes that the blank is
  /// found in, the third the drawing direction. False: no memory.
  bool prepare(const PotentialMesh& mesh, Table<const double> KNG, Vector<const Int> ARFA,
               Table<const Int> TWIN, const double (&AXES)[3][3], const FreeMoves& moves);

  /// Is there an element under the binder, where there is a binder?
  bool hasFlange() const { return !acting_.binder || run_.record.press.flangeElements > 0; }

  /// May the blank be turned as a whole?
  bool turnable() const { return !anisotropy_.planar(); }

  /// From a blank near the equilibrium of the fixed potential on. problem.terms, LOAD, ORIGIN: out. A family that stalls
  /// ends at its last member that held; the record tells which.
  NewtonOutcome follow(SureProblem& problem, double limit);

 private:
  bool supply(Int64 nodes, Int64 elements);
  bool markFlange(const double (&draw)[3]);
  bool findBeads();
  void triangleAxes();
  bool setTerms();

  NewtonOutcome atOnce(SureProblem& problem, double limit);
  NewtonOutcome member(SureProblem& problem, double exponent, double limit);
  NewtonOutcome downTheFamily(SureProblem& problem, double limit);
  NewtonOutcome inFull(SureProblem& problem, double exponent, double limit);
  void guess(SureProblem& problem, double before, double held, double to);
  void told(double exponent);
  bool stands(const NewtonOutcome& found) const;
  NewtonOutcome balance(SureProblem& problem, double limit, bool follow);
  double followingRound(SureProblem& problem, bool& exact);
  bool newtonRound(SureProblem& problem, const SureValue& value, bool& exact);

  SheetView sheet();
  void lookAt(const SureProblem& problem);
  void toolForces();
  void freezeLoads(SureProblem& problem);
  void keepRecord(const SureProblem& problem);

  /// A blank with the loads that stood.
  struct Kept {
    OwnArray<double> blank{"BLANK"}, load{"LOAD"}, origin{"ORIGIN"};
    bool loaded = false;
  };
  void keep(const SureProblem& problem, Kept& kept) const;
  void putBack(SureProblem& problem, const Kept& kept);

  Analysis& run_;
  const PressOptions& options_;
  const PressArrays& marks_;
  PressTerms acting_;
  Anisotropy anisotropy_;
  bool loads_;  // does anything pull on the blank beside the potential?
  SheetWork work_;
  double scale_;  // ½·t0·σ0 (N/mm): forces over it are loads (mm)
  PotentialMesh mesh_;
  Table<const double> KNG_;
  Table<const Int> TWIN_;
  double view_[2][3] = {}, draw_[3] = {};
  FreeMoves moves_{};
  DensityTerms terms_;
  std::unique_ptr<PressWorkTerm> term_;
  StepMixing mixing_;
  OwnArray<Int> plane_{"PLANE"}, flange_{"FLANGE"};
  OwnArray<BeadPiece> beads_{"BEADS"};
  // per triangle
  OwnArray<double> curvature_{"CURVATURE"}, turned_{"TURNED"}, axes_{"AXES"}, area_{"AREA"}, maps_{"MAPS"},
      forces_{"FORCES"}, slip_{"SLIP"}, density_{"WORK"}, force_{"FORCE"}, contact_{"CONTACT"}, grip_{"GRIP"};
  // per node, per unknown
  OwnArray<double> weight_{"WEIGHT"}, load_{"LOAD"}, origin_{"ORIGIN"};
  Kept start_, kept_, best_, base_;
  Krylov krylov_;
  OwnArray<double> past_{"PAST"}, residual_{"RESIDUAL"}, ahead_{"AHEAD"}, step_{"STEP"};
};

}  // namespace tornwalzen
