// From the part to the blank that the Newton iteration starts from.
#include "driver/sure_start.hpp"

#include <algorithm>
#include <cmath>
#include <utility>

#include "develop/hinge_tree.hpp"
#include "develop/mean_normal.hpp"

namespace tornwalzen {

namespace {
constexpr double steep = 0.3;  // cosine of the slope, 72.5 degrees: beyond it the projection tells little
constexpr double levelNormal =
    1e-9;                       // below it the part stands on its edge, and its mesh decides what is above
constexpr Int rounds = 5;       // of rotations that fit the blank joined before: enough for most parts
constexpr Int mostRounds = 60;  // where that leaves triangles thin: a strip twisted once needs 50
constexpr double thin = 0.5;    // smallest singular value
constexpr double restingMove = 1e-3;  // of the blank's size, in one round: more rounds would not help

/// Is any triangle less than 72.5 degrees steep, seen along N? (Not so on a slender cone.)
bool anySeen(const PartMesh& M, const double (&N)[3]) {
  for (Int e = 1; e <= M.nele; ++e) {
    double S[3];
    areaNormal(M, e, S);
    if (S[0] * N[0] + S[1] * N[1] + S[2] * N[2] > steep * std::sqrt(S[0] * S[0] + S[1] * S[1] + S[2] * S[2]))
      return true;
  }
  return false;
}

}  // namespace

bool SureStart::look(StartKind kind, Table<Int> INTA, Table<const double> KNG, Vector<Int> TWIN) {
  const Int elements = static_cast<Int>(INTA.rows());
  const PartMesh M{KNG, INTA, static_cast<Int>(KNG.rows()), elements};
  kind_ = kind;
  MeanNormal view;
  if (!normals_.allocate(3 * Int64{elements}) || !angle_.allocate(elements) || !known_.allocate(elements, 0))
    return false;
  if (!findMeanNormal(M, view)) return false;
  if (kind == StartKind::flatPatch || !anySeen(M, view.N))
    if (!findLargestPatch(M, view, known_, seed_)) return false;
  flatPatch_ = view.fromPatch;
  turnedOver_ = view.N[2] < -levelNormal;
  if (turnedOver_) {
    for (Int e = 1; e <= elements; ++e) std::swap(INTA(e, 2), INTA(e, 3));
    for (double& n : view.N) n = -n;
  }
  rotationToZ(view.N, axes_);
  const Table<double> NORMALS = normals_.table(elements);
  for (Int e = 1; e <= elements; ++e) {
    double S[3];
    areaNormal(M, e, S);
    for (Int i = 0; i < 3; ++i) NORMALS(i + 1, e) = S[i];
  }
  TWIN_ = TWIN;
  if (!turnedOver_ && TWIN.length() > 0) return true;
  if (!pairHalfEdges(M, twin_)) return false;
  TWIN_ = twin_.vector();
  return true;
}

void SureStart::project(const PotentialMesh& mesh, Table<const double> KNG, Vector<double> RX) {
  for (Int n = 1; n <= KNG.rows(); ++n)
    for (Int i = 0; i < 2; ++i)
      RX(2 * n - 1 + i) = axes_[i][0] * KNG(n, 1) + axes_[i][1] * KNG(n, 2) + axes_[i][2] * KNG(n, 3);
  closestRotations(mesh, RX, angle_.vector());
}

StartOutcome SureStart::hinge(const PotentialMesh& mesh, Table<const double> KNG) {
  const Int elements = static_cast<Int>(mesh.FRAMES.columns());
  const Table<double> NORMALS = normals_.table(elements);
  const Vector<Int> KNOWN = known_.vector();
  StartOutcome outcome{true, flatPatch_, elements};
  for (Int e = 1; e <= elements; ++e) {
    const double x = NORMALS(1, e), y = NORMALS(2, e), z = NORMALS(3, e);
    const double height = axes_[2][0] * x + axes_[2][1] * y + axes_[2][2] * z;
    const bool seen = kind_ == StartKind::projection
                          ? height > steep * std::sqrt(x * x + y * y + z * z)
                          : KNOWN(e) == seed_;  // left there by the search for the patch
    KNOWN(e) = seen ? 1 : 0;
    if (seen) --outcome.hinged;
  }
  const PartMesh M{KNG, mesh.INTA, static_cast<Int>(KNG.rows()), elements};
  outcome.memory = carryRotations(M, TWIN_, NORMALS, KNOWN, angle_.vector());
  return outcome;
}

void SureStart::forgetRotations() {
  normals_.release();
  angle_.release();
  known_.release();
}

void SureStart::join(const PotentialMesh& mesh, MapJoiner& joiner, Vector<double> RX, Vector<double> LOADS) {
  for (Int round = 0; round <= mostRounds; ++round) {
    if (round == 0)
      rotationLoads(mesh, RX, angle_.vector(), LOADS);
    else
      closestRotationLoads(mesh, RX, LOADS);
    joiner.join(LOADS, LOADS);
    double size = 0.0, move = 0.0;
    for (Int64 i = 1; i <= RX.length(); ++i) {
      RX(i) += LOADS(i);
      move = std::max(move, std::fabs(LOADS(i)));
      size = std::max(size, std::fabs(RX(i)));
    }
    if (round >= rounds && (move <= restingMove * size || blankShape(mesh, RX).smallest >= thin)) break;
  }
}

}  // namespace tornwalzen
