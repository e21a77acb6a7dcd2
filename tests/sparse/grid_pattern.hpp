// The pattern of a plane grid, of any size.
#pragma once

#include <initializer_list>
#include <utility>
#include <vector>

#include "ground/array_view.hpp"

namespace tornwalzen::testing_support {

/// A grid of side × side nodes of two equations, each coupled with the eight around it.
struct GridPattern {
  std::vector<Int> cols{1}, rowi;
  explicit GridPattern(Int side) {
    for (Int n = 0; n < side * side; ++n)
      for (Int i = 2 * n + 1; i <= 2 * n + 2; ++i) {
        for (Int j = i; j <= 2 * n + 2; ++j) rowi.push_back(j);
        const Int x = n % side, y = n / side;
        for (const auto& [dx, dy] : {std::pair{1, 0}, {-1, 1}, {0, 1}, {1, 1}})
          if (x + dx >= 0 && x + dx < side && y + dy < side)
            for (Int k = 1; k <= 2; ++k) rowi.push_back(2 * (n + dx + dy * side) + k);
        cols.push_back(static_cast<Int>(rowi.size()) + 1);
      }
  }
};

}  // namespace tornwalzen::testing_support
