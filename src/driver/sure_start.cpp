// From the part to the blank that the Newton iteration starts from.
#include "driver/sure_start.hpp"

#include <algorithm>
#include <cmath>
#include <utility>

#include "develop/hinge_tree.hpp"
#include "develop/neighbours.hpp"
#include "develop/part_attitude.hpp"

namespace tornwalzen {

namespace {
constexpr double steep = 0.3;  // cosine of the slope, 72.5 degrees: beyond it the projection tells little
constexpr double levelNormal =
    1e-9;  // below it the part stands on its edge, and its mesh decides what is above
constexpr Int rounds = 5;
}  // namespace

bool SureStart::look(StartKind kind, Table<Int> INTA, Table<const double> KNG) {
  const Int64 elements = INTA.rows(), nodes = KNG.rows();
  OwnArray<Int> scratch("SCRATCH");
  kind_ = kind;
  if (!neighbour_.allocate(3 * elements) || !side_.allocate(3 * elements) || !known_.allocate(2 * elements) ||
      !normals_.allocate(3 * elements) || !angle_.allocate(elements) ||
      !scratch.allocate(nodes + 1 + 3 * elements))
    return false;
  for (;;) {
    findNeighbours(static_cast<Int>(nodes), INTA, scratch.vector(), neighbour_.table(elements),
                   side_.table(elements));
    triangleNormals(INTA, KNG, normals_.table(elements));
    const Direction view =
        kind == StartKind::projection
            ? viewDirection(normals_.table(elements), neighbour_.table(elements), known_.vector())
            : largestPatch(normals_.table(elements), neighbour_.table(elements), known_.vector());
    flatPatch_ = view.flatPatch;
    seed_ = view.seed;
    if (!(view.z < -levelNormal)) {
      axesOf(view, axes_);
      return true;
    }
    for (Int64 e = 1; e <= elements; ++e) std::swap(INTA(e, 2), INTA(e, 3));
  }
}

StartOutcome SureStart::rotate(const PotentialMesh& mesh, Table<const double> KNG, Vector<double> RX) {
  const Int elements = static_cast<Int>(mesh.FRAMES.columns());
  const Table<double> NORMALS = normals_.table(elements);
  const Vector<Int> KNOWN("KNOWN", known_.vector().data(), elements);
  for (Int n = 1; n <= KNG.rows(); ++n)
    for (Int i = 0; i < 2; ++i)
      RX(2 * n - 1 + i) = axes_[i][0] * KNG(n, 1) + axes_[i][1] * KNG(n, 2) + axes_[i][2] * KNG(n, 3);
  closestRotations(mesh, RX, angle_.vector());

  StartOutcome outcome{true, flatPatch_, seed_, elements};
  for (Int e = 1; e <= elements; ++e) {
    const double x = NORMALS(1, e), y = NORMALS(2, e), z = NORMALS(3, e);
    const double height = axes_[2][0] * x + axes_[2][1] * y + axes_[2][2] * z;
    const bool seen = kind_ == StartKind::projection
                          ? height > steep * std::sqrt(x * x + y * y + z * z)
                          : KNOWN(e) == seed_;  // left there by the search for the patch
    KNOWN(e) = seen ? 1 : 0;
    if (seen) --outcome.hinged;
  }
  outcome.memory = carryRotations(mesh.INTA, KNG, NORMALS, neighbour_.table(elements), side_.table(elements),
                                  KNOWN, angle_.vector());
  return outcome;
}

void SureStart::join(const PotentialMesh& mesh, MapJoiner& joiner, Vector<double> RX, Vector<double> LOADS) {
  for (Int round = 0; round <= rounds; ++round) {
    if (round == 0)
      rotationLoads(mesh, RX, angle_.vector(), LOADS);
    else
      closestRotationLoads(mesh, RX, LOADS);
    joiner.join(LOADS, LOADS);
    for (Int64 i = 1; i <= RX.length(); ++i) RX(i) += LOADS(i);
  }
}

}  // namespace tornwalzen
