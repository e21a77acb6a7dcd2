// Many runs side by side: one table as CSV, one page as HTML.
#pragma once

#include <string>
#include <vector>

#include "result/result_files.hpp"

namespace host {

struct OverviewCell {
  std::string key, value;
};

struct OverviewRow {
  std::string folder;                 // of its results
  std::string link;                   // its own page, relative to the overview; empty: none
  std::string verdict;                // good, doubtful, not a blank; refused, failed, not finished
  std::string status;                 // exit status; empty: not known
  std::string reason;                 // of what is not good
  std::vector<OverviewCell> options;  // that the run was given, without dashes; PART among them
  std::vector<OverviewCell> figures;  // of its summary
};

struct Overview {
  std::vector<OverviewRow> rows;
};

// By which the files are known again.
inline constexpr const char* overviewTableBeginning = "folder,verdict,exit_status,reason";
inline constexpr const char* overviewPageBeginning = "<!DOCTYPE html>\n<!-- tornwalzen collect -->";

// A line per run: folder, verdict, exit status, reason, then a column "option ..." per option and a column per figure
// that any run has, in the order in which they first appear. A cell is empty where the run has none.
void writeOverviewTable(FileWriter& file, const Overview& overview);

// A page without network or script: counts of the verdicts, and per run verdict, reason, options and the main figures,
// with a link to its own page. All text is escaped.
void writeOverviewPage(FileWriter& file, const Overview& overview);

}  // namespace host
