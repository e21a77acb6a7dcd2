// How blanks are cut from a strip of sheet: one row, or two rows of which one is turned by 180 degrees.
//
// The positions of one blank that overlap another are their no-fit polygon, the Minkowski sum of one with the negative
// of the other (R. C. Art, IBM Cambridge Scientific Center report 36-Y08, 1966). Half of the web is added around each
// blank first, so that blanks which touch leave the web between them; the web stands along both edges of the strip too.
#pragma once

#include <vector>

#include "result/smallest_rectangle.hpp"

namespace host {

struct StripLayout {
  int rows = 1;
  double angle = 0.0;        // degrees from the blank's x to the strip's length, in [0, 180)
  double pitch = 0.0;        // mm, from blank to blank of a row
  double width = 0.0;        // mm, of the strip
  double utilisation = 0.0;  // area of the blanks over that of the strip, 0..1
  // with two rows: the blank of the second row is that of the first turned by 180 degrees about the blank's origin and
  // then shifted by so much; mm, along the strip and across it to the left
  double along = 0.0, across = 0.0;
};

struct StripFigures {
  StripLayout single, paired;
};

// outline: the outer border of the blank in mm, at least three points, not crossing itself. area: of the blank without
// its holes, mm2. web: mm, >= 0. The outline is simplified outwards first, by a five-thousandth of its size or more where
// it has many corners, so that pitch and width may be larger by about a thousandth than they need to be, and never
// smaller. The angle is looked for in steps of 1 degree for one row (5 for two) and ever finer around the best. The same
// input gives the same figures.
StripFigures nestOnStrip(const std::vector<PlanePoint>& outline, double area, double web);

}  // namespace host
