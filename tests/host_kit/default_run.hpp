// The state behind the fixed interface, for tests and benchmarks that look inside.
#pragma once

#include "interface/default_analysis.hpp"
#include "material/material_setup.hpp"

namespace tornwalzen {

inline Analysis& run = defaultAnalysis();

/// Its flow-curve table.
inline Table<double> flowCurve() {
  return flowCurve(run);
}

/// Loads a built-in curve, or the host's in its place.
inline void materialSetup(Int selector) {
  materialSetup(run, selector);
}

/// As after loading, but for the progress handler, which a test's host may have registered already.
inline void freshState() {
  const TornwalzenProgressHandler handler = run.progress.handler;
  void* const userdata = run.progress.userdata;
  forget<LibraryState>(run);
  forget<MeshState>(run);
  forget<RunState>(run);
  run.progress.handler = handler;
  run.progress.userdata = userdata;
}

}  // namespace tornwalzen
