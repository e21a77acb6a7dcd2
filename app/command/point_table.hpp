// Two columns of numbers in a text file.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace host {

struct PointTable {
  struct Row {
    double first = 0.0, second = 0.0;  // may be not finite: nan and inf are numbers here
    std::int64_t line = 0;             // from 1
  };
  std::string heading;  // the first line if it holds no two numbers; else empty
  std::vector<Row> rows;
};

// Columns separated by comma, semicolon, tab or blank; with semicolons the numbers may have decimal commas. Lines that
// begin with # and empty ones are passed over. source: begins messages. wanted: what a line holds, for messages. Throws
// Failure: the file cannot be read, a line (the first apart) that does not hold two numbers, no line at all.
PointTable readPointTable(const std::string& path, const std::string& source, const std::string& wanted);

// The same of a file's bytes.
PointTable pointsIn(const std::string& content, const std::string& source, const std::string& wanted);

}  // namespace host
