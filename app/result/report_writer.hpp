// Writes report.html: the page of app/report with the data of one run in it. One file, which needs no network.
#pragma once

#include <string>

#include "result/report_data.hpp"

namespace host {

struct PackedMesh;

// The data but the mesh as JSON, fit to stand in an HTML script element: no "<" in it. Text that is not UTF-8 gets
// replacement characters, numbers that are not finite become null.
std::string reportJson(const ReportData& report, const PackedMesh& mesh);

// The whole page. Throws Failure, and works in threads, as packMesh does (report_pack.hpp).
std::string reportPage(const ReportData& report, bool threads = false);

}  // namespace host
