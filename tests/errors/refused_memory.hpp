// Memory that cannot be had: while one of these lives, every request that may fail without an exception
// fails, the first `granted` of them left out.
#pragma once

namespace hostile {

class NoMemory {
 public:
  explicit NoMemory(int granted = 0);
  ~NoMemory();
  NoMemory(const NoMemory&) = delete;
  NoMemory& operator=(const NoMemory&) = delete;
  /// Requests refused so far.
  int refusals() const;
};

}  // namespace hostile
