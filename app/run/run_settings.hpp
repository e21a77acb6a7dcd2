// Sets what a run of the library is made with beside the part: material, anisotropy, reference of the energy,
// tolerances, threads.
#pragma once

#include "result/run_data.hpp"
#include "tornwalzen_analysis.h"

namespace host {

// Sets what was chosen. Throws Failure with the library's own words where it refuses.
void applySettings(const RunSettings& settings, TornwalzenAnalysis* analysis);

// Sets what of the press lies on the mesh, which has been taken. Throws Failure likewise.
void applyMarks(const PressSettings& press, TornwalzenAnalysis* analysis);

// Starts the threads that were chosen. Throws Failure where those that the user asked for cannot be had; where the number
// was left to the program one thread then does the work.
void applyThreads(const RunSettings& settings, TornwalzenAnalysis* analysis);

// Throws Failure as applySettings would; nothing else happens.
void checkSettings(const RunSettings& settings);

}  // namespace host
