// The drawn parts whose blank and thickness are known from forward simulations, with their process data, and runs of the
// press model on them.
#pragma once

#include <memory>

#include "tornwalzen_analysis.h"
#include "verification/drawn_cup.hpp"

namespace verification {

struct Process {
  const char* name;  // of its files
  double thickness;  // mm
  double r;          // dimensionless
  double friction;   // dimensionless
  double binder;     // N, on the quarter
  bool ownCurve;     // the rectangular cup's flow curve, else the Swift law
};

/// Read from the simulations that the parts come from.
inline const std::vector<Process>& processes() {
  static const std::vector<Process> all{{"dfg_cup_quarter", 0.95, 0.81, 0.05, 25000.0, true},
                                        {"round_cup_18", 1.0, 1.0, 0.1, 3750.0, false},
                                        {"dome_15", 1.0, 1.0, 0.1, 7500.0, false}};
  return all;
}

/// Flow curve of the rectangular cup's simulation: plastic strain, MPa.
constexpr double cupStrain[] = {0,     .0005, .0015, .003, .005, .007, .009, .0124, .0174, .025, .035, .0446,
                                .0547, .07,   .089,  .11,  .135, .164, .19,  .22,   .272,  .35,  1.0};
constexpr double cupStress[] = {310, 344, 363, 393, 422, 445, 465, 506, 541, 592, 628, 659,
                                685, 714, 731, 745, 752, 757, 759, 761, 763, 765, 785};
constexpr double swiftSteel[] = {549.03, 0.007, 0.22};  // MPa, prestrain, exponent

using Handle = std::unique_ptr<TornwalzenAnalysis, std::int32_t (*)(TornwalzenAnalysis*)>;

/// A handle with part, holds and flow curve.
inline Handle handleOf(const host_kit::HostPart& part, bool ownCurve) {
  Handle handle(tornwalzen_analysis_create(), tornwalzen_analysis_destroy);
  tornwalzen_analysis_set_mesh(handle.get(), static_cast<std::int32_t>(part.knots.size() / 3),
                               static_cast<std::int32_t>(part.inzi.size() / 3), part.knots.data(),
                               part.inzi.data(), 1);
  std::vector<std::int32_t> held;
  for (const std::int32_t flag : part.arfa) held.push_back(flag == 0 ? 1 : 0);
  tornwalzen_analysis_set_holds(handle.get(), held.data());
  if (ownCurve)
    tornwalzen_analysis_set_flow_curve(handle.get(), static_cast<std::int32_t>(std::size(cupStrain)),
                                       cupStrain, cupStress);
  else
    tornwalzen_analysis_set_law(handle.get(), TORNWALZEN_SWIFT, swiftSteel, 1.0);
  return handle;
}

/// A press that knows the thickness alone.
inline TornwalzenPress sheetOf(double thickness) {
  TornwalzenPress press{};
  press.size = sizeof press;
  press.thickness_mm = thickness;
  return press;
}

/// The press with all that the simulation tells.
inline TornwalzenPress pressOf(const Process& process) {
  TornwalzenPress press = sheetOf(process.thickness);
  press.r0 = press.r45 = press.r90 = process.r;
  press.friction_punch = press.friction_die = process.friction;
  press.binder_force_n = process.binder;
  press.flange_of_rim = 1;
  return press;
}

struct PressRun {
  std::int32_t code = 0;
  TornwalzenReport report{};
  TornwalzenPressResult result{};
  std::vector<double> RX;
};

inline PressRun runPress(TornwalzenAnalysis* handle, const TornwalzenPress& press) {
  PressRun run;
  tornwalzen_analysis_set_model(handle, 1);
  run.code = tornwalzen_analysis_set_press(handle, &press);
  if (run.code == TORNWALZEN_OK) run.code = tornwalzen_analysis_run(handle);
  if (run.code != TORNWALZEN_OK) return run;
  run.report.size = sizeof run.report;
  tornwalzen_analysis_report(handle, &run.report);
  run.result.size = sizeof run.result;
  tornwalzen_analysis_press_result(handle, &run.result);
  const double* blank = tornwalzen_analysis_blank(handle);
  run.RX.assign(blank, blank + 2 * tornwalzen_analysis_nodes(handle));
  return run;
}

}  // namespace verification
