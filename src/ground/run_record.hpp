// What a run did, counted as it goes: the source of the report that a host may ask for. Nothing here is read
// by the analysis itself.
#pragma once

#include <ctime>

#include "ground/array_view.hpp"

namespace tornwalzen {

/// How the last run ended; the values are those of tornwalzen_ext.h.
enum class RunEnd : Int {
  converged = 0,
  noRun = 1,    // no analysis since the mesh was taken
  refused = 2,  // the arguments or an index array were refused
  running = 3,
  leftoverError = 4,  // the element error word was set by an earlier run
  notDeveloped = 5,   // the unfolding did not converge
  stepTooSmall = 6,
  finalUnconverged = 7,  // the final increment stalled at the smallest step
  solverFailed = 8,
  stoppedByHost = 9,
  gaveUp = 10  // the sure path: the fatal text says why
};

constexpr int fatalTextLength = 160;

/// What the press model did; 0 where it did not act.
struct PressRecord {
  Int bending = 0;  // 0 none, 1 its energy taken off, 2 kept
  bool edge = false, contact = false, binder = false, beads = false;
  double exponent = 0.0;                  // of the last member of the family that held: 1 is the work itself
  bool loadsHeld = false;                 // did edges and tools come to equilibrium with it?
  Int rounds = 0;                         // in which forces stood
  double thinnest = 0.0, thickest = 0.0;  // sheet (mm)
  double punchPressure = 0.0, diePressure = 0.0;  // largest from the equilibrium across the sheet (MPa)
  Int flangeElements = 0;
  double binderPressure = 0.0, binderArea = 0.0;  // largest (MPa); that bears (mm²)
  double work = 0.0, frictionWork = 0.0;          // of deformation, against the tools (N·mm)
  double depth = 0.0;                             // of the part along the drawing direction (mm)
  double punchForce = 0.0;                        // both over the depth: a mean (N)
};

/// Processor seconds of the set-up, kept for the mesh.
struct SetUpTimes {
  double structure = 0.0, ordering = 0.0, symbolic = 0.0;
};

/// What tells a right blank from a wrong one (develop/blank_checks.hpp). Triangles and nodes from 1; 0: none.
struct BlankFigures {
  Int topology = 0;                       // 0: the part is a disc with holes; else a code of tornwalzen_ext.h
  Int notFinite = 0, firstNotFinite = 0;  // triangles with a position that is no number
  Int inverted = 0, firstInverted = 0;    // triangles turned over, or without area
  double smallestStretch = 0.0;  // smallest singular value of the maps from part to blank; below 0: inverted
  Int smallestStretchTriangle = 0;
  bool sheetChecked = false;             // were open nodes, outline and overlap looked at?
  Int openNodes = 0, firstOpenNode = 0;  // inner nodes that their triangles do not close exactly once
  Int64 crossings = 0;                   // of the outline with itself
  bool crossingsComplete = true;         // false: there may be more
  double crossingPlace[2] = {0.0, 0.0};  // u, v of the first (mm)
  Int misplacedLoops = 0, firstMisplacedNode = 0;
  double overlappedArea = 0.0;                     // mm², covered more than once
  double partArea = 0.0, blankArea = 0.0;          // mm²
  double undercutArea = 0.0, undercutShare = 0.0;  // mm²; of partArea
  double shareBeyondCurve = 0.0,
         shareBeyondOne = 0.0;  // of partArea: beyond the curve's data, beyond a strain of 1
  Int firstBeyondCurve = 0, firstBeyondOne = 0;
};

struct RunRecord {
  RunEnd end = RunEnd::noRun;
  double progress = 0.0;       // end of the last increment that was accepted, 0..1
  double lastGradient = 0.0;   // largest free residual component after the last Newton step
  double gradientLimit = 0.0;  // what it had to meet
  Int increments = 0, repeats = 0, acceptedUnconverged = 0;
  Int newtonSteps = 0, lineSearchTrials = 0, factorizations = 0;
  Int negativePivots = -1;     // of the last factorization; -1: no factor stands
  double smallestPivot = 0.0;  // by magnitude, of the last factorization
  Int64 factorEntries = 0;     // of L, diagonal included
  double factorFlops = 0.0;    // additions and multiplications of one factorization
  Int unfoldIterations = 0, invertedElements = 0;
  double largestMeasure = 0.0;  // worst unfolding measure at its end (dimensionless)
  double largestStrain = 0.0;   // equivalent strain
  bool beyondCurve = false;     // does it lie beyond the last point of the flow curve's data?
  // of the sure path, 0 on the fixed one
  Int path = 0;                   // 0 fixed, 1 sure
  bool flatPatchStart = false;    // seen along the normal of a flat patch?
  Int solves = 0;                 // with factors of the tangent
  Int laplaceFactorizations = 0;  // of one equation per node
  Int hingedElements = 0;         // whose rotation came over edges
  Int startInverted = 0;          // turned over in the start
  double smallestSingular = 0.0;  // of the maps from part to blank; below 0: a triangle is turned over
  Int turnedElements = 0;         // turned over, or flat, in the blank found
  bool minimumCertified = false;  // is the exact tangent there positive definite?
  double energy = 0.0;            // potential of the blank found (mm²)
  bool checked = false;           // do the figures of the blank hold?
  BlankFigures blank;
  Int refusal = 0;      // code of the mesh that the path refused
  double checks = 0.0;  // processor seconds
  double development = 0.0, assembly = 0.0, factorization = 0.0, solve = 0.0, lineSearch = 0.0, total = 0.0;
  // processor seconds
  PressRecord press;
  Int64 threadBytes = 0;  // own memory that threads took beyond what one needs, for one system at most
  char fatalText[fatalTextLength] = {};  // last fatal text, zero-terminated
};

/// Keeps a fatal text: up to its zero byte, without blanks and the mark "@" at its ends.
void noteFatalText(RunRecord& record, const char* text);

/// Adds the processor time of its life to `total` (seconds).
class ProcessorTime {
 public:
  explicit ProcessorTime(double& total) : total_(total), begin_(std::clock()) {}
  ~ProcessorTime() { total_ += static_cast<double>(std::clock() - begin_) / CLOCKS_PER_SEC; }
  ProcessorTime(const ProcessorTime&) = delete;
  ProcessorTime& operator=(const ProcessorTime&) = delete;

 private:
  double& total_;
  std::clock_t begin_;
};

}  // namespace tornwalzen
