// A strip of sheet with its blanks as a picture.
#pragma once

#include <string>
#include <vector>

#include "result/nesting.hpp"
#include "result/outline.hpp"

namespace host {

// An SVG file at true size in mm: for each layout a piece of strip of about four pitches with its blanks, holes included,
// and a line of text. loops: of the blank, mm, the outer one first. title: any bytes.
std::string stripPicture(const std::vector<OutlineLoop>& loops, const std::vector<StripLayout>& layouts,
                         double web, const std::string& title);

// A layout in words, with units.
std::string stripText(const StripLayout& layout);

// The same without the rows.
std::string stripFigures(const StripLayout& layout);

// The blank's loops in the strip: of row 0 or 1, and of the k-th pitch. Along the strip is x; the blank of row 0 and
// pitch 0 is only turned.
std::vector<std::vector<PlanePoint>> inStrip(const std::vector<OutlineLoop>& loops, const StripLayout& layout,
                                             int row, int k);

}  // namespace host
