// The workshop's figures in the summary of a run.
#pragma once

#include <functional>
#include <nlohmann/json_fwd.hpp>
#include <string>

#include "result/run_report.hpp"

namespace host {

// Adds their keys, with units as in summaryJson.
void addShopJson(nlohmann::ordered_json& json, const RunReport& report);

// Calls row(name, value) for each line of the table.
void addShopRows(const RunReport& report,
                 const std::function<void(const std::string&, const std::string&)>& row);

}  // namespace host
