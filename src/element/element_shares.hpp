// Passes over all elements, eight at a time, on one thread or several, with the same bits. On several threads the elements
// go by chunks: while one chunk is computed, the one before is added. Every part of the sum belongs to one worker, who
// takes the elements of the chunk in their order; so every entry gets its terms in the order of the elements.
#pragma once

#include <atomic>
#include <new>

#include "element/lanes/element_lanes.hpp"
#include "ground/thread_pool.hpp"

namespace tornwalzen {

constexpr Int leastShared = 2048;  // elements, from which on the threads are worth waking

/// The nodes whose entries are added by one of several workers: blocks of nodes in turn, so that elements that follow
/// one another in a well-numbered mesh belong to all.
struct NodesOfPart {
  Int part, parts;
  bool operator()(Int n) const { return (n >> 5) % parts == part; }
  bool first() const { return part == 0; }
};
/// All of them, for one thread.
struct AllNodes {
  constexpr bool operator()(Int) const { return true; }
  constexpr bool first() const { return true; }
};

namespace element_chunk {
constexpr Int elements = 1024;
constexpr Int batches = elements / laneCount;
template <class Batch>
constexpr Int64 doubles = 2 * batches* static_cast<Int64>(sizeof(Batch) / sizeof(double));
}  // namespace element_chunk

/// The pass of overElements on the threads of `pool`, whose scratch holds two chunks.
template <class Batch, class Compute, class Add>
Int passInShares(ThreadPool& pool, Int count, Int parts, Compute compute, Add add) {
  using namespace element_chunk;
  Batch* const slots = reinterpret_cast<Batch*>(pool.scratch(doubles<Batch>));
  for (Int i = 0; i < 2 * batches; ++i) new (slots + i) Batch;
  const Int chunks = (count + elements - 1) / elements;
  std::atomic<Int> improper[2] = {count + 1, count + 1};  // the first one of the even and of the odd chunks
  Int found = 0;
  const auto firstOf = [&](Int chunk, Int batch) { return chunk * elements + batch * laneCount + 1; };
  const auto addChunk = [&](const NodesOfPart& owns, Int chunk, Int end) {
    for (Int b = 0; b < batches; ++b)
      for (Int l = 0; l < laneCount; ++l) {
        const Int e = firstOf(chunk, b) + l;
        if (e >= end) return;
        add(owns, e, l, slots[chunk % 2 * batches + b]);
      }
  };
  const auto computeBatch = [&](Int chunk, Int b) {
    const Int e = firstOf(chunk, b), n = std::min(laneCount, count + 1 - e);
    if (n < 1) return;
    const Int proper = compute(e, n, slots[chunk % 2 * batches + b]);
    Int seen = improper[chunk % 2].load();
    while (proper < n && e + proper < seen && !improper[chunk % 2].compare_exchange_weak(seen, e + proper))
      continue;
  };
  pool.run([&](ThreadPool::Worker& me) {
    const Int ofParts = parts > 0 ? parts : me.count();
    for (Int chunk = 0; chunk <= chunks; ++chunk) {
      const Int before = chunk - 1, end = chunk > 0 ? improper[before % 2].load() : count + 1;
      const bool ends = end <= count;
      const Int adding = chunk > 0 ? ofParts : 0, computing = chunk < chunks && !ends ? batches : 0;
      me.share(adding + computing, [&](Int64 i) {
        if (i < adding)
          addChunk({static_cast<Int>(i), ofParts}, before, end);
        else
          computeBatch(chunk, static_cast<Int>(i) - adding);
      });
      if (!ends) continue;
      if (me.number() == 0) found = end;
      return;
    }
  });
  return found;
}

/// One pass over the elements 1 .. count.
/// pool: the threads; null, or without memory for two chunks: the calling thread alone. parts: in, of the sum; 0: as many
/// as workers.
/// compute(e, n, batch): fills the output of `batch` for the elements e .. e+n-1, n <= laneCount, lane by lane, and returns
/// how many of them, from the first one on, are proper. add(owns, e, lane, batch): adds what element e brings to the nodes
/// for which owns(node) holds; owns.first() holds for one part alone, which adds what belongs to no node.
/// Returns the first element that is not proper, before which all are added; 0: there is none.
template <class Batch, class Compute, class Add>
Int overElements(ThreadPool* pool, Int count, Int parts, Compute compute, Add add) {
  if (pool != nullptr && count >= leastShared && pool->scratch(element_chunk::doubles<Batch>) != nullptr)
    return passInShares<Batch>(*pool, count, parts, compute, add);
  Batch batch;
  for (Int e = 1; e <= count; e += laneCount) {
    const Int n = std::min(laneCount, count + 1 - e), proper = compute(e, n, batch);
    for (Int l = 0; l < proper; ++l) add(AllNodes{}, e + l, l, batch);
    if (proper < n) return e + proper;
  }
  return 0;
}

}  // namespace tornwalzen
