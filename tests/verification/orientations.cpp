// tornwalzen_orientations PARTS [fixed]: samples and real parts in sixteen attitudes each, by the sure path or the fixed
// one. A blank is right if it converged and is the one of the part as it lies, to 1e-6 of its size after a rigid fit;
// refused if the run did not converge; wrong otherwise. Closes with "right N, refused N, wrong N of N"; status 1 where
// one is wrong.
#include <array>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "verification/part_runs.hpp"

namespace {

using host_kit::HostPart;
using verification::distance;
using verification::PartRun;
using verification::runPart;
using verification::sizeOf;

constexpr int attitudes = 16;
constexpr double rightShare = 1e-6;  // of the part's size

using Rotation = std::array<double, 9>;  // by rows

/// A turn by `angle` about a unit axis (O. Rodrigues).
Rotation turnAbout(const std::array<double, 3>& n, double angle) {
  const double c = std::cos(angle), s = std::sin(angle), k = 1.0 - c;
  return {c + k * n[0] * n[0],        k * n[0] * n[1] - s * n[2], k * n[0] * n[2] + s * n[1],
          k * n[1] * n[0] + s * n[2], c + k * n[1] * n[1],        k * n[1] * n[2] - s * n[0],
          k * n[2] * n[0] - s * n[1], k * n[2] * n[1] + s * n[0], c + k * n[2] * n[2]};
}

/// Eight tilts of 10 to 170 degrees about x and y, then uniformly random turns.
Rotation attitude(int k, std::mt19937& random) {
  constexpr double degree = 3.14159265358979323846 / 180.0;
  constexpr double tilts[8] = {10, 45, 90, 170, 10, 45, 90, 135};
  if (k < 8)
    return turnAbout(k < 4 ? std::array<double, 3>{0, 1, 0} : std::array<double, 3>{1, 0, 0},
                     tilts[k] * degree);
  std::normal_distribution<double> normal;
  double q[4], length = 0.0;  // a unit quaternion, uniform on its sphere
  for (double& value : q) {
    value = normal(random);
    length += value * value;
  }
  for (double& value : q) value /= std::sqrt(length);
  const double angle = 2.0 * std::acos(q[0]), s = std::sqrt(1.0 - q[0] * q[0]);
  return turnAbout({q[1] / s, q[2] / s, q[3] / s}, angle);
}

HostPart turned(const HostPart& part, const Rotation& R) {
  HostPart other = part;
  for (std::size_t n = 0; n < part.knots.size(); n += 3)
    for (std::size_t i = 0; i < 3; ++i)
      other.knots[n + i] =
          R[3 * i] * part.knots[n] + R[3 * i + 1] * part.knots[n + 1] + R[3 * i + 2] * part.knots[n + 2];
  host_kit::holdRigidMotion(other);
  return other;
}

struct Count {
  int right = 0, refused = 0, wrong = 0;
};

void tryAttitudes(const std::string& name, const HostPart& part, bool sure, Count& total) {
  std::mt19937 random(20261121);
  const double size = sizeOf(part);
  const PartRun asItLies = runPart(part, 1);  // the measure of both paths
  Count count;
  double worst = 0.0;
  int factorizations = 0;
  for (int k = 0; k < attitudes; ++k) {
    const HostPart other = turned(part, attitude(k, random));
    const PartRun run = runPart(other, sure ? 1 : 0);
    factorizations = std::max(factorizations, run.report.factorizations);
    if (!run.converged() || !asItLies.converged()) {
      ++count.refused;
      continue;
    }
    const double error = distance(run.blank, asItLies.blank);
    worst = std::max(worst, error / size);
    error <= rightShare* size ? ++count.right : ++count.wrong;
  }
  std::printf(
      "%-22s %7d triangles: right %2d, refused %2d, wrong %2d; largest difference %.1e of the size, "
      "at most %d factorizations\n",
      name.c_str(), part.elements(), count.right, count.refused, count.wrong, worst, factorizations);
  std::fflush(stdout);
  total.right += count.right, total.refused += count.refused, total.wrong += count.wrong;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2 || argc > 3 || (argc == 3 && std::strcmp(argv[2], "fixed") != 0)) {
    std::fprintf(stderr, "usage: tornwalzen_orientations PARTS [fixed]\n");
    return 2;
  }
  const bool sure = argc == 2;
  Count total;
  for (const char* sample : {"hat", "square_cup", "round_cup", "half_pipe", "s_rail", "box", "cone_sector",
                             "flanged_hole", "l_bend"})
    tryAttitudes(sample, host_kit::samplePart(sample, 2000), sure, total);
  for (const std::string& name : host_kit::realParts()) {
    HostPart part = host_kit::realPart(argv[1], name);
    if (part.knots.empty()) {
      std::printf("%-22s skipped: not in %s\n", name.c_str(), argv[1]);
      continue;
    }
    host_kit::holdRigidMotion(part);
    tryAttitudes(name, part, sure, total);
  }
  std::printf("right %d, refused %d, wrong %d of %d\n", total.right, total.refused, total.wrong,
              total.right + total.refused + total.wrong);
  return total.wrong == 0 ? 0 : 1;
}
