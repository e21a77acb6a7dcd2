// The fixed rules of the negative selectors: symmetry lines of the parts that the format was made for.
#include "deckio/hold_rules.hpp"

namespace tornwalzen {

namespace {

// Limits in mm. The decimals are held in single precision and widened; decks were balanced with these values.
constexpr double xLeft = -357.9f;  // -357.8999938964844
constexpr double yLower = 101.0;
constexpr double yLowerWide = 101.16f;  // 101.16000366210938
constexpr double yCorner = 105.4f;      // 105.4000015258789
constexpr double xCorner = -684.0;
constexpr double axis = 0.1f;  // 0.10000000149011612

}  // namespace

void holdByRule(Int selector, Table<const double> KNG, Int nkno, Vector<Int> ARFA) {
  if (selector < -3 || selector > -1) return;
  for (Int64 n = 1; n <= nkno; ++n) {
    const double x = KNG(n, 1), y = KNG(n, 2);
    bool holdX = x <= xLeft, holdY = y < yLower;
    if (selector == -2) holdY = y < yLowerWide || (y < yCorner && x < xCorner);
    if (selector == -3) {
      holdX = x < axis;
      holdY = y < axis;
    }
    if (holdX) ARFA(2 * n - 1) = 0;
    if (holdY) ARFA(2 * n) = 0;
  }
}

}  // namespace tornwalzen
