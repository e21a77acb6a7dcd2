// Two columns of numbers in a text file; see the header.
#include "command/point_table.hpp"

#include <string_view>

#include "system/failure.hpp"
#include "system/input_file.hpp"
#include "system/text.hpp"

namespace host {

namespace {

// The cells of a line: blanks, tabs, commas or semicolons separate; beside semicolons a comma is a decimal
// one.
std::string separatedByBlanks(std::string line) {
  const bool semicolons = line.find(';') != std::string::npos;
  for (char& c : line) {
    if (c == ';')
      c = ' ';
    else if (c == ',')
      c = semicolons ? '.' : ' ';
  }
  return line;
}

bool readRow(const std::string& line, PointTable::Row& row) {
  std::size_t position = 0;
  return readReal(nextWord(line, position), row.first) && readReal(nextWord(line, position), row.second) &&
         nextWord(line, position).empty();
}

}  // namespace

PointTable readPointTable(const std::string& path, const std::string& source, const std::string& wanted) {
  return pointsIn(readInputFile(path), source, wanted);
}

PointTable pointsIn(const std::string& content, const std::string& source, const std::string& wanted) {
  PointTable table;
  std::size_t position = 0;
  std::string_view line;
  bool headingMayCome = true;
  for (std::int64_t number = 1; nextLine(content, position, line); ++number) {
    const std::string cells = separatedByBlanks(std::string(line));
    std::size_t first = 0;
    const std::string_view word = nextWord(cells, first);
    if (word.empty() || word.front() == '#') continue;
    PointTable::Row row;
    row.line = number;
    if (readRow(cells, row))
      table.rows.push_back(row);
    else if (headingMayCome)
      table.heading = std::string(line);
    else
      throw Failure(source + ", line " + std::to_string(number) + ": wanted " + wanted + ", not \"" +
                    shown(line) + "\"");
    headingMayCome = false;
  }
  if (table.rows.empty()) throw Failure(source + ": there is no point in the file");
  return table;
}

}  // namespace host
