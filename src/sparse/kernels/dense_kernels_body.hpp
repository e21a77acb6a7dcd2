// The dense kernels, written once for a vector of VL doubles and compiled once per instruction set. A file
// that includes this one defines before it, in a namespace of its own:
//   VL  doubles in a vector register          MV  vectors in a register tile's column
//   NR  columns of a register tile
//   minusProduct, plusProduct   c - a·b and c + a·b of vectors and of numbers, rounded once or twice
// Whether a product is fused is written there and not left to the compiler, whose choice differs between builds.
// Nothing of the standard library may be instantiated here: an inline function compiled for one processor
// could be the copy that the linker keeps for all.
//
// Elimination of a front, by panels of panelWidth columns, each by blocks of blockWidth columns (G. H. Golub,
// C. F. Van Loan, Matrix Computations, 4.1.2 and 4.2.5, in block form):
//   1. the block's columns are brought up to date with the panel's earlier columns (left-looking),
//   2. its diagonal block is factored, then the rows below it: y(k) = a(k) - Σ y(p)·l(k,p), l = y/d,
//   3. after the panel, the rest of the front: F := F - L·(D·Lᵀ), lower triangle, in register tiles.

using Vec = double __attribute__((vector_size(VL * sizeof(double))));
// In memory. A typedef, because an alias declaration loses the alignment under clang.
typedef double VecAt __attribute__((vector_size(VL * sizeof(double)), aligned(8), may_alias));

constexpr Int64 blockWidth = 8;
static_assert(panelWidth % blockWidth == 0 && NR <= largestTile && MV * VL <= largestTile);
static_assert(rowsOfBlock % (MV * VL) == 0 && frontAlignment % VL == 0 && blockWidth % NR == 0 &&
              panelWidth % frontAlignment == 0);

inline Vec load(const double* p) {
  return *reinterpret_cast<const VecAt*>(p);
}
inline void store(double* p, Vec v) {
  *reinterpret_cast<VecAt*>(p) = v;
}
inline Vec inAllLanes(double b) {
  return b - Vec{};
}
inline Int64 smaller(Int64 a, Int64 b) {
  return a < b ? a : b;
}
inline Int64 alignedDown(Int64 i) {
  return i - i % VL;
}

// One register tile: C -= A·B, A of mv·VL rows and K columns (columns aStride apart), B of K rows and nr
// columns (rows together), C with columns cStride apart.
template <int mv, int nr>
inline void tile(Int64 K, const double* A, Int64 aStride, const double* B, double* C, Int64 cStride) {
  Vec sum[nr][mv];
#pragma GCC unroll 8
  for (int j = 0; j < nr; ++j)
#pragma GCC unroll 4
    for (int i = 0; i < mv; ++i) sum[j][i] = load(C + j * cStride + i * VL);
  for (Int64 k = 0; k < K; ++k) {
    Vec a[mv];
#pragma GCC unroll 4
    for (int i = 0; i < mv; ++i) a[i] = load(A + k * aStride + i * VL);
#pragma GCC unroll 8
    for (int j = 0; j < nr; ++j) {
      const Vec b = inAllLanes(B[k * nr + j]);
#pragma GCC unroll 4
      for (int i = 0; i < mv; ++i) sum[j][i] = minusProduct(sum[j][i], a[i], b);
    }
  }
#pragma GCC unroll 8
  for (int j = 0; j < nr; ++j)
#pragma GCC unroll 4
    for (int i = 0; i < mv; ++i) store(C + j * cStride + i * VL, sum[j][i]);
}

// `rows` rows (whole vectors) of nr columns: C -= A·B in tiles of decreasing height. aStride 0 means packed
// rows: A lies in tiles of MV·VL rows, each tile's columns together.
template <int nr>
void columnsOfTiles(Int64 K, const double* A, Int64 aStride, const double* B, double* C, Int64 cStride,
                    Int64 rows) {
  const Int64 along = aStride == 0 ? MV * VL : aStride, tileStep = aStride == 0 ? K : 1;
  Int64 i = 0;
  for (; i + MV * VL <= rows; i += MV * VL) tile<MV, nr>(K, A + i * tileStep, along, B, C + i, cStride);
  const double* rest = A + i * tileStep;
  if constexpr (MV > 2)
    if (i + 2 * VL <= rows) {
      tile<2, nr>(K, rest, along, B, C + i, cStride);
      i += 2 * VL;
      rest += 2 * VL;
    }
  for (; i < rows; i += VL, rest += VL) tile<1, nr>(K, rest, along, B, C + i, cStride);
}

