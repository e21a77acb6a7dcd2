// The last call of the extended interface that was refused, and what in it.
#pragma once

#include "ground/array_view.hpp"

namespace tornwalzen {

struct Refusal {
  Int code = 0;   // 0: none yet
  Int index = 0;  // from 1; 0: no index
  double value = 0.0;
};

extern Refusal lastRefusal;

/// Keeps the refusal for its text and returns the code.
inline Int refuse(Int code, Int index, double value) {
  lastRefusal = {code, index, value};
  return code;
}

}  // namespace tornwalzen
