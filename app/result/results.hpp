// The results of a run per element and per node, and what stands in the final table.
//
// Thickness follows from the areas, since plastic flow keeps the volume: t / t0 = A_blank / A_part, and the
// logarithmic thickness strain is ln(A_blank / A_part), negative where the sheet became thinner. Both are
// dimensionless.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "result/run_data.hpp"
#include "result/smallest_rectangle.hpp"
#include "system/unit.hpp"

namespace host {

struct Results {
  bool developed =
      true;  // false: the run came to no blank; then there are no strains, and the blank below is
             // what the development left
  // per element
  std::vector<double> partArea;         // square of the part's unit
  std::vector<double> blankArea;        // likewise; zero or negative: the element is folded over in the blank
  std::vector<double> thicknessRatio;   // t / t0; NaN for a folded element and without a blank
  std::vector<double> thicknessStrain;  // ln(t / t0); likewise
  std::vector<double> minusTraceE;      // -(E11 + E22) of the library, dimensionless
  std::vector<double> density;          // of the library's potential, dimensionless
  std::vector<double> smallestAngle;    // degrees, of the part's triangle
  // per node, all nodes of the file
  std::vector<double> blankPoints;          // part's unit: x, y, 0
  std::vector<double> displacement;         // part's unit: part minus blank, x, y, z
  std::vector<double> nodeThicknessStrain;  // mean over the triangles around the node, weighed by part area
  // totals over the nodes in triangles
  double partAreaTotal = 0.0, blankAreaTotal = 0.0;  // square of the part's unit
  double blankSizeX = 0.0, blankSizeY = 0.0;  // part's unit, sides of the box along x and y around the blank
  Rectangle blankRectangle;                   // part's unit, the smallest around the blank at any angle
  std::int64_t thinnest = 0, thickest = 0;    // element numbers from 1, 0 if there is none
  std::int64_t folded = 0;                    // elements with no positive area in the blank
};

// part: in the user's unit. run: in mm.
Results computeResults(const PartData& part, const RunOutput& run, const Unit& unit);

// Whether every blank position is a finite number.
bool blankIsFinite(const RunOutput& run);

}  // namespace host
