// The way to the work of deformation, and rounds of loads.
#include "driver/press_path.hpp"

#include <algorithm>
#include <cmath>

#include "driver/press_report.hpp"
#include "driver/sure_step.hpp"
#include "element/part_curvature.hpp"
#include "forces/free_edges.hpp"
#include "ground/progress.hpp"

namespace tornwalzen {

namespace {

constexpr double workScale = 50.0;        // MPa: S of sheet_work.hpp
constexpr double leastStretch = 0.05;     // as long as the blank has no barrier
constexpr double thinnestWay = 0.4;       // of the singular value that was: beyond, the blank runs away
constexpr Int directFactorizations = 10;  // for the work without a way to it
constexpr Int mostRounds = 60;            // of one share
constexpr Int firstRounds = 2;            // each with a factor of its own: the forces are far from theirs
constexpr Int mostMixed = 15;             // rounds with one factor
constexpr double mostGrowth = 4.0;        // of the residual from its best: then the loads must be followed
constexpr Int mostFollowed = 30;          // steps that follow them
constexpr Int mostIndefinite = 2;         // of them shortened, with a tangent that is not positive definite
constexpr Int followHalvings = 6;
constexpr double settledMove = 1e-9;     // of the blank's size: the last move
constexpr double looseMove = 3e-3;       // on the way
constexpr double settlingGain = 0.5;     // of the gradient, in a round that is worth it
constexpr Int mostIdle = 3;              // rounds that were not
constexpr double differenceStep = 1e-5;  // mm
constexpr double krylovTolerance = 0.05;

Anisotropy anisotropyOf(const RunOptions& options) {
  const PressOptions& press = options.press;
  const auto given = [&](double r) { return r > 0.0 ? r : options.anisotropy; };
  return {given(press.r0), given(press.r45), given(press.r90),
          press.rolling * 3.14159265358979323846 / 180.0};
}

double largestOf(Vector<const double> a) {
  double largest = 0.0;
  for (Int64 i = 1; i <= a.length(); ++i) largest = std::max(largest, std::fabs(a(i)));
  return largest;
}

}  // namespace

PressTerms actingTerms(const PressOptions& options, const PressArrays& marks) {
  const bool binder = options.binderForce > 0.0 && options.frictionDie > 0.0;
  const bool contact = options.frictionPunch > 0.0 || options.frictionDie > 0.0;
  const bool beads = marks.BEADENDS.length() > 0;
  const bool all = contact && (binder || beads);
  PressTerms terms{all ? Bending::kept : Bending::none, all, contact, binder, beads};
  if (options.bending == BendingChoice::off) terms.bending = Bending::none;
  if (options.bending == BendingChoice::released) terms.bending = Bending::released;
  if (options.bending == BendingChoice::kept) terms.bending = Bending::kept;
  if (options.edge != Choice::automatic) terms.edge = options.edge == Choice::on;
  return terms;
}

PressPath::PressPath(Analysis& run, const PressArrays& marks, const FlowCurve& CURVE)
    : run_(run),
      options_(run.options.press),
      marks_(marks),
      acting_(actingTerms(options_, marks)),
      anisotropy_(anisotropyOf(run.options)),
      loads_(acting_.tools() || acting_.edge || anisotropy_.planar()),
      work_(CURVE, options_.young / run.smin, workScale / run.smin),
      scale_(0.5 * options_.thickness * run.smin) {}

NewtonOutcome PressPath::follow(SureProblem& problem, double limit) {
  problem.terms = &terms_;
  problem.guarded = true;
  term_->turnCurvature(mesh_, problem.RX);
  keep(problem, start_);
  NewtonOutcome found = atOnce(problem, limit);
  if (!stands(found) && found.end != SureEnd::stopped) {
    putBack(problem, start_);
    found = downTheFamily(problem, limit);
  }
  if (!settled(found) && loads_) {  // not even its first member bears the loads: without them
    loads_ = false;
    putBack(problem, start_);
    found = downTheFamily(problem, limit);
  }
  if (holds(found)) keepRecord(problem);
  return found;
}

/// W without a way to it, and all loads on its blank: what ordinary parts allow.
NewtonOutcome PressPath::atOnce(SureProblem& problem, double limit) {
  work_.choose(1.0);
  const double least = std::max(leastStretch, thinnestWay * blankShape(problem.mesh, problem.RX).smallest);
  NewtonOutcome found = minimise(problem, {loads_ ? looseGradient : limit, !loads_, least,
                                           problem.counts.factorizations + directFactorizations});
  reportPressWork(run_, 1.0, holds(found), found.value.gradient, found.smallest);
  const bool slow =
      found.end == SureEnd::tooLong;  // a stiff sheet that turns: the energy holds its steps short
  if (slow || (holds(found) && loads_)) {
    found = balance(problem, limit, slow);
    if (loads_)
      reportPressLoads(run_, holds(found), found.value.gradient);
    else
      reportPressWork(run_, 1.0, holds(found), found.value.gradient, found.smallest);
  }
  if (stands(found)) told(1.0);
  return found;
}

/// Is that a blank to go on from or to end with? Without loads beside the potential only a minimum is.
bool PressPath::stands(const NewtonOutcome& found) const {
  return holds(found) && (found.end == SureEnd::minimum || (loads_ && (acting_.edge || acting_.tools())));
}

void PressPath::told(double exponent) {
  run_.record.press.exponent = exponent;
  run_.record.press.loadsHeld = loads_ && (acting_.edge || acting_.tools());
}

/// Newton's method with the loads of each round, then rounds mixed over one factor of the tangent, which knows no loads.
/// Where these do not close in, steps that know how the loads follow.
NewtonOutcome PressPath::balance(SureProblem& problem, double limit, bool follow) {
  NewtonOutcome found{SureEnd::tooLong, {}, 0.0, 0};
  mixing_.restart();
  Int mixed = 0, followed = 0, indefinite = 0, idle = 0;
  bool exact = false;
  double best = INFINITY, settled = INFINITY, move = INFINITY;
  const double standing = (limit < looseGradient ? settledMove : looseMove) * largestOf(problem.RX);
  for (Int round = 1; round <= mostRounds; ++round, ++run_.record.press.rounds) {
    if (loads_) freezeLoads(problem);
    found.value = evaluateBlank(problem);
    const BlankShape shape = blankShape(problem.mesh, problem.RX);
    found.smallest = shape.smallest;
    found.inverted = shape.inverted;
    const bool sound = std::isfinite(found.value.gradient) && shape.smallest >= leastStretch;
    reportPressRound(run_, round, found.value.gradient, shape.smallest);
    if (!hostContinues(run_.progress, {RunPhase::press, 0.0, 0, round, found.value.gradient})) {
      found.end = SureEnd::stopped;
      return found;
    }
    const bool met = sound && found.value.gradient <= limit;
    if (met) {
      if (!(found.value.gradient < settlingGain * settled)) ++idle;
      settled = std::min(settled, found.value.gradient);
      if (move <= standing || idle == mostIdle || mixed == mostMixed) break;
    }
    if (!follow && round > firstRounds &&
        (!sound || found.value.gradient > mostGrowth * best || mixed == mostMixed)) {
      follow = true;  // back to where it was best
      putBack(problem, best_);
      continue;
    }
    if (!sound) {
      found.end = SureEnd::tooThin;
      return found;
    }
    if (found.value.gradient < best) {
      best = found.value.gradient;
      keep(problem, best_);
    }
    if (follow) {
      const double length = followed++ == mostFollowed ? 0.0 : followingRound(problem, exact);
      move = length * largestOf(step_.vector());
      if (length == 0.0 || (!exact && length < 1.0 && ++indefinite == mostIndefinite)) break;
    } else if (round <= firstRounds) {
      if (!newtonRound(problem, found.value, exact)) follow = true;
    } else {
      problem.tangent.solve(problem.RR, problem.RB);
      ++problem.counts.solves;
      mixing_.mix(problem.RX, problem.RB);
      for (Int64 i = 1; i <= problem.RX.length(); ++i) problem.RX(i) += problem.RB(i);
      move = largestOf(problem.RB);
      ++mixed;
    }
  }
  found.end = SureEnd::noDescent;
  if (!(found.value.gradient <= limit)) return found;
  found.end = exact ? SureEnd::minimum : SureEnd::stationary;
  return found;
}

/// One step of Newton's method on the whole residual, the loads following the blank: products by differences, the exact
/// tangent without loads before them, a step length that shortens the step after it (P. Deuflhard, Newton methods for
/// nonlinear problems, 2004). Returns its length; 0: none does.
double PressPath::followingRound(SureProblem& problem, bool& exact) {
  if (!krylov_.prepare(problem.RX.length())) return 0.0;
  exact = false;
  potentialTangent(problem.mesh, problem.RX, problem.potential(0.0), problem.tangent.COLS(),
                   problem.tangent.ROWI(), problem.RB, problem.tangent.SYSM());
  problem.tangent.hold(problem.FREE);
  ++problem.counts.factorizations;
  if (!problem.tangent.factorize()) return 0.0;
  exact = problem.tangent.negativePivots() == 0;
  keep(problem, base_);
  const Vector<double> RESIDUAL = residual_.vector(), AHEAD = ahead_.vector(), STEP = step_.vector();
  std::copy_n(problem.RR.data(), problem.RR.length(), residual_.data());
  problem.tangent.solve(RESIDUAL, AHEAD);
  const Vector<double> BLANK = base_.blank.vector();
  const auto product = [&](Vector<const double> V, Vector<double> W) {
    const double largest = largestOf(V);
    const double h = largest > 0.0 ? differenceStep / largest : 1.0;
    for (Int64 i = 1; i <= V.length(); ++i) problem.RX(i) = BLANK(i) + h * V(i);
    freezeLoads(problem);
    evaluateBlank(problem);
    for (Int64 i = 1; i <= V.length(); ++i) problem.RB(i) = (RESIDUAL(i) - problem.RR(i)) / h;
    problem.tangent.solve(problem.RB, W);
  };
  const double before = lengthOf(AHEAD);
  if (loads_)
    krylov_.solve(std::ref(product), AHEAD, krylovTolerance, STEP);  // a copy would ask for memory
  else
    std::copy_n(ahead_.data(), ahead_.length(), step_.data());
  const double thin = blankShape(problem.mesh, BLANK).smallest;
  double t = 1.0;
  for (Int halving = 0; halving <= followHalvings; ++halving, t *= 0.5) {
    for (Int64 i = 1; i <= BLANK.length(); ++i) problem.RX(i) = BLANK(i) + t * STEP(i);
    if (blankShape(problem.mesh, problem.RX).smallest < 0.7 * thin) continue;
    if (loads_) freezeLoads(problem);
    evaluateBlank(problem);
    problem.tangent.solve(problem.RR, problem.RB);
    const double after = lengthOf(problem.RB);
    if (after < (1.0 - 0.25 * t) * before) return t;
  }
  putBack(problem, base_);
  return 0.0;
}

/// One step with a tangent of its own, exact if that is positive definite, and the loads as they stand.
bool PressPath::newtonRound(SureProblem& problem, const SureValue& value, bool& exact) {
  bool factored = false;
  for (const double theta : {0.0, 1.0}) {
    const ProcessorTime time(problem.counts.factorization);
    potentialTangent(problem.mesh, problem.RX, problem.potential(theta), problem.tangent.COLS(),
                     problem.tangent.ROWI(), problem.RB, problem.tangent.SYSM());
    problem.tangent.hold(problem.FREE);
    ++problem.counts.factorizations;
    factored = problem.tangent.factorize();
    exact = theta == 0.0;
    if (factored && problem.tangent.negativePivots() == 0) break;
  }
  if (!factored) return false;
  problem.tangent.solve(problem.RR, problem.RB);
  ++problem.counts.solves;
  ++problem.counts.iterations;
  const double descent = descentAlong(problem);
  return descent > 0.0 && takeStep(problem, value, descent, !exact).accepted;
}

void PressPath::keep(const SureProblem& problem, Kept& kept) const {
  std::copy_n(problem.RX.data(), problem.RX.length(), kept.blank.data());
  kept.loaded = problem.LOAD.length() > 0;
  if (!kept.loaded) return;
  std::copy_n(load_.data(), load_.length(), kept.load.data());
  std::copy_n(origin_.data(), origin_.length(), kept.origin.data());
}

void PressPath::putBack(SureProblem& problem, const Kept& kept) {
  std::copy_n(kept.blank.data(), problem.RX.length(), problem.RX.data());
  problem.LOAD = {};
  problem.ORIGIN = {};
  if (!kept.loaded) return;
  std::copy_n(kept.load.data(), load_.length(), load_.data());
  std::copy_n(kept.origin.data(), origin_.length(), origin_.data());
  problem.LOAD = load_.vector();
  problem.ORIGIN = origin_.vector();
}

/// Loads of the edges and the tools at the blank as it lies.
void PressPath::freezeLoads(SureProblem& problem) {
  const Vector<double> LOAD = load_.vector(), ORIGIN = origin_.vector();
  for (Int64 i = 1; i <= LOAD.length(); ++i) LOAD(i) = 0.0, ORIGIN(i) = problem.RX(i);
  term_->turnCurvature(mesh_, problem.RX);
  lookAt(problem);
  if (acting_.edge) addEdgeLoads(mesh_.INTA, TWIN_, plane_.vector(), density_.vector(), problem.RX, LOAD);
  if (acting_.tools()) {
    toolForces();
    addToolLoads(sheet(), force_.table(area_.length()), scale_, LOAD);
  }
  if (anisotropy_.planar() &&
      moves_.turn) {  // a rolling direction resists a turn: what it asks for is spread too
    potentialResidual(problem.mesh, problem.RX, problem.potential(0.0), problem.RR);
    for (Int64 i = 1; i <= LOAD.length(); ++i) LOAD(i) += problem.RR(i);
    balanceLoads(moves_, weight_.vector(), problem.RX, LOAD);
    for (Int64 i = 1; i <= LOAD.length(); ++i) LOAD(i) -= problem.RR(i);
  } else {
    balanceLoads(moves_, weight_.vector(), problem.RX, LOAD);
  }
  problem.LOAD = LOAD;
  problem.ORIGIN = ORIGIN;
}

/// FORCE: what all tools do to the sheet.
void PressPath::toolForces() {
  const Int64 ne = area_.length();
  const bool above = options_.punchAbove;
  const SheetView view = sheet();
  force_.fill(0.0);
  contact_.fill(0.0);
  grip_.fill(0.0);
  if (acting_.contact)
    addContactFriction(view,
                       {above ? options_.frictionDie : options_.frictionPunch,
                        above ? options_.frictionPunch : options_.frictionDie},
                       force_.table(ne), contact_.vector());
  if (acting_.binder) {
    const BinderGrip grip = addBinderFriction(view, flange_.vector(), options_.binderForce,
                                              options_.frictionDie, force_.table(ne), grip_.vector());
    run_.record.press.binderPressure = grip.largest;
    run_.record.press.binderArea = grip.area;
  }
  for (Int64 i = 0; i < beads_.length(); ++i)
    addBeadForce(view, TWIN_, beads_.data()[i], KNG_, force_.table(ne));
}

/// Maps, work, membrane forces and slip at the blank.
void PressPath::lookAt(const SureProblem& problem) {
  const Int ne = static_cast<Int>(area_.length());
  const Table<double> MAPS = maps_.table(ne), FORCES = forces_.table(ne);
  const Vector<double> DENSITY = density_.vector();
  const double perLength = options_.thickness * run_.smin;
  for (Int e = 1; e <= ne; ++e) {
    const BlankMap J = blankMap(e, mesh_.INTA, mesh_.FRAMES, problem.RX);
    MAPS(1, e) = J.J11, MAPS(2, e) = J.J12, MAPS(3, e) = J.J21, MAPS(4, e) = J.J22;
    const PressWorkTerm::State state =
        term_->state({e, principalMap(J), mesh_.FRAMES(frame::weight, e), problem.s0});
    DENSITY(e) = state.work;
    for (Int i = 0; i < 3; ++i) FORCES(i + 1, e) = perLength * state.N[i];
  }
  slipOfSheet(sheet(), KNG_, view_, moves_, weight_.vector(), problem.RX, slip_.table(ne));
}

SheetView PressPath::sheet() {
  const Int64 ne = area_.length();
  return {mesh_.INTA,           maps_.table(ne),   axes_.table(ne), area_.vector(),
          curvature_.table(ne), forces_.table(ne), slip_.table(ne), options_.thickness};
}

}  // namespace tornwalzen
