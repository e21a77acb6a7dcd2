// The dense kernels of the solves; included behind dense_kernels_body.hpp, whose vectors and rules are theirs.

// The first `count` lanes of v, zeros in the others: what stands there may be anything.
inline Vec firstLanes(Vec v, Int64 count) {
  using Lanes = long long __attribute__((vector_size(VL * sizeof(double))));
  Lanes lane;
  for (int l = 0; l < VL; ++l) lane[l] = l;
  return lane < count ? v : Vec{};
}

// The sum of a vector's lanes, its halves first; without a way through memory.
template <class V>
inline double laneSum(V v) {
  if constexpr (sizeof(V) == 8 * sizeof(double))
    return laneSum(__builtin_shufflevector(v, v, 0, 1, 2, 3) + __builtin_shufflevector(v, v, 4, 5, 6, 7));
  else if constexpr (sizeof(V) == 4 * sizeof(double))
    return laneSum(__builtin_shufflevector(v, v, 0, 1) + __builtin_shufflevector(v, v, 2, 3));
  else
    return v[0] + v[1];
}

// The columns p .. p+N-1 of a supernode's block of L, each so that [i] is its entry in row i.
template <int N>
inline void findColumns(const double* L, Int64 p, Int64 c, const double* (&column)[N]) {
  column[0] = L + p * c - p * (p + 1) / 2 - p - 1;
#pragma GCC unroll 4
  for (int k = 1; k < N; ++k) column[k] = column[k - 1] + (c - p - k - 1);
}

// The values of the columns p .. p+N-1 of the forward substitution, in place.
template <int N>
inline void forwardValues(const double* const (&column)[N], Int64 p, double* y, double (&value)[N]) {
#pragma GCC unroll 4
  for (int k = 0; k < N; ++k) {
    value[k] = y[p + k];
#pragma GCC unroll 4
    for (int j = 0; j < k; ++j) value[k] = minusProduct(value[k], column[j][p + k], value[j]);
  }
#pragma GCC unroll 4
  for (int k = 0; k < N; ++k) y[p + k] = value[k];
}

// What they take from the rows i .. end-1, in whole vectors that may pass the end of y and of L. The first columns
// take the rows from w on as zeros, and set them.
template <int N>
inline void forwardRest(const double* const (&column)[N], const double (&value)[N], Int64 p, Int64 w, Int64 i,
                        Int64 end, double* y) {
  for (; i < end; i += VL) {
    Vec rest = {};
    if (p > 0)
      rest = load(y + i);
    else if (i < w)
      rest = firstLanes(load(y + i), w - i);
#pragma GCC unroll 4
    for (int k = 0; k < N; ++k) rest = minusProduct(rest, load(column[k] + i), inAllLanes(value[k]));
    store(y + i, rest);
  }
}

template <int N>
inline void forwardColumns(const double* L, Int64 p, Int64 w, Int64 c, double* y) {
  const double* column[N];
  double value[N];
  findColumns<N>(L, p, c, column);
  forwardValues<N>(column, p, y, value);
  forwardRest<N>(column, value, p, w, p + N, c, y);
}

// The columns p .. p+N-1 of the backward substitution.
template <int N>
inline void backwardColumns(const double* L, Int64 p, Int64 c, double* y) {
  const double* column[N];
  findColumns<N>(L, p, c, column);
  Vec sum[N] = {};
  Int64 i = p + N;
  for (; i + VL <= c; i += VL) {
    const Vec v = load(y + i);
#pragma GCC unroll 4
    for (int k = 0; k < N; ++k) sum[k] = plusProduct(sum[k], load(column[k] + i), v);
  }
  if (i < c) {
    const Vec v = firstLanes(load(y + i), c - i);
#pragma GCC unroll 4
    for (int k = 0; k < N; ++k) sum[k] = plusProduct(sum[k], firstLanes(load(column[k] + i), c - i), v);
  }
  double value[N];
#pragma GCC unroll 4
  for (int k = N - 1; k >= 0; --k) {  // the value that comes last is used last
    value[k] = y[p + k] - laneSum(sum[k]);
#pragma GCC unroll 4
    for (int j = N - 1; j > k; --j) value[k] = minusProduct(value[k], column[k][p + j], value[j]);
  }
#pragma GCC unroll 4
  for (int k = 0; k < N; ++k) y[p + k] = value[k];
}

void forward(const double* L, Int64 w, Int64 c, double* y) {
  Int64 p = 0;
  for (; p + 4 <= w; p += 4) forwardColumns<4>(L, p, w, c, y);
  switch (w - p) {
    case 1:
      return forwardColumns<1>(L, p, w, c, y);
    case 2:
      return forwardColumns<2>(L, p, w, c, y);
    case 3:
      return forwardColumns<3>(L, p, w, c, y);
    default:
      return;
  }
}

void backward(const double* L, Int64 w, Int64 c, double* y) {
  Int64 p = w - w % 4;
  switch (w - p) {
    case 1:
      backwardColumns<1>(L, p, c, y);
      break;
    case 2:
      backwardColumns<2>(L, p, c, y);
      break;
    case 3:
      backwardColumns<3>(L, p, c, y);
      break;
    default:
      break;
  }
  while ((p -= 4) >= 0) backwardColumns<4>(L, p, c, y);
}

// The forward substitution in shares: columns p by fours, up to `last`.

// The rows of the columns themselves, and no others.
template <int N>
inline void forwardWithin(const double* L, Int64 p, Int64 c, Int64 last, double* y) {
  const double* column[N];
  double value[N];
  findColumns<N>(L, p, c, column);
  forwardValues<N>(column, p, y, value);
  Int64 i = p + N;
  for (; i + VL <= last; i += VL) {
    Vec rest = load(y + i);
#pragma GCC unroll 4
    for (int k = 0; k < N; ++k) rest = minusProduct(rest, load(column[k] + i), inAllLanes(value[k]));
    store(y + i, rest);
  }
  for (; i < last; ++i)
    for (int k = 0; k < N; ++k) y[i] = minusProduct(y[i], column[k][i], value[k]);
}

void forwardTop(const double* L, Int64 c, Int64 first, Int64 last, double* y) {
  Int64 p = first;
  for (; p + 4 <= last; p += 4) forwardWithin<4>(L, p, c, last, y);
  for (; p < last; ++p) forwardWithin<1>(L, p, c, last, y);
}

template <int N>
inline void forwardInto(const double* L, Int64 p, Int64 w, Int64 c, Int64 from, Int64 to, double* y) {
  const double* column[N];
  double value[N];
  findColumns<N>(L, p, c, column);
  for (int k = 0; k < N; ++k) value[k] = y[p + k];
  forwardRest<N>(column, value, p, w, from, to, y);
}

void forwardRows(const double* L, Int64 w, Int64 c, Int64 first, Int64 last, Int64 from, Int64 to,
                 double* y) {
  Int64 p = first;
  for (; p + 4 <= last; p += 4) forwardInto<4>(L, p, w, c, from, to, y);
  for (; p < last; ++p) forwardInto<1>(L, p, w, c, from, to, y);
}
