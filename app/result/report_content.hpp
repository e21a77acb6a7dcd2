// What a run puts on its page: fields, figures, and the verdict in words.
#pragma once

#include "result/convergence_history.hpp"
#include "result/report_data.hpp"
#include "result/run_report.hpp"

namespace host {

// A run that came to no blank has no strains; its page shows what the development left. Strip and limit curve are there
// where the run has them.
ReportData reportDataOf(const RunReport& report, const ConvergenceHistory& history);

}  // namespace host
