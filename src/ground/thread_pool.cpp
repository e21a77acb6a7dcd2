// The pool's threads and their meetings. Between jobs the helpers wait at a meeting, which the calling thread joins
// to begin the next one.
#include "ground/thread_pool.hpp"

#include <new>

#ifdef __unix__
#include <unistd.h>
#endif

namespace tornwalzen {

namespace {

// A meeting is over within microseconds or takes as long as another worker's share: first look often, then let
// others have the core, then sleep.
constexpr int looks = 2000;
constexpr int politeLooks = 100;

void pauseShortly() {
#if defined(__x86_64__) || defined(__i386__)
  __builtin_ia32_pause();
#endif
}

long thisProcess() {
#ifdef __unix__
  return getpid();
#else
  return 0;
#endif
}

}  // namespace

ThreadPool::ThreadPool(Int threads) : threads_(threads), process_(thisProcess()) {}

std::unique_ptr<ThreadPool> ThreadPool::start(Int threads) {
  std::unique_ptr<ThreadPool> pool(new (std::nothrow) ThreadPool(threads));
  if (!pool) return nullptr;
  try {
    pool->startHelpers();
  } catch (...) {  // no memory for the list, or no further thread
    return nullptr;
  }
  return pool;
}

double* ThreadPool::scratch(Int64 doubles) {
  constexpr Int64 line = 8;  // doubles
  if (scratch_.length() < doubles + line && !scratch_.allocate(doubles + line)) return nullptr;
  void* place = scratch_.data();
  std::size_t space = static_cast<std::size_t>(scratch_.length()) * sizeof(double);
  return static_cast<double*>(
      std::align(line * sizeof(double), static_cast<std::size_t>(doubles) * sizeof(double), place, space));
}

void ThreadPool::startHelpers() {
  helpers_.reserve(static_cast<std::size_t>(threads_) - 1);
  for (Int number = 1; number < threads_; ++number) helpers_.emplace_back([this, number] { serve(number); });
}

ThreadPool::~ThreadPool() {
  forgetLostHelpers();
  call_ = nullptr;
  meet(threads_ - static_cast<Int>(helpers_.size()));  // also for those that could not be started
  for (std::thread& helper : helpers_) helper.join();
}

void ThreadPool::serve(Int number) {
  for (;;) {
    meet();
    if (call_ == nullptr) return;
    call(number);
  }
}

void ThreadPool::perform() {
  forgetLostHelpers();
  takenBefore_ = taken_.load(std::memory_order_relaxed);
  meet();
  call(0);
}

void ThreadPool::call(Int number) {
  Worker worker(*this, number, threads_, takenBefore_);
  call_(job_, worker);
  meet();
}

void ThreadPool::meet(Int arriving) {
  const Int meeting = meetings_.load(std::memory_order_relaxed);  // the next one needs this worker
  if (arrived_.fetch_add(arriving, std::memory_order_acq_rel) + arriving == threads_) {
    arrived_.store(0, std::memory_order_relaxed);
    beginMeeting(meeting + 1);
    return;
  }
  for (int look = 0; look < looks + politeLooks; ++look) {
    if (meetings_.load(std::memory_order_acquire) != meeting) return;
    if (look < looks)
      pauseShortly();
    else
      std::this_thread::yield();
  }
  sleepUntilAfter(meeting);
}

#ifdef __linux__
void ThreadPool::beginMeeting(Int meeting) {
  meetings_.store(meeting, std::memory_order_release);
  meetings_.notify_all();
}

void ThreadPool::sleepUntilAfter(Int meeting) {
  meetings_.wait(meeting, std::memory_order_acquire);
}
#else
// Where the system has no futex, GCC 12's std::atomic::wait tests the value before it takes its lock, so that a
// notification in between is lost and the worker sleeps for ever.
void ThreadPool::beginMeeting(Int meeting) {
  {
    const std::lock_guard lock(sleeping_);
    meetings_.store(meeting, std::memory_order_release);
  }
  wake_.notify_all();
}

void ThreadPool::sleepUntilAfter(Int meeting) {
  std::unique_lock lock(sleeping_);
  wake_.wait(lock, [&] { return meetings_.load(std::memory_order_acquire) != meeting; });
}
#endif

// A forked process has none of the helpers, only what would wait for them.
void ThreadPool::forgetLostHelpers() {
  if (process_ == thisProcess()) return;
  for (std::thread& helper : helpers_) helper.detach();
  helpers_.clear();
  threads_ = 1;
  arrived_.store(0, std::memory_order_relaxed);
}

}  // namespace tornwalzen
