// A handle of tornwalzen_analysis.h with what a test asks of it.
#pragma once

#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "host_kit/parts.hpp"
#include "tornwalzen_analysis.h"

namespace extension {

using namespace host_kit;

struct DestroyAnalysis {
  void operator()(TornwalzenAnalysis* analysis) const { tornwalzen_analysis_destroy(analysis); }
};
using Handle = std::unique_ptr<TornwalzenAnalysis, DestroyAnalysis>;

inline Handle newHandle() {
  return Handle(tornwalzen_analysis_create());
}

/// Takes the part into the handle; its triangles counted from `first`.
inline int take(const Handle& handle, const HostPart& part, std::int32_t first = 1) {
  std::vector<std::int32_t> triangles = part.inzi, held;
  for (std::int32_t& node : triangles) node += first - 1;
  for (const std::int32_t free : part.arfa) held.push_back(1 - free);
  const int code = tornwalzen_analysis_set_mesh(handle.get(), part.nodes(), part.elements(),
                                                part.knots.data(), triangles.data(), first);
  return code != 0 ? code : tornwalzen_analysis_set_holds(handle.get(), held.data());
}

inline TornwalzenReport reportOf(const Handle& handle) {
  TornwalzenReport report{};
  report.size = sizeof report;
  tornwalzen_analysis_report(handle.get(), &report);
  return report;
}

/// Blank, starting blank and element table of the last run, one behind the other.
inline std::vector<double> resultsOf(const Handle& handle) {
  const std::int32_t nn = tornwalzen_analysis_nodes(handle.get()),
                     ne = tornwalzen_analysis_triangles(handle.get());
  std::vector<double> all;
  const auto add = [&](const double* values, std::int64_t count) {
    if (values != nullptr) all.insert(all.end(), values, values + count);
  };
  add(tornwalzen_analysis_blank(handle.get()), 2 * nn);
  add(tornwalzen_analysis_starting_blank(handle.get()), 2 * nn);
  add(tornwalzen_analysis_element_table(handle.get()), 5 * ne);
  return all;
}

inline bool sameBits(const std::vector<double>& a, const std::vector<double>& b) {
  return a.size() == b.size() && std::memcmp(a.data(), b.data(), sizeof(double) * a.size()) == 0;
}

}  // namespace extension
