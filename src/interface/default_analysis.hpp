// The analysis behind the fixed interface: the one object with static storage that changes. It lives as long as the
// loaded library; what acts on it is not reentrant.
#pragma once

#include "ground/analysis.hpp"

namespace tornwalzen {

Analysis& defaultAnalysis();

}  // namespace tornwalzen