// The same for a number of columns that is known at run time only, 1..NR.
inline void anyColumnsOfTiles(Int64 nr, Int64 K, const double* A, Int64 aStride, const double* B, double* C,
                              Int64 cStride, Int64 rows) {
  if (nr == NR) return columnsOfTiles<NR>(K, A, aStride, B, C, cStride, rows);
  switch (nr) {
    case 1:
      return columnsOfTiles<1>(K, A, aStride, B, C, cStride, rows);
    case 2:
      return columnsOfTiles<2>(K, A, aStride, B, C, cStride, rows);
    case 3:
      return columnsOfTiles<3>(K, A, aStride, B, C, cStride, rows);
    case 4:
      return columnsOfTiles<4>(K, A, aStride, B, C, cStride, rows);
    case 5:
      return columnsOfTiles<5>(K, A, aStride, B, C, cStride, rows);
    case 6:
      return columnsOfTiles<6>(K, A, aStride, B, C, cStride, rows);
    default:
      return columnsOfTiles<7>(K, A, aStride, B, C, cStride, rows);
  }
}

// The kernels of a panel take its columns and rows from its first diagonal entry P on, zero-based.

// B(k, j) = D(k)·L(row + j, k) for K columns of the panel and nr rows: rows of B together.
inline void packScaledRows(const double* P, Int64 stride, Int64 K, Int64 row, Int64 nr, double* B) {
  for (Int64 k = 0; k < K; ++k) {
    const double* column = P + k * stride;
    const double d = column[k];
    for (Int64 j = 0; j < nr; ++j) B[k * nr + j] = column[row + j] * d;
  }
}

// Step 2 on columns i0 .. i0+ib-1 within their own rows. inverse: out, of their pivots. Returns 0 or the one-based
// column of a zero pivot.
template <int ib>
inline Int64 factorDiagonalBlock(double* P, Int64 stride, Int64 i0, double (&inverse)[ib]) {
  double* const block = P + i0 * stride;  // column p of the block: block + p·stride
  for (int k = 0; k < ib; ++k) {
    double* const column = block + k * stride;
    const double d = column[i0 + k];
    if (d == 0.0) return i0 + k + 1;
    inverse[k] = 1.0 / d;
    for (int j = k + 1; j < ib; ++j) {  // the columns to the right, with y = column k before the division
      const double l = column[i0 + j] * inverse[k];
      for (int i = j; i < ib; ++i) {
        double& entry = block[j * stride + i0 + i];
        entry = minusProduct(entry, column[i0 + i], l);
      }
    }
    for (int j = k + 1; j < ib; ++j) column[i0 + j] *= inverse[k];
  }
  return 0;
}

// Step 2 on the rows i .. rowsEnd-1 below.
template <int ib>
inline void factorRowsBelow(double* P, Int64 stride, Int64 i0, const double (&inverse)[ib], Int64 i,
                            Int64 rowsEnd) {
  double* const block = P + i0 * stride;
  double l[ib][ib] = {};
  for (int k = 0; k < ib; ++k)
    for (int p = 0; p < k; ++p) l[k][p] = block[p * stride + i0 + k];

  for (; i < rowsEnd && i % VL != 0; ++i) {
    double y[ib];
    for (int k = 0; k < ib; ++k) {
      y[k] = block[k * stride + i];
      for (int p = 0; p < k; ++p) y[k] = minusProduct(y[k], y[p], l[k][p]);
      block[k * stride + i] = y[k] * inverse[k];
    }
  }
  for (; i < rowsEnd; i += VL) {
    Vec y[ib];
#pragma GCC unroll 8
    for (int k = 0; k < ib; ++k) {
      y[k] = load(block + k * stride + i);
#pragma GCC unroll 8
      for (int p = 0; p < k; ++p) y[k] = minusProduct(y[k], y[p], inAllLanes(l[k][p]));
      store(block + k * stride + i, y[k] * inverse[k]);
    }
  }
}

template <int ib>
Int64 factorBlock(double* P, Int64 stride, Int64 i0, Int64 rowsEnd) {
  double inverse[ib] = {};
  if (const Int64 zero = factorDiagonalBlock<ib>(P, stride, i0, inverse)) return zero;
  factorRowsBelow<ib>(P, stride, i0, inverse, i0 + ib, rowsEnd);
  return 0;
}

