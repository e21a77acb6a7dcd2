// Whether a run converged, and if not, why; see the header.
#include "verdict.hpp"

#include "text.hpp"

namespace host {

namespace {

constexpr int geometricMaterial = 10;

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
  if (material == geometricMaterial && isFlat(part))
    return {false,
            "the part is flat and is its own blank: under material 10 the gradient is then exactly zero, the "
            "line "
            "search finds no descent, and by the rules of the method no increment counts as converged; use "
            "material 0, 1 or 2, or take the part as the blank",
            exitUnconverged};
  if (counts.stepTooSmall)
    return {false,
            "increments failed until their step became too small, at " + reachedPercent(run) + " of the part",
            exitUnconverged};
  if (run.progress.reachedWholePart())
    return {false,
            "the last increment did not reach its gradient tolerance; its last gradient was " +
                decimal(counts.lastGradient),
            exitUnconverged};
  return {false, "the run ended at " + reachedPercent(run) + " of the part", exitUnconverged};
}

}  // namespace host
