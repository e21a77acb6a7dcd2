// First the ranges, each by one thread in memory of its own, then the top, front after front, each by all threads in
// shares of columns and rows. No entry meets an operation that it would not meet in eliminateRange, nor in another
// order: children are added to a share of columns in their order, and the kernels' shares keep the bits.
#include "sparse/team_numeric.hpp"

#include <algorithm>
#include <atomic>

#include "ground/thread_pool.hpp"
#include "sparse/kernels/dense_kernels.hpp"
#include "sparse/phase_error.hpp"

namespace tornwalzen {

namespace {

using Worker = ThreadPool::Worker;

constexpr Int64 leastRows = 96;  // of a share: whole register tiles of every kernel table

/// The failure of the first supernode in the order of elimination.
class Failure {
 public:
  void tell(Int supernode, Int code) {
    Int64 mine = (Int64{supernode} << 32) | static_cast<std::uint32_t>(code), seen = first_.load();
    while (mine < seen && !first_.compare_exchange_weak(seen, mine)) continue;
  }
  /// Beyond all supernodes where there is none.
  Int supernode() const { return static_cast<Int>(first_.load() >> 32); }
  Int code() const { return supernode() == none ? ierr::ok : static_cast<Int>(first_.load() & 0xFFFFFFFF); }

 private:
  static constexpr Int none = 0x7FFFFFFF;
  std::atomic<Int64> first_{Int64{none} << 32};
};

/// The blocks of a front's columns, those of the pivots first.
struct ColumnBlocks {
  Int64 c, w;
  Int64 ofPivots() const { return (w + panelWidth - 1) / panelWidth; }
  Int64 count() const { return ofPivots() + (c - w + panelWidth - 1) / panelWidth; }
  /// Blocks that begin before a column, zero-based.
  Int64 before(Int64 column) const {
    return column <= w ? (column + panelWidth - 1) / panelWidth
                       : ofPivots() + (column - w + panelWidth - 1) / panelWidth;
  }
  /// First column of block b, zero-based both.
  Int64 first(Int64 b) const { return b < ofPivots() ? b * panelWidth : w + (b - ofPivots()) * panelWidth; }
  Int64 end(Int64 b) const { return std::min(first(b) + panelWidth, b < ofPivots() ? w : c); }
};

/// The rest of a front behind a panel, cut into tiles of some hundred rows and columns, so that what a tile reads of L
/// stays in the second-level cache. The first tile is the next panel's diagonal block; the lower ones, which are the
/// longest, come before the upper ones.
class UpdateTiles {
 public:
  struct Tile {
    Int64 from, to;              // rows, in the panel's counting
    Int64 firstBlock, endBlock;  // columns, as blocks of the front
  };

  UpdateTiles(const ColumnBlocks& blocks, const FrontBlock& panel, Int threads)
      : blocks_(blocks), panel_(panel), rows_(blocks.c - panel.first), behind_(blocks.before(panel.end)) {
    const Int64 K = panel.end - panel.first;
    start_ = K / frontAlignment * frontAlignment;
    next_ = std::min(start_ + panelWidth, rows_);
    height_ = leastRows * std::clamp<Int64>(rows_ / (leastRows * 2 * threads), 1, mostHeight);
    bands_ = (rows_ - next_ + height_ - 1) / height_;
    count_ = rows_ > K ? 1 : 0;
    for (Int64 band = 0; band < bands_; ++band) count_ += tilesOf(band);
  }
  Int64 count() const { return count_; }
  Tile operator[](Int64 i) const {
    if (i == 0) return {start_, next_, behind_, blocksUpTo(next_)};
    --i;
    Int64 band = bands_ - 1;
    for (; i >= tilesOf(band); --band) i -= tilesOf(band);
    const Int64 first = behind_ + i * blocksOfTile;
    return {next_ + band * height_, endOf(band), first,
            std::min(first + blocksOfTile, blocksUpTo(endOf(band)))};
  }

 private:
  static constexpr Int64 mostHeight = 3;  // in leastRows
  static constexpr Int64 blocksOfTile = 8;

