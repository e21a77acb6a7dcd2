// The texts of the codes, in German and English, with index and value of the last refusal.
#pragma once

#include "ground/analysis.hpp"

namespace tornwalzen {

/// run: inout, its refusal and the memory of the text. code: in. language: in, 0 German, else English. Never null.
const char* refusalText(Analysis& run, Int code, Int language);

}  // namespace tornwalzen
