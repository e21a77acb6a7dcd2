// What a run's result is worth, in words.
#ifndef TORNWALZEN_APP_REPORT_TRUST_HPP
#define TORNWALZEN_APP_REPORT_TRUST_HPP

#include "result/report_data.hpp"
#include "result/run_report.hpp"

namespace host {

// Bad where there is no equilibrium or no sheet can lie so; with caution where something speaks against the figures.
ReportTrust trustOf(const RunReport& report);

}  // namespace host

#endif
