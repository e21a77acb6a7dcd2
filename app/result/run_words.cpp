// What a run was made with, in words; see the header.
#include "result/run_words.hpp"

namespace host {

std::string materialText(const RunReport& report) {
  const std::string number = std::to_string(report.settings.material);
  const std::string& source = report.settings.curve.source;
  const std::string& name = report.shop.material.name;
  if (name.empty()) return number + (source.empty() ? "" : " as " + source);
  if (source.empty()) return name + " with built-in curve " + number;
  const std::string own = "--material ";  // the curve is that of the material itself
  return source.starts_with(own) ? source.substr(own.size()) : name + " with " + source;
}

}  // namespace host
