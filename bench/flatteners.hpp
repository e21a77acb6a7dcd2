// A whole run against flatteners that users run today, on the full drawn cup.
#pragma once

#include <string>

#include "report.hpp"

namespace bench {

/// The quarter of the folder `parts` mirrored twice, by the sure path and by the peers that were built; times, and area and
/// edge of each blank against the true one. Says so and does nothing where the part is not there.
void raceFlatteners(const std::string& parts, Report& report);

}  // namespace bench
