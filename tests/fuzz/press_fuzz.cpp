// The press model on small grids with any settings at all, flange marks and beads: a setting is taken or refused in words,
// every run ends, one that converged has a finite blank that nothing is turned over in and finite figures, and the next run
// gives the same bits.
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

#include "fuzz/byte_source.hpp"
#include "fuzz/fuzz_target.hpp"
#include "tornwalzen_analysis.h"

namespace {

void require(bool condition) {
  if (!condition) std::abort();
}

struct Grid {
  std::vector<double> knots;
  std::vector<std::int32_t> inzi;
  std::int32_t nodes() const { return static_cast<std::int32_t>(knots.size() / 3); }
  std::int32_t elements() const { return static_cast<std::int32_t>(inzi.size() / 3); }
};

Grid draw(fuzz::ByteSource& bytes) {
  Grid grid;
  const int nx = 2 + static_cast<int>(bytes.below(4)), ny = 2 + static_cast<int>(bytes.below(4));
  for (int j = 0; j < ny; ++j)
    for (int i = 0; i < nx; ++i)
      grid.knots.insert(grid.knots.end(), {10.0 * i, 10.0 * j, bytes.number() / 2.0});
  for (int j = 0; j + 1 < ny; ++j)
    for (int i = 0; i + 1 < nx; ++i) {
      const int a = j * nx + i + 1, b = a + 1, c = a + nx, d = c + 1;
      grid.inzi.insert(grid.inzi.end(), {a, b, d, a, d, c});
    }
  for (unsigned k = bytes.below(4); k > 0; --k) grid.knots[bytes.byte() % grid.knots.size()] = bytes.number();
  return grid;
}

/// Mostly a value that a press has, now and then any number.
double about(fuzz::ByteSource& bytes, double usual) {
  const unsigned kind = bytes.below(8);
  return kind == 7 ? bytes.number() : kind == 6 ? 0.0 : usual * (0.25 + 0.25 * kind);
}

TornwalzenPress drawPress(fuzz::ByteSource& bytes) {
  TornwalzenPress press{};
  press.size = sizeof press;
  press.thickness_points = bytes.below(8) == 7 ? static_cast<std::int32_t>(bytes.byte()) - 128
                                               : static_cast<std::int32_t>(bytes.below(2)) * 5;
  press.bending = static_cast<std::int32_t>(bytes.below(5));
  press.edge = static_cast<std::int32_t>(bytes.below(4));
  press.mesh_side = static_cast<std::int32_t>(bytes.below(4));
  press.punch_above = static_cast<std::int32_t>(bytes.below(2));
  press.flange_of_rim = static_cast<std::int32_t>(bytes.below(2));
  press.thickness_mm = about(bytes, 1.0);
  press.young_mpa = about(bytes, 206000.0);
  if (bytes.below(2) == 1)
    press.r0 = about(bytes, 1.5), press.r45 = about(bytes, 1.0), press.r90 = about(bytes, 2.0);
  press.rolling_angle_deg = about(bytes, 60.0);
  press.friction_punch = about(bytes, 0.1);
  press.friction_die = about(bytes, 0.1);
  press.binder_force_n = about(bytes, 1000.0);
  return press;
}

void setMarks(TornwalzenAnalysis* handle, const Grid& grid, fuzz::ByteSource& bytes) {
  if (bytes.below(2) == 1) {
    std::vector<std::int32_t> marks(static_cast<std::size_t>(grid.elements()));
    for (std::int32_t& mark : marks)
      mark = static_cast<std::int32_t>(bytes.below(16) == 15 ? 2 : bytes.below(2));
    tornwalzen_analysis_set_flange(handle, marks.data());
  }
  std::vector<std::int32_t> lengths, nodes;
  std::vector<double> forces;
  for (unsigned beads = bytes.below(3); beads > 0; --beads) {
    lengths.push_back(1 + static_cast<std::int32_t>(bytes.below(4)));
    const std::int32_t first =
        static_cast<std::int32_t>(bytes.below(static_cast<unsigned>(grid.nodes()) + 2));
    for (std::int32_t k = 0; k < lengths.back(); ++k) nodes.push_back(first + k);
    forces.push_back(about(bytes, 50.0));
  }
  tornwalzen_analysis_set_beads(handle, static_cast<std::int32_t>(lengths.size()), lengths.data(),
                                nodes.data(), forces.data());
}

std::vector<double> outcome(TornwalzenAnalysis* handle, const Grid& grid) {
  const std::int32_t code = tornwalzen_analysis_run(handle);
  std::vector<double> values{static_cast<double>(code)};
  TornwalzenReport report{};
  report.size = sizeof report;
  if (code != TORNWALZEN_OK || tornwalzen_analysis_report(handle, &report) != TORNWALZEN_OK) return values;
  values.push_back(report.converged);
  if (report.converged == 0) return values;
  const double* blank = tornwalzen_analysis_blank(handle);
  require(blank != nullptr);
  values.insert(values.end(), blank, blank + 2 * grid.nodes());
  TornwalzenPressResult result{};
  result.size = sizeof result;
  require(tornwalzen_analysis_press_result(handle, &result) == TORNWALZEN_OK);
  values.insert(values.end(), {result.exponent, result.thinnest_mm, result.thickest_mm, result.work_nmm,
                               result.punch_pressure_mpa, result.die_pressure_mpa, result.binder_pressure_mpa,
                               result.punch_force_n});
  for (const double value : values) require(std::isfinite(value));
  require(result.exponent >= 1.0 && result.exponent <= 2.0 && result.thinnest_mm > 0.0);
  std::int32_t left = 0;
  for (std::int32_t e = 0; e < grid.elements(); ++e) {
    const auto at = [&](int corner, int axis) {
      return blank[2 * (grid.inzi[static_cast<std::size_t>(3 * e + corner)] - 1) + axis];
    };
    const double area =
        (at(1, 0) - at(0, 0)) * (at(2, 1) - at(0, 1)) - (at(1, 1) - at(0, 1)) * (at(2, 0) - at(0, 0));
    require(area != 0.0);
    left += area > 0.0 ? 1 : 0;
  }
  require(left == 0 || left == grid.elements());
  return values;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::ByteSource bytes(data, size);
  const std::unique_ptr<TornwalzenAnalysis, std::int32_t (*)(TornwalzenAnalysis*)> handle(
      tornwalzen_analysis_create(), tornwalzen_analysis_destroy);
  const Grid grid = draw(bytes);
  if (tornwalzen_analysis_set_mesh(handle.get(), grid.nodes(), grid.elements(), grid.knots.data(),
                                   grid.inzi.data(), 1) != TORNWALZEN_OK)
    return 0;
  std::vector<std::int32_t> held(static_cast<std::size_t>(2 * grid.nodes()), 0);
  held[0] = held[1] = held[held.size() - 1] = 1;
  for (unsigned k = bytes.below(4); k > 0; --k) held[bytes.byte() % held.size()] ^= 1;
  tornwalzen_analysis_set_holds(handle.get(), held.data());
  const double law[] = {about(bytes, 549.0), about(bytes, 0.007), about(bytes, 0.22)};
  tornwalzen_analysis_set_law(handle.get(), TORNWALZEN_SWIFT, law, 1.0);
  tornwalzen_analysis_set_model(handle.get(), 1);
  const TornwalzenPress press = drawPress(bytes);
  if (const std::int32_t code = tornwalzen_analysis_set_press(handle.get(), &press); code != TORNWALZEN_OK)
    require(std::strlen(tornwalzen_analysis_error_text(handle.get(), code, 1)) > 0);
  setMarks(handle.get(), grid, bytes);
  const std::vector<double> first = outcome(handle.get(), grid), second = outcome(handle.get(), grid);
  require(first.size() == second.size() &&
          std::memcmp(first.data(), second.data(), first.size() * sizeof(double)) == 0);
  return 0;
}
