// Whole runs by the sure path, against one numeric factorization of the same matrix and against the fixed path.
#pragma once

#include <cstdint>

#include "report.hpp"

namespace bench {

struct SureCase {
  const char* shape;
  std::int32_t triangles;
  double wall = 0.0;      // mm, depth of the shape's wall; 0: the shape's own
  bool ratio = false;     // print `ratio sure SIZE`
  bool fixedToo = false;  // the fixed path beside it
};

/// Throws std::runtime_error if the sure path does not converge.
void sureRun(const SureCase& which, Report& report);

}  // namespace bench
