// Crossings and nesting of the outline's loops.
#include "develop/outline_crossings.hpp"

#include <algorithm>

namespace tornwalzen {

namespace {

constexpr Int nestingTrials = 16;  // corners of a loop looked at for one that touches no other loop

struct Box {
  double left, right, bottom, top;  // mm
};

bool meet(const Box& a, const Box& b) {
  return a.left <= b.right && b.left <= a.right && a.bottom <= b.top && b.bottom <= a.top;
}

Box around(const Box& a, const Box& b) {
  return {std::min(a.left, b.left), std::max(a.right, b.right), std::min(a.bottom, b.bottom),
          std::max(a.top, b.top)};
}

/// The edges of all loops, 1..count, and their tree: box k of 1..2·leaves − 1 holds boxes 2k and 2k + 1, edge s is box
/// leaves + s − 1. Boxes without an edge are empty: their left side lies right of everything.
class Outline {
 public:
  bool build(const PartTopology& T, Vector<const double> RX);

  Int count() const { return count_; }
  Int leaves() const { return leaves_; }
  const Box& box(Int k) const { return boxes_.vector()(k); }
  Int node(Int s) const { return NODE_(s); }
  Int next(Int s) const { return next_.vector()(s); }
  Int before(Int s) const { return before_.vector()(s); }
  PlanePoint start(Int s) const { return {RX_(2 * Int64{node(s)} - 1), RX_(2 * Int64{node(s)})}; }
  PlanePoint end(Int s) const { return start(next(s)); }

