// Owns one analysis of the library.
#ifndef TORNWALZEN_APP_ANALYSIS_HANDLE_HPP
#define TORNWALZEN_APP_ANALYSIS_HANDLE_HPP

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

#endif
