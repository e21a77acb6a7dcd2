// Laplacians of the nodes.
#include "driver/map_joiner.hpp"

namespace tornwalzen {

bool MapJoiner::arrange(const PotentialMesh& mesh, Vector<const Int> COLS, Vector<const Int> ROWI,
                        Vector<const Int> FREE, const SparseSystem* pairs) {
  const Int64 nodes = FREE.length() / 2;
  if (!load_.allocate(nodes) || !move_.allocate(nodes)) return false;
  shared_ = true;
  for (Int64 n = 1; n <= nodes; ++n) shared_ = shared_ && FREE(2 * n - 1) == FREE(2 * n);
  for (Int axis = 0; axis < (shared_ ? 1 : 2); ++axis) {
    SparseSystem& system = system_[axis];
    if (!free_[axis].allocate(nodes) || !system.prepareNodes(COLS, ROWI, pairs)) return false;
    const Vector<Int> flags = free_[axis].vector();
    for (Int64 n = 1; n <= nodes; ++n) flags(n) = FREE(2 * n - 1 + axis);
    laplacian(mesh, system.COLS(), system.ROWI(), system.SYSM());
    system.hold(flags);
  }
  return true;
}

bool MapJoiner::factorize() {
  for (Int axis = 0; axis < (shared_ ? 1 : 2); ++axis) {
    ++factorizations_;
    if (!system_[axis].factorize()) return false;
  }
  return true;
}

void MapJoiner::join(Vector<const double> LOADS, Vector<double> DX) {
  const Vector<double> LOAD = load_.vector(), MOVE = move_.vector();
  for (Int axis = 0; axis < 2; ++axis) {
    const Int which = shared_ ? 0 : axis;
    const Vector<Int> flags = free_[which].vector();
    for (Int64 n = 1; n <= LOAD.length(); ++n) LOAD(n) = flags(n) != 0 ? LOADS(2 * n - 1 + axis) : 0.0;
    system_[which].solve(LOAD, MOVE);
    ++solves_;
    for (Int64 n = 1; n <= LOAD.length(); ++n) DX(2 * n - 1 + axis) = MOVE(n);
  }
}

}  // namespace tornwalzen
