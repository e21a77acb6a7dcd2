// The summary of a run: a file for programs, a table for people. Both carry the units.
#ifndef TORNWALZEN_APP_SUMMARY_HPP
#define TORNWALZEN_APP_SUMMARY_HPP

#include <string>

#include "result/run_report.hpp"

namespace host {

// summary.json: the unit of a quantity ends its key (_mm, _mm2, _s, _deg); keys without one are dimensionless
// or counts. A quantity that the run did not give is null.
std::string summaryJson(const RunReport& report);

// The table that ends the run on the screen.
std::string summaryTable(const RunReport& report);

}  // namespace host

#endif
