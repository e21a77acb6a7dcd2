// The phases beside the solver, per element or node.
#pragma once

#include "plane_mesh.hpp"
#include "report.hpp"
#include "shapes.hpp"

namespace bench {

/// The plane mesh drawn to a dome of 20 mm on a square of 100 mm.
shapes::Sheet dome(const PlaneMesh& mesh);

/// Pattern, tangent pass, residual pass and energy sum on a jittered mesh of so many nodes that is drawn to a
/// shallow dome, with the flow curve 1, against the solver's repeated factorization on the same pattern.
void timePhases(std::int32_t nodes, Report& report);

/// The pattern alone, against one std::sort of the mesh's node pairs (three per triangle) as 64-bit keys.
void timePattern(std::int32_t nodes, Report& report);

}  // namespace bench
