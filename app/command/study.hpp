// The command `tornwalzen study`: from a table to one command line per row.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "command/study_arguments.hpp"
#include "command/study_table.hpp"

namespace host {

struct StudyRow {
  std::int64_t line = 0;           // of the table's file
  std::string part, folder;        // mesh file; folder of the results
  std::vector<std::string> words;  // arguments of solve
};

// The rows as runs. Columns: PART, the mesh file; name, the row's folder below `folder` (default: the row's number and
// the part's name); and options of solve, with or without their dashes. An empty cell leaves an option out; a flag is
// turned on by yes, 1 or x, and off by no or 0. source: of the table, for messages. Throws Failure with line and column:
// no PART, an unknown option or one that the study sets itself, a name that is no folder's or occurs twice, a cell with
// a line end, words that solve does not take.
std::vector<StudyRow> studyRows(const StudyTable& table, const std::string& source,
                                const std::string& folder);

// Whether the row has its results already: the run ended, with these words, and the part has the bytes it had then.
bool isComplete(const StudyRow& row);

// A word for a shell, in quotes where it needs them.
std::string shellWord(const std::string& word);

// Prints one command line per row that is not complete (all with --again), or with --slurm a script for an array of jobs
// with these lines. Returns the exit status; throws Failure as studyRows.
int study(const StudyOptions& options);

}  // namespace host
