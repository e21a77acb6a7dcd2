// An analysis of its own on a small random mesh, on the sure path or under the press model, with whatever settings a host
// may pass: every call ends and stays inside its arrays; a refused setting changes nothing; and a run that calls its blank
// right has one that is finite, turned over nowhere, exactly where it is held, and the same on any number of threads.
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

#include "fuzz/byte_source.hpp"
#include "fuzz/fuzz_target.hpp"
#include "tornwalzen_analysis.h"

namespace {

void require(bool condition, int line = __builtin_LINE()) {
  if (condition) return;
  std::fprintf(stderr, "line %d\n", line);
  std::abort();
}

struct Destroy {
  void operator()(TornwalzenAnalysis* analysis) const { tornwalzen_analysis_destroy(analysis); }
};
using Handle = std::unique_ptr<TornwalzenAnalysis, Destroy>;

struct Mesh {
  std::vector<double> points;  // x y z per node, mm
  std::vector<std::int32_t> triangles, held;
  std::int32_t first = 0;  // index base

  std::int32_t nodes() const { return static_cast<std::int32_t>(points.size() / 3); }
  std::int32_t elements() const { return static_cast<std::int32_t>(triangles.size() / 3); }
};

// A grid of up to 6 x 6 nodes, curled about the y axis or lifted node by node, turned as a whole, with a hole now and
// then, and in one of four cases spoiled in numbers and counts.
Mesh meshOf(fuzz::ByteSource& bytes) {
  Mesh mesh;
  const int nx = 2 + static_cast<int>(bytes.below(5)), ny = 2 + static_cast<int>(bytes.below(5));
  const double curl = bytes.below(3) == 0 ? bytes.byte() / 40.0 : 0.0;  // angle over the whole width
  const double lift = bytes.below(4) * 2.0, tilt = bytes.byte() / 40.0, turn = bytes.byte() / 40.0;
  for (int j = 0; j < ny; ++j)
    for (int i = 0; i < nx; ++i) {
      const double s = 10.0 * i, radius = curl > 0.0 ? 10.0 * (nx - 1) / curl : 0.0;
      const double x = curl > 0.0 ? radius * std::sin(s / radius) : s, y = 10.0 * j;
      const double z = (curl > 0.0 ? radius * (1.0 - std::cos(s / radius)) : 0.0) +
                       (lift > 0.0 ? lift * bytes.byte() / 255.0 : 0.0);
      const double xt = std::cos(tilt) * x + std::sin(tilt) * z,
                   zt = -std::sin(tilt) * x + std::cos(tilt) * z;
      mesh.points.insert(mesh.points.end(), {std::cos(turn) * xt - std::sin(turn) * y,
                                             std::sin(turn) * xt + std::cos(turn) * y, zt});
    }
  mesh.first = static_cast<std::int32_t>(bytes.below(2));
  const int hole = bytes.below(3) == 0 ? static_cast<int>(bytes.byte()) % ((nx - 1) * (ny - 1)) : -1;
  for (int j = 0; j + 1 < ny; ++j)
    for (int i = 0; i + 1 < nx; ++i) {
      if (j * (nx - 1) + i == hole) continue;
      const int a = j * nx + i + mesh.first, b = a + 1, c = a + nx, d = c + 1;
      mesh.triangles.insert(mesh.triangles.end(), {a, b, d, a, d, c});
    }
  mesh.held.assign(2 * static_cast<std::size_t>(mesh.nodes()), 0);
  mesh.held[0] = mesh.held[1] = mesh.held[mesh.held.size() - 1] = 1;
  if (bytes.below(4) != 3) return mesh;
  for (unsigned k = bytes.below(4); k > 0; --k)
    mesh.points[bytes.byte() % mesh.points.size()] = bytes.number();
  for (unsigned k = bytes.below(4); k > 0 && !mesh.triangles.empty(); --k)
    mesh.triangles[bytes.byte() % mesh.triangles.size()] =
        static_cast<std::int32_t>(bytes.below(nx * ny + 2));
  for (unsigned k = bytes.below(8); k > 0; --k)
    mesh.held[bytes.byte() % mesh.held.size()] = static_cast<std::int32_t>(bytes.below(2));
  return mesh;
}

// Small numbers in their range, now and then anything at all.
double numberFrom(fuzz::ByteSource& bytes, double scale) {
  return bytes.below(16) == 15 ? bytes.number() : scale * bytes.byte() / 255.0;
}

TornwalzenPress pressFrom(fuzz::ByteSource& bytes) {
  TornwalzenPress press{};
  press.size = sizeof press;
  press.thickness_points = static_cast<std::int32_t>(bytes.below(4) == 3 ? bytes.below(8) : 0);
  press.bending = static_cast<std::int32_t>(bytes.below(5));
  press.edge = static_cast<std::int32_t>(bytes.below(4));
  press.mesh_side = static_cast<std::int32_t>(bytes.below(4));
  press.punch_above = static_cast<std::int32_t>(bytes.below(2));
  press.flange_of_rim = static_cast<std::int32_t>(bytes.below(2));
  press.thickness_mm = numberFrom(bytes, 3.0);
  press.young_mpa = bytes.below(2) == 0 ? 0.0 : numberFrom(bytes, 300000.0);
  if (bytes.below(2) == 0)
    press.r0 = numberFrom(bytes, 3.0), press.r45 = numberFrom(bytes, 3.0), press.r90 = numberFrom(bytes, 3.0);
  press.rolling_angle_deg = numberFrom(bytes, 360.0);
  press.friction_punch = numberFrom(bytes, 0.3);
  press.friction_die = numberFrom(bytes, 0.3);
  press.binder_force_n = bytes.below(2) == 0 ? 0.0 : numberFrom(bytes, 20000.0);
  return press;
}

void choose(TornwalzenAnalysis* a, const Mesh& mesh, fuzz::ByteSource& bytes) {
  constexpr std::int32_t materials[] = {1, 0, 2, 10, 7};
  tornwalzen_analysis_set_material(a, materials[bytes.below(5)]);
  if (bytes.below(4) == 3) {
    const double parameters[4] = {numberFrom(bytes, 800.0), numberFrom(bytes, 0.02), numberFrom(bytes, 0.4),
                                  numberFrom(bytes, 1.0)};
    tornwalzen_analysis_set_law(a, static_cast<std::int32_t>(bytes.below(7)), parameters,
                                numberFrom(bytes, 2.0));
  }
  tornwalzen_analysis_set_normal_anisotropy(a, bytes.below(2) == 0 ? 1.0 : numberFrom(bytes, 3.0));
  tornwalzen_analysis_set_energy_reference(a, static_cast<std::int32_t>(bytes.below(3)));
  tornwalzen_analysis_set_start(a, static_cast<std::int32_t>(bytes.below(3)));
  if (bytes.below(4) == 3)
    tornwalzen_analysis_set_tolerance_factors(a, numberFrom(bytes, 2.0), numberFrom(bytes, 2.0));
  if (bytes.below(2) == 0) return;
  tornwalzen_analysis_set_model(a, 1);
  const TornwalzenPress press = pressFrom(bytes);
  tornwalzen_analysis_set_press(a, &press);
  if (bytes.below(2) == 0) {
    std::vector<std::int32_t> marks;
    for (std::int32_t k = 0; k < mesh.elements(); ++k)
      marks.push_back(static_cast<std::int32_t>(bytes.byte() > 127));
    tornwalzen_analysis_set_flange(a, marks.data());
  }
  if (bytes.below(4) == 3) {
    const std::int32_t length = static_cast<std::int32_t>(bytes.below(5));
    std::vector<std::int32_t> nodes;
    for (std::int32_t k = 0; k < length; ++k) nodes.push_back(static_cast<std::int32_t>(bytes.byte()));
    const double force = numberFrom(bytes, 100.0);
    nodes.reserve(1);  // never a null pointer
    tornwalzen_analysis_set_beads(a, 1, &length, nodes.data(), &force);
  }
}

std::int32_t endAt(void* countdown, const TornwalzenStep* step) {
  require(step->fraction >= 0.0 && step->fraction <= 1.0);
  return --*static_cast<int*>(countdown) == 0 ? 1 : 0;
}

struct Outcome {
  std::int32_t code = 0;
  TornwalzenReport report{};
  std::vector<double> blank;
};

Outcome runOf(TornwalzenAnalysis* a) {
  Outcome outcome;
  outcome.code = tornwalzen_analysis_run(a);
  outcome.report.size = sizeof outcome.report;
  require(tornwalzen_analysis_report(a, &outcome.report) == TORNWALZEN_OK);
  if (const double* blank = tornwalzen_analysis_blank(a); outcome.code == TORNWALZEN_OK && blank != nullptr)
    outcome.blank.assign(blank, blank + 2 * static_cast<std::size_t>(tornwalzen_analysis_nodes(a)));
  return outcome;
}

void requireTruth(TornwalzenAnalysis* a, const Mesh& mesh, const Outcome& outcome) {
  const TornwalzenReport& r = outcome.report;
  if (outcome.code != TORNWALZEN_OK || r.converged == 0) return;
  require(r.checked == 0 || r.reason == TORNWALZEN_CONVERGED);
  require(r.last_gradient <= r.gradient_limit);
  if (r.checked == 0 || r.blank_inverted > 0 || r.not_finite > 0) return;
  for (const double x : outcome.blank) require(std::isfinite(x));
  const std::int32_t* corners = tornwalzen_analysis_oriented_triangles(a);
  require(corners != nullptr);
  for (std::int32_t k = 0; k < mesh.elements(); ++k) {
    const double* p[3];
    for (int c = 0; c < 3; ++c)
      p[c] = &outcome.blank[2 * static_cast<std::size_t>(corners[3 * k + c] - mesh.first)];
    require((p[1][0] - p[0][0]) * (p[2][1] - p[0][1]) - (p[2][0] - p[0][0]) * (p[1][1] - p[0][1]) > 0.0);
  }
  for (std::size_t i = 0; i < mesh.held.size(); ++i)
    if (mesh.held[i] == 1) require(outcome.blank[i] == mesh.points[i / 2 * 3 + i % 2]);
  std::vector<TornwalzenElementStrain> strains(static_cast<std::size_t>(mesh.elements()));
  require(tornwalzen_analysis_strains(a, strains.data()) == TORNWALZEN_OK);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::ByteSource bytes(data, size);
  const Mesh mesh = meshOf(bytes);
  const Handle handle(tornwalzen_analysis_create());
  TornwalzenAnalysis* a = handle.get();
  require(a != nullptr);
  if (tornwalzen_analysis_set_mesh(a, mesh.nodes(), mesh.elements(), mesh.points.data(),
                                   mesh.triangles.data(), mesh.first) != TORNWALZEN_OK)
    return 0;
  require(tornwalzen_analysis_set_holds(a, mesh.held.data()) == TORNWALZEN_OK);
  tornwalzen_analysis_set_path(a, bytes.below(8) == 7 ? 0 : 1);
  choose(a, mesh, bytes);
  int countdown = bytes.below(8) == 7 ? 1 + static_cast<int>(bytes.byte()) : 0;
  const bool ends = countdown > 0;
  if (ends) tornwalzen_analysis_on_step(a, endAt, &countdown);
  const Outcome first = runOf(a);
  requireTruth(a, mesh, first);
  if (ends) return 0;
  tornwalzen_analysis_set_threads(a, 3);
  const Outcome second = runOf(a);
  require(second.code == first.code && second.report.converged == first.report.converged);
  require(second.blank.size() == first.blank.size());
  for (std::size_t i = 0; i < first.blank.size(); ++i)
    require(std::memcmp(&second.blank[i], &first.blank[i], sizeof(double)) == 0);
  return 0;
}
