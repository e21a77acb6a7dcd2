// What tells a right blank from a wrong one, after a run: figures and places, no verdict. They need no knowledge of how
// the blank was found.
#pragma once

#include "develop/mean_normal.hpp"
#include "develop/outline_crossings.hpp"
#include "develop/part_topology.hpp"

namespace tornwalzen {

// Sine of the slope, in the frame of the mean normal, behind which a triangle counts as undercut: 0.57 degrees, so
// that vertical walls are none.
constexpr double undercutSine = 0.01;
constexpr double largeStrain = 1.0;  // equivalent strain (dimensionless) that no sheet bears

/// What the element strains are measured against.
struct StrainCheck {
  Vector<const double> STRAIN;  // nele, equivalent strain of each triangle; length 0: not looked at
  double curveEnd = 0.0;        // last strain of the flow curve's data
};

struct BlankChecks {
  // Triangles with a blank position that is not finite or beyond largestCoordinate. Where there is one, sheet and
  // outline are not checked.
  Int notFinite = 0, firstNotFinite = 0;
  Int inverted = 0, firstInverted = 0;  // triangles of no or negative area in the blank, by exact sign

  // Smallest signed singular value of J, blank from part, and its triangle; triangles without finite area on the
  // part are left out and counted. 1 and 0 where there is no other.
  double smallestStretch = 1.0;
  Int smallestStretchTriangle = 0;
  Int withoutArea = 0, firstWithoutArea = 0;

  // Inner nodes whose blank triangles do not close exactly once: one of them is inverted, or their angles sum to more
  // than one turn. Counted in whole turns, so without rounding. Only where sheetChecked.
  Int openNodes = 0, firstOpenNode = 0;

  bool sheetChecked = false;  // the edges are clean and the blank is finite
  OutlineCheck outline;       // only where sheetChecked
  double overlappedArea =
      0.0;  // mm², covered more than once; exactly 0 where no triangle is inverted and the outline
            // neither crosses nor touches itself and is nested right. Only where sheetChecked

  double partArea = 0.0;   // mm²
  double blankArea = 0.0;  // mm², sum of signed areas
  double undercutArea =
      0.0;  // mm², of triangles whose normal has a component of −undercutSine or less along the mean
            // normal
  double undercutShare = 0.0;  // of partArea

  // Shares of partArea whose strain lies beyond the curve's data, beyond largeStrain; a strain that is not a number on
  // a triangle with area lies beyond both. 0 where no strains are given.
  double shareBeyondCurve = 0.0, shareBeyondLarge = 0.0;
  Int firstBeyondCurve = 0, firstBeyondLarge = 0;  // triangles
};

/// M: in, the part. T: in, its topology; of any code, but with triangles. F: in, its mean normal. RX: in, 2·nkno, blank
/// positions (mm), u of node n at 2n−1, v at 2n. S: in. B: out, whatever it held before. Own memory, about 40 bytes per
/// triangle; cost linear but for sorting what is outline or fold. False where there is no memory; B is then not to be
/// used.
bool checkBlank(const PartMesh& M, const PartTopology& T, const MeanNormal& F, Vector<const double> RX,
                const StrainCheck& S, BlankChecks& B);

}  // namespace tornwalzen
