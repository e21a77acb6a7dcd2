// Runs through the handle; times are processor and wall times of the call, set-up of the structure included.
#include "sure_runs.hpp"

#include <algorithm>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "clock.hpp"
#include "sample_run.hpp"
#include "shapes.hpp"
#include "tornwalzen_analysis.h"

namespace bench {

namespace {

struct Destroy {
  void operator()(TornwalzenAnalysis* a) const { tornwalzen_analysis_destroy(a); }
};

struct Outcome {
  Seconds time;
  TornwalzenReport report{};
};

Outcome analyse(const shapes::Sheet& sheet, const std::vector<std::int32_t>& held, bool sure) {
  const std::unique_ptr<TornwalzenAnalysis, Destroy> a(tornwalzen_analysis_create());
  if (!a ||
      tornwalzen_analysis_set_mesh(a.get(), sheet.nodes(), sheet.triangles(), sheet.knots.data(),
                                   sheet.inzi.data(), 1) != TORNWALZEN_OK ||
      tornwalzen_analysis_set_holds(a.get(), held.data()) != TORNWALZEN_OK)
    throw std::runtime_error("the mesh was refused");
  tornwalzen_analysis_set_path(a.get(), sure ? 1 : 0);
  tornwalzen_analysis_set_energy_reference(a.get(), 1);
  if (sure) tornwalzen_analysis_set_tolerance_factors(a.get(), 0.001, 1.0);
  Outcome outcome;
  outcome.time = timed([&] { tornwalzen_analysis_run(a.get()); });
  outcome.report.size = sizeof outcome.report;
  tornwalzen_analysis_report(a.get(), &outcome.report);
  return outcome;
}

}  // namespace

void sureRun(const SureCase& which, Report& report) {
  shapes::MeshChoice choice;
  choice.triangles = which.triangles;
  choice.seed = 1;
  const shapes::Sheet sheet = which.wall > 0.0
                                  ? shapes::makeShape(which.shape, choice, {{"wall", which.wall}})
                                  : shapes::makeShape(which.shape, choice);
  const std::vector<std::int32_t> held = heldRigidMotion(sheet);
  const std::string size = sizeName(which.triangles), subject = std::string(which.shape) + "-" + size;
  const Outcome sure = analyse(sheet, held, true);
  const TornwalzenReport& r = sure.report;
  if (r.converged == 0)
    throw std::runtime_error(subject + ": the sure path did not converge: " + r.fatal_text);
  const double numeric = r.time_factorization / std::max(1, r.factorizations);
  std::printf(
      "\n%s by the sure path: %d triangles, %d factorizations, %d solves; %.3f s processor, %.3f s wall, of "
      "it set-up "
      "%.3f, start %.3f, tangents %.3f, factorizations %.3f, solves %.3f, checks %.3f s; one factorization "
      "%.3f s\n",
      subject.c_str(), sheet.triangles(), r.factorizations, r.solves, sure.time.cpu, sure.time.wall,
      r.time_structure + r.time_ordering + r.time_symbolic, r.time_development, r.time_assembly,
      r.time_factorization, r.time_solve, r.time_checks, numeric);
  report.figure("sure", subject, "run", "cpu", sure.time.cpu, "s");
  report.figure("sure", subject, "run", "wall", sure.time.wall, "s");
  report.figure("sure", subject, "numeric", "cpu", numeric, "s");
  report.figure("sure", subject, "factorizations", "count", r.factorizations, "");
  report.figure("sure", subject, "checks", "cpu", r.time_checks, "s");
  if (which.ratio) report.ratio("sure", size, sure.time.cpu / numeric);
  if (which.fixedToo) {
    const Outcome fixed = analyse(sheet, held, false);
    std::printf("  by the fixed path: %s, %d factorizations, %.3f s processor, %.3f s wall\n",
                fixed.report.converged != 0 ? "converged" : "not converged", fixed.report.factorizations,
                fixed.time.cpu, fixed.time.wall);
    report.figure("fixed", subject, "run", "cpu", fixed.time.cpu, "s");
    report.figure("fixed", subject, "run", "wall", fixed.time.wall, "s");
    report.figure("fixed", subject, "run", "converged", fixed.report.converged, "");
  }
  std::fflush(stdout);
}

}  // namespace bench
