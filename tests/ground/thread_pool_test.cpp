// The pool: every share is taken once, meetings are seen by all, ranges cover what they should, sums and extremes do not
// depend on the number of threads. Runs under the thread sanitizer too (preset tsan).
#include "ground/thread_pool.hpp"

#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <cstdint>
#ifdef __unix__
#include <sys/wait.h>
#include <unistd.h>

#include "ground/ended_process.hpp"
#endif

namespace tornwalzen {
namespace {

constexpr Int counts[] = {2, 3, 8};

TEST(ThreadPoolInThreads, EveryShareIsTakenOnceAndAMeetingShowsWhatWasDone) {
  for (const Int threads : counts) {
    const auto pool = ThreadPool::start(threads);
    ASSERT_TRUE(pool);
    EXPECT_EQ(pool->threads(), threads);
    for (int repeat = 0; repeat < 20; ++repeat) {
      std::vector<int> taken(1000, 0), seen(static_cast<std::size_t>(threads), 0);
      pool->run([&](ThreadPool::Worker& me) {
        EXPECT_EQ(me.count(), threads);
        me.share(1000, [&](Int64 i) { ++taken[static_cast<std::size_t>(i)]; });
        for (const int t : taken) seen[static_cast<std::size_t>(me.number())] += t;
        me.meet();
        me.share(0, [](Int64) { FAIL() << "nothing is to be shared"; });
        me.share(500, [&](Int64 i) { ++taken[static_cast<std::size_t>(2 * i)]; });
      });
      for (const int sum : seen) EXPECT_EQ(sum, 1000);
      for (std::size_t i = 0; i < taken.size(); ++i) ASSERT_EQ(taken[i], i % 2 == 0 ? 2 : 1);
    }
  }
}

// Between the jobs the helpers fall asleep, some of them just as the next one begins.
TEST(ThreadPoolInThreads, NobodySleepsThroughAMeeting) {
  const auto pool = ThreadPool::start(4);
  ASSERT_TRUE(pool);
  std::atomic<Int64> sum{0};
  for (int job = 0; job < 2000; ++job) {
    pool->run([&](ThreadPool::Worker& me) {
      me.share(8, [&](Int64 i) { sum += i; });
      me.meet();
    });
    if (job % 10 == 0) std::this_thread::sleep_for(std::chrono::microseconds(job % 500));
  }
  EXPECT_EQ(sum, 2000 * 28);
}

TEST(ThreadPoolInThreads, RangesCoverEveryNumberOnce) {
  const auto pool = ThreadPool::start(3);
  ASSERT_TRUE(pool);
  for (ThreadPool* its : {static_cast<ThreadPool*>(nullptr), pool.get()})
    for (const Int64 length : {0, 1, 7, 99, 100, 1001}) {
      std::vector<int> taken(static_cast<std::size_t>(length), 0);
      inRanges(its, length, 10, [&](Int64 first, Int64 last) {
        for (Int64 i = first; i <= last; ++i) ++taken[static_cast<std::size_t>(i - 1)];
      });
      for (const int t : taken) ASSERT_EQ(t, 1) << length;
    }
}

TEST(ThreadPoolInThreads, SumsHaveTheBitsOfOneThread) {
  const auto term = [](Int64 i) {
    return std::sin(static_cast<double>(i)) * std::pow(10.0, static_cast<double>(i % 13));
  };
  for (const Int64 length : {Int64{0}, Int64{5}, Int64{63}, Int64{200000}}) {
    const double alone = sumInParts(nullptr, length, term);
    double plain = 0.0;
    for (Int64 i = 1; i <= length; ++i) plain += term(i);
    EXPECT_NEAR(alone, plain, 1e-12 * std::fabs(plain));
    for (const Int threads : counts) {
      const auto pool = ThreadPool::start(threads);
      ASSERT_TRUE(pool);
      EXPECT_EQ(sumInParts(pool.get(), length, term), alone) << length << " by " << threads;
    }
  }
}

TEST(ThreadPoolInThreads, ExtremesAndCountsAreMergedFromAllRanges) {
  for (const Int threads : counts) {
    const auto pool = ThreadPool::start(threads);
    ASSERT_TRUE(pool);
    Int64 sum = 0, largest = 0;
    mergeRanges(
        pool.get(), 10000, 10, [](Int64 first, Int64 last) { return std::pair(last - first + 1, last); },
        [&](const std::pair<Int64, Int64>& part) {
          sum += part.first;
          largest = std::max(largest, part.second);
        });
    EXPECT_EQ(sum, 10000);
    EXPECT_EQ(largest, 10000);
  }
}

TEST(ThreadPoolInThreads, ScratchIsAlignedAndGrows) {
  const auto pool = ThreadPool::start(2);
  ASSERT_TRUE(pool);
  for (const Int64 length : {10, 1000, 100}) {
    double* const scratch = pool->scratch(length);
    ASSERT_NE(scratch, nullptr);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(scratch) % 64, 0u);
    for (Int64 i = 0; i < length; ++i) scratch[i] = 1.0;
  }
  EXPECT_GE(pool->scratchBytes(), 8000);
  EXPECT_EQ(pool->scratch(Int64{1} << 60), nullptr);
  EXPECT_EQ(pool->scratchBytes(), 0);
}

// One thread takes a step each; what a step divides, it does alone.
TEST(ThreadPoolInThreads, TwoStepsAreTakenAtTheSameTime) {
  for (const Int threads : counts) {
    const auto pool = ThreadPool::start(threads);
    ASSERT_TRUE(pool);
    for (int repeat = 0; repeat < 50; ++repeat) {
      std::atomic<Int> begun{0};
      const auto begin = [&] {  // ends when the other has begun
        for (begun += 1; begun < 2;) std::this_thread::yield();
      };
      Int64 here = 0, beside = 0;
      std::thread::id hereOn, besideOn;
      const auto step = [&](Int64& sum, std::thread::id& on) {
        begin();
        on = std::this_thread::get_id();
        inRanges(pool.get(), 1000, 1, [&](Int64 first, Int64 last) { sum += last - first + 1; });
        pool->run([&](ThreadPool::Worker& me) {
          EXPECT_EQ(me.number(), 0);
          EXPECT_EQ(me.count(), 1);
          me.meet();
          ++sum;
        });
      };
      bothSteps(
          pool.get(), [&] { step(here, hereOn); }, [&] { step(beside, besideOn); });
      EXPECT_EQ(here, 1001);
      EXPECT_EQ(beside, 1001);
      EXPECT_EQ(hereOn, std::this_thread::get_id());
      EXPECT_NE(besideOn, hereOn);
    }
    Int64 sum = 0;
    mergeRanges(
        pool.get(), 1000, 1, [](Int64 a, Int64 b) { return b - a + 1; }, [&](Int64 n) { sum += n; });
    EXPECT_EQ(sum, 1000);  // and then all work together again
  }
  std::vector<int> order;
  bothSteps(
      nullptr, [&] { order.push_back(1); }, [&] { order.push_back(2); });
  EXPECT_EQ(order, (std::vector<int>{1, 2}));
}

#ifdef __unix__
// A forked process has the calling thread alone and must neither wait for the others nor end them.
TEST(ThreadPool, AForkedProcessWorksAlone) {
  const auto pool = ThreadPool::start(3);
  ASSERT_TRUE(pool);
  const pid_t child = fork();
  if (child == 0) {
    Int64 sum = 0;
    mergeRanges(
        pool.get(), 1000, 1, [](Int64 a, Int64 b) { return b - a + 1; }, [&](Int64 n) { sum += n; });
    bothSteps(
        pool.get(), [&] { sum += 1; }, [&] { sum += 1; });
    keepCounts();
    _exit(sum == 1002 && pool->threads() == 1 ? 0 : 1);
  }
  int status = -1;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
  EXPECT_EQ(pool->threads(), 3);
}
#endif

}  // namespace
}  // namespace tornwalzen
