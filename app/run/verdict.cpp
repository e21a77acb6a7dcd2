// Whether a run converged, and if not, why; see the header.
#include "run/verdict.hpp"

#include "run/library_failure.hpp"
#include "system/text.hpp"

namespace host {

namespace {

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

}  // namespace

Verdict judge(const Part& part, const RunOutput& run) {
  const TornwalzenReport& report = run.report;
  switch (report.reason) {
    case TORNWALZEN_CONVERGED:
      return {true, "", exitConverged};
    case TORNWALZEN_SOLVER_FAILED:
      return {
          false,
          "the system of equations could not be factorized or solved in at least one Newton step; the held "
          "unknowns leave a part of the blank free, a triangle has collapsed, or memory ran out",
          exitRunFailed};
    case TORNWALZEN_NOT_DEVELOPED:
      return {false, "the part could not be developed onto the plane", exitUnconverged};
    case TORNWALZEN_STEP_TOO_SMALL:
      return {false,
              isFlat(part) ? flatPart()
                           : "increments failed until their step became too small, at " +
                                 reachedPercent(report) + " of the part",
              exitUnconverged};
    case TORNWALZEN_FINAL_UNCONVERGED:
      return {false, isFlat(part) ? flatPart() : stalledAtTheEnd(report), exitUnconverged};
    default:
      return {false, "the library refused the run: " + fatalText(report), exitRunFailed};
  }
}

bool tighterPathMayHelp(const Part& part, const RunOutput& run) {
  const std::int32_t reason = run.report.reason;
  return (reason == TORNWALZEN_STEP_TOO_SMALL || reason == TORNWALZEN_FINAL_UNCONVERGED) && !isFlat(part);
}

}  // namespace host
