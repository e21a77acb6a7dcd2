// The command `tornwalzen solve`: from the mesh file to the result files.
#include "command/solve.hpp"

#include <cstdio>
#include <future>
#include <limits>
#include <optional>

#include "command/chosen_settings.hpp"
#include "command/press_choice.hpp"
#include "command/talk.hpp"
#include "mesh/mesh_check.hpp"
#include "mesh/part_file.hpp"
#include "mesh/part_unit.hpp"
#include "result/convergence_history.hpp"
#include "result/deck_writer.hpp"
#include "result/obj_writer.hpp"
#include "result/report_content.hpp"
#include "result/report_writer.hpp"
#include "result/result_files.hpp"
#include "result/result_folder.hpp"
#include "result/results.hpp"
#include "result/run_data.hpp"
#include "result/run_report.hpp"
#include "result/shop_files.hpp"
#include "result/summary.hpp"
#include "result/vtu_writer.hpp"
#include "run/hold.hpp"
#include "run/library_run.hpp"
#include "run/part_data.hpp"
#include "run/progress_view.hpp"
#include "run/run_log.hpp"
#include "run/undeveloped.hpp"
#include "run/verdict.hpp"
#include "system/background.hpp"
#include "system/failure.hpp"
#include "system/file.hpp"
#include "system/path.hpp"
#include "system/process.hpp"
#include "system/same_file.hpp"
#include "system/stopwatch.hpp"
#include "system/text.hpp"
#include "system/unit.hpp"

