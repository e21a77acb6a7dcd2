// The last call of the extended interface that was refused, and what in it.
#pragma once

#include "ground/array_view.hpp"

namespace tornwalzen {

struct Refusal {
  Int code = 0;   // 0: none yet
  Int index = 0;  // from 1; 0: no index
  double value = 0.0;
};

constexpr int refusalTextLength = 160;

/// Keeps the refusal for its text and returns the code.
inline Int refuse(Refusal& refusal, Int code, Int index, double value) {
  refusal = {code, index, value};
  return code;
}

}  // namespace tornwalzen
