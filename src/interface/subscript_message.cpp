// The subscript message, apart from the run state: the deck library prints it too.
#include <cinttypes>
#include <cstdio>
#include <cstdlib>

#include "interface/subscript_check.hpp"

namespace tornwalzen {

void reportSubscript(const char* name, int position, Int64 value, Int64 upper, Int64 lower) {
  if (value > upper)
    std::fprintf(stderr,
                 "fort: (2): Subscript #%d of the array %s has value %" PRId64
                 " which is greater than the upper bound of %" PRId64 "\n",
                 position, name, value, upper);
  else
    std::fprintf(stderr,
                 "fort: (3): Subscript #%d of the array %s has value %" PRId64
                 " which is less than the lower bound of %" PRId64 "\n",
                 position, name, value, lower);
  std::fflush(stderr);
}

void subscriptAbort(const char* name, int position, Int64 value, Int64 upper) {
  reportSubscript(name, position, value, upper);
  std::abort();
}

}  // namespace tornwalzen
