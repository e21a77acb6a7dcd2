// Tables as comma-separated values (RFC 4180, lines end with LF): a line of headings with units, a line per row.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "result/result_files.hpp"

namespace host {

struct CsvColumn {
  std::string heading;                           // with the unit
  std::function<std::string(std::size_t)> cell;  // of a row, from 0
};

// Shortest decimals that read back to the same bits; an empty cell where the value is not finite.
CsvColumn realColumn(const std::string& heading, const std::vector<double>& values, std::size_t stride = 1,
                     std::size_t offset = 0);

template <class Integer>
CsvColumn integerColumn(const std::string& heading, const std::vector<Integer>& values,
                        std::size_t stride = 1, std::size_t offset = 0) {
  return {heading, [&values, stride, offset](std::size_t row) {
            return std::to_string(values[stride * row + offset]);
          }};
}

// The columns refer to their values, which must live as long.
void writeCsv(FileWriter& file, const std::vector<CsvColumn>& columns, std::size_t rows);

// A cell's text: in quotes where it holds a separator, a quote or a line end. A text that a spreadsheet would take for
// a formula (= + - @ first) gets a blank in front, numbers apart.
std::string csvCell(const std::string& text);

}  // namespace host
