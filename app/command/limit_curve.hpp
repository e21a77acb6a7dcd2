// The limit curve of the forming-limit diagram: the user's, or the formula where it holds.
#pragma once

#include <optional>
#include <string>

#include "command/shop_options.hpp"
#include "result/forming_limit.hpp"
#include "result/material.hpp"

namespace host {

struct ChosenLimit {
  std::optional<LimitCurve> curve;
  std::string why;      // without a curve: the reason, for the table
  double margin = 0.0;  // percent of engineering strain: 8 for aluminium, 10 else
};

// A text file of two columns, minor and major strain, separated as in flow curves. A first line of headings that holds
// "%" or "percent" makes them percent of engineering strain; else they are logarithmic. Minor strains ascend strictly.
// Throws Failure with file and line.
LimitCurve readLimitCurve(const std::string& path);

// The same of a file's bytes; path: for messages.
LimitCurve limitCurveIn(const std::string& content, const std::string& path);

// The file of --flc; or with --flc keeler, and without --flc where all is known, the formula for mild steels. A formula
// that is asked for and does not hold throws Failure. thickness: mm, 0: not known.
ChosenLimit chosenLimit(const ShopOptions& options, const Material& material, double thickness);

}  // namespace host
