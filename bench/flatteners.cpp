// The mirrored cup, the race and the errors.
#include "flatteners.hpp"

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <vector>

#include "sample_run.hpp"
#include "tornwalzen_analysis.h"
#include "verification/drawn_cup.hpp"

namespace bench {

namespace {

constexpr double onPlane = 1e-4;  // mm

/// The full sheet: nodes in a plane of symmetry are shared.
struct FullCup {
  shapes::Sheet sheet;
  std::vector<double> blank;         // u v per node, the truth (mm)
  std::vector<std::size_t> outline;  // nodes of the outer edge
};

FullCup mirrored(const verification::DrawnCup& quarter) {
  FullCup full;
  const std::size_t nodes = quarter.blank.size() / 2;
  std::vector<bool> outer(nodes, false);
  for (const auto& [a, b] : verification::outerEdge(quarter.part)) outer[a] = outer[b] = true;
  std::vector<std::vector<std::int32_t>> number(4, std::vector<std::int32_t>(nodes));
  for (int copy = 0; copy < 4; ++copy) {
    const double sx = copy % 2 == 0 ? 1.0 : -1.0, sy = copy / 2 == 0 ? 1.0 : -1.0;
    for (std::size_t n = 0; n < nodes; ++n) {
      const double* const p = &quarter.part.knots[3 * n];
      const int first = (std::fabs(p[0]) < onPlane ? copy & 2 : copy) & (std::fabs(p[1]) < onPlane ? 1 : 3);
      if (first != copy) {
        number[copy][n] = number[first][n];
        continue;
      }
      number[copy][n] = full.sheet.nodes() + 1;
      if (outer[n]) full.outline.push_back(static_cast<std::size_t>(full.sheet.nodes()));
      full.sheet.knots.insert(full.sheet.knots.end(), {sx * p[0], sy * p[1], p[2]});
      full.blank.insert(full.blank.end(), {sx * quarter.blank[2 * n], sy * quarter.blank[2 * n + 1]});
    }
    const bool turned = sx * sy < 0.0;
    for (std::size_t e = 0; e < quarter.part.inzi.size(); e += 3)
      for (const std::size_t c :
           {std::size_t{0}, std::size_t{turned ? 2u : 1u}, std::size_t{turned ? 1u : 2u}})
        full.sheet.inzi.push_back(number[copy][quarter.part.inzi[e + c] - 1]);
  }
  return full;
}

double areaOf(const std::vector<std::int32_t>& corners, const std::vector<double>& uv) {
  double area = 0.0;
  for (std::size_t e = 0; e < corners.size(); e += 3) {
    const double *a = &uv[2 * (corners[e] - 1)], *b = &uv[2 * (corners[e + 1] - 1)],
                 *c = &uv[2 * (corners[e + 2] - 1)];
    area += 0.5 * ((b[0] - a[0]) * (c[1] - a[1]) - (b[1] - a[1]) * (c[0] - a[0]));
  }
  return std::fabs(area);
}

/// Root mean square distance (mm) of the outline's nodes from the truth after the best rigid fit of them.
double edgeError(const FullCup& cup, const std::vector<double>& uv) {
  const double count = static_cast<double>(cup.outline.size());
  double best = INFINITY;
  for (const double mirror : {1.0, -1.0}) {
    double m[4] = {}, cosine = 0.0, sine = 0.0, sum = 0.0;
    for (const std::size_t n : cup.outline) {
      m[0] += mirror * uv[2 * n] / count, m[1] += uv[2 * n + 1] / count;
      m[2] += cup.blank[2 * n] / count, m[3] += cup.blank[2 * n + 1] / count;
    }
    const auto local = [&](std::size_t n, double(&d)[4]) {
      d[0] = mirror * uv[2 * n] - m[0], d[1] = uv[2 * n + 1] - m[1];
      d[2] = cup.blank[2 * n] - m[2], d[3] = cup.blank[2 * n + 1] - m[3];
    };
    double d[4];
    for (const std::size_t n : cup.outline) {
      local(n, d);
      cosine += d[0] * d[2] + d[1] * d[3];
      sine += d[0] * d[3] - d[1] * d[2];
    }
    const double turn = std::atan2(sine, cosine), c = std::cos(turn), s = std::sin(turn);
    for (const std::size_t n : cup.outline) {
      local(n, d);
      sum += std::pow(c * d[0] - s * d[1] - d[2], 2) + std::pow(s * d[0] + c * d[1] - d[3], 2);
    }
    best = std::min(best, std::sqrt(sum / count));
  }
  return best;
}

struct Destroy {
  void operator()(TornwalzenAnalysis* a) const { tornwalzen_analysis_destroy(a); }
};

std::vector<double> ownBlank(const FullCup& cup, Seconds& time) {
  const std::unique_ptr<TornwalzenAnalysis, Destroy> a(tornwalzen_analysis_create());
  const std::vector<std::int32_t> held = heldRigidMotion(cup.sheet);
  if (!a ||
      tornwalzen_analysis_set_mesh(a.get(), cup.sheet.nodes(), cup.sheet.triangles(), cup.sheet.knots.data(),
                                   cup.sheet.inzi.data(), 1) != TORNWALZEN_OK ||
      tornwalzen_analysis_set_holds(a.get(), held.data()) != TORNWALZEN_OK)
    throw std::runtime_error("the cup was refused");
  tornwalzen_analysis_set_path(a.get(), 1);
  tornwalzen_analysis_set_energy_reference(a.get(), 1);
  tornwalzen_analysis_set_tolerance_factors(a.get(), 0.001, 1.0);
  time = timed([&] { tornwalzen_analysis_run(a.get()); });
  TornwalzenReport report{};
  report.size = sizeof report;
  tornwalzen_analysis_report(a.get(), &report);
  if (report.converged == 0) throw std::runtime_error("the cup did not converge");
  const double* const blank = tornwalzen_analysis_blank(a.get());
  return {blank, blank + 2 * cup.sheet.nodes()};
}

#ifdef BENCH_FLATTENER
std::vector<double> peersBlank(const FullCup& cup, Seconds& time) {
  namespace fs = std::filesystem;
  const fs::path folder = fs::temp_directory_path() / ("flattener" + std::to_string(std::rand()));
  fs::create_directory(folder);
  {
    std::ofstream obj(folder / "part.obj");
    obj.precision(17);
    for (std::size_t n = 0; n < cup.sheet.knots.size(); n += 3)
      obj << "v " << cup.sheet.knots[n] << ' ' << cup.sheet.knots[n + 1] << ' ' << cup.sheet.knots[n + 2]
          << '\n';
    for (std::size_t e = 0; e < cup.sheet.inzi.size(); e += 3)
      obj << "f " << cup.sheet.inzi[e] << ' ' << cup.sheet.inzi[e + 1] << ' ' << cup.sheet.inzi[e + 2]
          << '\n';
  }
  const std::string part = (folder / "part.obj").string(), blank = (folder / "blank.txt").string(),
                    times = (folder / "times.txt").string();
  const std::string command = std::string(BENCH_FLATTENER) + " " + part + " " + blank + " > " + times;
  const int status = std::system(command.c_str());
  std::vector<double> uv;
  std::ifstream(times) >> time.cpu >> time.wall;
  std::ifstream in(blank);
  for (double value; in >> value;) uv.push_back(value);
  fs::remove_all(folder);
  if (status != 0 || uv.size() != cup.blank.size()) throw std::runtime_error("the flattener failed");
  return uv;
}
#endif

}  // namespace

void raceFlatteners(const std::string& parts, Report& report) {
  const verification::DrawnCup quarter = verification::readDrawnCup(parts);
  if (quarter.blank.empty()) {
    std::printf("\nleft out: whole runs against flatteners (the drawn cup is not there)\n");
    return;
  }
  const FullCup cup = mirrored(quarter);
  const double exact = areaOf(cup.sheet.inzi, cup.blank);
  std::printf(
      "\nfull drawn cup, %d triangles: seconds, area against the true blank, edge against its edge (rms)\n",
      cup.sheet.triangles());
  const auto tell = [&](const char* who, const Seconds& time, const std::vector<double>& uv) {
    const double area = areaOf(cup.sheet.inzi, uv) / exact - 1.0, edge = edgeError(cup, uv);
    std::printf("  %-16s %8.3f s processor %8.3f s wall   area %+7.3f %%   edge %7.3f mm\n", who, time.cpu,
                time.wall, 100.0 * area, edge);
    std::fflush(stdout);
    report.figure("flatten", "drawn-cup", who, "cpu", time.cpu, "s");
    report.figure("flatten", "drawn-cup", who, "wall", time.wall, "s");
    report.figure("flatten", "drawn-cup", who, "area error", area, "");
    report.figure("flatten", "drawn-cup", who, "edge error", edge, "mm");
  };
  std::vector<Seconds> own(3);
  std::vector<double> ours;
  for (Seconds& time : own) ours = ownBlank(cup, time);
  tell("tornwalzen", median(own), ours);
#ifdef BENCH_FLATTENER
  std::vector<Seconds> peer(3);
  std::vector<double> theirs;
  for (Seconds& time : peer) theirs = peersBlank(cup, time);
  tell("cgal-arap", median(peer), theirs);
  report.ratio("flatten", "cup", median(own).cpu / median(peer).cpu);
#else
  std::printf("  left out: CGAL's ARAP (libcgal-dev is missing)\n");
#endif
}

}  // namespace bench
