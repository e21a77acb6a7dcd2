// A host of the exported functions, every array and scalar of which lies between guards. What the header says
// is only read lies in memory that cannot be written during the call.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "errors/meshes.hpp"
#include "host_kit/fixed_host.hpp"
#include "host_kit/guarded_array.hpp"

namespace hostile {

using host_kit::Flush;
using host_kit::GuardedArray;
using host_kit::GuardedMemory;
using Ints = GuardedArray<std::int32_t>;
using Reals = GuardedArray<double>;

class Host : public host_kit::FixedHost<GuardedMemory> {
 public:
  Host(const Mesh& mesh, Flush flush);

  /// As those of FixedHost; all guards are checked after the call.
  std::int32_t init(std::int32_t mode);
  std::int32_t analyse(std::int32_t material = 1);
  /// The three modes, each expected to succeed.
  void setUp();
  /// Puts another mesh in place of the first, as a host does that opens the next part.
  void open(const Mesh& mesh);
  /// Every array to another address, as a host may do between any two calls.
  void moveAll();
  /// Makes the argument of that name NULL in the calls to come. False if there is no such argument.
  bool drop(const std::string& name);

  bool converged() const { return progress.converged(ISTAT[0]); }
  /// Expects of a run that says it converged that it did: finite blank and results, residual below the
  /// tolerance. Expects of any other run that the blank is no less finite than the part.
  void expectTruth() const;

  host_kit::ProgressTold progress;  // of the last analysis

 private:
  std::vector<Ints*> ints();
  std::vector<Reals*> reals();
  void expectGuards();
};

}  // namespace hostile
