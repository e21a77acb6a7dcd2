// Fletcher's sums in eight independent lanes, so that they run at the speed of memory.
#include "sparse/structure_guard.hpp"

#include <cstring>
#include <initializer_list>

#include "ground/thread_pool.hpp"
#include "sparse/work_layout.hpp"

namespace tornwalzen {

namespace {

constexpr int lanes = 8;  // of 64 bits, two entries each

struct Sums {
  std::uint64_t plain[lanes] = {}, weighted[lanes] = {};

  /// As if what `later` has summed, over `words` of each lane, had been added here.
  void append(const Sums& later, Int64 words) {
    for (int l = 0; l < lanes; ++l) {
      weighted[l] += static_cast<std::uint64_t>(words) * plain[l] + later.weighted[l];
      plain[l] += later.plain[l];
    }
  }
  /// As add, by parts on the threads of the pool.
  void addInParts(ThreadPool* pool, const Int* first, Int64 count) {
    constexpr Int64 parts = mostThreads, step = 2 * lanes, leastCount = 1 << 18;
    if (pool == nullptr || count < leastCount) return add(first, count);
    const Int64 words = count / step / parts;  // of each lane in a part; the rest is added behind them
    Sums sums[parts];
    inRanges(pool, parts, 1, [&](Int64 from, Int64 to) {
      for (Int64 i = from; i <= to; ++i) sums[i - 1].add(first + (i - 1) * words * step, words * step);
    });
    for (const Sums& part : sums) append(part, words);
    add(first + parts * words * step, count - parts * words * step);
  }

  void add(const Int* first, Int64 count) {
    Int64 i = 0;
    std::uint64_t a[lanes], b[lanes];  // in registers for the length of the loop
    std::memcpy(a, plain, sizeof a);
    std::memcpy(b, weighted, sizeof b);
    for (; i + 2 * lanes <= count; i += 2 * lanes) {
      std::uint64_t word[lanes];
      std::memcpy(word, first + i, sizeof word);
      for (int l = 0; l < lanes; ++l) b[l] += a[l] += word[l];
    }
    std::memcpy(plain, a, sizeof a);
    std::memcpy(weighted, b, sizeof b);
    for (int l = 0; i < count; ++i, l = (l + 1) % lanes) {
      plain[l] += static_cast<std::uint32_t>(first[i]);
      weighted[l] += plain[l];
    }
  }
  // One-to-one in each sum as long as the others stay: a change cannot cancel out by its low-order zeros.
  std::uint64_t value() const {
    std::uint64_t state = 0;
    for (int l = 0; l < lanes; ++l)
      for (const std::uint64_t sum : {plain[l], weighted[l]}) {
        state = (state ^ sum) * 0x9E3779B97F4A7C15ull;
        state ^= state >> 32;
      }
    return state;
  }
};

}  // namespace

std::uint64_t structureSum(Vector<const Int> WORK, Int64 first, Int64 last, ThreadPool* pool) {
  if (first < 1 || last > WORK.length()) return 0;
  Sums sums;
  for (const Int changing : {header::shortage, header::freeNow1, header::freeNow2, header::phase}) {
    if (changing < first || changing > last) continue;
    sums.add(WORK.data() + (first - 1), changing - first);
    first = changing + 1;
  }
  sums.addInParts(pool, WORK.data() + (first - 1), last - first + 1);
  return sums.value() | 1;  // never the 0 of a range that leaves WORK
}

}  // namespace tornwalzen
