// Whether a run converged, and if not, why; see the header.
#include "verdict.hpp"

#include "text.hpp"

namespace host {

namespace {

// What the library asks of the largest gradient at the end, by material (see tornwalzen.h).
double gradientTolerance(int material) {
  return material == 10 ? 0.01 : 0.1;
}

// Whether all nodes in triangles have one z.
bool isFlat(const Part& part) {
  for (std::int64_t e = 1; e <= part.elements(); ++e)
    for (int k = 0; k < 3; ++k)
      if (part.z(part.corner(e, k)) != part.z(part.corner(1, 0))) return false;
  return true;
}

std::string reachedPercent(const RunOutput& run) {
  return fixedDecimal(100.0 * run.progress.fraction(), 1) + " %";
}

}  // namespace

Verdict judge(const Part& part, int material, const RunOutput& run, const RunCounts& counts) {
  if (run.progress.converged(run.ISTAT)) return {true, "", exitConverged};
  if (run.ISTAT == -1)
    return {false,
            "the system of equations could not be factorized or solved in at least one Newton step; the held "
            "unknowns leave a part of the blank free, a triangle has collapsed, or memory ran out",
            exitRunFailed};
  if (run.progress.phase() == RunPhase::development)
    return {
        false,
        "the part could not be developed onto the plane: inverted triangles remained in the starting blank",
        exitUnconverged};
  if (isFlat(part))
    return {false,
            "the part is flat and is its own blank: nothing but rounding is left of the gradient (exactly "
            "zero under "
            "material 10), so the line search finds no better blank, and by the rules of the method such an "
            "increment "
            "does not count as converged",
            exitUnconverged};
  if (counts.stepTooSmall)
    return {false,
            "increments failed until their step became too small, at " + reachedPercent(run) + " of the part",
            exitUnconverged};
  if (run.progress.reachedWholePart()) {
    const std::string gradient = decimal(counts.lastGradient),
                      tolerance = decimal(gradientTolerance(material));
    if (counts.lastGradient <= gradientTolerance(material))
      return {false,
              "the line search found no better blank in the last increment, which then does not count as "
              "converged, "
              "although its gradient of " +
                  gradient + " is within the tolerance of " + tolerance,
              exitUnconverged};
    return {
        false,
        "the gradient of the last increment stayed at " + gradient + ", above its tolerance of " + tolerance,
        exitUnconverged};
  }
  return {false, "the run ended at " + reachedPercent(run) + " of the part", exitUnconverged};
}

}  // namespace host
