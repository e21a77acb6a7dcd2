// The two loops over the pairs.
#include "driver/chord_memory.hpp"

namespace tornwalzen {

namespace {

constexpr Int64 leastMoved = 16384;  // unknowns of a range

double dot(ThreadPool* pool, Vector<const double> a, Vector<const double> b) {
  return sumInParts(pool, a.length(), [&](Int64 i) { return a(i) * b(i); });
}

void add(ThreadPool* pool, double factor, Vector<const double> a, Vector<double> b) {
  inRanges(pool, a.length(), leastMoved, [&](Int64 first, Int64 last) {
    for (Int64 i = first; i <= last; ++i) b(i) += factor * a(i);
  });
}

}  // namespace

bool ChordMemory::allocate(ThreadPool* pool, Int64 length) {
  pool_ = pool;
  length_ = length;
  pairs_ = 0;
  return moves_.allocate((mostPairs + 1) * length) && changes_.allocate((mostPairs + 1) * length);
}

Vector<const double> ChordMemory::move(Int pair) const {
  return {"MOVES", moves_.data() + pair * length_, length_};
}

Vector<const double> ChordMemory::change(Int pair) const {
  return {"CHANGES", changes_.data() + pair * length_, length_};
}

void ChordMemory::begin(Vector<const double> RX, Vector<const double> RR) {
  double* const S = moves_.data() + pairs_ * length_;
  double* const Y = changes_.data() + pairs_ * length_;
  inRanges(pool_, length_, leastMoved, [&](Int64 first, Int64 last) {
    for (Int64 i = first; i <= last; ++i) {
      S[i - 1] = RX(i);
      Y[i - 1] = RR(i);
    }
  });
}

void ChordMemory::end(Vector<const double> RX, Vector<const double> RR) {
  if (pairs_ == mostPairs) return;
  double* const S = moves_.data() + pairs_ * length_;
  double* const Y = changes_.data() + pairs_ * length_;
  inRanges(pool_, length_, leastMoved, [&](Int64 first, Int64 last) {
    for (Int64 i = first; i <= last; ++i) {
      S[i - 1] = RX(i) - S[i - 1];
      Y[i - 1] -= RR(i);
    }
  });
  product_[pairs_] = dot(pool_, move(pairs_), change(pairs_));
  if (product_[pairs_] > 0.0) ++pairs_;
}

void ChordMemory::putBack(Vector<double> RX, Vector<double> RR) const {
  const Vector<const double> S = move(pairs_), Y = change(pairs_);
  for (Int64 i = 1; i <= length_; ++i) {
    RX(i) = S(i);
    RR(i) = Y(i);
  }
}

void ChordMemory::before(Vector<double> RHS) {
  for (Int pair = pairs_ - 1; pair >= 0; --pair) {
    share_[pair] = dot(pool_, move(pair), RHS) / product_[pair];
    add(pool_, -share_[pair], change(pair), RHS);
  }
}

void ChordMemory::after(Vector<double> STEP) const {
  for (Int pair = 0; pair < pairs_; ++pair)
    add(pool_, share_[pair] - dot(pool_, change(pair), STEP) / product_[pair], move(pair), STEP);
}

}  // namespace tornwalzen
