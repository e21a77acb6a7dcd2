// What a run was made with and what it left, as plain data: all that the writers of results know. They see neither
// meshes nor the library's run.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "system/failure.hpp"
#include "system/file_identity.hpp"
#include "tornwalzen_analysis.h"
#include "tornwalzen_ext.h"

namespace host {

// The numbers that a finite-element file gives its nodes, elements and parts; all empty where the format has none.
struct PartIds {
  std::vector<std::int64_t> node;     // of node 1, of node 2, ...
  std::vector<std::int64_t> element;  // of element 1, of element 2, ...; the halves of a split quad share one
  std::vector<std::int64_t> part;     // likewise: the part that the element belongs to
};

// The part that was run. It keeps all nodes of the file, so node n is node n of the file; with the largest piece alone
// it has fewer elements than the file.
struct PartData {
  std::string file;                       // name for messages
  FileIdentity identity;                  // of that file
  std::vector<double> points;             // part's unit: x, y, z of node 1, of node 2, ...
  std::vector<std::int32_t> fileElement;  // number in the file of each element, from 1
  PartIds ids;                            // what the file calls them
  double thickness = 0.0;                 // part's unit: measured on a thin solid, else 0
  std::vector<bool> inTriangle;           // per node: belongs to a triangle of the part
  std::int64_t filePieces = 0;            // pieces in the file
  std::int64_t fileElements = 0;          // triangles in the file
  std::int64_t turned = 0;                // triangles that were turned to the orientation of the others

  std::int64_t nodes() const { return static_cast<std::int64_t>(points.size() / 3); }
  std::int64_t elements() const { return static_cast<std::int64_t>(fileElement.size()); }
};

struct Hold {
  std::vector<std::int32_t> ARFA;  // per unknown: 1 free, 0 held; unknowns of nodes in no triangle are held
  std::int64_t held = 0;           // held unknowns of nodes in triangles
};

struct FlowCurve {
  std::vector<double> strain;  // plastic strain, dimensionless; empty: the built-in curve of the material
  std::vector<double> stress;  // MPa
  std::string source;          // as the user gave it; empty: built in
};

// Nodes of a draw bead and its restraining force.
struct Bead {
  std::vector<std::int32_t> nodes;  // from 1
  double force = 0.0;               // N/mm
};

// The press model; without it the fixed one.
struct PressSettings {
  bool chosen = false;
  TornwalzenPress press{};
  std::vector<std::int32_t> flange;  // per element 1 under the binder; empty: none marked
  std::vector<Bead> beads;
};

struct RunSettings {
  PressSettings press;
  int material = 1;  // 0, 1, 2 or 10; a curve of the user stands in for that of the number
  FlowCurve curve;
  double r = 1.0;             // mean normal anisotropy
  bool partReference = true;  // energy weighed with the target's area instead of the blank's
  double finalFactor = 1e-3, pathFactor = 1.0;  // of the gradient tolerance, at the end and before
  bool mayRepeat = true;    // fixed path: repeat a run that does not converge with a smaller pathFactor
  bool surePath = true;     // straight to the equilibrium instead of load increments
  bool patchStart = false;  // sure path: from the largest flat patch alone
  int threads = 0;          // to work on; 0: as many as the machine has cores
};

// Seconds of wall time.
struct PhaseTimes {
  double structure = 0.0;    // pattern of the global matrix
  double ordering = 0.0;     // fill-reducing order of the equations
  double symbolic = 0.0;     // layout of the factor
  double development = 0.0;  // starting blank
  double increments = 0.0;   // Newton iterations, of all increments
};

struct RunOutput {
  std::vector<std::int32_t> corners;  // three node numbers per element, counter-clockwise in the blank
  std::vector<double> RX;             // mm: u, v of node 1, of node 2, ...
  std::vector<double> startingBlank;  // mm: u, v per node as RX, of the developed part
  std::vector<double> EVAL;  // five values per element as in tornwalzen.h; NaN if no increment converged
  std::vector<TornwalzenElementStrain> strains;  // per element, between part and blank
  TornwalzenReport report{};
  TornwalzenPressResult press{};        // of the press model, else zero
  bool loadsGiven = false;              // friction, a binder, beads or free edges were asked for
  std::vector<double> contact, binder;  // MPa per element, of the press model with tools; else empty
  std::int64_t matrixEntries = 0;       // stored entries of the global matrix
  PhaseTimes times;                     // of the structure's phases: when it was set up
};

// Whether one can stand behind the blank.
enum class Worth { good, doubtful, notABlank };

// Whether a run converged, and if not, why, in words for the user; and what its blank is worth.
struct Verdict {
  bool converged = false;
  std::string reason;  // a sentence without full stop; empty if converged
  ExitStatus status = exitUnconverged;
  Worth worth = Worth::notABlank;
  std::vector<std::string> why;  // what makes it doubtful or no blank, and where; empty if good
};

// What a second start of the sure path told.
struct SecondStart {
  bool made = false, converged = false;
  bool taken = false;  // its blank is the one of the results: the lower potential
  bool agrees = false;
  double energy = 0.0, otherEnergy = 0.0;  // potentials (mm2) of the blank taken and of the other one
};

}  // namespace host
