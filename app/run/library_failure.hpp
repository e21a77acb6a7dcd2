// What the library refuses, as a failure of the program in the library's own words.
#pragma once

#include <string>

#include "system/failure.hpp"
#include "tornwalzen_analysis.h"

namespace host {

// "the library <what>: <its text of the code>", or where the set-up failed its fatal text. code: of the call that was
// refused. Status exitRunFailed.
Failure libraryFailure(TornwalzenAnalysis* analysis, std::int32_t code, const std::string& what);

// The report's fatal text without the signs around it; empty if there is none.
std::string fatalText(const TornwalzenReport& report);

}  // namespace host
