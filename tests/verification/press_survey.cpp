#include "verification/press_survey.hpp"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <map>

#include "host_kit/refined.hpp"
#include "verification/axisymmetric_runs.hpp"
#include "verification/result_table.hpp"

namespace verification {

namespace {

constexpr double steel[] = {565.32, 0.007117, 0.2589};  // a mild steel: K (MPa), prestrain, exponent
constexpr double friction = 0.1, binder = 20000.0;      // dimensionless, N

struct Surveyed {
  std::string name;
  host_kit::HostPart part;
};

std::vector<Surveyed> surveyed(const std::string& parts) {
  std::vector<Surveyed> all;
  for (const shapes::ShapeInfo& shape : shapes::catalogue())
    for (const std::int32_t triangles : {5000, 50000})
      all.push_back({std::string(shape.name), host_kit::samplePart(std::string(shape.name), triangles)});
  for (const char* name : {"car_hood_outer", "sheet_panel_13holes", "sheet_rail_channel", "scan_tray"}) {
    host_kit::HostPart part = host_kit::readObj(parts + "/" + name + ".obj");
    if (part.knots.empty()) continue;
    for (; part.inzi.size() / 3 < 60000; part = host_kit::refined(part)) {
      host_kit::holdRigidMotion(part);
      all.push_back({name, part});
    }
  }
  for (const Process& process : processes())
    if (const DrawnCup cup = readDrawnPart(parts, process.name); !cup.part.knots.empty())
      all.push_back({process.name, cup.part});
  return all;
}

double processorTime() {
  return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

/// The four quarters of a part that is held in its planes of symmetry.
host_kit::HostPart wholeOf(const host_kit::HostPart& quarter) {
  host_kit::HostPart whole;
  std::map<std::array<double, 3>, std::int32_t> numbers;
  const auto node = [&](const double* x, double signX, double signY) {
    const auto onPlane = [](double c) { return std::fabs(c) < 1e-4 ? 0.0 : c; };
    const std::array<double, 3> place{onPlane(signX * x[0]), onPlane(signY * x[1]), x[2]};
    const auto [found, isNew] = numbers.insert({place, static_cast<std::int32_t>(numbers.size()) + 1});
    if (isNew) whole.knots.insert(whole.knots.end(), place.begin(), place.end());
    return found->second;
  };
  for (const auto& [signX, signY] : {std::pair{1.0, 1.0}, {-1.0, 1.0}, {1.0, -1.0}, {-1.0, -1.0}})
    for (std::size_t e = 0; e < quarter.inzi.size(); e += 3) {
      std::int32_t corners[3];
      for (std::size_t c = 0; c < 3; ++c)
        corners[c] =
            node(&quarter.knots[3 * static_cast<std::size_t>(quarter.inzi[e + c] - 1)], signX, signY);
      if (signX * signY < 0.0) std::swap(corners[1], corners[2]);
      whole.inzi.insert(whole.inzi.end(), std::begin(corners), std::end(corners));
    }
  host_kit::holdRigidMotion(whole);
  return whole;
}

}  // namespace

void surveyParts(const std::string& parts, const std::string& out) {
  std::FILE* const file =
      openTable(out + "/press_survey.csv",
                "part,triangles,tools,end,exponent,loads_held,thinnest_mm,factorizations,rounds,seconds");
  for (const Surveyed& one : surveyed(parts))
    for (const bool tools : {false, true}) {
      const Handle handle = handleOf(one.part, false);
      tornwalzen_analysis_set_law(handle.get(), TORNWALZEN_SWIFT, steel, 1.0);
      TornwalzenPress press = sheetOf(1.0);
      if (tools) {
        press.friction_punch = press.friction_die = friction;
        press.binder_force_n = binder;
        press.flange_of_rim = 1;
      }
      const auto begin = std::chrono::steady_clock::now();
      const PressRun run = runPress(handle.get(), press);
      const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
      const bool noFlange = tools && run.code == TORNWALZEN_OK && run.report.converged == 0 &&
                            run.result.exponent == 0.0 && run.result.flange_elements == 0;
      std::fprintf(file, "%s,%zu,%s,%s,%.4g,%d,%.3f,%d,%d,%.2f\n", one.name.c_str(), one.part.inzi.size() / 3,
                   tools ? "yes" : "no",
                   noFlange                       ? "no flange"
                   : run.code != TORNWALZEN_OK    ? "refused"
                   : run.report.converged == 0    ? "not converged"
                   : run.report.minimum_certified ? "minimum"
                                                  : "equilibrium",
                   run.result.exponent, run.result.loads_held, run.result.thinnest_mm,
                   run.report.factorizations, run.result.rounds, seconds);
      std::fflush(file);
    }
  std::fclose(file);
}

void ringCups(const std::string& out) {
  std::FILE* const file =
      openTable(out + "/press_rings.csv",
                "cup,radius_mm,depth_mm,friction,binder_n,r,tools,exponent,edge_mm,edge_rings_mm,thinnest_mm,"
                "thinnest_rings_mm,thickest_mm,thickest_rings_mm");
  for (const RingCase& one : ringCases)
    for (const bool tools : {false, true}) {
      const RingComparison both = compareWithRings(one, tools, 12000, 0.2);
      if (!both.solved) continue;
      std::fprintf(file, "%s,%g,%g,%g,%g,%g,%s,%g,%.4f,%.4f,%.4f,%.4f,%.4f,%.4f\n", one.name, one.cup.radius,
                   one.cup.depth, one.friction, one.binder, one.r, tools ? "yes" : "no", both.exponent,
                   both.edge[0], both.edge[1], both.thinnest[0], both.thinnest[1], both.thickest[0],
                   both.thickest[1]);
    }
  std::fclose(file);
}

void writeBlank(const std::string& out) {
  constexpr double thickness = 0.78, r0 = 1.79, r45 = 1.51, r90 = 2.27, mu = 0.144, force = 4900.0;
  shapes::MeshChoice choice;
  choice.triangles = 3000;
  choice.quarter = true;
  host_kit::HostPart part =
      host_kit::fromSheet(shapes::makeShape("square_cup", choice, {{"edge_on_axis", 46.5}}));
  host_kit::holdSymmetryPlanes(part);
  const Handle handle = handleOf(part, false);
  tornwalzen_analysis_set_law(handle.get(), TORNWALZEN_SWIFT, steel, 1.0);
  TornwalzenPress press = sheetOf(thickness);
  press.r0 = r0, press.r45 = r45, press.r90 = r90;
  press.friction_punch = press.friction_die = mu;
  press.binder_force_n = force;
  press.flange_of_rim = 1;
  const PressRun run = runPress(handle.get(), press);
  std::FILE* file = openTable(out + "/press_blank_nodes.csv", "x,y,z,u,v");
  for (std::size_t n = 0; n < run.RX.size() / 2; ++n)
    std::fprintf(file, "%.17g,%.17g,%.17g,%.17g,%.17g\n", part.knots[3 * n], part.knots[3 * n + 1],
                 part.knots[3 * n + 2], run.RX[2 * n], run.RX[2 * n + 1]);
  std::fclose(file);
  file = openTable(out + "/press_blank_elements.csv", "n1,n2,n3");
  for (std::size_t e = 0; e < part.inzi.size(); e += 3)
    std::fprintf(file, "%d,%d,%d\n", part.inzi[e], part.inzi[e + 1], part.inzi[e + 2]);
  std::fclose(file);
  file = openTable(out + "/press_blank_process.csv",
                   "K_mpa,prestrain,n,thickness_mm,young_mpa,r0,r45,r90,friction,binder_n,exponent");
  std::fprintf(file, "%g,%g,%g,%g,206000,%g,%g,%g,%g,%g,%.17g\n", steel[0], steel[1], steel[2], thickness, r0,
               r45, r90, mu, force, run.result.exponent);
  std::fclose(file);
}

void measureCost(const std::string& parts, const std::string& out) {
  const Process& process = processes()[0];
  const DrawnCup cup = readDrawnPart(parts, process.name);
  if (cup.part.knots.empty()) return;
  const host_kit::HostPart whole = wholeOf(cup.part);
  const char* const names[] = {"fixed model, sure path", "press, work alone", "press, all terms"};
  std::vector<double> times[3];
  std::int32_t factorizations[3] = {};
  for (int repeat = 0; repeat < 5; ++repeat)
    for (int model = 0; model < 3; ++model) {
      const Handle handle = handleOf(whole, true);
      tornwalzen_analysis_set_path(handle.get(), 1);
      tornwalzen_analysis_set_threads(handle.get(), 1);
      TornwalzenPress press = model == 2 ? pressOf(process) : sheetOf(process.thickness);
      press.binder_force_n *= 4.0;
      tornwalzen_analysis_set_press(handle.get(), &press);
      tornwalzen_analysis_set_model(handle.get(), model > 0);
      const double begin = processorTime();
      tornwalzen_analysis_run(handle.get());
      times[model].push_back(processorTime() - begin);
      TornwalzenReport report{};
      report.size = sizeof report;
      tornwalzen_analysis_report(handle.get(), &report);
      factorizations[model] = report.factorizations;
    }
  std::FILE* const file = openTable(out + "/press_cost.csv", "model,triangles,factorizations,seconds,ratio");
  for (auto& list : times) std::sort(list.begin(), list.end());
  for (int model = 0; model < 3; ++model)
    std::fprintf(file, "\"%s\",%zu,%d,%.2f,%.2f\n", names[model], whole.inzi.size() / 3,
                 factorizations[model], times[model][2], times[model][2] / times[0][2]);
  std::fclose(file);
}

void writeFields(const std::string& parts, const std::string& out) {
  const Process& process = processes()[0];
  const DrawnCup cup = readDrawnPart(parts, process.name);
  if (cup.part.knots.empty()) return;
  const Handle fixed = handleOf(cup.part, true), press = handleOf(cup.part, true);
  tornwalzen_analysis_set_path(fixed.get(), 1);
  tornwalzen_analysis_run(fixed.get());
  const double* blank = tornwalzen_analysis_blank(fixed.get());
  const CupErrors half =
      compareCup(cup, {blank, blank + 2 * tornwalzen_analysis_nodes(fixed.get())}, process.thickness);
  const CupErrors work = compareCup(cup, runPress(press.get(), pressOf(process)).RX, process.thickness);
  std::FILE* const file = openTable(out + "/press_fields.csv", "simulation_mm,fixed_mm,press_mm");
  for (std::size_t e = 0; e < cup.thickness.size(); ++e)
    std::fprintf(file, "%.5f,%.5f,%.5f\n", cup.thickness[e], half.thickness[e], work.thickness[e]);
  std::fclose(file);
}

}  // namespace verification
