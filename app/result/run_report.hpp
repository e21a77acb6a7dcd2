// All that a run leaves for its result files and the screen.
#pragma once

#include <string>

#include "result/results.hpp"
#include "result/run_data.hpp"
#include "result/shop_report.hpp"
#include "system/unit.hpp"

namespace host {

struct RunReport {
  const PartData& part;
  const Hold& hold;
  const RunOutput& run;
  const Results& results;
  const Verdict& verdict;
  const RunSettings& settings;  // of the last run
  int runs;                     // runs made until one converged, or to the last
  const SecondStart& second;    // of the sure path
  const Unit& unit;             // of part, blank and results
  const ShopReport& shop;
  std::string holdRule;  // as the user gave it
  std::string folder;    // of the result files
};

}  // namespace host