using FactorBlock = Int64 (*)(double*, Int64, Int64, Int64);
constexpr FactorBlock factorBlockOf[blockWidth + 1] = {nullptr,        factorBlock<1>, factorBlock<2>,
                                                       factorBlock<3>, factorBlock<4>, factorBlock<5>,
                                                       factorBlock<6>, factorBlock<7>, factorBlock<8>};

// Step 1 on columns i0 .. i0+ib-1, in the rows from `from` on, or from the columns' own where that is further down.
inline void updateBlock(double* P, Int64 stride, Int64 i0, Int64 ib, Int64 from, Int64 rowsEnd,
                        double* packing) {
  for (Int64 j = i0; i0 > 0 && j < i0 + ib; j += NR) {
    const Int64 nr = smaller(NR, i0 + ib - j), own = alignedDown(j), first = own > from ? own : from;
    packScaledRows(P, stride, i0, j, nr, packing);
    anyColumnsOfTiles(nr, i0, P + first, stride, packing, P + j * stride + first, stride, rowsEnd - first);
  }
}

// Steps 1 and 2 on a panel of K columns.
inline Int64 factorPanel(double* P, Int64 stride, Int64 K, Int64 rowsEnd, double* packing) {
  for (Int64 i0 = 0; i0 < K; i0 += blockWidth) {
    const Int64 ib = smaller(blockWidth, K - i0);
    updateBlock(P, stride, i0, ib, 0, rowsEnd, packing);
    if (const Int64 zero = factorBlockOf[ib](P, stride, i0, rowsEnd)) return zero;
  }
  return 0;
}

// Copies K columns of `rows` rows (whole vectors) into tiles of MV·VL rows, each tile's columns together.
inline void packRows(const double* A, Int64 stride, Int64 K, Int64 rows, double* packed) {
  for (Int64 i = 0; i < rows; i += MV * VL) {
    const Int64 height = smaller(MV * VL, rows - i);
    for (Int64 k = 0; k < K; ++k) {
      for (Int64 r = 0; r < height; r += VL) store(packed + r, load(A + k * stride + i + r));
      packed += MV * VL;
    }
  }
}

// Step 3: calls visit(j, nr, C) for the tiles of columns j .. j+nr-1 from block b on, up to `end`, in the
// panel's counting; C is the first of them, C[i] its entry in row i.
template <class Visit>
inline void forTiles(FrontBlock b, const FrontBlock& panel, double* F, Int64 c, Int64 w, Int64 end,
                     Visit visit) {
  for (; b.first < panel.first + end; b = blockAfter(b, c, w))
    for (Int64 j = b.first; j < smaller(b.end, panel.first + end); j += NR)
      visit(j - panel.first, smaller(NR, b.end - j), F + (columnPlace(b, j) + panel.first), b.stride);
}

// The tiles in rows r0 .. r1-1 from the block `behind` the panel up to column `rest`, in the panel's counting.
inline void updateRowBlock(double* F, const FrontBlock& panel, const FrontBlock& behind, Int64 c, Int64 w,
                           Int64 rest, Int64 r0, Int64 r1, const double* scaled, double* rows) {
  const double* const P = F + (columnPlace(panel, panel.first) + panel.first);
  const Int64 stride = panel.stride, K = panel.end - panel.first;
  packRows(P + r0, stride, K, r1 - r0, rows);
  forTiles(behind, panel, F, c, w, smaller(rest, r1), [&](Int64 j, Int64 nr, double* C, Int64 cStride) {
    // whole tiles of rows from the one that holds the diagonal; what lies above it is scratch
    const Int64 first = j <= r0 ? 0 : (j - r0) / (MV * VL) * (MV * VL);
    anyColumnsOfTiles(nr, K, rows + first * K, 0, scaled + (j - K) * K, C + r0 + first, cStride,
                      r1 - r0 - first);
  });
}

