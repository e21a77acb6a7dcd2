// The state of one analysis, handed down to every procedure that reads or changes it. Three types tell how long
// each part of it lives; the run scalars keep their plain names, whichever of the three they belong to. To forget
// is to begin a lifetime anew: forget<MeshState>(run).
#pragma once

#include "ground/array_view.hpp"
#include "ground/channels.hpp"
#include "ground/refusal.hpp"
#include "ground/run_options.hpp"
#include "ground/run_record.hpp"
#include "ground/solver_state.hpp"
#include "ground/thread_pool.hpp"

namespace tornwalzen {

struct DenseKernels;
class ElementParts;
struct ElementLanes;
struct PartTopology;

/// Like TeamPointer.
using TopologyPointer = std::unique_ptr<PartTopology, void (*)(PartTopology*)>;
using PartsPointer = std::unique_ptr<const ElementParts, void (*)(const ElementParts*)>;

constexpr Int curveRows = 50;    // rows of the flow-curve table FC
constexpr Int curveColumns = 7;  // strain, stress, secant slope, cubic coefficients A B C D
constexpr Int errorSet = -1;     // value of a failed error word: all bits set; bit 0 is what callers test

/// What lives as long as the analysis: what the host has set, its channels, the material that was loaded last
/// (a selector without a curve keeps it), and the error words.
struct LibraryState {
  RunOptions options;
  MessageChannel messages;
  ProgressChannel progress;
  Refusal refusal;                           // the last call of the extended interface that was refused
  char refusalText[refusalTextLength] = {};  // the text of a code as last asked for
  bool running = false;  // an analysis is on the stack: the host's calls come from within one of its handlers
  Int ierrel = 0;        // element, development and driver error word
  Int ierrso = 0;        // structure and solver error word
  double smin = 1.0;     // smallest stress of the current flow curve (MPa), by which its stresses are divided
  Int npkt = 0;          // points of the current flow curve, at most 50
  std::unique_ptr<ThreadPool> pool;          // the threads that work beside the calling one; null: none
  const DenseKernels* kernels = nullptr;     // of the factorization; null: the widest that the processor has
  const ElementLanes* lanes = nullptr;       // of the element passes; likewise
  double FC[curveRows * curveColumns] = {};  // the flow curve: stresses over the curve's smallest stress
};

/// What lives as long as the mesh that OSINIT took.
struct MeshState {
  Int maxkno = 0;      // declared node dimension: rows of KNG, KNZ, KNA
  Int maxele = 0;      // declared element dimension: rows of INTA, ELG
  Int nkno = 0;        // nodes
  Int nele = 0;        // elements
  Int neq = 0;         // equations: two per node
  SolverState solver;  // the global system's lengths and phases
  SetUpTimes setUpTimes;
};

/// What lives as long as a run.
struct RunState {
  Int istat = 0;  // run status: 1 plastic work and coarse tolerance, 0 geometric density and fine tolerance
  double maxgrad = 0.0;  // largest free residual component of the last assembly
  double lsfak = 1.0;    // accepted fraction of the last Newton correction
  double atot = 0.0;     // total area of the formed part (mm²), set by the development
  double qmax = 0.0;     // worst unfolding measure of the last objective (dimensionless)
  TopologyPointer topology{nullptr, nullptr};  // of the part; null: not asked for yet, or freed
  PartsPointer parts{nullptr, nullptr};        // the elements shared out among the threads; null: not shared
  RunRecord record;
};

struct Analysis : LibraryState, MeshState, RunState {
  Analysis() = default;
  Analysis(const Analysis&) = delete;  // the host's handlers know its place
  Analysis& operator=(const Analysis&) = delete;
};

/// Begins a lifetime anew: the part of `run` that State names is as after loading.
template <class State>
void forget(Analysis& run) {
  static_cast<State&>(run) = State{};
}

/// One run: its state anew, marked as refused until the driver takes over, and the mark that an analysis is running.
class RunLifetime {
 public:
  explicit RunLifetime(Analysis& run) : run_(run), outer_(run.running) {
    forget<RunState>(run);
    run.record.end = RunEnd::refused;
    run.progress.stopAsked = false;
    run.running = true;
  }
  ~RunLifetime() { run_.running = outer_; }
  RunLifetime(const RunLifetime&) = delete;
  RunLifetime& operator=(const RunLifetime&) = delete;

 private:
  Analysis& run_;
  bool outer_;
};

/// The flow-curve table as a 50 × 7 view.
Table<double> flowCurve(Analysis& run);

/// Threads that the analysis may work on, the calling one included.
inline Int threadsOf(const Analysis& run) {
  return run.pool ? run.pool->threads() : 1;
}

inline bool failed(Int errorWord) {
  return (errorWord & 1) != 0;
}

}  // namespace tornwalzen
