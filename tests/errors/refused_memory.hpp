// Memory that cannot be had: while one of these lives, every request that may fail without an exception
// fails, the first `granted` of them left out; with Requests::all those too that throw.
#pragma once

namespace hostile {

enum class Requests { thatMayFail, all };

class NoMemory {
 public:
  explicit NoMemory(int granted = 0, Requests which = Requests::thatMayFail);
  ~NoMemory();
  NoMemory(const NoMemory&) = delete;
  NoMemory& operator=(const NoMemory&) = delete;
  /// Requests refused so far.
  int refusals() const;
};

}  // namespace hostile
