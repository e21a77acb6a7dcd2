// The orientation of three points in exact arithmetic.
//
// The determinant is ax·by − ax·cy − cx·by − ay·bx + ay·cx + cy·bx. Each product is the sum of two doubles, the
// rounded product and what was rounded off; the twelve of them are added up as an expansion: a sum of doubles that do
// not overlap, smallest first, so that the last one that is not zero has the sign of the whole.
#include "develop/plane_predicates.hpp"

namespace tornwalzen {

namespace {

struct Expansion {
  double term[12];
  int count = 0;

  /// Adds b exactly: from the smallest term on, each sum passes its rounding error down and itself up (Shewchuk's
  /// grow-expansion, with Knuth's error of a sum).
  void add(double b) {
    for (int i = 0; i < count; ++i) {
      const double s = b + term[i], part = s - b;
      const double error = (b - (s - part)) + (term[i] - part);
      term[i] = error;
      b = s;
    }
    term[count++] = b;
  }
  void addProduct(double p, double q) {
    const double product = p * q;
    add(std::fma(p, q, -product));
    add(product);
  }
  int sign() const {
    for (int i = count - 1; i >= 0; --i)
      if (term[i] != 0.0) return term[i] > 0.0 ? 1 : -1;
    return 0;
  }
};

}  // namespace

int exactOrientation(const PlanePoint& a, const PlanePoint& b, const PlanePoint& c) {
  Expansion sum;
  sum.addProduct(a.x, b.y);
  sum.addProduct(-a.x, c.y);
  sum.addProduct(-c.x, b.y);
  sum.addProduct(-a.y, b.x);
  sum.addProduct(a.y, c.x);
  sum.addProduct(c.y, b.x);
  return sum.sign();
}

}  // namespace tornwalzen
