// Passes over all elements, eight at a time, on one thread or several, with the same bits: on several every node belongs
// to one part, which takes the elements that touch it in their order, so every entry gets its terms in that order.
#pragma once

#include <atomic>

#include "element/element_parts.hpp"
#include "element/lanes/element_lanes.hpp"

namespace tornwalzen {

/// The nodes of one part.
struct NodesOfPart {
  const ElementParts& parts;
  Int part;
  bool operator()(Int n) const { return parts.partOf(n) == part; }
};
/// All of them, for one thread.
struct AllNodes {
  constexpr bool operator()(Int) const { return true; }
};

/// The first of several elements found.
class FirstElement {
 public:
  void found(Int e) {
    Int seen = first_.load();
    while ((seen == 0 || e < seen) && !first_.compare_exchange_weak(seen, e)) continue;
  }
  Int first() const { return first_.load(); }  // 0: none

 private:
  std::atomic<Int> first_{0};
};

/// Calls compute and add, as below, for the batches first .. last. Returns the first element that is not proper, before
/// which the pass ended; 0: none.
template <class Batch, class Compute, class Add>
Int passOfRange(Int first, Int last, Int count, Compute compute, Add add) {
  Batch batch;
  for (Int b = first; b <= last; ++b) {
    const Int e = firstOfBatch(b), n = std::min(laneCount, count + 1 - e), proper = compute(e, n, batch);
    for (Int l = 0; l < proper; ++l) add(AllNodes{}, e + l, l, batch);
    if (proper < n) return e + proper;
  }
  return 0;
}

/// One pass over the elements 1 .. count that adds to their nodes.
/// parts: the elements shared out; null: one pass on the calling thread.
/// compute(e, n, batch): fills the output of `batch` for the elements e .. e+n-1, n <= laneCount, lane by lane, and returns
/// how many of them, from the first one on, are proper; the same elements always go together. add(owns, e, lane, batch):
/// adds what element e brings to the nodes for which owns(node) holds.
/// Returns the first element that is not proper; 0: there is none. On one thread all before it are added, on several
/// the sums are then undefined.
template <class Batch, class Compute, class Add>
Int overElements(const ElementParts* parts, Int count, Compute compute, Add add) {
  if (parts == nullptr) return passOfRange<Batch>(1, batchesOf(count), count, compute, add);
  FirstElement improper;
  parts->pool().run([&](ThreadPool::Worker& me) {
    me.share(parts->count(), [&](Int64 part) {
      const NodesOfPart owns{*parts, static_cast<Int>(part)};
      Batch batch;
      for (const Int b : parts->batches(owns.part)) {
        const Int e = firstOfBatch(b), n = std::min(laneCount, count + 1 - e), proper = compute(e, n, batch);
        for (Int l = 0; l < proper; ++l) add(owns, e + l, l, batch);
        if (proper < n) return improper.found(e + proper);
      }
    });
  });
  return improper.first();
}

/// One pass over the elements 1 .. count of which each has what it brings to itself. compute: as above. keep(e, lane, batch):
/// puts down what element e brings. Returns the first element that is not proper; 0: there is none. On one thread
/// none after it is put down, on several some are.
template <class Batch, class Compute, class Keep>
Int everyElement(ThreadPool* pool, Int count, Compute compute, Keep keep) {
  constexpr Int leastBatches = 128;  // of a thread
  FirstElement improper;
  inRanges(pool, batchesOf(count), leastBatches, [&](Int64 first, Int64 last) {
    const Int found =
        passOfRange<Batch>(static_cast<Int>(first), static_cast<Int>(last), count, compute,
                           [&](AllNodes, Int e, Int l, const Batch& batch) { keep(e, l, batch); });
    if (found > 0) improper.found(found);
  });
  return improper.first();
}

}  // namespace tornwalzen
