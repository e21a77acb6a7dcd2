// Area covered more than once, slab by slab.
#include "develop/overlapped_area.hpp"

#include <algorithm>

namespace tornwalzen {

namespace {

constexpr int deepestCut = 40;            // cuts within cuts of one slab
constexpr double sameHeightShare = 1e-9;  // of a slab: a crossing that near its end does not cut it
constexpr double sameWidthShare = 1e-12;  // of the blank's width: sides that near may stand in either order

/// One side of the chain, from its lower to its upper end (mm). weight: what the covering grows by from left to right.
struct Side {
  double x0, y0, x1, y1;
  Int weight;

  double at(double y) const {
    if (y <= y0) return x0;
    if (y >= y1) return x1;
    return x0 + (y - y0) / (y1 - y0) * (x1 - x0);
  }
};

struct Place {
  double x;  // at half height of the slab (mm)
  Int side;
};

bool leftOf(const Place& a, const Place& b) {
  return a.x < b.x || (a.x == b.x && a.side < b.side);
}

/// The sides that no neighbour cancels, by their lower ends. False where there is no memory.
bool gatherSides(const PartMesh& M, Vector<const Int> TWIN, Vector<const signed char> SENSE,
                 Vector<const double> RX, OwnArray<Side>& sides, Int& count) {
  const Int nh = 3 * M.nele;
  const auto weightOf = [&](Int h) -> Int {
    const Int own = SENSE(halfEdgeTriangle(h)), other = TWIN(h);
    if (other == 0) return own;
    if (h > other) return 0;  // told with the partner
    const bool opposite = halfEdgeStart(M, other) != halfEdgeStart(M, h);
    return opposite ? own - SENSE(halfEdgeTriangle(other)) : own + SENSE(halfEdgeTriangle(other));
  };
  const auto levels = [&](Int h) {
    return RX(2 * Int64{halfEdgeStart(M, h)}) != RX(2 * Int64{halfEdgeEnd(M, h)});
  };
  count = 0;
  for (Int h = 1; h <= nh; ++h) count += weightOf(h) != 0 && levels(h);
  if (!sides.allocate(count)) return false;
  const Vector<Side> SIDE = sides.vector();
  Int s = 0;
  for (Int h = 1; h <= nh; ++h) {
    const Int weight = weightOf(h);
    if (weight == 0 || !levels(h)) continue;
    const Int64 n = halfEdgeStart(M, h), m = halfEdgeEnd(M, h);
    // The left hand of a side that runs down is on its right.
    const bool down = RX(2 * n) > RX(2 * m);
    const Int64 low = down ? m : n, high = down ? n : m;
    SIDE(++s) = {RX(2 * low - 1), RX(2 * low), RX(2 * high - 1), RX(2 * high), down ? weight : -weight};
  }
  std::sort(SIDE.data(), SIDE.data() + count, [](const Side& a, const Side& b) {
    if (a.y0 != b.y0) return a.y0 < b.y0;
    if (a.x0 != b.x0) return a.x0 < b.x0;
    if (a.y1 != b.y1) return a.y1 < b.y1;
    return a.x1 != b.x1 ? a.x1 < b.x1 : a.weight < b.weight;
  });
  return true;
}

class Slabs {
 public:
  bool measure(Vector<const Side> SIDE, double& area);

 private:
  bool findLevels();
  double slabArea(double y0, double y1, int depth);
  double cutHeight(double y0, double y1) const;

