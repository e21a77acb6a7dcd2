// tornwalzen_press PARTS OUT: the runs of the press model behind docs/verification.md, as tables of comma-separated values
// in the folder OUT. PARTS: the folder of the drawn parts.
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>
#include <vector>

#include "verification/developments.hpp"
#include "verification/press_parts.hpp"
#include "verification/press_survey.hpp"
#include "verification/result_table.hpp"

namespace {

using namespace verification;

struct Variant {
  const char* name;
  std::function<void(TornwalzenPress&, const Process&)> change;
  bool swift = false;  // the Swift law where the part has its own curve
};

void withoutTools(TornwalzenPress& press, const Process& process) {
  press = sheetOf(process.thickness);
}

/// Term by term, and each input by itself.
const std::vector<Variant>& variants() {
  static const std::vector<Variant> all{
      {"work alone", withoutTools},
      {"work, edge, bending kept",
       [](TornwalzenPress& p, const Process& q) {
         withoutTools(p, q);
         p.edge = TORNWALZEN_ON;
         p.bending = TORNWALZEN_BENDING_KEPT;
       }},
      {"all", [](TornwalzenPress&, const Process&) {}},
      {"all, bending released",
       [](TornwalzenPress& p, const Process&) { p.bending = TORNWALZEN_BENDING_RELEASED; }},
      {"all, no bending", [](TornwalzenPress& p, const Process&) { p.bending = TORNWALZEN_OFF; }},
      {"all, no edge term", [](TornwalzenPress& p, const Process&) { p.edge = TORNWALZEN_OFF; }},
      {"all, no binder",
       [](TornwalzenPress& p, const Process&) {
         p.binder_force_n = 0.0;
         p.edge = TORNWALZEN_ON;
         p.bending = TORNWALZEN_BENDING_KEPT;
       }},
      {"all, no friction on the punch", [](TornwalzenPress& p, const Process&) { p.friction_punch = 0.0; }},
      {"all, binder force doubled", [](TornwalzenPress& p, const Process&) { p.binder_force_n *= 2.0; }},
      {"all, friction halved",
       [](TornwalzenPress& p, const Process&) { p.friction_punch = p.friction_die *= 0.5; }},
      {"all, friction doubled",
       [](TornwalzenPress& p, const Process&) { p.friction_punch = p.friction_die *= 2.0; }},
      {"all, r 1.5", [](TornwalzenPress& p, const Process&) { p.r0 = p.r45 = p.r90 = 1.5; }},
      {"all, r45 0.6", [](TornwalzenPress& p, const Process&) { p.r45 = 0.6; }},
      {"all, r45 1.1", [](TornwalzenPress& p, const Process&) { p.r45 = 1.1; }},
      {"all, 5 points", [](TornwalzenPress& p, const Process&) { p.thickness_points = 5; }},
      {"all, mesh taken for the punch side", [](TornwalzenPress& p, const Process&) { p.mesh_side = 1; }},
      {"all, Swift law", [](TornwalzenPress&, const Process&) {}, true}};
  return all;
}

double seconds(const std::function<void()>& what) {
  const auto begin = std::chrono::steady_clock::now();
  what();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

void drawnParts(const std::string& parts, const std::string& out) {
  std::FILE* const file =
      openTable(out + "/press.csv",
                "part,variant,converged,exponent,loads_held,edge_mean_mm,edge_largest_mm,edge_"
                "signed_mm,thickness_rms_mm,"
                "correlation,thinnest_mm,thickest_mm,punch_pressure_mpa,die_pressure_mpa,"
                "binder_pressure_mpa,punch_force_n,"
                "factorizations,rounds,seconds");
  for (const Process& process : processes()) {
    const DrawnCup cup = readDrawnPart(parts, process.name);
    if (cup.part.knots.empty()) {
      std::fprintf(stderr, "left out: no %s in %s\n", process.name, parts.c_str());
      continue;
    }
    for (const Variant& variant : variants()) {
      if (variant.swift && !process.ownCurve) continue;
      TornwalzenPress press = pressOf(process);
      variant.change(press, process);
      const Handle handle = handleOf(cup.part, process.ownCurve && !variant.swift);
      PressRun run;
      const double time = seconds([&] { run = runPress(handle.get(), press); });
      if (run.code != TORNWALZEN_OK) {
        std::fprintf(stderr, "%s, %s: %s\n", process.name, variant.name,
                     tornwalzen_analysis_error_text(handle.get(), run.code, 1));
        continue;
      }
      const CupErrors errors = compareCup(cup, run.RX, process.thickness);
      const TornwalzenPressResult& r = run.result;
      std::fprintf(file,
                   "%s,\"%s\",%d,%g,%d,%.3f,%.3f,%.3f,%.5f,%.4f,%.3f,%.3f,%.1f,%.1f,%.1f,%.0f,%d,%d,%.2f\n",
                   process.name, variant.name, run.report.converged, r.exponent, r.loads_held,
                   errors.edgeMean, errors.edgeLargest, errors.edgeSigned, errors.thicknessRms,
                   errors.correlation, r.thinnest_mm, r.thickest_mm, r.punch_pressure_mpa, r.die_pressure_mpa,
                   r.binder_pressure_mpa, r.punch_force_n, run.report.factorizations, r.rounds, time);
      std::fflush(file);
    }
  }
  std::fclose(file);
}

void pressDevelopments(const std::string& out) {
  std::FILE* const file = openTable(out + "/press_developments.csv",
                                    "part,size_mm,bending,converged,exponent,error_mm,factorizations");
  for (const Development& development : developments())
    for (const double size : {5.0, 2.5})
      for (const int bending : {TORNWALZEN_OFF, TORNWALZEN_BENDING_RELEASED, TORNWALZEN_BENDING_KEPT}) {
        shapes::MeshChoice choice;
        choice.size = size;
        const shapes::Sheet sheet = shapes::makeShape(development.shape, choice, development.changes);
        const Handle handle = handleOf(host_kit::fromSheet(sheet), false);
        TornwalzenPress press = sheetOf(1.0);
        press.bending = bending;
        const PressRun run = runPress(handle.get(), press);
        std::fprintf(file, "\"%s\",%g,%s,%d,%g,%.6f,%d\n", development.name, size,
                     bending == TORNWALZEN_OFF            ? "off"
                     : bending == TORNWALZEN_BENDING_KEPT ? "kept"
                                                          : "released",
                     run.report.converged, run.result.exponent, largestError(run.RX, sheet.blank),
                     run.report.factorizations);
      }
  std::fclose(file);
}

struct CupMaterial {
  const char* name;
  double swift[3];
  double thickness, r0, r45, r90, friction, binder;  // binder: N on the whole cup
};

/// Draw-in of the square cup from the edges that were measured, and from the one that the run finds the square for.
void squareCup(const std::string& out) {
  const CupMaterial materials[] = {
      {"steel, mean r", {565.32, 0.007117, 0.2589}, 0.78, 1.77, 1.77, 1.77, 0.144, 19600.0},
      {"steel", {565.32, 0.007117, 0.2589}, 0.78, 1.79, 1.51, 2.27, 0.144, 19600.0},
      {"aluminium, mean r", {576.79, 0.01658, 0.3593}, 0.81, 0.6425, 0.6425, 0.6425, 0.162, 19600.0},
      {"aluminium", {576.79, 0.01658, 0.3593}, 0.81, 0.71, 0.58, 0.70, 0.162, 19600.0}};
  std::FILE* const file =
      openTable(out + "/press_square_cup.csv",
                "edge_on_axis_mm,material,tools,converged,exponent,loads_held,draw_in_axis_mm,"
                "draw_in_diagonal_mm,half_side_mm,corner_mm,thinnest_mm,factorizations,rounds,seconds");
  for (const double edge : {46.5, 53.2}) {
    shapes::MeshChoice choice;
    choice.triangles = 10000;
    choice.quarter = true;
    host_kit::HostPart part =
        host_kit::fromSheet(shapes::makeShape("square_cup", choice, {{"edge_on_axis", edge}}));
    host_kit::holdSymmetryPlanes(part);
    std::size_t axis = 0, diagonal = 0;
    double least[2] = {1e300, 1e300};
    for (const auto& [a, b] : outerEdge(part))
      for (const std::size_t n : {a, b}) {
        const double along = part.knots[3 * n + 1],
                     off = std::fabs(part.knots[3 * n] - part.knots[3 * n + 1]);
        if (along < least[0]) least[0] = along, axis = n;
        if (off < least[1]) least[1] = off, diagonal = n;
      }
    for (const CupMaterial& m : materials)
      for (const bool tools : {false, true}) {
        const Handle handle = handleOf(part, false);
        tornwalzen_analysis_set_law(handle.get(), TORNWALZEN_SWIFT, m.swift, 1.0);
        TornwalzenPress press = sheetOf(m.thickness);
        press.r0 = m.r0, press.r45 = m.r45, press.r90 = m.r90;
        if (tools) {
          press.friction_punch = press.friction_die = m.friction;
          press.binder_force_n = 0.25 * m.binder;
          press.flange_of_rim = 1;
        }
        PressRun run;
        const double time = seconds([&] { run = runPress(handle.get(), press); });
        const auto drawIn = [&](std::size_t n) {
          return std::hypot(run.RX[2 * n], run.RX[2 * n + 1]) -
                 std::hypot(part.knots[3 * n], part.knots[3 * n + 1]);
        };
        std::fprintf(file, "%g,\"%s\",%s,%d,%g,%d,%.2f,%.2f,%.2f,%.2f,%.3f,%d,%d,%.2f\n", edge, m.name,
                     tools ? "yes" : "no", run.report.converged, run.result.exponent, run.result.loads_held,
                     drawIn(axis), drawIn(diagonal), run.RX[2 * axis],
                     std::hypot(run.RX[2 * diagonal], run.RX[2 * diagonal + 1]) / std::sqrt(2.0),
                     run.result.thinnest_mm, run.report.factorizations, run.result.rounds, time);
        std::fflush(file);
      }
  }
  std::fclose(file);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: tornwalzen_press PARTS OUT\n");
    return 2;
  }
  drawnParts(argv[1], argv[2]);
  pressDevelopments(argv[2]);
  squareCup(argv[2]);
  verification::surveyParts(argv[1], argv[2]);
  verification::ringCups(argv[2]);
  verification::writeBlank(argv[2]);
  verification::measureCost(argv[1], argv[2]);
  verification::writeFields(argv[1], argv[2]);
  return 0;
}