inline void updateRest(double* F, const FrontBlock& panel, Int64 c, Int64 w, Int64 rowsEnd, double* packing) {
  const double* const P = F + (columnPlace(panel, panel.first) + panel.first);
  const Int64 stride = panel.stride, K = panel.end - panel.first, rest = c - panel.first;
  double* const scaled = packing;  // D·Lᵀ, one tile of columns behind the other
  forTiles(blockAfter(panel, c, w), panel, F, c, w, rest, [&](Int64 j, Int64 nr, double*, Int64) {
    packScaledRows(P, stride, K, j, nr, scaled + (j - K) * K);
  });
  constexpr Int64 fewRows = 96;  // fronts so small that the panel stays in the first-level cache as it lies
  if (rowsEnd - K <= fewRows) {
    forTiles(blockAfter(panel, c, w), panel, F, c, w, rest, [&](Int64 j, Int64 nr, double* C, Int64 cStride) {
      const Int64 first = alignedDown(j);
      anyColumnsOfTiles(nr, K, P + first, stride, scaled + (j - K) * K, C + first, cStride, rowsEnd - first);
    });
    return;
  }
  double* const rows = packing + scaledDoubles(c);
  for (Int64 r0 = alignedDown(K); r0 < rowsEnd; r0 += rowsOfBlock)
    updateRowBlock(F, panel, blockAfter(panel, c, w), c, w, rest, r0, smaller(r0 + rowsOfBlock, rowsEnd),
                   scaled, rows);
}

Int64 factorFront(double* F, Int64 c, Int64 w, double* packing) {
  for (FrontBlock panel = firstBlock(c, w); panel.first < w; panel = blockAfter(panel, c, w)) {
    const Int64 rowsEnd = (c - panel.first + VL - 1) / VL * VL;
    double* const P = F + (columnPlace(panel, panel.first) + panel.first);
    if (const Int64 zero = factorPanel(P, panel.stride, panel.end - panel.first, rowsEnd, packing))
      return panel.first + zero;
    updateRest(F, panel, c, w, rowsEnd, packing);
  }
  return 0;
}

// The same in shares: every entry goes through the operations above, in their order.

inline double* panelStart(double* F, const FrontBlock& panel) {
  return F + (columnPlace(panel, panel.first) + panel.first);
}
inline Int64 wholeVectors(Int64 rows) {
  return (rows + VL - 1) / VL * VL;
}

Int64 factorDiagonal(double* F, const FrontBlock& panel, Int64 c, double* packing) {
  const Int64 K = panel.end - panel.first;
  const Int64 rowsEnd = wholeVectors(smaller(linesOf(K), c - panel.first));
  const Int64 zero = factorPanel(panelStart(F, panel), panel.stride, K, rowsEnd, packing);
  return zero > 0 ? panel.first + zero : 0;
}

template <int ib>
void factorRowsOfBlock(double* P, Int64 stride, Int64 i0, Int64 from, Int64 to) {
  double inverse[ib];
  for (int k = 0; k < ib; ++k) inverse[k] = 1.0 / P[(i0 + k) * stride + i0 + k];
  factorRowsBelow<ib>(P, stride, i0, inverse, from, to);
}

using FactorRows = void (*)(double*, Int64, Int64, Int64, Int64);
constexpr FactorRows factorRowsOf[blockWidth + 1] = {nullptr,
                                                     factorRowsOfBlock<1>,
                                                     factorRowsOfBlock<2>,
                                                     factorRowsOfBlock<3>,
                                                     factorRowsOfBlock<4>,
                                                     factorRowsOfBlock<5>,
                                                     factorRowsOfBlock<6>,
                                                     factorRowsOfBlock<7>,
                                                     factorRowsOfBlock<8>};

void factorRows(double* F, const FrontBlock& panel, Int64 from, Int64 to, double* packing) {
  double* const P = panelStart(F, panel);
  const Int64 K = panel.end - panel.first, rowsEnd = wholeVectors(to);
  for (Int64 i0 = 0; i0 < K; i0 += blockWidth) {
    const Int64 ib = smaller(blockWidth, K - i0);
    updateBlock(P, panel.stride, i0, ib, from, rowsEnd, packing);
    factorRowsOf[ib](P, panel.stride, i0, from, rowsEnd);
  }
}

void scaleBlock(const double* F, const FrontBlock& panel, const FrontBlock& behind, double* scaled) {
  const double* const P = F + (columnPlace(panel, panel.first) + panel.first);
  const Int64 K = panel.end - panel.first;
  for (Int64 j = behind.first; j < behind.end; j += NR)
    packScaledRows(P, panel.stride, K, j - panel.first, smaller(NR, behind.end - j),
                   scaled + (j - panel.end) * K);
}

void updateRows(double* F, const FrontBlock& panel, const FrontBlock& behind, Int64 c, Int64 w, Int64 end,
                Int64 from, Int64 to, const double* scaled, double* packing) {
  updateRowBlock(F, panel, behind, c, w, end - panel.first, from, wholeVectors(to), scaled, packing);
}
