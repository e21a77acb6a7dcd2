// The steps of the sure path: see the part along its mean normal, give every triangle a rotation, join them to a
// blank, bring it into equilibrium with the part, place it in the host's holds.
#include "driver/sure_path.hpp"

#include <algorithm>
#include <cmath>

#include "develop/part_shape.hpp"
#include "develop/unfold_geometry.hpp"
#include "develop/unfold_report.hpp"
#include "driver/blank_holds.hpp"
#include "driver/known_topology.hpp"
#include "driver/load_path.hpp"
#include "driver/newton_step.hpp"
#include "driver/press_path.hpp"
#include "driver/sure_newton.hpp"
#include "driver/sure_report.hpp"
#include "driver/sure_start.hpp"
#include "element/assembly.hpp"
#include "element/lanes/lane_pass.hpp"
#include "ground/messages.hpp"
#include "ground/progress.hpp"
#include "ground/thread_pool.hpp"
#include "sparse/factor_statistics.hpp"
#include "tornwalzen_ext.h"

namespace tornwalzen {

namespace {

constexpr double thresholdAtStart = 0.2;    // s0: a triangle five times shorter in the blank than on the part
constexpr double toleranceShare = 0.001;    // of the gradient tolerance: quadratic convergence gives it
constexpr double referenceGradient = 1e-2;  // mm: over the part, before the blank becomes the reference
constexpr double leastStretchOverBlank = 0.05;
constexpr double mostInverted = 0.01;  // of the triangles in the start
constexpr Int mostFactorizations = 40;

/// One run: the objects that live as long as it.
class SurePath {
 public:
  SurePath(Analysis& run, const DriverArrays& a, Vector<double> EVAL, const PressArrays& marks)
      : run_(run),
        a_(a),
        HOST_(a.KNG),
        EVAL_(EVAL),
        CURVE_(run),
        partWork_(CURVE_, true),
        blankWork_(CURVE_, false),
        partGeometric_(true),
        blankGeometric_(false),
        tangent_(run, a.COLS, a.ROWI, a.WORK, a.RWORK, a.SYSM, a.WRHS),
        joiner_(run),
        press_(run, marks, CURVE_) {
    const bool geometric = run.istat == 0;
    overPart_.append(geometric ? static_cast<const DensityTerm&>(partGeometric_) : partWork_);
    overBlank_.append(geometric ? static_cast<const DensityTerm&>(blankGeometric_) : blankWork_);
  }

  RunEnd follow() {
    openSureProgress(run_);
    if (!hostContinues(run_.progress, {RunPhase::start, 0.0})) return RunEnd::stoppedByHost;
    if (!prepare()) return gaveUp_;
    if (!start()) return gaveUp_;
    const RunEnd end = equilibrium();
    keepResults();
    reportSureEnd(run_, end == RunEnd::converged, counts_.factorizations, counts_.solves,
                  run_.record.lastGradient, run_.record.smallestSingular);
    return end;
  }

 private:
  bool giveUp(const char* text, double value = NAN) {
    reportSureRefusal(run_, text, value);
    return false;
  }
  bool noMemory() {
    failSolver(run_, " FATALER FEHLER : kein Speicher fuer den sicheren Weg @");
    gaveUp_ = RunEnd::solverFailed;
    return false;
  }

  /// Refuses what cannot have a blank, before anything is sized after it.
  bool isSheet() {
    const PartTopology* const T = topologyOf(run_, {a_.KNG, a_.INTA, run_.nkno, run_.nele});
    if (T == nullptr) return noMemory();
    if (T->code != TORNWALZEN_OK) {
      reportSureTopology(run_, T->code, T->index, T->value);
      return false;
    }
    if (!used_.allocate(run_.nkno, 0)) return noMemory();
    const Vector<Int> USED = used_.vector();
    for (Int e = 1; e <= run_.nele; ++e)
      for (Int corner = 1; corner <= 3; ++corner) USED(a_.INTA(e, corner)) = 1;
    holds_ = BlankHolds(a_.ARFA, USED);
    return true;
  }

  /// Angles, areas, attitude and frames of the part; the target is the part itself.
  bool prepare() {
    if (!isSheet()) return false;
    Int sharp;
    measureAngles(run_, a_, sharp);
    reportSharpElements(run_, sharp);
    measureAreas(run_, a_);
    const StartKind kind = run_.options.patchStart ? StartKind::flatPatch : StartKind::projection;
    if (!frames_.allocate(frame::rows * Int64{run_.nele}) || !free_.allocate(run_.neq) ||
        !memory_.allocate(run_.pool.get(), run_.neq) || !factored_.allocate(run_.neq) ||
        !start_.look(kind, a_.INTA, a_.KNG, run_.topology->TWIN.vector()))
      return noMemory();
    if (start_.turnedOver()) run_.topology.reset();
    if (run_.options.press.chosen && run_.options.press.meshSide != MeshSide::middle) {
      if (!middle_.allocate(3 * a_.KNG.rows()) ||
          !middleOfSheet(run_.options.press, a_, start_.twins(run_.nele), middle_.table(3)))
        return noMemory();
      a_.KNG = middle_.table(3);
    }
    if (const Int e = measurePartFrames(a_.INTA, a_.KNG, frames_.table(run_.nele)); e != 0)
      return giveUp(" SICHERER WEG: ELEMENT OHNE FLAECHE, NUMMER", e);
    for (Int n = 1; n <= run_.nkno; ++n)
      for (Int i = 1; i <= 3; ++i) a_.KNZ(n, i) = a_.KNG(n, i);
    return true;
  }

