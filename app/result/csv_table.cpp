// Tables as comma-separated values; see the header.
#include "result/csv_table.hpp"

#include <cmath>

#include "system/text.hpp"

namespace host {

CsvColumn realColumn(const std::string& heading, const std::vector<double>& values, std::size_t stride,
                     std::size_t offset) {
  return {heading, [&values, stride, offset](std::size_t row) {
            const double value = values[stride * row + offset];
            return std::isfinite(value) ? decimal(value) : std::string();
          }};
}

std::string csvCell(const std::string& text) {
  double number;
  std::string cell = text;
  if (!cell.empty() && std::string("=+-@").find(cell[0]) != std::string::npos && !readReal(cell, number))
    cell.insert(cell.begin(), ' ');
  if (cell.find_first_of(",\"\r\n") == std::string::npos) return cell;
  std::string quoted = "\"";
  for (const char c : cell) quoted += c == '"' ? std::string("\"\"") : std::string(1, c);
  return quoted + "\"";
}

void writeCsv(FileWriter& file, const std::vector<CsvColumn>& columns, std::size_t rows) {
  std::string line;
  for (const CsvColumn& column : columns) line += (line.empty() ? "" : ",") + csvCell(column.heading);
  file.write(line + "\n");
  for (std::size_t row = 0; row < rows; ++row) {
    line.clear();
    for (std::size_t c = 0; c < columns.size(); ++c) {
      if (c > 0) line += ',';
      line += csvCell(columns[c].cell(row));
    }
    line += '\n';
    file.write(line);
  }
}

}  // namespace host
