// Holds that only place the blank, and holds that pin it.
#include "driver/blank_holds.hpp"

#include <algorithm>
#include <cmath>

namespace tornwalzen {

namespace {

constexpr double roundOff = 1e-9;  // by so much two nodes may lie too close, relative to their distance

/// The node farthest from (u, v).
Int farthestNode(Vector<const double> RX, Vector<const Int> USED, double u, double v) {
  Int best = 1;
  double largest = -1.0;
  for (Int n = 1; n <= RX.length() / 2; ++n) {
    const double du = RX(2 * n - 1) - u, dv = RX(2 * n) - v, square = du * du + dv * dv;
    if (USED(n) == 0 || !(square > largest)) continue;
    largest = square;
    best = n;
  }
  return best;
}

/// The node nearest to the middle of all.
Int middleNode(Vector<const double> RX, Vector<const Int> USED) {
  const Int nodes = static_cast<Int>(USED.length());
  double u = 0.0, v = 0.0, count = 0.0;
  for (Int n = 1; n <= nodes; ++n) {
    if (USED(n) == 0) continue;
    u += RX(2 * n - 1);
    v += RX(2 * n);
    count += 1.0;
  }
  u /= count;
  v /= count;
  Int best = 1;
  double least = INFINITY;
  for (Int n = 1; n <= nodes; ++n) {
    const double du = RX(2 * n - 1) - u, dv = RX(2 * n) - v, square = du * du + dv * dv;
    if (USED(n) == 0 || !(square < least)) continue;
    least = square;
    best = n;
  }
  return best;
}

/// Holds the direction of `node` that a turn about `centre` moves most.
void holdTurn(Vector<const double> RX, Int centre, Int node, Vector<Int> FREE) {
  const double du = RX(2 * node - 1) - RX(2 * centre - 1), dv = RX(2 * node) - RX(2 * centre);
  FREE(std::fabs(du) >= std::fabs(dv) ? 2 * node : 2 * node - 1) = 0;
}

}  // namespace

BlankHolds::BlankHolds(Vector<const Int> ARFA, Vector<const Int> USED) : ARFA_(ARFA), USED_(USED) {
  for (Int i = 1; i <= ARFA.length(); ++i) {
    if (!held(i)) continue;
    const Int axis = (i + 1) % 2;  // 0 along u, 1 along v
    if (held_[axis] < 2) node_[axis][held_[axis]] = (i + 1) / 2;
    ++held_[axis];
  }
  free_ = rigidOnly_ = held_[0] <= 2 && held_[1] <= 2 && held_[0] + held_[1] <= 3;
}

/// Returns the node about which the blank could still turn.
Int BlankHolds::holdShift(Vector<const double> RX, Vector<Int> FREE) const {
  for (Int i = 1; i <= FREE.length(); ++i) FREE(i) = USED_((i + 1) / 2) == 0 || (!free_ && held(i)) ? 0 : 1;
  const Int first = std::max(node_[0][0], node_[1][0]);
  const Int centre = free_ || first == 0 ? middleNode(RX, USED_) : first;
  for (Int axis = 0; axis < 2; ++axis)
    if (free_ || held_[axis] == 0) FREE(2 * centre - 1 + axis) = 0;
  return centre;
}

void BlankHolds::standing(Vector<const double> RX, Vector<Int> FREE) const {
  if (RX.length() == 0) return;
  const Int centre = holdShift(RX, FREE);
  if (free_ || (held_[0] < 2 && held_[1] < 2))
    holdTurn(RX, centre, farthestNode(RX, USED_, RX(2 * centre - 1), RX(2 * centre)), FREE);
}

void BlankHolds::standingShift(Vector<const double> RX, Vector<Int> FREE) const {
  if (RX.length() == 0) return;
  if (free_)
    holdShift(RX, FREE);
  else
    standing(RX, FREE);
}

bool BlankHolds::turnFor(Table<const double> KNG, Vector<const double> RX, double& turn) const {
  turn = 0.0;
  for (Int axis = 0; axis < 2; ++axis) {
    if (held_[axis] != 2) continue;
    const Int a = node_[axis][0], b = node_[axis][1];
    const double du = RX(2 * b - 1) - RX(2 * a - 1), dv = RX(2 * b) - RX(2 * a);
    const double r = std::sqrt(du * du + dv * dv), wanted = KNG(b, axis + 1) - KNG(a, axis + 1);
    if (!(std::fabs(wanted) <= r * (1.0 + roundOff))) return false;
    // seen along the axis the second node lies at the angle ±acos: of both turns the smaller one
    const double now = axis == 0 ? std::atan2(dv, du) : std::atan2(-du, dv);
    const double then = r > 0.0 ? std::acos(std::clamp(wanted / r, -1.0, 1.0)) : 0.0;
    const auto wrapped = [](double angle) { return std::remainder(angle, 2.0 * 3.14159265358979323846); };
    const double one = wrapped(then - now), other = wrapped(-then - now);
    turn = std::fabs(one) <= std::fabs(other) ? one : other;
  }
  return true;
}

bool BlankHolds::place(Table<const double> KNG, Vector<double> RX) const {
  if (free_) {
    double turn;
    if (!turnFor(KNG, RX, turn)) return false;
    const double c = std::cos(turn), s = std::sin(turn);
    double shift[2] = {0.0, 0.0};
    for (Int axis = 0; axis < 2; ++axis) {
      if (held_[axis] == 0) continue;
      const Int n = node_[axis][0];
      const double turned = axis == 0 ? c * RX(2 * n - 1) - s * RX(2 * n) : s * RX(2 * n - 1) + c * RX(2 * n);
      shift[axis] = KNG(n, axis + 1) - turned;
    }
    for (Int n = 1; n <= RX.length() / 2; ++n) {
      const double u = RX(2 * n - 1), v = RX(2 * n);
      RX(2 * n - 1) = c * u - s * v + shift[0];
      RX(2 * n) = s * u + c * v + shift[1];
    }
  }
  for (Int i = 1; i <= RX.length(); ++i)
    if (ARFA_(i) == 0 || USED_((i + 1) / 2) == 0) RX(i) = KNG((i + 1) / 2, (i + 1) % 2 + 1);
  return true;
}

}  // namespace tornwalzen
