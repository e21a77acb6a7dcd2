// Memory that cannot be had: while one of these lives, every request that may fail without an exception
// fails.
#pragma once

namespace hostile {

class NoMemory {
 public:
  NoMemory();
  ~NoMemory();
  NoMemory(const NoMemory&) = delete;
  NoMemory& operator=(const NoMemory&) = delete;
};

}  // namespace hostile
