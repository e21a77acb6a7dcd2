// What a run's result is worth; see the header.
#include "result/report_trust.hpp"

#include <algorithm>
#include <cstdio>

#include "result/run_words.hpp"
#include "system/text.hpp"

namespace host {

namespace {

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

// What speaks for the blank or against it, in the order of its weight.
class Findings {
 public:
  explicit Findings(ReportTrust& trust) : trust_(trust) {}
  void add(ReportLevel level, const std::string& text) {
    trust_.findings.push_back({level, capital(text) + "."});
  }

 private:
  ReportTrust& trust_;
};

std::string percent(double share) {
  return fixedDecimal(100.0 * share, share < 1e-3 ? 3 : 1) + "\u00a0%";
}

void addEquilibrium(const RunReport& report, Findings& findings) {
  const TornwalzenReport& run = report.run.report;
  if (run.newton_iterations == 0)
    findings.add(ReportLevel::good, "equilibrium: the start is the blank, nothing is left to iterate");
  else
    findings.add(ReportLevel::good, "equilibrium: the largest gradient, " + rough(run.last_gradient) +
                                        "\u00a0mm, is within its tolerance of " + rough(run.gradient_limit) +
                                        "\u00a0mm");
  for (const std::string& why : report.verdict.why)
    findings.add(report.verdict.worth == Worth::notABlank ? ReportLevel::bad : ReportLevel::caution, why);
  if (run.minimum_certified == 1)
    findings.add(ReportLevel::good, "the tangent there is positive definite: the energy has a minimum");
}

void addSheet(const RunReport& report, Findings& findings) {
  const TornwalzenReport& run = report.run.report;
  if (report.verdict.worth != Worth::notABlank && run.sheet_checked == 1)
    findings.add(ReportLevel::good,
                 "no triangle is turned over, the outline crosses itself nowhere, nothing lies twofold");
  else if (report.results.folded == 0)
    findings.add(ReportLevel::good, "no triangle is turned over");
  if (report.second.made && report.second.agrees)
    findings.add(ReportLevel::good, "a second start ends in the same blank");
  else if (report.second.made && !report.second.converged)
    findings.add(ReportLevel::note, "a second start, to compare with, did not converge");
}

void addNotes(const RunReport& report, Findings& findings) {
  const TornwalzenReport& run = report.run.report;
  if (report.results.developed && run.beyond_curve == 1)
    findings.add(ReportLevel::note,
                 "the largest equivalent strain, " + fixedDecimal(run.largest_strain, 3) +
                     ", lies beyond the data of the flow curve, which goes on along its last slope" +
                     (run.checked == 1 ? "; " + percent(run.share_beyond_curve) + " of the area do" : ""));
  if (run.checked == 1 && run.undercut_share > 0.0)
    findings.add(ReportLevel::note, percent(run.undercut_share) +
                                        " of the part's area are undercut, seen along its "
                                        "mean normal");
  const std::vector<double>& angles = report.results.smallestAngle;
  const auto sharp =
      std::count_if(angles.begin(), angles.end(), [](double angle) { return angle < sharpCorner; });
  if (sharp > 0)
    findings.add(ReportLevel::note, counted(sharp, "triangle") +
                                        " of the mesh with a corner below 5 degrees: strains "
                                        "there hang on the last digits of the nodes");
}

std::string headline(const RunReport& report) {
  if (!report.results.developed) return "There is no blank.";
  if (!report.verdict.converged) return "Not converged: do not cut from this.";
  if (report.verdict.worth == Worth::notABlank) return "Not a blank: no sheet can lie so.";
  if (report.verdict.worth == Worth::doubtful) return "Doubtful: look at this first.";
  return "Good: blank and part are in equilibrium.";
}

}  // namespace

ReportTrust trustOf(const RunReport& report) {
  ReportTrust trust;
  const Worth worth = report.verdict.worth;
  trust.level = worth == Worth::good       ? ReportLevel::good
                : worth == Worth::doubtful ? ReportLevel::caution
                                           : ReportLevel::bad;
  trust.headline = headline(report);
  Findings findings(trust);
  if (report.verdict.converged)
    addEquilibrium(report, findings);
  else
    findings.add(ReportLevel::bad, report.verdict.reason);
  if (report.results.developed) addSheet(report, findings);
  addNotes(report, findings);
  trust.scope = scopeText(report);
  return trust;
}

}  // namespace host
