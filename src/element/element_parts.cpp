// Parts by a histogram, then a counting sort of the batches.
#include "element/element_parts.hpp"

#include <algorithm>
#include <cmath>

namespace tornwalzen {

namespace {

constexpr Int elementsOfPart = 8192;  // of shorter parts too many lie on borders
constexpr Int mostOfWorker = 4;       // parts: the first to end then waits for a quarter of a share at most
constexpr Int bins = 16384;           // of the histogram
constexpr Int byNumber = 0;           // in place of an axis 1..3
constexpr Int fewRepeated = 8;        // one batch in so many, computed twice, is no reason to look further

/// In which bin does a node lie: by its number, or by its place along an axis of the part?
class Ruler {
 public:
  Ruler(Int axis, Int nodes, Table<const double> KNG) : axis_(axis), KNG_(KNG), low_(1.0), extent_(nodes) {
    if (axis == byNumber) return;
    low_ = INFINITY;
    double most = -INFINITY;
    for (Int n = 1; n <= nodes; ++n) {
      low_ = std::min(low_, KNG(n, axis));
      most = std::max(most, KNG(n, axis));
    }
    extent_ = most - low_;
  }
  Int binOf(Int n) const {
    const double t = ((axis_ == byNumber ? n : KNG_(n, axis_)) - low_) / extent_ * bins;
    return t > 0.0 ? static_cast<Int>(std::min(t, bins - 1.0)) : 0;
  }

 private:
  Int axis_;
  Table<const double> KNG_;
  double low_, extent_;  // mm, or numbers
};

}  // namespace

PartsPointer ElementParts::divide(ThreadPool* pool, Int count, Int nodes, Table<const Int> INTA,
                                  Table<const double> KNG) {
  PartsPointer none{nullptr, nullptr};
  if (pool == nullptr || count < leastShared) return none;
  std::unique_ptr<ElementParts> parts(new (std::nothrow) ElementParts(*pool));
  if (!parts) return none;
  const Int threads = pool->threads(), batches = batchesOf(count);
  parts->parts_ = threads * std::clamp(count / (elementsOfPart * threads), 1, mostOfWorker);
  if (!parts->part_.allocate(nodes)) return none;
  Int best = byNumber, cut = byNumber;
  Int64 least = INT64_MAX;
  for (Int axis = byNumber; axis <= 3 && least > batches + batches / fewRepeated; cut = axis++) {
    parts->cut(Ruler(axis, nodes, KNG), count, INTA);
    if (const Int64 all = parts->listed(count, INTA); all < least) {
      least = all;
      best = axis;
    }
  }
  if (2 * least > Int64{batches} * (threads + 1)) return none;
  if (best != cut) parts->cut(Ruler(best, nodes, KNG), count, INTA);
  if (!parts->list(count, INTA)) return none;
  return {parts.release(), [](const ElementParts* of) { delete of; }};
}

// The parts hold nearly the same number of first corners.
template <class Ruler>
void ElementParts::cut(const Ruler& ruler, Int count, Table<const Int> INTA) {
  Int COUNT[bins] = {};
  for (Int e = 1; e <= count; ++e) ++COUNT[ruler.binOf(INTA(e, 1))];
  unsigned char PARTOF[bins];
  Int64 before = 0;
  for (Int bin = 0; bin < bins; ++bin) {
    PARTOF[bin] = static_cast<unsigned char>(before * parts_ / (Int64{count} + 1));
    before += COUNT[bin];
  }
  for (Int n = 1; n <= part_.length(); ++n) part_.data()[n - 1] = PARTOF[ruler.binOf(n)];
}

/// Calls use(part) once for every part that the batch touches.
template <class Use>
void ElementParts::ofBatch(Int batch, Int count, Table<const Int> INTA, Use use) const {
  constexpr Int most = 3 * laneCount;
  Int SEEN[most], seen = 0;
  const Int first = firstOfBatch(batch), last = std::min(count, first + laneCount - 1);
  for (Int e = first; e <= last; ++e)
    for (Int corner = 1; corner <= 3; ++corner) {
      const Int part = partOf(INTA(e, corner));
      if (std::find(SEEN, SEEN + seen, part) != SEEN + seen) continue;
      SEEN[seen++] = part;
      use(part);
    }
}

/// Counts in START_[part + 1] the batches of `part`; returns those of all.
Int64 ElementParts::listed(Int count, Table<const Int> INTA) {
  std::fill_n(START_, parts_ + 1, 0);
  for (Int b = 1; b <= batchesOf(count); ++b) ofBatch(b, count, INTA, [&](Int part) { ++START_[part + 1]; });
  Int64 all = 0;
  for (Int part = 1; part <= parts_; ++part) all += START_[part];
  return all;
}

bool ElementParts::list(Int count, Table<const Int> INTA) {
  if (!list_.allocate(listed(count, INTA))) return false;
  for (Int part = 0; part < parts_; ++part) START_[part + 1] += START_[part];
  Int64 NEXT[mostParts];
  std::copy_n(START_, parts_, NEXT);
  for (Int b = 1; b <= batchesOf(count); ++b)
    ofBatch(b, count, INTA, [&](Int part) { list_.data()[NEXT[part]++] = b; });
  return true;
}

}  // namespace tornwalzen
