// Threads that stand ready for an analysis: started once, asleep between jobs. A job is divided into shares; which
// worker takes which share changes no result, so shares must not depend on one another, and the sums within a share
// keep their order.
#pragma once

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

#include "ground/own_array.hpp"

namespace tornwalzen {

constexpr Int mostThreads = 64;

class ThreadPool {
 public:
  /// A pool of `threads` workers, the calling thread being one of them: 2..mostThreads. Null where memory or a
  /// thread cannot be had; then none was left running.
  static std::unique_ptr<ThreadPool> start(Int threads);
  ~ThreadPool();
  ThreadPool(const ThreadPool&) = delete;
  ThreadPool& operator=(const ThreadPool&) = delete;

  Int threads() const { return threads_; }

  /// Memory for a job, at least so many doubles from a cache line on, kept until a later job needs more: what it holds
  /// is gone with the job. Null where it cannot be had.
  double* scratch(Int64 doubles);
  Int64 scratchBytes() const { return static_cast<Int64>(sizeof(double)) * scratch_.length(); }

  /// One worker's part in a job. All workers of a job must come to the same meetings and shares in the same order.
  class Worker {
   public:
    Worker(ThreadPool& pool, Int number, Int count, Int64 taken)
        : pool_(pool), number_(number), count_(count), shares_(taken) {}
    /// 0 on the thread that called run, else 1..threads-1.
    Int number() const { return number_; }
    Int count() const { return count_; }
    /// Returns when all workers have come here; what each did before is then seen by all.
    void meet() {
      if (count_ > 1) pool_.meet();
    }
    /// Calls use(i) for those i in 0..items-1 that no other worker takes, in rising order; ends with a meeting.
    template <class Use>
    void share(Int64 items, Use use) {
      if (count_ == 1) {
        for (Int64 i = 0; i < items; ++i) use(i);
        return;
      }
      for (;;) {
        const Int64 i = pool_.taken_.fetch_add(1, std::memory_order_relaxed) - shares_;
        if (i >= items) break;
        use(i);
      }
      shares_ += items + count();  // every worker asks once in vain
      meet();
    }

   private:
    ThreadPool& pool_;
    const Int number_, count_;
    Int64 shares_;  // numbers handed out before this share
  };

  /// Calls job(worker) on all workers, the calling thread among them, and returns when all have ended. job: must not
  /// throw, and must not call run of the same pool. In a process that was forked from the pool's own, which has the
  /// calling thread alone, that thread is the only worker.
  template <class Job>
  void run(const Job& job) {
    if (apart_) {
      Worker alone(*this, 0, 1, 0);
      job(alone);
    } else {
      runOnAll(job);
    }
  }

  /// Calls here() on the calling thread and beside() on another one at the same time. Either may call run, and is the
  /// only worker then; neither may ask for scratch().
  template <class Here, class Beside>
  void runBoth(const Here& here, const Beside& beside) {
    apart_ = true;
    runOnAll([&](Worker& worker) {
      if (worker.number() == 0) here();
      if (worker.number() == worker.count() - 1) beside();
    });
    apart_ = false;
  }

 private:
  template <class Job>
  void runOnAll(const Job& job) {
    job_ = &job;
    call_ = [](const void* its, Worker& worker) { (*static_cast<const Job*>(its))(worker); };
    perform();
  }
  explicit ThreadPool(Int threads);
  void startHelpers();
  void serve(Int number);
  void perform();
  void call(Int number);
  void meet(Int arriving = 1);
  void beginMeeting(Int meeting);     // wakes those who sleep for it
  void sleepUntilAfter(Int meeting);  // until a later one begins
  void forgetLostHelpers();

  Int threads_;
  bool apart_ = false;  // within runBoth: every worker on its own
  std::vector<std::thread> helpers_;
  const long process_;
  OwnArray<double> scratch_{"scratch"};
  const void* job_ = nullptr;
  void (*call_)(const void*, Worker&) = nullptr;  // null: the helpers end
  Int64 takenBefore_ = 0;                         // numbers handed out before the job
  // Each on a cache line of its own: all workers write them.
  alignas(64) std::atomic<Int64> taken_{0};
  alignas(64) std::atomic<Int> arrived_{0};
  alignas(64) std::atomic<Int> meetings_{0};
#ifndef __linux__
  std::mutex sleeping_;
  std::condition_variable wake_;
#endif
};

/// Calls work(first, last) on ranges that together make up 1..length, each at least `least` long: on all workers of
/// `pool`, or, where that is null or the length small, in one range on the calling thread.
template <class Work>
void inRanges(ThreadPool* pool, Int64 length, Int64 least, Work work) {
  if (pool == nullptr || length < 2 * least) {
    work(Int64{1}, length);
    return;
  }
  const Int64 ranges = std::min<Int64>(length / least, 4 * Int64{pool->threads()});
  pool->run([&](ThreadPool::Worker& worker) {
    worker.share(ranges, [&](Int64 i) { work(length * i / ranges + 1, length * (i + 1) / ranges); });
  });
}

/// here() and beside() as runBoth calls them, or, where `pool` is null, one after the other.
template <class Here, class Beside>
void bothSteps(ThreadPool* pool, const Here& here, const Beside& beside) {
  if (pool != nullptr) return pool->runBoth(here, beside);
  here();
  beside();
}

/// Σ term(i) over 1..length, the same to the bit for every pool: the sums of fixed parts, added in their order.
template <class Term>
double sumInParts(ThreadPool* pool, Int64 length, Term term) {
  constexpr Int64 parts = 64, leastParts = 4, leastLength = 32768;
  double SUM[parts];
  inRanges(length < leastLength ? nullptr : pool, parts, leastParts, [&](Int64 from, Int64 to) {
    for (Int64 part = from; part <= to; ++part) {
      double sum = 0.0;
      for (Int64 i = length * (part - 1) / parts + 1; i <= length * part / parts; ++i) sum += term(i);
      SUM[part - 1] = sum;
    }
  });
  double sum = 0.0;
  for (const double part : SUM) sum += part;
  return sum;
}

/// merge(part) with what measure(first, last) finds in each of the ranges that together make up 1..length, in an order
/// that is not told: for what does not depend on it, such as a largest value or a count.
template <class Measure, class Merge>
void mergeRanges(ThreadPool* pool, Int64 length, Int64 least, Measure measure, Merge merge) {
  std::mutex merging;
  inRanges(pool, length, least, [&](Int64 first, Int64 last) {
    const auto part = measure(first, last);
    const std::lock_guard<std::mutex> alone(merging);
    merge(part);
  });
}

}  // namespace tornwalzen
