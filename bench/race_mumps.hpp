// One core against MUMPS, which runs as a process of its own.
#pragma once

#include <cstdint>

#include "report.hpp"

namespace bench {

/// `ratio numeric-mumps SIZE`, `ratio analyse-mumps SIZE`, `ratio solve-mumps SIZE`: processor times over those of
/// solver_mumps on the same matrix. Says so where it is left out.
void raceMumps(std::int32_t nodes, Report& report);

}  // namespace bench
