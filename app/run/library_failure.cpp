// What the library refuses; see the header.
#include "run/library_failure.hpp"

#include <string_view>

namespace host {

std::string fatalText(const TornwalzenReport& report) {
  constexpr std::string_view around = " @";  // the library ends some texts with an at sign
  const std::string_view text = report.fatal_text;
  const std::size_t first = text.find_first_not_of(around), last = text.find_last_not_of(around);
  return first == std::string_view::npos ? "" : std::string(text.substr(first, last - first + 1));
}

Failure libraryFailure(TornwalzenAnalysis* analysis, std::int32_t code, const std::string& what) {
  std::string reason;
  if (code == TORNWALZEN_SETUP_FAILED) {
    TornwalzenReport report{};
    report.size = sizeof report;
    if (tornwalzen_analysis_report(analysis, &report) == TORNWALZEN_OK) reason = fatalText(report);
  }
  if (reason.empty()) reason = tornwalzen_analysis_error_text(analysis, code, 1);
  return Failure("the library " + what + ": " + reason, exitRunFailed);
}

}  // namespace host
