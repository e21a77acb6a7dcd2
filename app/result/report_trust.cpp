// What a run's result is worth; see the header.
#include "result/report_trust.hpp"

#include <algorithm>
#include <cstdio>

#include "system/text.hpp"

namespace host {

namespace {

constexpr double sharpAngle = 5.0;  // degrees, as in report_content.cpp

// Two significant digits as a power of ten: 7.4 times 10 to the -8.
std::string rough(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%.1e", value);
  const std::string digits(text);
  const std::size_t mark = digits.find('e');
  if (mark == std::string::npos) return digits;
  static const char* const raised[] = {"\u2070", "\u00b9", "\u00b2", "\u00b3", "\u2074",
                                       "\u2075", "\u2076", "\u2077", "\u2078", "\u2079"};
  std::string power = digits[mark + 1] == '-' ? "\u207b" : "";
  for (const char digit : std::to_string(std::stoi(digits.substr(mark + 2)))) power += raised[digit - '0'];
  return digits.substr(0, mark) + "\u00a0\u00d7\u00a010" + power;
}

std::string capital(std::string sentence) {
  if (!sentence.empty() && sentence[0] >= 'a' && sentence[0] <= 'z')
    sentence[0] = static_cast<char>(sentence[0] - 32);
  return sentence;
}

void addEquilibrium(const RunReport& report, ReportTrust& trust) {
  const TornwalzenReport& run = report.run.report;
  const auto add = [&](ReportLevel level, const std::string& text) {
    trust.findings.push_back({level, text});
  };
  if (!report.verdict.converged) {
    add(ReportLevel::bad, capital(report.verdict.reason) + ".");
    return;
  }
  add(ReportLevel::good, "Equilibrium: the largest gradient, " + rough(run.last_gradient) +
                             "\u00a0mm, is within its tolerance of " + rough(run.gradient_limit) +
                             "\u00a0mm.");
  if (run.accepted_unconverged > 0)
    add(ReportLevel::caution,
        counted(run.accepted_unconverged, "increment") +
            " on the way did not converge, so this may be another equilibrium than the sheet's; "
            "compare with a run of tighter --tolerance or a finer mesh.");
  if (run.negative_pivots > 0)
    add(ReportLevel::caution, "The last tangent had " + counted(run.negative_pivots, "negative pivot") +
                                  ": the energy may be no minimum there.");
}

void addSheet(const RunReport& report, ReportTrust& trust) {
  const Results& results = report.results;
  const auto add = [&](ReportLevel level, const std::string& text) {
    trust.findings.push_back({level, text});
  };
  if (results.folded > 0)
    add(ReportLevel::bad, counted(results.folded, "triangle") + " of the blank " +
                              (results.folded == 1 ? "is" : "are") + " folded over: no sheet can be cut so.");
  else
    add(ReportLevel::good, "Every triangle lies the right way up in the blank.");
  if (report.run.report.beyond_curve == 1)
    add(ReportLevel::caution,
        "The largest equivalent strain, " + fixedDecimal(report.run.report.largest_strain, 3) +
            ", lies beyond the data of the flow curve, which goes on along its last slope.");
  else
    add(ReportLevel::good, "All strains lie within the data of the flow curve.");
}

void addMesh(const RunReport& report, ReportTrust& trust) {
  const std::vector<double>& angles = report.results.smallestAngle;
  const auto sharp =
      std::count_if(angles.begin(), angles.end(), [](double angle) { return angle < sharpAngle; });
  if (sharp > 0)
    trust.findings.push_back(
        {ReportLevel::caution, counted(sharp, "triangle") +
                                   " of the mesh with a corner below 5 degrees: strains there "
                                   "hang on the last digits of the nodes."});
}

}  // namespace

ReportTrust trustOf(const RunReport& report) {
  ReportTrust trust;
  addEquilibrium(report, trust);
  if (report.results.developed) addSheet(report, trust);
  addMesh(report, trust);
  for (const ReportFinding& finding : trust.findings) trust.level = std::max(trust.level, finding.level);
  if (!report.results.developed)
    trust.headline = "There is no blank.";
  else if (!report.verdict.converged)
    trust.headline = "Not converged: do not cut from this blank.";
  else if (trust.level == ReportLevel::bad)
    trust.headline = "Converged, but to no sheet.";
  else if (trust.level == ReportLevel::caution)
    trust.headline = "Converged, with points to look at.";
  else
    trust.headline = "Converged: blank and part are in equilibrium.";
  trust.scope =
      "A one-step estimate by deformation theory: no friction, no blank holder, no bending, no springback, "
      "no history of "
      "the forming.";
  return trust;
}

}  // namespace host