 private:
  Int count_ = 0, leaves_ = 1;
  Vector<const Int> NODE_;
  Vector<const double> RX_;
  OwnArray<Int> next_{"NEXT"}, before_{"BEFORE"};
  OwnArray<Box> boxes_{"BOX"};
};

bool Outline::build(const PartTopology& T, Vector<const double> RX) {
  NODE_ = T.LOOPNODE.vector();
  RX_ = RX;
  count_ = static_cast<Int>(T.LOOPNODE.length());
  while (leaves_ < count_) leaves_ *= 2;
  if (!next_.allocate(count_) || !before_.allocate(count_) || !boxes_.allocate(2 * Int64{leaves_}))
    return false;
  const Vector<const Int> LOOPSTART = T.LOOPSTART.vector();
  for (Int l = 1; l <= T.loops; ++l)
    for (Int s = LOOPSTART(l); s < LOOPSTART(l + 1); ++s) {
      const Int following = s + 1 < LOOPSTART(l + 1) ? s + 1 : LOOPSTART(l);
      next_.vector()(s) = following;
      before_.vector()(following) = s;
    }
  const Vector<Box> BOX = boxes_.vector();
  constexpr double beyond = 2.0 * largestCoordinate;
  for (Int s = 1; s <= leaves_; ++s) BOX(leaves_ + s - 1) = {beyond, -beyond, beyond, -beyond};
  for (Int s = 1; s <= count_; ++s) {
    const PlanePoint p = start(s), q = end(s);
    BOX(leaves_ + s - 1) = {std::min(p.x, q.x), std::max(p.x, q.x), std::min(p.y, q.y), std::max(p.y, q.y)};
  }
  for (Int k = leaves_ - 1; k >= 1; --k) BOX(k) = around(BOX(2 * k), BOX(2 * k + 1));
  return true;
}

bool same(const PlanePoint& a, const PlanePoint& b) {
  return a.x == b.x && a.y == b.y;
}

/// r, on the line through p and q, lies strictly between them.
bool between(const PlanePoint& p, const PlanePoint& q, const PlanePoint& r) {
  if (p.x != q.x) return (p.x < r.x && r.x < q.x) || (q.x < r.x && r.x < p.x);
  return (p.y < r.y && r.y < q.y) || (q.y < r.y && r.y < p.y);
}

/// The side of the path a, p, b on which d lies, seen from p: +1 left, −1 right, 0 on one of its legs or not told,
/// where the path turns back upon itself.
int sideOfPath(const PlanePoint& a, const PlanePoint& p, const PlanePoint& b, const PlanePoint& d) {
  const int turn = orientation(a, p, b), of1 = orientation(a, p, d), of2 = orientation(p, b, d);
  const auto along = [&p](const PlanePoint& e, const PlanePoint& f) {  // f lies the same way from p as e
    return (e.x - p.x) * (f.x - p.x) + (e.y - p.y) * (f.y - p.y) > 0.0;
  };
  if ((of1 == 0 && along(a, d)) || (of2 == 0 && along(b, d))) return 0;
  if (turn > 0) return of1 > 0 && of2 > 0 ? 1 : -1;
  if (turn < 0) return of1 < 0 && of2 < 0 ? -1 : 1;
  return along(a, b) ? 0 : of1;
}

enum class Contact { none, touch, crossing };

/// The contact of the corner at the start of edge s with edge t, in whose inside it lies.
Contact cornerOnEdge(const Outline& O, Int s, Int t) {
  const int from = orientation(O.start(t), O.end(t), O.start(O.before(s)));
  const int to = orientation(O.start(t), O.end(t), O.end(s));
  return from * to < 0 ? Contact::crossing : Contact::touch;
}

/// The contact of two corners at the same place, at the starts of edges s and t.
Contact cornerOnCorner(const Outline& O, Int s, Int t) {
  const PlanePoint a = O.start(O.before(s)), p = O.start(s), b = O.end(s);
  const int from = sideOfPath(a, p, b, O.start(O.before(t))), to = sideOfPath(a, p, b, O.end(t));
  return from * to < 0 ? Contact::crossing : Contact::touch;
}

/// Edges s and t of the outline, s ≠ t. A corner belongs to the edge that starts there, so each contact is found once.
Contact contactOf(const Outline& O, Int s, Int t) {
  const PlanePoint p = O.start(s), q = O.end(s), r = O.start(t), u = O.end(t);
  const int ofR = orientation(p, q, r), ofU = orientation(p, q, u);
  if (O.next(s) == t || O.next(t) == s) {
    if (ofR != 0 || ofU != 0) return Contact::none;
    const PlanePoint corner = O.next(s) == t ? r : p, e = O.next(s) == t ? p : q, f = O.next(s) == t ? u : r;
    return between(corner, e, f) || between(corner, f, e) || same(e, f) ? Contact::touch : Contact::none;
  }
  const int ofP = orientation(r, u, p), ofQ = orientation(r, u, q);
  if (ofR * ofU < 0 && ofP * ofQ < 0) return Contact::crossing;
  if (same(p, r)) return cornerOnCorner(O, s, t);
  if (ofR == 0 && between(p, q, r)) return cornerOnEdge(O, t, s);
  if (ofP == 0 && between(r, u, p)) return cornerOnEdge(O, s, t);
  return Contact::none;
}

/// Where the edges s and t meet (mm): exact in the parameter but for rounding, and on edge s.
PlanePoint meetingPoint(const Outline& O, Int s, Int t) {
  const PlanePoint p = O.start(s), q = O.end(s), r = O.start(t), u = O.end(t);
  const double dx = q.x - p.x, dy = q.y - p.y, ex = u.x - r.x, ey = u.y - r.y;
  const double below = dx * ey - dy * ex, w = ((r.x - p.x) * ey - (r.y - p.y) * ex) / below;
  if (!(w >= 0.0)) return p;
  return w > 1.0 ? q : PlanePoint{p.x + w * dx, p.y + w * dy};
}

class Search {
 public:
  Search(const Outline& outline, OutlineCheck& check) : O(outline), C(check) {}

  /// All pairs of edges below the boxes j and k of the same level.
  void visit(Int j, Int k) {
    if (!C.complete) return;
    if (++visited_ > outlinePairBudget) {
      C.complete = false;
      return;
    }
    if (!meet(O.box(j), O.box(k))) return;
    if (j >= O.leaves()) {
      if (j != k) test(j - O.leaves() + 1, k - O.leaves() + 1);
      return;
    }
    visit(2 * j, 2 * k);
    visit(2 * j, 2 * k + 1);
    if (j != k) visit(2 * j + 1, 2 * k);
    visit(2 * j + 1, 2 * k + 1);
  }

