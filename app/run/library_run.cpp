// Runs of the library on one part; see the header.
#include "run/library_run.hpp"

#include <cstdint>
#include <new>
#include <vector>

#include "run/library_failure.hpp"
#include "run/run_settings.hpp"
#include "system/failure.hpp"
#include "system/text.hpp"
#include "tornwalzen_analysis.h"

namespace host {

namespace {

constexpr std::int32_t firstNode = 1;  // the part counts its nodes from 1

// Nothing may be thrown through the library: the listener's functions do not.
struct Listening {
  const RunListener& listener;
  ProgressRecord& progress;

  static std::int32_t step(void* self, const TornwalzenStep* step) {
    auto& to = *static_cast<Listening*>(self);
    to.progress.take(*step);
    to.listener.progress(to.progress);
    return to.listener.stop() ? 1 : 0;
  }
  static void message(void* self, const char* line) { static_cast<Listening*>(self)->listener.message(line); }
};

// While it lives the analysis reports to the listener.
class Registration {
 public:
  Registration(TornwalzenAnalysis* analysis, Listening& listening) : analysis_(analysis) {
    tornwalzen_analysis_on_step(analysis, Listening::step, &listening);
    tornwalzen_analysis_on_message(analysis, Listening::message, &listening);
  }
  ~Registration() {
    tornwalzen_analysis_on_step(analysis_, nullptr, nullptr);
    tornwalzen_analysis_on_message(analysis_, nullptr, nullptr);
  }
  Registration(const Registration&) = delete;
  Registration& operator=(const Registration&) = delete;

 private:
  TornwalzenAnalysis* analysis_;
};

template <class T>
std::vector<T> copied(const T* values, std::int64_t count) {
  return values == nullptr ? std::vector<T>() : std::vector<T>(values, values + count);
}

}  // namespace

AnalysisHandle newAnalysis() {
  AnalysisHandle handle(tornwalzen_analysis_create());
  if (handle == nullptr) throw std::bad_alloc();
  return handle;
}

LibraryRun::LibraryRun(const Part& part, const Hold& hold)
    : handle_(newAnalysis()),
      size_(counted(part.nodes(), "node") + " and " + counted(part.elements(), "triangle")) {
  std::int32_t code = tornwalzen_analysis_set_mesh(handle_.get(), static_cast<std::int32_t>(part.nodes()),
                                                   static_cast<std::int32_t>(part.elements()),
                                                   part.points.data(), part.corners.data(), firstNode);
  if (code == TORNWALZEN_OK) {
    std::vector<std::int32_t> held;
    held.reserve(hold.ARFA.size());
    for (const std::int32_t free : hold.ARFA) held.push_back(1 - free);
    code = tornwalzen_analysis_set_holds(handle_.get(), held.data());
  }
  if (code != TORNWALZEN_OK) throw libraryFailure(handle_.get(), code, "could not take " + size_);
}

RunOutput LibraryRun::run(const RunSettings& settings, const RunListener& listener) {
  applySettings(settings, handle_.get());
  applyMarks(settings.press, handle_.get());
  applyThreads(settings, handle_.get());
  Listening listening{listener, progress_};
  const Registration registration(handle_.get(), listening);
  progress_.beginRun();
  const std::int32_t code = tornwalzen_analysis_run(handle_.get());
  progress_.endRun();
  if (code <= TORNWALZEN_CLOSED_SURFACE && code >= TORNWALZEN_REPEATED_NODE)
    throw Failure(std::string(tornwalzen_analysis_error_text(handle_.get(), code, 1)), exitRefused);
  if (code <= TORNWALZEN_BAD_MODEL && code >= TORNWALZEN_PRESS_WITHOUT_CURVE)
    throw Failure(std::string(tornwalzen_analysis_error_text(handle_.get(), code, 1)), exitRefused);
  if (code != TORNWALZEN_OK)
    throw libraryFailure(handle_.get(), code, "could not set up the equations of " + size_);
  RunOutput output = collect();
  const TornwalzenPress& press = settings.press.press;
  output.loadsGiven = settings.press.chosen && (press.friction_punch > 0.0 || press.friction_die > 0.0 ||
                                                press.edge == TORNWALZEN_ON || !settings.press.beads.empty());
  return output;
}

RunOutput LibraryRun::collect() {
  TornwalzenAnalysis* const analysis = handle_.get();
  const std::int64_t nodes = tornwalzen_analysis_nodes(analysis),
                     elements = tornwalzen_analysis_triangles(analysis);
  RunOutput output;
  output.corners = copied(tornwalzen_analysis_oriented_triangles(analysis), 3 * elements);
  output.RX = copied(tornwalzen_analysis_blank(analysis), 2 * nodes);
  output.startingBlank = copied(tornwalzen_analysis_starting_blank(analysis), 2 * nodes);
  output.EVAL = copied(tornwalzen_analysis_element_table(analysis), 5 * elements);
  output.strains.resize(output.RX.empty() ? 0 : static_cast<std::size_t>(elements));
  if (!output.strains.empty()) tornwalzen_analysis_strains(analysis, output.strains.data());
  output.press.size = sizeof output.press;
  tornwalzen_analysis_press_result(analysis, &output.press);
  output.contact = copied(tornwalzen_analysis_contact_pressure(analysis), elements);
  output.binder = copied(tornwalzen_analysis_binder_pressure(analysis), elements);
  output.report.size = sizeof output.report;
  tornwalzen_analysis_report(analysis, &output.report);
  output.matrixEntries = tornwalzen_analysis_matrix_entries(analysis);
  output.times = progress_.times();
  return output;
}

}  // namespace host
