// What a run of the library is made with; see the header.
#include "run/run_settings.hpp"

#include <algorithm>
#include <string>
#include <thread>

#include "run/analysis_handle.hpp"
#include "system/failure.hpp"

namespace host {

void applySettings(const RunSettings& settings, TornwalzenAnalysis* analysis) {
  const auto expectAccepted = [analysis](std::int32_t code, const std::string& option) {
    if (code != TORNWALZEN_OK)
      throw Failure(option + ": " + tornwalzen_analysis_error_text(analysis, code, 1));
  };
  expectAccepted(tornwalzen_analysis_set_material(analysis, settings.material), "--material");
  const FlowCurve& curve = settings.curve;
  if (!curve.strain.empty())
    expectAccepted(
        tornwalzen_analysis_set_flow_curve(analysis, static_cast<std::int32_t>(curve.strain.size()),
                                           curve.strain.data(), curve.stress.data()),
        curve.source);
  expectAccepted(tornwalzen_analysis_set_normal_anisotropy(analysis, settings.r), "--r");
  expectAccepted(tornwalzen_analysis_set_energy_reference(analysis, settings.partReference ? 1 : 0),
                 "--energy");
  expectAccepted(tornwalzen_analysis_set_path(analysis, settings.surePath ? 1 : 0), "--path");
  expectAccepted(tornwalzen_analysis_set_start(analysis, settings.patchStart ? 1 : 0), "--path");
  expectAccepted(tornwalzen_analysis_set_model(analysis, settings.press.chosen ? 1 : 0), "--model");
  if (settings.press.chosen)
    expectAccepted(tornwalzen_analysis_set_press(analysis, &settings.press.press), "--model press");
  expectAccepted(
      tornwalzen_analysis_set_tolerance_factors(analysis, settings.finalFactor, settings.pathFactor),
      "--tolerance");
}

void applyThreads(const RunSettings& settings, TornwalzenAnalysis* analysis) {
  constexpr unsigned mostThreads = 64;
  const auto cores = static_cast<int>(std::clamp(std::thread::hardware_concurrency(), 1u, mostThreads));
  const std::int32_t code =
      tornwalzen_analysis_set_threads(analysis, settings.threads > 0 ? settings.threads : cores);
  if (code == TORNWALZEN_OK) return;
  if (settings.threads > 0)
    throw Failure("--threads " + std::to_string(settings.threads) + ": " +
                  tornwalzen_analysis_error_text(analysis, code, 1));
  tornwalzen_analysis_set_threads(analysis, 1);
}

void applyMarks(const PressSettings& press, TornwalzenAnalysis* analysis) {
  const auto expectAccepted = [analysis](std::int32_t code, const std::string& option) {
    if (code != TORNWALZEN_OK)
      throw Failure(option + ": " + tornwalzen_analysis_error_text(analysis, code, 1));
  };
  expectAccepted(
      tornwalzen_analysis_set_flange(analysis, press.flange.empty() ? nullptr : press.flange.data()),
      "--flange");
  std::vector<std::int32_t> lengths, nodes;
  std::vector<double> force;
  for (const Bead& bead : press.beads) {
    lengths.push_back(static_cast<std::int32_t>(bead.nodes.size()));
    nodes.insert(nodes.end(), bead.nodes.begin(), bead.nodes.end());
    force.push_back(bead.force);
  }
  expectAccepted(tornwalzen_analysis_set_beads(analysis, static_cast<std::int32_t>(lengths.size()),
                                               lengths.data(), nodes.data(), force.data()),
                 "--bead");
}

void checkSettings(const RunSettings& settings) {
  applySettings(settings, newAnalysis().get());
}

}  // namespace host
