// What a run was made with, in words that table and page share.
#pragma once

#include <string>

#include "result/run_report.hpp"

namespace host {

// The material by its number or name, and the flow curve that stands for it.
std::string materialText(const RunReport& report);

}  // namespace host