  Vector<const Side> SIDE_;
  OwnArray<double> levels_{"LEVEL"};  // where slabs begin and end (mm), rising
  Int levelCount_ = 0;
  OwnArray<Place> places_{"PLACE"};  // the sides of the slab at hand, from left to right
  Int active_ = 0;
  Int64 visited_ = 0;  // sides met so far
  double width_ = 0.0;
};

/// The heights of all corners, thinned where the sides between them would pass the budget.
bool Slabs::findLevels() {
  const Int n = static_cast<Int>(SIDE_.length());
  if (!levels_.allocate(2 * Int64{n})) return false;
  double* const first = levels_.vector().data();
  for (Int s = 1; s <= n; ++s) {
    first[2 * s - 2] = SIDE_(s).y0;
    first[2 * s - 1] = SIDE_(s).y1;
  }
  std::sort(first, first + 2 * Int64{n});
  levelCount_ = static_cast<Int>(std::unique(first, first + 2 * Int64{n}) - first);
  Int64 met = 0;
  const auto rank = [&](double y) { return std::lower_bound(first, first + levelCount_, y) - first; };
  for (Int s = 1; s <= n; ++s) met += rank(SIDE_(s).y1) - rank(SIDE_(s).y0);
  const Int64 stride = 1 + met / (overlapSideBudget / 2);
  if (stride == 1) return true;
  const double last = first[levelCount_ - 1];
  Int kept = 0;
  for (Int64 i = 0; i < levelCount_ - 1; i += stride) first[kept++] = first[i];
  first[kept++] = last;
  levelCount_ = kept;
  return true;
}

/// The height at which two sides that stand side by side at half height change places within the slab; y1 where
/// there is none.
double Slabs::cutHeight(double y0, double y1) const {
  const Vector<const Place> PLACE = places_.vector();
  const double narrow = sameHeightShare * (y1 - y0), tolerance = sameWidthShare * width_;
  for (Int k = 1; k < active_; ++k) {
    const Side &a = SIDE_(PLACE(k).side), &b = SIDE_(PLACE(k + 1).side);
    const double lower = b.at(y0) - a.at(y0), upper = b.at(y1) - a.at(y1);
    if (lower >= -tolerance && upper >= -tolerance) continue;
    const double y = y0 + lower / (lower - upper) * (y1 - y0);
    if (y > y0 + narrow && y < y1 - narrow) return y;
  }
  return y1;
}

/// The area between two heights, with the sides that are active there.
double Slabs::slabArea(double y0, double y1, int depth) {
  const Vector<Place> PLACE = places_.vector();
  const double middle = 0.5 * (y0 + y1);
  for (Int k = 1; k <= active_; ++k) PLACE(k).x = SIDE_(PLACE(k).side).at(middle);
  std::sort(PLACE.data(), PLACE.data() + active_, leftOf);
  visited_ += active_;
  if (depth < deepestCut && visited_ < overlapSideBudget) {
    const double y = cutHeight(y0, y1);
    if (y < y1) {
      const double below = slabArea(y0, y, depth + 1);
      return below + slabArea(y, y1, depth + 1);
    }
  }
  Int covered = 0;
  double length = 0.0;
  for (Int k = 1; k < active_; ++k) {
    covered += SIDE_(PLACE(k).side).weight;
    if (covered >= 2) length += PLACE(k + 1).x - PLACE(k).x;
  }
  return length * (y1 - y0);
}

bool Slabs::measure(Vector<const Side> SIDE, double& area) {
  SIDE_ = SIDE;
  area = 0.0;
  const Int n = static_cast<Int>(SIDE.length());
  if (n == 0) return true;
  if (!findLevels() || !places_.allocate(n)) return false;
  const Vector<Place> PLACE = places_.vector();
  double left = SIDE(1).x0, right = left;
  for (Int s = 1; s <= n; ++s) {
    left = std::min({left, SIDE(s).x0, SIDE(s).x1});
    right = std::max({right, SIDE(s).x0, SIDE(s).x1});
  }
  width_ = right - left;
  Int next = 1;
  for (Int l = 1; l < levelCount_; ++l) {
    const double y0 = levels_.vector()(l), y1 = levels_.vector()(l + 1), middle = 0.5 * (y0 + y1);
    for (; next <= n && SIDE(next).y0 < middle; ++next) PLACE(++active_).side = next;
    Int kept = 0;
    for (Int k = 1; k <= active_; ++k)
      if (SIDE(PLACE(k).side).y1 > middle) PLACE(++kept) = PLACE(k);
    active_ = kept;
    area += slabArea(y0, y1, 0);
  }
  return true;
}

}  // namespace

bool measureOverlap(const PartMesh& M, Vector<const Int> TWIN, Vector<const signed char> SENSE,
                    Vector<const double> RX, double& area) {
  OwnArray<Side> sides("SIDE");
  Int count = 0;
  if (!gatherSides(M, TWIN, SENSE, RX, sides, count)) return false;
  Slabs slabs;
  return slabs.measure(sides.vector(), area);
}

}  // namespace tornwalzen
