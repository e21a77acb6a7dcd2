// Owns one analysis of the library.
#pragma once

#include <memory>

#include "tornwalzen_analysis.h"

namespace host {

struct DestroyAnalysis {
  void operator()(TornwalzenAnalysis* analysis) const { tornwalzen_analysis_destroy(analysis); }
};
using AnalysisHandle = std::unique_ptr<TornwalzenAnalysis, DestroyAnalysis>;

// A new analysis. Throws std::bad_alloc where there is no memory.
AnalysisHandle newAnalysis();

}  // namespace host
