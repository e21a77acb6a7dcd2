// Writes pages for the browser tests into a folder: full.html with everything that a page can show, bare.html with a
// mesh alone, large.html and shuffled.html with 200,000 triangles; and full.json with the values that full.html must
// show. usage: report_pages FOLDER
#include <cstdio>
#include <fstream>
#include <limits>
#include <nlohmann/json.hpp>

#include "app/result/sample_report.hpp"
#include "result/report_pack.hpp"
#include "result/report_writer.hpp"
#include "result/result_files.hpp"
#include "system/failure.hpp"

using namespace host;

namespace {

const char* const evil = "dome</script><script>hacked=1</script><b>.obj";

ReportData fullReport() {
  ReportData report = sampleReport(40);
  report.part = evil;
  report.notes = {"3200 triangles", evil};
  report.fields[0].values[5] = std::numeric_limits<double>::quiet_NaN();
  report.figures = {{"fits into", evil}};
  report.settings = {{"material", evil}};
  report.trust = {ReportLevel::caution,
                  evil,
                  {{ReportLevel::good, "fine"}, {ReportLevel::caution, evil}, {ReportLevel::bad, "no"}},
                  evil};
  report.places = {{"steepest", 1600}};
  report.outline = {{{{-50, -50}, {50, -50}, {50, 50}, {-50, 50}}, {}}, 0.0, {{50, 50}}};
  for (int k = 0; k < 12; ++k)
    report.outline.loops[1].push_back(
        {10 * std::cos(k * 0.5235987755982988), -10 * std::sin(k * 0.5235987755982988)});
  report.convergence = {{{1, 0.4, true, {1.0, 2.0, 1.5}, {1.0, 0.5, 0.0}},
                         {1, 0.2, false, {0.3, 1e-3}, {1.0, 1.0}},
                         {2, 1.0, false, {0.5, 1e-2, 1e-7}, {1.0, 1.0, 1.0}}},
                        1e-4};
  report.limits = {{{-0.3, 0.5}, {0.0, 0.25}, {0.25, 0.4}}, 10.0, evil};
  report.strip = {110.0,
                  104.0,
                  {{0.0, 0.0, 55.0}, {180.0, 104.0, 55.0}, {0.0, 208.0, 55.0}},
                  {{"utilisation", "85.1 %"}}};
  return report;
}

void write(const std::string& folder, const std::string& name, const ReportData& report) {
  std::remove((folder + "/" + name).c_str());
  ResultFiles files(folder);
  files.add(name, [&](FileWriter& file) { file.write(reportPage(report)); });
  files.putIntoPlace();
}

nlohmann::json expected(const ReportData& report) {
  nlohmann::json fields = nlohmann::json::array();
  for (const ReportField& field : report.fields)
    fields.push_back({{"name", field.name},
                      {"unit", field.unit},
                      {"power", stepsOf(field).power},
                      {"values", field.values}});
  return {{"fields", fields}, {"first", report.number[0]}, {"part", report.part}};
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  try {
    const std::string folder = argv[1];
    makeFolder(folder);
    const ReportData full = fullReport();
    write(folder, "full.html", full);
    std::ofstream(folder + "/full.json") << expected(full);
    ReportData bare = sampleReport(4);
    bare.fields.clear();
    bare.majorField = bare.minorField = -1;
    write(folder, "bare.html", bare);
    const ReportData large = sampleReport(317);  // 200,978 triangles
    write(folder, "large.html", large);
    write(folder, "shuffled.html", shuffledReport(large));
  } catch (const Failure& failure) {
    std::fprintf(stderr, "%s\n", failure.what());
    return 1;
  }
  return 0;
}
