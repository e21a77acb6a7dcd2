// The two loops over the pairs.
#include "driver/chord_memory.hpp"

namespace tornwalzen {

namespace {

double dot(Vector<const double> a, Vector<const double> b) {
  double sum = 0.0;
  for (Int64 i = 1; i <= a.length(); ++i) sum += a(i) * b(i);
  return sum;
}

void add(double factor, Vector<const double> a, Vector<double> b) {
  for (Int64 i = 1; i <= a.length(); ++i) b(i) += factor * a(i);
}

}  // namespace

bool ChordMemory::allocate(Int64 length) {
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
  for (Int64 i = 1; i <= length_; ++i) {
    S[i - 1] = RX(i);
    Y[i - 1] = RR(i);
  }
}

void ChordMemory::end(Vector<const double> RX, Vector<const double> RR) {
  if (pairs_ == mostPairs) return;
  double* const S = moves_.data() + pairs_ * length_;
  double* const Y = changes_.data() + pairs_ * length_;
  for (Int64 i = 1; i <= length_; ++i) {
    S[i - 1] = RX(i) - S[i - 1];
    Y[i - 1] -= RR(i);
  }
  product_[pairs_] = dot(move(pairs_), change(pairs_));
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
    share_[pair] = dot(move(pair), RHS) / product_[pair];
    add(-share_[pair], change(pair), RHS);
  }
}

void ChordMemory::after(Vector<double> STEP) const {
  for (Int pair = 0; pair < pairs_; ++pair)
    add(share_[pair] - dot(change(pair), STEP) / product_[pair], move(pair), STEP);
}

}  // namespace tornwalzen
