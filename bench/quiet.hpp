// The library's messages would stand between the tables.
#pragma once

namespace bench {

/// Sends standard output to nowhere while it lives.
class Quiet {
 public:
  Quiet();
  ~Quiet();
  Quiet(const Quiet&) = delete;
  Quiet& operator=(const Quiet&) = delete;

 private:
  int kept_;
};

}  // namespace bench