  bool turnable() const { return overPart_.turnable() && (!run_.options.press.chosen || press_.turnable()); }

  PotentialMesh mesh() {
    return {a_.INTA, frames_.table(run_.nele), &lanesOf(run_), run_.pool.get(), run_.parts.get()};
  }

  /// The starting blank, in RX and KNA.
  bool start() {
    const ProcessorTime time(run_.record.development);
    start_.project(mesh(), a_.KNG, a_.RX);
    if (!holds_.free()) holds_.place(HOST_, a_.RX);
    StartOutcome seen{};
    bool arranged = false;
    bothSteps(
        run_.pool.get(), [&] { arranged = arrangeJoiner(); }, [&] { seen = start_.hinge(mesh(), a_.KNG); });
    if (!seen.memory || !arranged) return noMemory();
    if (!factorizeJoiner()) return false;
    start_.join(mesh(), joiner_, a_.RX, a_.TEMP);
    if (!holds_.place(HOST_, a_.RX)) {
      holds_.pin();  // the two nodes of a hold lie nearer in the blank than their projections
      holds_.place(HOST_, a_.RX);
      if (!prepareJoiner()) return false;
      start_.join(mesh(), joiner_, a_.RX, a_.TEMP);
    }
    if (holds_.free() && !turnable()) {  // a turn afterwards would change the energy
      holds_.pin();
      if (!prepareJoiner()) return false;
    }
    start_.forgetRotations();
    for (Int n = 1; n <= run_.nkno; ++n)
      for (Int i = 1; i <= 2; ++i) a_.KNA(n, i) = a_.RX(2 * n - 2 + i);
    double penalty;
    unfoldObjective(run_, a_, VisitedElements(run_.nele, false), run_.record.invertedElements, penalty);
    run_.record.largestMeasure = run_.qmax;

    const BlankShape shape = blankShape(mesh(), a_.RX);
    run_.record.flatPatchStart = seen.flatPatch;
    run_.record.hingedElements = seen.hinged;
    run_.record.startInverted = shape.inverted;
    run_.record.laplaceFactorizations = joiner_.factorizations();
    reportSureStart(run_, seen.flatPatch, seen.hinged, shape.inverted, shape.smallest);
    if (shape.inverted > mostInverted * run_.nele)
      return giveUp(" SICHERER WEG: ZU VIELE GEWENDETE ELEMENTE IM START", shape.inverted);
    return true;
  }

  /// The systems that join maps to a blank, under the holds as they are.
  bool prepareJoiner() { return arrangeJoiner() ? factorizeJoiner() : noMemory(); }

  bool arrangeJoiner() {
    holds_.standingShift(a_.RX, free_.vector());
    return joiner_.arrange(mesh(), a_.COLS, a_.ROWI, free_.vector(), &tangent_);
  }

  /// The mesh hangs together, as isSheet() found.
  bool factorizeJoiner() {
    return joiner_.factorize() || giveUp(" SICHERER WEG: ELEMENTE ZU SCHMAL FUER DEN START");
  }

  /// Newton's method, over the part and then over the blank if that is the reference, and the place of the blank.
  RunEnd equilibrium() {
    const double limit =
        gradientTolerance(run_.istat) * std::min(run_.options.finalTolerance, toleranceShare);
    run_.record.gradientLimit = limit;
    for (;;) {
      holds_.standing(a_.RX, free_.vector());
      SureProblem problem{
          run_,  mesh(), &overPart_, thresholdAtStart, free_.vector(),     tangent_, joiner_, a_.RX,
          a_.RR, a_.RB,  a_.RXA,     a_.TEMP,          factored_.vector(), memory_,  counts_};
      NewtonOutcome found;
      if (run_.options.press.chosen) {
        found = minimise(problem, {referenceGradient, false, -INFINITY, mostFactorizations});
        if (found.end == SureEnd::minimum) {
          if (!preparePress()) return gaveUp_;
          found = press_.follow(problem, limit);
        }
      } else if (run_.options.partReference) {
        found = minimise(problem, {limit, true, -INFINITY, mostFactorizations});
      } else {
        found = minimise(problem, {referenceGradient, false, -INFINITY, mostFactorizations});
        if (found.end == SureEnd::minimum) {
          reportSureReference(run_);
          problem.terms = &overBlank_;
          found = minimise(problem, {limit, true, leastStretchOverBlank, mostFactorizations});
        }
      }
      keepOutcome(found);
      if (found.end == SureEnd::stopped) return RunEnd::stoppedByHost;
      if (!told(found)) return RunEnd::gaveUp;
      if (holds_.place(HOST_, a_.RX)) return RunEnd::converged;
      holds_.pin();
      holds_.place(HOST_, a_.RX);
      if (!prepareJoiner()) return gaveUp_;
    }
  }

