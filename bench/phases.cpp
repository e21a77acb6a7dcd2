// A plane sheet as the blank, a dome over it as the part: strains of some percent, as in a run.
#include "phases.hpp"

#include <algorithm>
#include <cmath>
#include <stdexcept>

#include "driver/newton_step.hpp"
#include "element/assembly.hpp"
#include "host_kit/default_run.hpp"
#include "material/material_setup.hpp"
#include "plane_mesh.hpp"
#include "quiet.hpp"
#include "sample_run.hpp"
#include "sparse/pattern.hpp"
#include "sparse/phases.hpp"

namespace bench {

namespace {

namespace tw = tornwalzen;

/// Node pairs of all triangles, three each, as keys.
std::vector<std::uint64_t> pairKeys(const PlaneMesh& mesh) {
  std::vector<std::uint64_t> keys;
  keys.reserve(mesh.corners.size());
  for (std::int32_t t = 0; t < mesh.triangles(); ++t)
    for (int i = 0; i < 3; ++i) {
      const std::uint64_t p = mesh.corners[3 * t + i], q = mesh.corners[3 * t + (i + 1) % 3];
      keys.push_back(std::min(p, q) << 32 | std::max(p, q));
    }
  return keys;
}

struct Line {
  const char* name;
  std::vector<Seconds> samples;
  double items;
  const char* item;
};

void print(const std::string& subject, const std::vector<Line>& lines, Report& report) {
  std::printf("\n%s: median processor times\n", subject.c_str());
  for (const Line& l : lines) {
    const double t = median(l.samples).cpu;
    std::printf("  %-16s %10.3f ms  %8.1f ns per %s\n", l.name, 1e3 * t, 1e9 * t / l.items, l.item);
    report.time(l.name, subject, "tornwalzen", l.samples);
    report.figure(l.name, subject, "tornwalzen", std::string("per ") + l.item, 1e9 * t / l.items, "ns");
  }
  std::fflush(stdout);
}

int repetitions(std::int32_t nodes) {
  return std::max(5, std::min(200, 1000000 / nodes));
}

}  // namespace

shapes::Sheet dome(const PlaneMesh& mesh) {
  shapes::Sheet sheet;
  const double side = std::sqrt(static_cast<double>(mesh.nodes()));
  for (std::int32_t n = 0; n < mesh.nodes(); ++n) {
    const double x = mesh.xy[2 * n] / side - 0.5, y = mesh.xy[2 * n + 1] / side - 0.5;
    sheet.knots.insert(sheet.knots.end(), {100.0 * x, 100.0 * y, 20.0 * std::exp(-8.0 * (x * x + y * y))});
  }
  sheet.inzi = mesh.corners;
  return sheet;
}

void timePattern(std::int32_t nodes, Report& report) {
  const PlaneMesh mesh = jitteredDelaunayMesh(nodes, Numbering::mesher, 1);
  const std::int32_t nn = mesh.nodes(), ne = mesh.triangles();
  std::vector<std::int32_t> INTA(mesh.corners.size()), COLS(2 * std::size_t(nn) + 1),
      ROWI(4 * (nn + 3 * ne) - nn);
  for (std::int32_t e = 0; e < ne; ++e)
    for (int c = 0; c < 3; ++c) INTA[std::size_t(c) * ne + e] = mesh.corners[3 * e + c];
  tw::run.nkno = nn;
  tw::run.nele = ne;
  tw::run.neq = 2 * nn;
  std::vector<Seconds> pattern, sort;
  const std::vector<std::uint64_t> keys = pairKeys(mesh);
  for (int k = 0; k < std::min(repetitions(nodes), 20); ++k) {
    tw::run.solver.mnsysm = static_cast<std::int32_t>(ROWI.size());
    {
      const Quiet quiet;
      pattern.push_back(timed([&] {
        tw::buildPattern(tw::run, {"INTA", INTA.data(), ne, 3}, {"COLS", COLS.data(), 2 * tw::Int64{nn} + 1},
                         {"ROWI", ROWI.data(), tw::run.solver.mnsysm});
      }));
    }
    std::vector<std::uint64_t> shuffled = keys;
    sort.push_back(timed([&] { std::sort(shuffled.begin(), shuffled.end()); }));
  }
  if (tw::failed(tw::run.ierrso)) throw std::runtime_error("the pattern could not be built");
  print("pattern-" + sizeName(nodes),
        {{"pattern", pattern, static_cast<double>(nn), "node"},
         {"sort-of-pairs", sort, static_cast<double>(nn), "node"}},
        report);
  report.ratio("pattern", sizeName(nodes), median(pattern).cpu / median(sort).cpu);
}

void timePhases(std::int32_t nodes, Report& report) {
  const PlaneMesh mesh = jitteredDelaunayMesh(nodes, Numbering::mesher, 1);
  const shapes::Sheet sheet = dome(mesh);
  SampleRun sample(sheet);
  tw::DriverArrays a = sample.arrays();
  for (std::int32_t n = 1; n <= sample.nodes(); ++n) {
    for (int c = 1; c <= 3; ++c) a.KNZ(n, c) = a.KNG(n, c);
    for (int c = 1; c <= 2; ++c) a.RX(2 * n - 2 + c) = 1.03 * a.KNG(n, c);
  }
  tw::selectMaterial(tw::run, 1);
  tw::run.ierrel = 0;
  const auto solver = [&](tw::SolverStep step) {
    tw::solverStep(tw::run, tw::run.solver, step, a.COLS, a.ROWI, a.WORK, a.RWORK, a.RR, a.RB, a.SYSM,
                   a.WRHS);
  };

  std::vector<Seconds> tangent, residual, energy, held, factorize, solve;
  double EN;
  for (int k = 0; k < repetitions(nodes); ++k) {
    tangent.push_back(timed([&] { tw::assemble(tw::run, tw::residualAndMatrix, a); }));
    held.push_back(timed([&] { tw::imposeHeldUnknowns(tw::run, a); }));
    factorize.push_back(timed([&] { solver(tw::SolverStep::numeric); }));
    solve.push_back(timed([&] { solver(tw::SolverStep::solve); }));
    residual.push_back(timed([&] { tw::assemble(tw::run, tw::residualOnly, a); }));
    energy.push_back(timed([&] { tw::energySum(tw::run, EN, a); }));
  }
  if (tw::failed(tw::run.ierrel) || tw::failed(tw::run.ierrso)) throw std::runtime_error("a pass failed");
  factorize.erase(factorize.begin());  // the first one is not a repeat
  const double elements = sample.triangles(), unknowns = 2.0 * sample.nodes();
  print("phases-" + sizeName(nodes),
        {{"tangent", tangent, elements, "element"},
         {"residual", residual, elements, "element"},
         {"energy", energy, elements, "element"},
         {"held-unknowns", held, unknowns, "unknown"},
         {"factorization", factorize, unknowns, "unknown"},
         {"solve-in-run", solve, unknowns, "unknown"}},
        report);
  report.ratio("tangent", sizeName(nodes), median(tangent).cpu / median(factorize).cpu);
  report.ratio("residual", sizeName(nodes), median(residual).cpu / median(factorize).cpu);
}

}  // namespace bench
