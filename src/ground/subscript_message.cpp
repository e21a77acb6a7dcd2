// The subscript message, apart from the state of an analysis: the deck library prints it too.
#include "ground/subscript_message.hpp"

#include <cinttypes>
#include <cstdio>
#include <cstdlib>

namespace tornwalzen {

void composeSubscript(char (&line)[subscriptLineLength], const char* name, int position, Int64 value,
                      Int64 upper, Int64 lower) {
  if (value > upper)
    std::snprintf(line, sizeof line,
                  "fort: (2): Subscript #%d of the array %s has value %" PRId64
                  " which is greater than the upper bound of %" PRId64 "\n",
                  position, name, value, upper);
  else
    std::snprintf(line, sizeof line,
                  "fort: (3): Subscript #%d of the array %s has value %" PRId64
                  " which is less than the lower bound of %" PRId64 "\n",
                  position, name, value, lower);
}

void reportSubscript(const char* name, int position, Int64 value, Int64 upper, Int64 lower) {
  char line[subscriptLineLength];
  composeSubscript(line, name, position, value, upper, lower);
  std::fputs(line, stderr);
  std::fflush(stderr);
}

void subscriptAbort(const char* name, int position, Int64 value, Int64 upper) {
  reportSubscript(name, position, value, upper);
  std::abort();
}

}  // namespace tornwalzen