  Int64 endOf(Int64 band) const { return std::min(next_ + (band + 1) * height_, rows_); }
  Int64 blocksUpTo(Int64 row) const { return blocks_.before(panel_.first + row); }
  Int64 tilesOf(Int64 band) const {
    return (blocksUpTo(endOf(band)) - behind_ + blocksOfTile - 1) / blocksOfTile;
  }

  const ColumnBlocks blocks_;
  const FrontBlock panel_;
  const Int64 rows_, behind_;
  Int64 start_, next_, height_, bands_, count_;
};

class TeamNumeric {
 public:
  TeamNumeric(const Elimination& a, FactorTeam& team, Vector<Int> BIGMAP, Vector<Int> STACK)
      : a_(a),
        s_(team.schedule),
        RANGES_(team.schedule.RANGES.vector()),
        ORDER_(team.schedule.ORDER.vector()),
        TOP_(team.schedule.TOP.vector()),
        CHILDREN_(team.schedule.CHILDREN.vector()),
        INTEGERS_(team.INTEGERS.vector()),
        doubles_(onCacheLine(team.DOUBLES.data())),
        BIGMAP_(BIGMAP),
        STACK_(STACK) {}

  void work(Worker& me) {
    me.share(RANGES_.length(), [&](Int64 i) { range(me, RANGES_(ORDER_(i + 1))); });
    // A failure is looked at where none can be told until all have looked: behind a meeting, before the next.
    for (Int64 i = 1; i <= TOP_.length() && failure_.supernode() >= TOP_(i).supernode;) {
      if (TOP_(i).shared) {
        sharedFront(me, TOP_(i));
        ++i;
        continue;
      }
      const Int64 first = i;
      while (i <= TOP_.length() && !TOP_(i).shared) ++i;
      if (me.number() == 0)
        for (Int64 t = first; t < i && failure_.supernode() > TOP_(t).supernode; ++t) frontAlone(TOP_(t));
      me.meet();
    }
  }

  Int code() const { return failure_.code(); }

 private:
  /// A range in the space of one worker.
  void range(Worker& me, const SubtreeRange& r) {
    if (r.first > failure_.supernode()) return;
    double* const space = doubles_ + s_.space() + me.number() * s_.rangeSpace;
    FrontSpace fronts{BIGMAP_, STACK_, space, space + s_.rangeSpace, doubles_ + r.updatesEnd};
    if (me.number() > 0) {
      const Int64 NEQ = BIGMAP_.length(), m = STACK_.length();
      Int* const own = INTEGERS_.data() + (me.number() - 1) * (NEQ + m);
      fronts.BIGMAP = {"BIGMAP", own, NEQ};
      fronts.STACK = {"STACK", own + NEQ, m};
    }
    Int IERR;
    const Int failed = eliminateRange(a_, r.first, r.last, fronts, IERR);
    if (failed > 0) failure_.tell(failed, IERR);
  }

  double* frontOfTop() const { return doubles_ + s_.space(); }
  double* scaledOfTop() const { return frontOfTop() + s_.topPacking; }
  double* packingOf(const Worker& me) const {
    return scaledOfTop() + s_.topScaled + me.number() * packedRowsDoubles(rowsOfBlock);
  }

  /// Forms the columns from .. to, which lie on one side of the first column that is no pivot. False as placeMatrix.
  bool form(const TopFront& top, Front& F, Int64 from, Int64 to) {
    clearColumns(F, from, to);
    if (from <= F.w && !placeMatrix(a_, top.supernode, BIGMAP_, F, from, to)) return false;
    for (Int64 n = 0; n < a_.f.NCHILD(top.supernode); ++n) {
      const TopChild& child = CHILDREN_(top.firstChild + n);
      extendAdd(a_.f, child.supernode, doubles_ + child.update, F, from, to);
    }
    return true;
  }

  void store(const TopFront& top, Front& F, Int64 from, Int64 to) {
    if (from > F.w) return storeUpdate(F, doubles_ + top.update, from, to);
    storeFactor(F, a_.block(top.supernode), a_.D + (a_.f.XSUP(top.supernode) - 1), from, to);
  }