namespace host {

namespace {

constexpr const char* logName = "tornwalzen.log";

std::string outputFolder(const SolveOptions& options) {
  if (!options.out.empty()) return options.out;
  return pathText(pathOf(options.part).stem()) + "_blank";  // in the working folder
}

// The names of the files that the run replaces or removes; the log is not among them.
std::vector<std::string> resultNames(const SolveOptions& options) {
  std::vector<std::string> names{"blank.obj", "part.vtu", "blank.vtu", "summary.json"};
  if (options.report) names.push_back("report.html");
  for (const std::string& name : shopFileNames(options.shop.csv)) names.push_back(name);
  if (options.eben) names.push_back("eben.t51");
  if (options.ebenStart) names.push_back("eben_start.t51");
  return names;
}

// No result may replace a file that is read, whatever the links, nor the results of another part.
void checkResultPlaces(const Part& part, const SolveOptions& options, const std::string& folder) {
  std::vector<std::string> places{placeIn(folder, logName)};
  for (const std::string& name : resultNames(options)) places.push_back(placeIn(folder, name));
  std::vector<std::string> inputs{options.part,     options.curve,        options.materials,
                                  options.shop.flc, options.press.flange, holdFile(options.hold)};
  for (const std::string& bead : options.press.beads) inputs.push_back(bead.substr(0, bead.rfind(':')));
  checkOutputsSpareInputs(inputs, places, "choose another folder with --out");
  if (!options.force) checkFolderIsFree(folder, resultNames(options), part.identity);
}

void tellAboutMesh(const Part& part, const Talk& talk) {
  if (part.filePieces > 1)
    talk.say("took the largest of " + std::to_string(part.filePieces) +
             " pieces: " + std::to_string(part.elements()) + " of " + counted(part.fileElements, "triangle"));
  if (part.turned > 0)
    talk.say("turned " + counted(part.turned, "triangle") + " to the orientation of the others");
}

// A run, with the library's messages in the log and its progress on the screen. A signal ends it in order and is then
// thrown.
RunOutput runWithMessages(LibraryRun& library, const RunSettings& settings, const Talk& talk, RunLog& log,
                          ConvergenceHistory& history) {
  const bool terminal = isTerminal(standardError) && !talk.verbose;  // messages would tear the bar
  const int screen = talk.screen();
  ProgressView view(terminal, !talk.quiet);
  const ProgressRecord* last = nullptr;
  const RunListener listener{[&](const ProgressRecord& record) { view.update(*(last = &record)); },
                             [&](std::string_view line) {
                               log.take(line, screen);
                               history.take(line);
                             },
                             [] { return notedSignal() != 0; }};
  RunOutput run;
  history.restart();
  {
    const OrderlyStop orderly;
    run = library.run(settings, listener);
  }
  if (run.report.converged == 1 && last != nullptr) view.reached(*last);
  view.finish();
  if (notedSignal() != 0) throw StoppedBySignal{notedSignal()};
  return run;
}

// The run, and where it does not converge and the user left the tolerance to the program, the same with the
// intermediate increments brought closer to equilibrium. part, hold: in mm. settings: in and out, those of the last
// run; runs: out, their number. Sure path: where the blank is doubtful or the part has undercut, the better of two
// starts; second: out, what the other one told.
RunOutput runUntilConverged(const Part& part, const Hold& hold, const Talk& talk, RunLog& log,
                            ConvergenceHistory& history, RunSettings& settings, int& runs,
                            SecondStart& second) {
  LibraryRun library(part, hold);
  RunOutput run = runWithMessages(library, settings, talk, log, history);
  runs = 1;
  if (settings.surePath && secondStartMayHelp(judge(part, run), run)) {
    settings.patchStart = true;
    talk.say("a second start, from the largest flat patch alone, to compare with");
    ConvergenceHistory otherHistory;
    RunOutput other = runWithMessages(library, settings, talk, log, otherHistory);
    ++runs;
    const bool better =
        other.report.converged == 1 &&
        (run.report.converged == 0 || isNearer(other, run) ||
         (judge(part, run).worth == Worth::notABlank && judge(part, other).worth != Worth::notABlank));
    if (better) {
      std::swap(run, other);
      std::swap(history, otherHistory);
    }
    settings.patchStart = better;
    second = compareStarts(run, other, better);
  }
  for (const double factor : {0.1, 0.01}) {
    if (!settings.mayRepeat || !tighterPathMayHelp(part, run)) break;
    settings.pathFactor = factor;
    talk.say("not converged: " + judge(part, run).reason +
             "\nrepeating with the tolerance of the increments on the way times " + decimal(factor));
    run = runWithMessages(library, settings, talk, log, history);
    ++runs;
  }
  return run;
}

void writeResults(const RunReport& report, const ConvergenceHistory& history, const SolveOptions& options) {
  // The page takes the longest: where there are threads, it is made while the others are written.
  const bool threads = options.threads != 1;
  std::future<std::string> page;
  if (options.report)
    page = inBackgroundIf(threads, [&] { return reportPage(reportDataOf(report, history), threads); });
  ResultFiles files(report.folder);
  files.add("blank.obj", [&](FileWriter& file) { writeBlankObj(file, report); });
  files.add("part.vtu", [&](FileWriter& file) { writeVtu(file, report, Shape::part, options.compress); });
  files.add("blank.vtu", [&](FileWriter& file) { writeVtu(file, report, Shape::blank, options.compress); });
  addShopFiles(files, report, options.shop.csv);
  files.add("summary.json", [&](FileWriter& file) { file.write(summaryJson(report)); });
  if (options.report) files.add("report.html", [&](FileWriter& file) { file.write(page.get()); });
  if (options.eben)
    files.add("eben.t51", [&](FileWriter& file) { writeFlatBlank(file, report.run.corners, report.run.RX); });
  if (options.ebenStart)
    files.add("eben_start.t51",
              [&](FileWriter& file) { writeFlatBlank(file, report.run.corners, report.run.startingBlank); });
  files.putIntoPlace();
}

void tellAboutMaterial(const SolveOptions& options, const ShopOptions& shop, const Material& material,
                       double measured, const Talk& talk) {
  for (const std::string& remark : materialRemarks(options, material)) talk.say(remark);
  const std::string doubt = thicknessDoubt(shop, measured);
  if (!doubt.empty()) talk.say("warning: " + doubt);
}

// part: in mm. results: in a unit of so many millimetres.
void finishShop(ShopReport& shop, const Part& part, const RunOutput& run, const Results& results,
                double millimetres) {
  constexpr double none = std::numeric_limits<double>::quiet_NaN();
  shop.major.reserve(run.strains.size());
  shop.minor.reserve(run.strains.size());
  for (const TornwalzenElementStrain& strain : run.strains) {
    shop.major.push_back(results.developed ? strain.major : none);
    shop.minor.push_back(results.developed ? strain.minor : none);
  }
  std::vector<double> area;
  area.reserve(results.partArea.size());
  for (const double inUnit : results.partArea) area.push_back(inUnit * millimetres * millimetres);
  addBlank(shop, {run.corners, run.RX, part.points, area, part.size});
}

// Where the wall time of a command went (s).
void tellTimes(double reading, double run, double results, double writing, const Talk& talk) {
  if (!talk.verbose) return;
  const auto seconds = [](double time) { return fixedDecimal(time, 3) + " s"; };
  talk.say("wall time: reading and checking " + seconds(reading) + ", the run " + seconds(run) +
           ", its results " + seconds(results) + ", writing " + seconds(writing));
}

}  // namespace

int solve(const SolveOptions& options) {
  const Talk talk{options.quiet, options.json, options.verbose};
  Stopwatch watch;
  const Material material = chosenMaterial(options);
  RunSettings settings = settingsOf(options, material, std::nullopt);
  ShopOptions shopOptions = options.shop;
  shopOptions.thickness = sheetThickness(options.press.thickness);
  checkShopOptions(shopOptions);
  const Unit unit = unitOf(options.unit);
  ReadOptions readOptions = options.reading;
  readOptions.threads = options.threads != 1;
  const Part part = readPart(options.part, readOptions, options.largest,
                             [&](const std::string& sentence) { talk.say(sentence); });
  const double reading = watch.lap();
  tellAboutMesh(part, talk);
  const double measured = part.thickness * unit.millimetres;  // 0: the file holds no thickness
  takeThickness(options, material, measured, settings);
  readPressMarks(options.press, part, settings.press);
  ShopReport shop = shopBeforeRun(shopOptions, material, measured);
  tellAboutMaterial(options, shopOptions, material, measured, talk);
  if (options.eben || options.ebenStart) checkFlatBlankFits(part.file, part.nodes(), part.elements());
  const std::string rule = holdRule(part, options.hold);
  const Hold hold = holdUnknowns(part, rule);

  const std::string warning = sizeWarning(part, unit);
  if (!warning.empty()) talk.say("warning: " + warning);
  const std::string folder = outputFolder(options);
  checkResultPlaces(part, options, folder);
  makeFolder(folder);
  RunLog log(placeIn(folder, logName));
  ConvergenceHistory history;
  int runs;
  SecondStart second;
  const RunOutput run =
      runUntilConverged(inMillimetres(part, unit), hold, talk, log, history, settings, runs, second);
  const double running = watch.lap();
  Verdict verdict = judge(part, run);
  noteSecondStart(second, verdict);
  if (run.report.reason == TORNWALZEN_NOT_DEVELOPED)
    verdict.reason = whyNotDeveloped(part, hold, run, unit.millimetres);
  if (!blankIsFinite(run))
    throw Failure("the run gave no usable blank: " + verdict.reason + "; no result file was written",
                  exitRunFailed);

  const PartData data = partData(part);
  const Results results = computeResults(data, run, unit);
  finishShop(shop, inMillimetres(part, unit), run, results, unit.millimetres);
  const RunReport report{data, hold, run, results, verdict, settings, runs, second, unit, shop, rule, folder};
  const std::string noDrawing = whyNoDrawing(report);
  if (!noDrawing.empty()) talk.say("warning: no drawing of the blank was written: " + noDrawing);
  checkResultPlaces(part, options, folder);  // another run may have filled the folder meanwhile
  const double resulting = watch.lap();
  writeResults(report, history, options);
  tellTimes(reading, running, resulting, watch.lap(), talk);
  talk.result(summaryTable(report), talk.json ? summaryJson(report) : "");
  if (!log.problem().empty()) throw Failure(log.problem());
  return verdict.status;
}

}  // namespace host
