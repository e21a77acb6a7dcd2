// The files for the workshop: drawings and tables.
#pragma once

#include <string>
#include <vector>

#include "result/drawing.hpp"
#include "result/result_files.hpp"
#include "result/run_report.hpp"

namespace host {

// What a run may write or remove: blank.dxf, blank.svg, fld.svg, strip.svg; with `tables` triangles.csv and nodes.csv.
std::vector<std::string> shopFileNames(bool tables);

// Adds the drawings, with a limit curve the diagram, with a strip its picture; and the tables. Of the drawings those of an
// earlier run go, whether there are new ones or not: a blank that must not be cut has none.
void addShopFiles(ResultFiles& files, const RunReport& report, bool tables);

// Why the blank must not get to whoever cuts it, a sentence without full stop: no blank, not converged, not a blank,
// folded over, an outline that crosses itself. Empty: it may.
std::string whyNoDrawing(const RunReport& report);

// Where the part ends at the planes of symmetry that it is held at, what is drawn is a half or a quarter: a sentence
// without full stop that says so. Empty: the whole.
std::string partOfBlank(const RunReport& report);

// Where a strip is wanted, why there is none. Empty: there is one.
std::string whyNoStrip(const RunReport& report);

// The blank with its notes; what makes it doubtful stands first, and that it is a part of one.
Drawing drawingOf(const RunReport& report);

}  // namespace host
