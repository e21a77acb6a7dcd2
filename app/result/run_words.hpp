// What a run was made with, in words that table and page share.
#pragma once

#include <string>

#include "result/run_report.hpp"

namespace host {

// The material by its number or name, and the flow curve that stands for it.
std::string materialText(const RunReport& report);

// What acted in a run of the press model.
std::string pressText(const RunReport& report);

// What kind of an estimate the run is: a sentence with what it leaves out.
std::string scopeText(const RunReport& report);

}  // namespace host
