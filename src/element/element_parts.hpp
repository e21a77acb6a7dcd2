// The triangles of a mesh shared out among threads: every node belongs to one part, and a part has the batches of triangles
// that touch its nodes. A batch on the border of two parts is computed for both, and each adds what belongs to its own nodes:
// so no thread waits for another or reads what another has just written. Where the numbers of nodes follow the mesh, a part
// is a range of them, whose entries lie together in memory; otherwise a strip across the part.
#pragma once

#include "element/lanes/element_lanes.hpp"
#include "ground/analysis.hpp"

namespace tornwalzen {

constexpr Int leastShared = 2048;  // elements, from which on the threads are worth waking

/// Batches of laneCount elements, from 1; the last may have fewer.
constexpr Int batchesOf(Int elements) {
  return (elements + laneCount - 1) / laneCount;
}
constexpr Int firstOfBatch(Int batch) {
  return (batch - 1) * laneCount + 1;
}

class ElementParts {
 public:
  /// The parts for the threads of `pool`, which must outlive them. INTA: in, count × 3 incidences; whatever turns a
  /// triangle round later leaves the parts right. KNG: in, nodes × 3 positions (mm); a position that is no number lies at
  /// the beginning of its strips. Null where `pool` is null, the mesh too small to share or so numbered that
  /// sharing does not pay, or memory cannot be had.
  static PartsPointer divide(ThreadPool* pool, Int count, Int nodes, Table<const Int> INTA,
                             Table<const double> KNG);

  struct Batches {
    const Int *first, *last;
    const Int* begin() const { return first; }
    const Int* end() const { return last; }
  };

  ThreadPool& pool() const { return pool_; }
  Int count() const { return parts_; }
  /// The batches that touch part 0..count()-1, rising.
  Batches batches(Int part) const { return {list_.data() + START_[part], list_.data() + START_[part + 1]}; }
  /// The part that node n belongs to.
  Int partOf(Int n) const { return part_.data()[n - 1]; }
  Int64 bytes() const { return part_.length() + static_cast<Int64>(sizeof(Int)) * list_.length(); }

 private:
  explicit ElementParts(ThreadPool& pool) : pool_(pool) {}
  template <class Ruler>
  void cut(const Ruler& ruler, Int count, Table<const Int> INTA);
  template <class Use>
  void ofBatch(Int batch, Int count, Table<const Int> INTA, Use use) const;
  Int64 listed(Int count, Table<const Int> INTA);
  bool list(Int count, Table<const Int> INTA);

  static constexpr Int mostParts = 4 * mostThreads;  // a byte tells them apart
  ThreadPool& pool_;
  Int parts_ = 0;
  OwnArray<unsigned char> part_{"PART"};  // of each node
  OwnArray<Int> list_{"LIST"};            // the batches of the parts, one part after the other
  Int64 START_[mostParts + 1] = {};       // where a part begins in it, from 0
};

}  // namespace tornwalzen
