// What the user says about the files for the workshop.
#pragma once

#include <string>

#include "result/shop_report.hpp"

namespace host {

struct ShopOptions {
  double thickness = 0.0;      // of the sheet, mm; 0: not given; see sheetThickness
  std::string flc;             // limit curve: file, or keeler; empty: the formula where it holds
  double n = 0.0;              // hardening exponent for that formula; 0: that of the material
  double dxfTolerance = 0.05;  // mm
  std::string dxf = "2000";    // release: 2000 or 12
  double web = -1.0;           // between blanks in a strip, mm; negative: no strip is wanted
  bool square = false;         // stand the drawing into its smallest rectangle
  bool bendLines = false;      // with the borders of the bent zones
  bool csv = false;            // tables of triangles and nodes
};

// The thickness in mm that --thickness says; 0 for an empty text. Throws Failure: no number from 0.01 to 100.
double sheetThickness(const std::string& text);

// Throws Failure where a number is not finite; the rest was checked when the command line was read.
void checkShopOptions(const ShopOptions& options);

// What is known for the workshop before the run, files of the user read. measured: thickness in mm that the part's file
// holds, 0 for none; it is taken where the user gives none. Throws Failure as chosenLimit does.
ShopReport shopBeforeRun(const ShopOptions& options, const Material& material, double measured);

// A sentence where the user's thickness differs from the measured one by more than a twentieth, else empty.
std::string thicknessDoubt(const ShopOptions& options, double measured);

}  // namespace host
