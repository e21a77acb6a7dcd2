// A host of the exported functions, every array and scalar of which lies between guards. What the header says
// is only read lies in memory that cannot be written during the call.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "errors/guarded_array.hpp"
#include "errors/meshes.hpp"
#include "tornwalzen.h"

namespace hostile {

using Ints = GuardedArray<std::int32_t>;
using Reals = GuardedArray<double>;

struct ProgressEvent {
  double value;
  std::int32_t kind;
  std::string text;
};

class Host {
 public:
  Host(const Mesh& mesh, Flush flush);

  /// OSINIT; all guards are checked after the call. Returns ISTAT.
  std::int32_t init(std::int32_t mode);
  /// Gives the arrays the lengths that the last `init` reported.
  void supply();
  /// The three modes, each expected to succeed.
  void setUp();
  /// OSMAIN; all guards are checked after the call. Returns ISTAT.
  std::int32_t analyse(std::int32_t material = 1);
  /// Puts another mesh in place of the first, as a host does that opens the next part.
  void open(const Mesh& mesh);
  /// Every array to another address, as a host may do between any two calls.
  void moveAll();
  /// Makes the argument of that name NULL in the calls to come. False if there is no such argument.
  bool drop(const std::string& name);

  /// As the header says: the last fraction is 1.0, two time texts follow it, ISTAT is not -1.
  bool converged() const;
  /// Expects of a run that says it converged that it did: finite blank and results, residual below the
  /// tolerance. Expects of any other run that the blank is no less finite than the part.
  void expectTruth() const;

  Ints MODE, NKNO, NELE, NEQ, MNSYSM, NIWOR, NRK, INZI, INTA, COLS, ROWI, WORK, ARFA, ICTRL, ISTAT;
  Reals KNOTS, KNG, RWORK, RR, RB, RX, TEMP, KNZ, KNA, ELG, SYSM, RXA, WRHS, EVAL;
  std::vector<ProgressEvent> progress;

 private:
  std::vector<Ints*> ints();
  std::vector<Reals*> reals();
  void expectGuards();
  void supplyResults();
  template <class T>
  T* given(const GuardedArray<T>& array) const;
  static void onProgress(void* host, const TornwalzenProgress* record);
  std::vector<std::string> dropped_;
};

}  // namespace hostile
