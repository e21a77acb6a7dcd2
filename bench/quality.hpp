// Figures that hang on the method alone, not on the machine: a change of them is a change of what the system
// does.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace bench {

struct QualityRow {
  std::string subject, quantity;
  std::int64_t value;
};

/// What there is to measure: meshes for the ordering ("jittered-10k"), samples and, where the folder `parts`
/// holds them, real parts for whole runs ("sample square_cup", "part scan_tray").
std::vector<std::string> qualitySubjects(const std::string& parts);

/// Measures one of them. Of an ordering: entries of L and operations before supernodes are merged, entries
/// stored. Of a run with curve 1 (jittered meshes of 5,000 triangles for the samples): increments, Newton
/// iterations, residual passes (each halving of the line search is one), iterations and evaluations of the
/// unfolding, and whether it converged.
std::vector<QualityRow> quality(const std::string& subject, const std::string& parts);

/// The rows as they stand in quality.csv: "subject,quantity,value".
std::string csvLine(const QualityRow& row);

}  // namespace bench
