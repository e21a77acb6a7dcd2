// The checksum of WORK against its definition, written out: eight lanes, each the sum of its words and the sum of that
// sum's values along the way.
#include "sparse/structure_guard.hpp"

#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <vector>

#include "ground/thread_pool.hpp"
#include "sparse/work_layout.hpp"

using namespace tornwalzen;

namespace {

constexpr std::size_t lanes = 8;

using LaneWords = std::vector<std::uint64_t>[lanes];

// Two entries are a word, the first one in its low half; the entries that do not fill a word in every lane are words
// of their own.
void deal(const std::vector<Int>& entries, LaneWords& words) {
  std::size_t i = 0;
  const auto bits = [&](std::size_t at) { return std::uint64_t{static_cast<std::uint32_t>(entries[at])}; };
  for (; i + 2 * lanes <= entries.size(); i += 2 * lanes)
    for (std::size_t l = 0; l < lanes; ++l) words[l].push_back(bits(i + 2 * l) | bits(i + 2 * l + 1) << 32);
  for (std::size_t l = 0; i < entries.size(); ++i, ++l) words[l % lanes].push_back(bits(i));
}

// Each run of entries between those that the steps change is dealt from the first lane.
std::uint64_t expectedSum(const std::vector<Int>& WORK, Int first, Int last) {
  LaneWords words;
  std::vector<Int> stretch;
  for (Int at = first; at <= last; ++at) {
    if (at == 19 || at == 29 || at == 30 || at == 35) {
      deal(stretch, words);
      stretch.clear();
    } else {
      stretch.push_back(WORK[static_cast<std::size_t>(at) - 1]);
    }
  }
  deal(stretch, words);
  std::uint64_t state = 0;
  for (const std::vector<std::uint64_t>& lane : words) {
    std::uint64_t plain = 0, weighted = 0;
    for (std::size_t k = 0; k < lane.size(); ++k) {
      plain += lane[k];
      weighted += (lane.size() - k) * lane[k];
    }
    for (const std::uint64_t sum : {plain, weighted}) {
      state = (state ^ sum) * 11400714819323198485ull;  // 2^64 / golden ratio
      state ^= state >> 32;
    }
  }
  return state | 1;
}

std::vector<Int> randomEntries(std::size_t count) {
  std::mt19937 random(11);
  std::vector<Int> entries(count);
  for (Int& entry : entries) entry = static_cast<Int>(random());
  return entries;
}

std::uint64_t sumOf(std::vector<Int>& WORK, Int64 first, Int64 last) {
  return structureSum(Vector<Int>("WORK", WORK.data(), static_cast<Int64>(WORK.size())), first, last);
}

}  // namespace

TEST(StructureGuard, SumIsThatOfItsDefinitionOnEveryRange) {
  std::vector<Int> WORK = randomEntries(150);
  for (Int first = 1; first <= 40; ++first)
    for (Int last = first; last <= 150; ++last)
      ASSERT_EQ(sumOf(WORK, first, last), expectedSum(WORK, first, last)) << first << " .. " << last;
}

// Long enough to be divided among threads, with words left over behind the last share.
TEST(StructureGuard, SumIsTheSameOnEveryNumberOfThreads) {
  std::vector<Int> WORK = randomEntries((1 << 18) + 4321);
  const Int last = static_cast<Int>(WORK.size());
  const std::uint64_t expected = expectedSum(WORK, 1, last);
  EXPECT_EQ(sumOf(WORK, 1, last), expected);
  for (const Int threads : {2, 3, 8}) {
    const std::unique_ptr<ThreadPool> pool = ThreadPool::start(threads);
    ASSERT_NE(pool, nullptr);
    EXPECT_EQ(structureSum(Vector<Int>("WORK", WORK.data(), last), 1, last, pool.get()), expected) << threads;
  }
}

TEST(StructureGuard, ARangeThatLeavesWorkHasNoSum) {
  std::vector<Int> WORK = randomEntries(50);
  EXPECT_EQ(sumOf(WORK, 0, 50), 0u);
  EXPECT_EQ(sumOf(WORK, 1, 51), 0u);
  EXPECT_NE(sumOf(WORK, 1, 50), 0u);
}

TEST(StructureGuard, AChangedEntryAndAnExchangeOfTwoShow) {
  std::vector<Int> WORK = randomEntries(120);
  const std::uint64_t whole = sumOf(WORK, 1, 120);
  for (const std::size_t at : {0u, 17u, 19u, 36u, 99u, 119u})
    for (int bit = 0; bit < 32; ++bit) {
      std::vector<Int> changed = WORK;
      changed[at] = static_cast<Int>(static_cast<std::uint32_t>(changed[at]) ^ 1u << bit);
      EXPECT_NE(sumOf(changed, 1, 120), whole) << "entry " << at + 1 << ", bit " << bit;
    }
  for (std::size_t apart = 1; apart < 60; ++apart) {
    std::vector<Int> exchanged = WORK;
    std::swap(exchanged[40], exchanged[40 + apart]);
    EXPECT_NE(sumOf(exchanged, 1, 120), whole) << apart;
  }
}
