// Whether a run converged, and if not, why; see the header.
#include "run/verdict.hpp"

#include <cmath>

#include "run/library_failure.hpp"
#include "system/text.hpp"

namespace host {

namespace {

constexpr double overlapShare = 1e-6;  // of the part's area: below it the outline touches itself by rounding
constexpr double strainShare = 1e-3;   // of the part's area beyond an equivalent strain of 1 that is let pass
constexpr double undercutShare = 1e-3;  // of the part's area: from here on several minima may exist
constexpr double energyShare = 1e-4;    // relative: two blanks whose potentials lie nearer are the same
constexpr double energyFloor = 1e-8;  // mm2 of potential per mm2: nothing but rounding on a developable part

// Whether all nodes in triangles have one z.
bool isFlat(const Part& part) {
  for (std::int64_t e = 1; e <= part.elements(); ++e)
    for (int k = 0; k < 3; ++k)
      if (part.z(part.corner(e, k)) != part.z(part.corner(1, 0))) return false;
  return true;
}

std::string reachedPercent(const TornwalzenReport& report) {
  return fixedDecimal(100.0 * report.progress, 1) + " %";
}

std::string flatPart() {
  return "the part is flat and is its own blank: nothing but rounding is left of the gradient (exactly zero "
         "under "
         "material 10), so the line search finds no better blank, and by the rules of the method such an "
         "increment "
         "does not count as converged";
}

std::string stalledAtTheEnd(const TornwalzenReport& report) {
  const std::string gradient = decimal(report.last_gradient) + " mm",
                    tolerance = decimal(report.gradient_limit) + " mm";
  if (report.last_gradient <= report.gradient_limit)
    return "the line search found no better blank in the last increment, which then does not count as "
           "converged, "
           "although its gradient of " +
           gradient + " is within the tolerance of " + tolerance;
  return "the gradient of the last increment stayed at " + gradient + ", above its tolerance of " + tolerance;
}

// Whether the run converged, by the library's reason; what the blank is worth comes after it.
Verdict outcome(const Part& part, const RunOutput& run) {
  const TornwalzenReport& report = run.report;
  switch (report.reason) {
    case TORNWALZEN_CONVERGED:
      return {true, "", exitConverged, Worth::good, {}};
    case TORNWALZEN_SOLVER_FAILED:
      return {
          false,
          "the system of equations could not be factorized or solved in at least one Newton step; the held "
          "unknowns leave a part of the blank free, a triangle has collapsed, or memory ran out",
          exitRunFailed,
          Worth::notABlank,
          {}};
    case TORNWALZEN_NOT_DEVELOPED:
      return {false, "the part could not be developed onto the plane", exitUnconverged, Worth::notABlank, {}};
    case TORNWALZEN_STEP_TOO_SMALL:
      return {false,
              isFlat(part) ? flatPart()
                           : "increments failed until their step became too small, at " +
                                 reachedPercent(report) + " of the part",
              exitUnconverged,
              Worth::notABlank,
              {}};
    case TORNWALZEN_FINAL_UNCONVERGED:
      return {
          false, isFlat(part) ? flatPart() : stalledAtTheEnd(report), exitUnconverged, Worth::notABlank, {}};
    case TORNWALZEN_GAVE_UP:
      return {
          false,
          "the sure path gave up (" + fatalText(report) + "); --path fixed tries the way by load increments",
          exitUnconverged,
          Worth::notABlank,
          {}};
    default:
      return {
          false, "the library refused the run: " + fatalText(report), exitRunFailed, Worth::notABlank, {}};
  }
}

std::string triangle(const Part& part, std::int32_t element) {
  return "triangle " + std::to_string(part.fileElement[static_cast<std::size_t>(element) - 1]);
}

std::string place(double u, double v) {
  return "u " + fixedDecimal(u, 2) + ", v " + fixedDecimal(v, 2) + " mm";
}

std::string percent(double share) {
  return fixedDecimal(100.0 * share, share < 0.001 ? 3 : 1) + " %";
}

// What makes the result no blank at all.
std::vector<std::string> faults(const Part& part, const RunOutput& run) {
  const TornwalzenReport& r = run.report;
  std::vector<std::string> why;
  if (r.not_finite > 0)
    why.push_back(counted(r.not_finite, "triangle") + " with a position that is no number, the first is " +
                  triangle(part, r.first_not_finite));
  if (r.blank_inverted > 0)
    why.push_back(counted(r.blank_inverted, "triangle") + " turned over in the blank" +
                  (r.first_inverted > 0 ? ", the first is " + triangle(part, r.first_inverted) : ""));
  if (r.crossings > 0)
    why.push_back("the outline of the blank crosses itself, first at " + place(r.crossing_u, r.crossing_v));
  if (r.misplaced_loops > 0)
    why.push_back("holes and outline of the blank do not lie in one another, see node " +
                  std::to_string(r.first_misplaced_node));
  if (r.overlapped_area > overlapShare * r.part_area)
    why.push_back("the blank covers " + fixedDecimal(r.overlapped_area, 2) + " mm2 more than once");
  else if (r.open_nodes > 0 && r.blank_inverted == 0)
    why.push_back("the triangles around node " + std::to_string(r.first_open_node) +
                  " do not close once (nodes like this: " + std::to_string(r.open_nodes) + ")");
  if (r.path == 1 && r.minimum_certified == 0 && run.press.loads_held == 0)
    why.push_back("the equilibrium found is no minimum");
  return why;
}

// What the sheet does not bear: another start finds the same.
std::vector<std::string> strengthDoubts(const RunOutput& run) {
  std::vector<std::string> why;
  if (run.press.loads_held == 1 && run.report.minimum_certified == 0)
    why.push_back(
        "the sheet is at the limit of its strength: the tangent without the tools is not positive definite");
  if (run.loadsGiven && run.press.loads_held == 0)
    why.push_back(
        "the sheet does not bear the tools' forces that were given: the blank is that of the work alone");
  if (run.press.exponent > 1.0)
    why.push_back("the press model held down to the exponent " + decimal(run.press.exponent) +
                  " alone; 1 is the work of deformation itself");
  return why;
}

// What makes a blank doubtful.
std::vector<std::string> doubts(const Part& part, const RunOutput& run) {
  const TornwalzenReport& r = run.report;
  std::vector<std::string> why;
  if (r.checked == 0) why.push_back("there was no memory to check the blank");
  if (r.path == 0 && r.minimum_certified == 0)
    why.push_back("the last tangent was not positive definite: the equilibrium may be no minimum");
  for (std::string& limit : strengthDoubts(run)) why.push_back(std::move(limit));
  if (r.accepted_unconverged > 0)
    why.push_back(counted(r.accepted_unconverged, "increment") + " on the way did not converge");
  if (r.share_beyond_one > strainShare)
    why.push_back("the equivalent strain passes 1 on " + percent(r.share_beyond_one) +
                  " of the area, first at " + triangle(part, r.first_beyond_one));
  return why;
}

}  // namespace

Verdict judge(const Part& part, const RunOutput& run) {
  Verdict verdict = outcome(part, run);
  if (!verdict.converged) {
    verdict.why = {"not converged"};
    return verdict;
  }
  verdict.why = faults(part, run);
  if (!verdict.why.empty()) {
    verdict.worth = Worth::notABlank;
    verdict.status = exitUnconverged;
    return verdict;
  }
  verdict.why = doubts(part, run);
  if (!verdict.why.empty()) verdict.worth = Worth::doubtful;
  return verdict;
}

bool secondStartMayHelp(const Verdict& verdict, const RunOutput& run) {
  const TornwalzenReport& report = run.report;
  if (report.path != 1 || report.refusal != 0 || report.reason == TORNWALZEN_STOPPED_BY_HOST) return false;
  if (report.checked == 1 && report.undercut_share > undercutShare) return true;
  if (verdict.worth == Worth::doubtful) return verdict.why.size() > strengthDoubts(run).size();
  return verdict.worth != Worth::good;
}

bool isNearer(const RunOutput& one, const RunOutput& other) {
  if (one.press.exponent != other.press.exponent) return one.press.exponent < other.press.exponent;
  return one.report.energy < other.report.energy;
}

SecondStart compareStarts(const RunOutput& taken, const RunOutput& other, bool secondTaken) {
  SecondStart second;
  second.made = true;
  second.taken = secondTaken;
  second.converged = (secondTaken ? taken : other).report.converged == 1;
  second.energy = taken.report.energy;
  second.otherEnergy = other.report.energy;
  const double difference = second.otherEnergy - second.energy;
  second.agrees =
      taken.report.converged == 1 && other.report.converged == 1 &&
      std::fabs(difference) <= energyShare * (second.energy + energyFloor * taken.report.part_area);
  return second;
}

void noteSecondStart(const SecondStart& second, Verdict& verdict) {
  if (!second.made || second.agrees || verdict.worth == Worth::notABlank || !second.converged) return;
  verdict.worth = Worth::doubtful;
  verdict.why.push_back("a second start ends in another blank: potential " + decimal(second.otherEnergy) +
                        " against " + decimal(second.energy) + " mm2 of the one taken");
}

bool tighterPathMayHelp(const Part& part, const RunOutput& run) {
  const std::int32_t reason = run.report.reason;
  return (reason == TORNWALZEN_STEP_TOO_SMALL || reason == TORNWALZEN_FINAL_UNCONVERGED) && !isFlat(part);
}

}  // namespace host