  void placeFirst() {
    if (C.crossings == 0) return;
    const PlanePoint at = meetingPoint(O, first_, second_);
    C.PLACE[0] = at.x;
    C.PLACE[1] = at.y;
    C.NODE[0] = O.node(first_);
    C.NODE[1] = O.node(second_);
  }

 private:
  void test(Int s, Int t) {
    const Contact contact = contactOf(O, s, t);
    if (contact == Contact::touch) ++C.touches;
    if (contact != Contact::crossing) return;
    if (C.crossings++ == 0 || s < first_ || (s == first_ && t < second_)) {
      first_ = s;
      second_ = t;
    }
  }

  const Outline& O;
  OutlineCheck& C;
  Int64 visited_ = 0;
  Int first_ = 0, second_ = 0;
};

/// How often the edges below box k, but those of `from`..`to`, run round p: those that cross the ray from p to the
/// right, upwards less downwards. upon: out, set where p lies on one of them; the number then says nothing.
Int turnsAround(const Outline& O, Int k, const PlanePoint& p, Int from, Int to, bool& upon) {
  const Box& box = O.box(k);
  if (box.bottom > p.y || box.top < p.y || box.right < p.x) return 0;
  if (k < O.leaves())
    return turnsAround(O, 2 * k, p, from, to, upon) + turnsAround(O, 2 * k + 1, p, from, to, upon);
  const Int s = k - O.leaves() + 1;
  if (s >= from && s <= to) return 0;
  const PlanePoint a = O.start(s), b = O.end(s);
  const int side = orientation(a, b, p);
  if (side == 0 && box.left <= p.x) upon = true;
  if (a.y <= p.y && b.y > p.y) return side > 0 ? 1 : 0;
  if (b.y <= p.y && a.y > p.y) return side < 0 ? -1 : 0;
  return 0;
}

/// Told at the first node of the loop that lies on no other one.
bool liesRight(const Outline& O, Int from, Int to, bool hole) {
  for (Int s = from; s <= to && s < from + nestingTrials; ++s) {
    bool upon = false;
    const Int turns = turnsAround(O, 1, O.start(s), from, to, upon);
    if (!upon) return turns == (hole ? 1 : 0);
  }
  return true;
}

/// Twice the signed area of a loop (mm²), from its first corner so that a far loop loses no digits.
double twiceLoopArea(const Outline& O, Int from, Int to) {
  const PlanePoint o = O.start(from);
  double sum = 0.0;
  for (Int s = from; s <= to; ++s) {
    const PlanePoint p = O.start(s), q = O.end(s);
    sum += (p.x - o.x) * (q.y - o.y) - (p.y - o.y) * (q.x - o.x);
  }
  return sum;
}

void checkNesting(const PartTopology& T, const Outline& O, OutlineCheck& C) {
  const Vector<const Int> LOOPSTART = T.LOOPSTART.vector();
  Int outer = 0;
  double largest = 0.0;
  for (Int l = 1; l <= T.loops; ++l) {
    const double area = twiceLoopArea(O, LOOPSTART(l), LOOPSTART(l + 1) - 1);
    if (!(area > largest)) continue;
    largest = area;
    outer = l;
  }
  for (Int l = 1; l <= T.loops; ++l) {
    const Int from = LOOPSTART(l), to = LOOPSTART(l + 1) - 1;
    const bool hole = !(twiceLoopArea(O, from, to) > 0.0);
    const bool second = T.pieces == 1 && !hole && l != outer;
    if (!second && liesRight(O, from, to, hole)) continue;
    if (C.misplacedLoops++ == 0) C.firstMisplacedNode = O.node(from);
  }
}

}  // namespace

bool checkOutline(const PartTopology& T, Vector<const double> RX, OutlineCheck& C) {
  C = {};
  Outline outline;
  if (!outline.build(T, RX)) return false;
  if (outline.count() == 0) return true;
  Search search(outline, C);
  search.visit(1, 1);
  search.placeFirst();
  checkNesting(T, outline, C);
  return true;
}

}  // namespace tornwalzen
