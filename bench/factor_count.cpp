// Elimination tree, then every row of L walked up the tree.
#include "factor_count.hpp"

#include <algorithm>

namespace bench {

Fill countFactor(const SymmetricMatrix& a, const std::vector<std::int32_t>& order) {
  const std::int32_t n = a.n;
  std::vector<std::int32_t> place(n);
  for (std::int32_t k = 0; k < n; ++k) place[order[k]] = k;

  // rows of the permuted lower triangle: columns before the diagonal
  std::vector<std::int64_t> first(n + 1, 0);
  const auto eachEntry = [&](auto use) {
    for (std::int32_t j = 0; j < n; ++j)
      for (std::int32_t k = a.start[j] + 1; k < a.start[j + 1]; ++k) {
        const std::int32_t p = place[a.row[k]], q = place[j];
        use(std::max(p, q), std::min(p, q));
      }
  };
  eachEntry([&](std::int32_t i, std::int32_t) { ++first[i + 1]; });
  for (std::int32_t i = 0; i < n; ++i) first[i + 1] += first[i];
  std::vector<std::int32_t> column(first[n]);
  std::vector<std::int64_t> next(first.begin(), first.end() - 1);
  eachEntry([&](std::int32_t i, std::int32_t j) { column[next[i]++] = j; });

  std::vector<std::int32_t> parent(n, -1), ancestor(n, -1), seen(n, -1);
  std::vector<double> count(n, 1.0);
  for (std::int32_t i = 0; i < n; ++i)
    for (std::int64_t k = first[i]; k < first[i + 1]; ++k)
      for (std::int32_t j = column[k]; j != -1 && j < i;) {
        const std::int32_t up = ancestor[j];
        ancestor[j] = i;
        if (up == -1) parent[j] = i;
        j = up;
      }
  for (std::int32_t i = 0; i < n; ++i) {
    seen[i] = i;
    for (std::int64_t k = first[i]; k < first[i + 1]; ++k)
      for (std::int32_t j = column[k]; seen[j] != i; j = parent[j]) {
        seen[j] = i;
        count[j] += 1.0;
      }
  }
  Fill fill;
  for (double c : count) {
    fill.entries += c;
    fill.flops += c * c;
  }
  return fill;
}

}  // namespace bench
