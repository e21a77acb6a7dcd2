// What the workshop gets of a run, on its page: limit zones, the limit curve, the strip.
#pragma once

#include "result/report_data.hpp"
#include "result/run_report.hpp"

namespace host {

// Adds the field of the zones and the curve where there is a limit curve; and where the blank may be drawn its figures and
// the better used of the two strips that were asked for. data: its fields of the strains stand.
void addShopToPage(const RunReport& report, ReportData& data);

}  // namespace host
