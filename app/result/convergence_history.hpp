// How a run converged, read from the library's messages as they come.
#pragma once

#include <string_view>
#include <vector>

#include "result/report_data.hpp"

namespace host {

class ConvergenceHistory {
 public:
  // One message line. Others than those of increments and iterations are passed over. Throws nothing: a line for which
  // there is no memory is passed over too.
  void take(std::string_view line) noexcept;
  // A run begins anew: what was taken is forgotten.
  void restart() { increments_.clear(); }

  const std::vector<ReportIncrement>& increments() const { return increments_; }

 private:
  void read(std::string_view line);
  std::vector<ReportIncrement> increments_;
};

}  // namespace host
