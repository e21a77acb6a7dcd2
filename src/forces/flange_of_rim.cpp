// Level pieces by flooding, then the height that most of them share.
#include "forces/flange_of_rim.hpp"

#include <algorithm>
#include <cmath>

#include "forces/free_edges.hpp"
#include "ground/own_array.hpp"

namespace tornwalzen {

namespace {

constexpr double flangeCosine = 0.99862953;  // 3 degrees
constexpr double leastShare = 0.02;          // of the part's area

struct Piece {
  Int number;
  bool rim;
  double area, height;  // mm², mm
};

bool isLevel(const SheetView& sheet, Int e, const double (&draw)[3]) {
  const double a[3] = {sheet.AXES(1, e), sheet.AXES(2, e), sheet.AXES(3, e)},
               b[3] = {sheet.AXES(4, e), sheet.AXES(5, e), sheet.AXES(6, e)};
  const double height = draw[0] * (a[1] * b[2] - a[2] * b[1]) + draw[1] * (a[2] * b[0] - a[0] * b[2]) +
                        draw[2] * (a[0] * b[1] - a[1] * b[0]);
  return std::fabs(height) >= flangeCosine;
}

/// FLANGE: out, the number of each level triangle's piece, from 1; 0 elsewhere. Returns how many pieces there are.
Int numberPieces(const SheetView& sheet, Table<const Int> TWIN, const double (&draw)[3], Vector<Int> SCRATCH,
                 Vector<Int> FLANGE) {
  constexpr Int waiting = -1;
  const Int elements = static_cast<Int>(sheet.INTA.rows());
  for (Int e = 1; e <= elements; ++e) FLANGE(e) = isLevel(sheet, e, draw) ? waiting : 0;
  Int pieces = 0;
  for (Int seed = 1; seed <= elements; ++seed) {
    if (FLANGE(seed) != waiting) continue;
    FLANGE(seed) = ++pieces;
    SCRATCH(1) = seed;
    Int end = 1;
    for (Int at = 1; at <= end; ++at)
      for (Int k = 1; k <= 3; ++k) {
        const Int f = acrossSide(TWIN, SCRATCH(at), k);
        if (f == 0 || FLANGE(f) != waiting) continue;
        FLANGE(f) = pieces;
        SCRATCH(++end) = f;
      }
  }
  return pieces;
}

}  // namespace

Int flangeOfRim(const SheetView& sheet, Table<const double> KNG, Table<const Int> TWIN,
                Vector<const Int> PLANE, const double (&draw)[3], Vector<Int> SCRATCH, Vector<Int> FLANGE) {
  const Int elements = static_cast<Int>(sheet.INTA.rows());
  const Int pieces = numberPieces(sheet, TWIN, draw, SCRATCH, FLANGE);
  OwnArray<Piece> store("PIECES");
  if (!store.allocate(pieces)) return -1;
  Piece* const PIECES = store.data();
  for (Int i = 0; i < pieces; ++i) PIECES[i] = {i + 1, false, 0.0, 0.0};
  double whole = 0.0;
  for (Int e = 1; e <= elements; ++e) {
    whole += sheet.AREA(e);
    if (FLANGE(e) == 0) continue;
    Piece& piece = PIECES[FLANGE(e) - 1];
    piece.area += sheet.AREA(e);
    for (Int k = 1; k <= 3; ++k) {
      piece.rim = piece.rim || freeSide(sheet.INTA, TWIN, PLANE, e, k);
      for (Int i = 0; i < 3; ++i)
        piece.height += sheet.AREA(e) / 3.0 * draw[i] * KNG(sheet.INTA(e, k), i + 1);
    }
  }
  Piece* const end = std::remove_if(PIECES, PIECES + pieces, [](const Piece& p) { return !p.rim; });
  for (Piece* p = PIECES; p != end; ++p) p->height /= p->area;
  std::sort(PIECES, end, [](const Piece& p, const Piece& q) {
    return p.height != q.height ? p.height < q.height : p.number < q.number;
  });
  // a window of the sheet's thickness over the heights
  const Piece *first = PIECES, *bestFirst = PIECES, *bestEnd = PIECES;
  double area = 0.0, most = leastShare * whole;
  for (const Piece* last = PIECES; last != end; ++last) {
    for (area += last->area; last->height - first->height > sheet.thickness; ++first) area -= first->area;
    if (area > most) most = area, bestFirst = first, bestEnd = last + 1;
  }
  for (Int i = 1; i <= pieces; ++i) SCRATCH(i) = 0;
  for (const Piece* p = bestFirst; p != bestEnd; ++p) SCRATCH(p->number) = 1;
  Int count = 0;
  for (Int e = 1; e <= elements; ++e) count += FLANGE(e) = FLANGE(e) == 0 ? 0 : SCRATCH(FLANGE(e));
  return count;
}

}  // namespace tornwalzen
