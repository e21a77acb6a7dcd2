// The analysis behind the fixed interface.
#include "interface/default_analysis.hpp"

namespace tornwalzen {

namespace {
Analysis analysis;
}

Analysis& defaultAnalysis() {
  return analysis;
}

}  // namespace tornwalzen
