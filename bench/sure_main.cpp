// The sure path on samples, folded sheets and real parts, as they lie and turned at random: what it costs, how far
// its blanks are from exact ones and from each other.
//
//   tornwalzen_sure [TRIANGLES [TURNS [CURVE [PARTS-FOLDER [REFERENCE]]]]]
#include <unistd.h>

#include <array>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include "blank_error.hpp"
#include "folded_sheets.hpp"
#include "host_kit/default_run.hpp"
#include "host_kit/parts.hpp"
#include "tornwalzen_ext.h"

namespace {

using host_kit::HostPart;
using Turn = std::array<std::array<double, 3>, 3>;

/// A turn at random, uniform over all (K. Shoemake, Uniform random rotations, 1992).
Turn randomTurn(std::mt19937& engine) {
  std::uniform_real_distribution<double> unit(0.0, 1.0);
  const double u = unit(engine), a = 2 * M_PI * unit(engine), b = 2 * M_PI * unit(engine);
  const double x = std::sqrt(1 - u) * std::sin(a), y = std::sqrt(1 - u) * std::cos(a),
               z = std::sqrt(u) * std::sin(b), w = std::sqrt(u) * std::cos(b);
  return {{{1 - 2 * (y * y + z * z), 2 * (x * y - z * w), 2 * (x * z + y * w)},
           {2 * (x * y + z * w), 1 - 2 * (x * x + z * z), 2 * (y * z - x * w)},
           {2 * (x * z - y * w), 2 * (y * z + x * w), 1 - 2 * (x * x + y * y)}}};
}

HostPart turned(const HostPart& part, const Turn& T) {
  HostPart result = part;
  for (std::size_t n = 0; n < part.knots.size(); n += 3)
    for (std::size_t i = 0; i < 3; ++i)
      result.knots[n + i] =
          T[i][0] * part.knots[n] + T[i][1] * part.knots[n + 1] + T[i][2] * part.knots[n + 2];
  host_kit::holdRigidMotion(result);
  return result;
}

/// The best rigid fit, the sheet turned over if that is better.
double fitError(std::vector<double> found, const std::vector<double>& exact) {
  const double straight = verification::largestError(found, exact);
  for (std::size_t i = 0; i < found.size(); i += 2) found[i] = -found[i];
  return std::min(straight, verification::largestError(found, exact));
}

double sizeOf(const HostPart& part) {
  double low[3] = {1e300, 1e300, 1e300}, high[3] = {-1e300, -1e300, -1e300};
  for (std::size_t k = 0; k < part.knots.size(); ++k) {
    low[k % 3] = std::min(low[k % 3], part.knots[k]);
    high[k % 3] = std::max(high[k % 3], part.knots[k]);
  }
  return std::sqrt(std::pow(high[0] - low[0], 2) + std::pow(high[1] - low[1], 2) +
                   std::pow(high[2] - low[2], 2));
}

int turns = 4, curve = 1, wrong = 0, runs = 0;
FILE* out;

void lineOf(const std::string& name, const host_kit::WholeRun& run, double seconds, double error) {
  const auto& r = tornwalzen::run.record;
  std::fprintf(out,
               "%-26s %7d %s fac %2d sol %3d lap %d it %2d hinged %5d inv %3d->%d s %.3f cert %d g %.1e E "
               "%.6g  err %.1e  %.2fs %s\n",
               name.c_str(), run.triangles(), r.end == tornwalzen::RunEnd::converged ? "ok " : "NO ",
               r.factorizations, r.solves, r.laplaceFactorizations, r.newtonSteps, r.hingedElements,
               r.startInverted, r.turnedElements, r.smallestSingular, r.minimumCertified ? 1 : 0,
               r.lastGradient, r.energy, error, seconds, r.fatalText);
  if (std::getenv("SURE_TIMES") != nullptr)
    std::fprintf(out, "    start %.3f assembly %.3f factorization %.3f solve %.3f search %.3f total %.3f\n",
                 r.development, r.assembly, r.factorization, r.solve, r.lineSearch, r.total);
  std::fflush(out);
}

std::vector<double> runOne(const std::string& name, const HostPart& part, const std::vector<double>& exact,
                           bool relative, double size) {
  const auto begin = std::chrono::steady_clock::now();
  const host_kit::WholeRun run(part, curve);
  const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
  const double error = exact.empty() ? 0.0 : fitError(run.RX, exact);
  ++runs;
  if (tornwalzen::run.record.end != tornwalzen::RunEnd::converged || error > (relative ? 1e-6 * size : 1e-3))
    ++wrong;
  lineOf(name, run, seconds, relative ? error / size : error);
  return run.RX;
}

void study(const std::string& name, HostPart part, const std::vector<double>& exact) {
  std::mt19937 engine(7);
  const double size = sizeOf(part);
  const std::vector<double> lying = runOne(name, part, exact, false, size);
  for (int t = 0; t < turns; ++t) {
    const Turn T = randomTurn(engine);
    runOne("  turned " + std::to_string(t + 1), turned(part, T), lying, true, size);
  }
}

}  // namespace

int main(int argc, char** argv) {
  const int triangles = argc > 1 ? std::atoi(argv[1]) : 5000;
  if (argc > 2) turns = std::atoi(argv[2]);
  if (argc > 3) curve = std::atoi(argv[3]);
  const std::string folder = argc > 4 ? argv[4] : "";
  const int reference = argc > 5 ? std::atoi(argv[5]) : 1;
  const std::string only = argc > 6 ? argv[6] : "";
  const bool verbose = std::getenv("SURE_LINES") != nullptr;
  out = fdopen(dup(1), "w");
  if (!verbose && std::freopen("/dev/null", "w", stdout) == nullptr) return 2;
  tornwalzen::run.options.surePath = std::getenv("FIXED_PATH") == nullptr;
  tornwalzen::run.options.patchStart = std::getenv("PATCH_START") != nullptr;
  tornwalzen_set_energy_reference(reference);
  const auto wanted = [&](const std::string& name) {
    return only.empty() || name.find(only) != std::string::npos;
  };
  for (const auto& shape : shapes::catalogue()) {
    if (!wanted(shape.name)) continue;
    shapes::MeshChoice choice;
    choice.triangles = triangles;
    const shapes::Sheet sheet = shapes::makeShape(shape.name, choice);
    study(shape.name, host_kit::fromSheet(sheet), sheet.blank);
  }
  for (const auto& folded : verification::foldedSheets(std::sqrt(2.0 * 60.0 * 100.0 / triangles)))
    if (wanted(folded.name)) study(folded.name, host_kit::fromSheet(folded.sheet), folded.sheet.blank);
  for (const double angle : {60.0, 90.0, 110.0, 130.0, 150.0, 160.0, 165.0, 170.0, 175.0}) {
    const std::string name = "sphere " + std::to_string(static_cast<int>(angle));
    if (!wanted(name)) continue;
    study(name,
          host_kit::fromSheet(verification::sphereCap(angle, static_cast<int>(std::sqrt(triangles / 6.0)))),
          {});
  }
  if (!folder.empty())
    for (const auto& name : {"scan_tray", "sheet_panel_13holes", "sheet_rail_channel", "car_hood_outer",
                             "dfg_cup_quarter", "round_cup_18", "dome_15"}) {
      if (!wanted(name)) continue;
      HostPart part = host_kit::readObj(folder + "/" + name + ".obj");
      host_kit::holdRigidMotion(part);
      study(name, part, {});
    }
  std::fprintf(out, "%d runs, %d wrong\n", runs, wrong);
  return wrong == 0 ? 0 : 1;
}