  /// The press model, in the axes that the blank is found in.
  bool preparePress() {
    constexpr double host[3][3] = {{1.0, 0.0, 0.0}, {0.0, 1.0, 0.0}, {0.0, 0.0, 1.0}};
    const FreeMoves moves{holds_.shiftFree(0), holds_.shiftFree(1), holds_.rigidOnly()};
    if (!press_.prepare(mesh(), a_.KNG, a_.ARFA, start_.twins(run_.nele),
                        holds_.rigidOnly() ? start_.axes() : host, moves))
      return noMemory();
    return press_.hasFlange() || giveUp(" PRESSE: NIEDERHALTER OHNE FLANSCH @");
  }

  void keepOutcome(const NewtonOutcome& found) {
    run_.record.lastGradient = found.value.gradient;
    run_.record.energy = found.value.energy;
    run_.record.smallestSingular = found.smallest;
    run_.record.turnedElements = found.inverted;
    run_.record.minimumCertified = found.end == SureEnd::minimum;
    run_.record.newtonSteps = counts_.iterations;
    run_.record.factorizations = counts_.factorizations;
    run_.record.solves = counts_.solves;
    run_.record.lineSearchTrials = counts_.trials;
    run_.record.assembly = counts_.assembly;
    run_.record.factorization = counts_.factorization;
    run_.record.solve = counts_.solve;
    run_.record.lineSearch = counts_.search;
  }

  /// Does the outcome give a blank? If not, says why not.
  bool told(const NewtonOutcome& found) {
    switch (found.end) {
      case SureEnd::minimum:
      case SureEnd::stationary:
        if (found.inverted == 0) return true;
        return giveUp(" SICHERER WEG: GEWENDETE ELEMENTE IM GLEICHGEWICHT", found.inverted);
      case SureEnd::stopped:
        return false;
      case SureEnd::tooLong:
        return giveUp(" SICHERER WEG: KEINE KONVERGENZ, GRADIENT", found.value.gradient);
      case SureEnd::noDescent:
        return giveUp(" SICHERER WEG: KEIN ABSTIEG MEHR, GRADIENT", found.value.gradient);
      case SureEnd::noFactor:
        return giveUp(" SICHERER WEG: TANGENTE NICHT ZERLEGBAR");
      case SureEnd::tooThin:
        return giveUp(" SICHERER WEG: ELEMENT VERSCHWINDET IN DER PLATINE, S-MIN", found.smallest);
      case SureEnd::notFinite:
        return giveUp(" SICHERER WEG: ENERGIE ODER GRADIENT IST KEINE ZAHL");
    }
    return false;
  }

  /// The element table and what else the arrays hold at the end.
  void keepResults() {
    for (Int i = 1; i <= run_.neq; ++i) a_.RXA(i) = a_.KNA((i + 1) / 2, (i + 1) % 2 + 1);
    recordFactor(run_.record, run_.solver.protocol, a_.WORK, a_.RWORK);
    if (run_.record.turnedElements != 0) return;
    double EN;
    energySum(run_, EN, a_);
    assemble(run_, residualOnly, a_);
    for (Int e = 1; e <= run_.nele; ++e)
      for (Int column = 1; column <= 5; ++column) EVAL_(5 * (e - 1) + column) = a_.ELG(e, column);
  }

  Analysis& run_;
  DriverArrays a_;
  const Table<const double>
      HOST_;  // the part as given: its holds are there, whatever side of the sheet it shows
  Vector<double> EVAL_;
  FlowCurve CURVE_;
  PlasticWorkTerm partWork_, blankWork_;
  GeometricTerm partGeometric_, blankGeometric_;
  DensityTerms overPart_, overBlank_;
  SparseSystem tangent_;
  MapJoiner joiner_;
  PressPath press_;
  SureStart start_;
  BlankHolds holds_{{}, {}};
  OwnArray<double> frames_{"FRAMES"}, middle_{"MIDDLE"}, factored_{"FACTORED"};
  OwnArray<Int> free_{"FREE"}, used_{"USED"};
  ChordMemory memory_;
  SureCounts counts_;
  RunEnd gaveUp_ = RunEnd::gaveUp;
};

}  // namespace

void surePath(Analysis& run, const DriverArrays& a, Vector<double> EVAL, const PressArrays& marks) {
  run.record.path = 1;
  run.record.end = RunEnd::running;
  run.record.end = SurePath(run, a, EVAL, marks).follow();
  if (run.record.end == RunEnd::converged) {
    run.record.progress = 1.0;
    run.record.fatalText[0] = '\0';  // of a tangent without a factor, which another one answered
  }
  for (Int i = 1; i <= run.neq; ++i) a.TEMP(i) = 0.0;
}

}  // namespace tornwalzen
