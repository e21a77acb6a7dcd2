// The table of a study: a line of headings, then a row per run.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace host {

struct StudyTable {
  struct Row {
    std::int64_t line = 0;           // of the file, from 1
    std::vector<std::string> cells;  // as many as there are headings
  };
  std::vector<std::string> headings;  // without blanks around
  std::vector<Row> rows;
};

// Comma-separated values (RFC 4180), or with semicolons or tabs between the cells, whichever the first line has first.
// A cell in double quotes may hold separators, line ends and doubled quotes. Blanks around cells without quotes are
// dropped, rows without any text are passed over, missing cells at the end of a row are empty. content: of the file;
// source: its name for messages. Throws Failure: no headings, an empty or repeated heading, a row with more cells than
// headings, text behind a closing quote, a quote that does not end, no row, a NUL byte.
StudyTable readStudyTable(const std::string& content, const std::string& source);

}  // namespace host