  void frontAlone(const TopFront& top) {
    const Int k = top.supernode;
    Front F(frontOfTop(), a_.rows(k), a_.pivots(k));
    mapRows(a_.f, k, BIGMAP_);
    if (!form(top, F, 1, F.w) || !form(top, F, F.w + 1, F.c)) return failure_.tell(k, ierr::noPlace);
    if (a_.kernels.factorFront(F.first(), F.c, F.w, scaledOfTop()) != 0)
      return failure_.tell(k, ierr::zeroPivot);
    store(top, F, 1, F.w);
    store(top, F, F.w + 1, F.c);
  }

  void sharedFront(Worker& me, const TopFront& top) {
    const Int k = top.supernode;
    Front F(frontOfTop(), a_.rows(k), a_.pivots(k));
    const ColumnBlocks blocks{F.c, F.w};
    if (me.number() == 0) mapRows(a_.f, k, BIGMAP_);
    me.meet();
    me.share(blocks.count(), [&](Int64 b) {
      if (!form(top, F, blocks.first(b) + 1, blocks.end(b))) failure_.tell(k, ierr::noPlace);
    });
    if (me.number() == 0 && failure_.supernode() > k) diagonal(me, k, F, firstBlock(F.c, F.w));
    me.meet();
    for (FrontBlock panel = firstBlock(F.c, F.w); panel.first < F.w; panel = blockAfter(panel, F.c, F.w)) {
      if (failure_.supernode() <= k) return;
      eliminatePanel(me, k, F, panel);
    }
    me.share(blocks.count(), [&](Int64 b) { store(top, F, blocks.first(b) + 1, blocks.end(b)); });
  }

  void diagonal(const Worker& me, Int k, Front& F, const FrontBlock& panel) {
    if (a_.kernels.factorDiagonal(F.first(), panel, F.c, packingOf(me)) != 0)
      failure_.tell(k, ierr::zeroPivot);
  }

  /// The rows below the panel's diagonal block, then the rest of the front; the worker that has brought the next
  /// panel's diagonal block up to date goes on to factor it, while the others update what lies below.
  void eliminatePanel(Worker& me, Int k, Front& F, const FrontBlock& panel) {
    const Int64 c = F.c, w = F.w, rows = c - panel.first, K = panel.end - panel.first;
    if (const Int64 below = linesOf(K); below < rows) {
      const Int64 height = std::max(leastRows, linesOf((rows - below) / (2 * me.count())));
      me.share((rows - below + height - 1) / height, [&](Int64 i) {
        const Int64 from = below + i * height;
        a_.kernels.factorRows(F.first(), panel, from, std::min(from + height, rows), packingOf(me));
      });
    }
    const ColumnBlocks blocks{c, w};
    const Int64 behind = blocks.before(panel.end);
    me.share(blocks.count() - behind, [&](Int64 b) {
      a_.kernels.scaleBlock(F.first(), panel, blockFrom(blocks.first(behind + b), 0, c, w), scaledOfTop());
    });
    const UpdateTiles tiles(blocks, panel, me.count());
    me.share(tiles.count(), [&](Int64 i) {
      const UpdateTiles::Tile t = tiles[i];
      FrontBlock first = blockAfter(panel, c, w);
      for (Int64 b = behind; b < t.firstBlock; ++b) first = blockAfter(first, c, w);
      a_.kernels.updateRows(F.first(), panel, first, c, w, blocks.end(t.endBlock - 1), t.from, t.to,
                            scaledOfTop(), packingOf(me));
      if (i == 0 && panel.end < w) diagonal(me, k, F, blockAfter(panel, c, w));
    });
  }

  const Elimination& a_;
  const FactorSchedule& s_;
  const Vector<SubtreeRange> RANGES_;
  const Vector<Int> ORDER_;
  const Vector<TopFront> TOP_;
  const Vector<TopChild> CHILDREN_;
  const Vector<Int> INTEGERS_;
  double* const doubles_;
  const Vector<Int> BIGMAP_, STACK_;
  Failure failure_;
};

}  // namespace

void eliminateInTeam(const Elimination& a, FactorTeam& team, Vector<Int> BIGMAP, Vector<Int> STACK,
                     Int& IERR) {
  TeamNumeric numeric(a, team, BIGMAP, STACK);
  team.pool->run([&](Worker& me) { numeric.work(me); });
  IERR = numeric.code();
}

}  // namespace tornwalzen
