// Packs the mesh of a report and its fields into as few bytes as a page can unpack by itself.
//
// Positions become whole numbers of steps of 1/65535 of the longest side, values whole numbers of a decimal step of
// at most a thousandth of their range: these are the digits that the page shows. Nodes run along the Morton curve
// (G. M. Morton, IBM 1966) of their place on the part and triangles by their first node, or both in the file's order,
// whichever has less entropy by byte: meshers mostly number well. What is stored are the differences from one to the
// next as byte planes (byte_planes.hpp), all deflated.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "result/report_data.hpp"

namespace host {

// Of each field: value = 10^power * the whole number.
struct PackedField {
  int power = 0;
  std::int64_t none = 0;  // triangles without a value
  double largest = 0.0;   // of the finite values, by magnitude
  std::vector<KeyTerm>
      key;  // as given, its factors for the whole numbers of the fields instead of their values
};

struct PackedMesh {
  std::int64_t nodes = 0, triangles = 0;
  std::array<double, 3> partOrigin{};   // the report's unit
  std::array<double, 2> blankOrigin{};  // likewise
  double partStep = 1.0, blankStep = 1.0;
  std::vector<PackedField> fields;
  std::vector<int> fieldOrder;  // in which the fields are stored: those without a key first
  // Bytes per number of each stream: x, y, z on the part and x, y in the blank per node; first corner, second less
  // first, third less second, and number per triangle; per field the triangles without value, and the values.
  std::vector<int> widths;
  std::string bytes;  // the streams one after the other as one zlib stream (RFC 1950)
};

// Throws Failure where a count does not fit the triangles, a corner is no node, a value is no class of
// its field, a key refers to what is not stored
// before it, a coordinate is not finite, or memory runs out. Triangles without number count from 1. threads: where they
// are wanted, more than one at a time; the bytes are the same.
PackedMesh packMesh(const ReportData& report, bool threads = false);

// The largest power of ten that divides the values' range (of the finite ones) into a thousand or more steps, and
// is no finer than a millionth of the largest value or so. 0 for classes and where all values are zero.
PackedField stepsOf(const ReportField& field);

}  // namespace host
