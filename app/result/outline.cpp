// The outline of the flat blank; see the header.
#include "result/outline.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <string>

#include "system/failure.hpp"

namespace host {

namespace {

std::size_t nextInTriangle(std::size_t half) {
  return half % 3 == 2 ? half - 2 : half + 1;
}

// The directed sides of the triangles, each by the place of its first corner in `corners`, to be found by their nodes.
class Halves {
 public:
  // Throws Failure where two triangles run the same way along an edge.
  explicit Halves(const std::vector<std::int32_t>& corners) : corners_(corners), from_(corners.size()) {
    const std::int32_t nodes = corners.empty() ? 0 : *std::max_element(corners.begin(), corners.end());
    begin_.assign(static_cast<std::size_t>(nodes) + 2, 0);
    for (const std::int32_t node : corners) ++begin_[static_cast<std::size_t>(node)];
    for (std::size_t n = 1; n < begin_.size(); ++n) begin_[n] += begin_[n - 1];
    for (std::size_t half = corners.size(); half-- > 0;)
      from_[--begin_[static_cast<std::size_t>(corners[half])]] = half;
    for (std::size_t n = 0; n + 1 < begin_.size(); ++n) sortByEnd(n);
  }

  std::int32_t from(std::size_t half) const { return corners_[half]; }
  std::int32_t to(std::size_t half) const { return corners_[nextInTriangle(half)]; }

  // The side of another triangle along the same edge; npos where there is none.
  std::size_t twin(std::size_t half) const {
    const auto node = static_cast<std::size_t>(to(half));
    const auto first = from_.begin() + static_cast<std::ptrdiff_t>(begin_[node]),
               last = from_.begin() + static_cast<std::ptrdiff_t>(begin_[node + 1]);
    const auto found = std::lower_bound(first, last, from(half),
                                        [&](std::size_t other, std::int32_t end) { return to(other) < end; });
    return found != last && to(*found) == from(half) ? *found : npos;
  }

  static constexpr std::size_t npos = static_cast<std::size_t>(-1);

 private:
  void sortByEnd(std::size_t node) {
    const auto first = from_.begin() + static_cast<std::ptrdiff_t>(begin_[node]),
               last = from_.begin() + static_cast<std::ptrdiff_t>(begin_[node + 1]);
    std::sort(first, last, [&](std::size_t a, std::size_t b) { return to(a) < to(b); });
    const auto same =
        std::adjacent_find(first, last, [&](std::size_t a, std::size_t b) { return to(a) == to(b); });
    if (same != last)
      throw Failure("no outline of the blank: two triangles run from node " + std::to_string(node) +
                    " to node " + std::to_string(to(*same)));
  }

  const std::vector<std::int32_t>& corners_;
  std::vector<std::size_t> from_;   // the sides by the node where they begin
  std::vector<std::size_t> begin_;  // per node: of its sides in from_
};

// The border edge behind the border edge `half`: turned round its end through the triangles there, so that at a node
// where two corners of sheet meet each keeps its own border.
std::size_t nextOnBorder(const Halves& halves, std::size_t half) {
  for (;;) {
    half = nextInTriangle(half);
    const std::size_t twin = halves.twin(half);
    if (twin == Halves::npos) return half;
    half = twin;
  }
}

double signedArea(const std::vector<PlanePoint>& points) {
  double area = 0.0;
  for (std::size_t k = 0; k < points.size(); ++k) {  // from the first point, which keeps the products small
    const PlanePoint &a = points[k], &b = points[(k + 1) % points.size()], &o = points[0];
    area += 0.5 * ((a[0] - o[0]) * (b[1] - o[1]) - (a[1] - o[1]) * (b[0] - o[0]));
  }
  return area;
}

OutlineLoop loopFrom(std::vector<std::int32_t> nodes, const std::vector<double>& positions) {
  OutlineLoop loop;
  std::rotate(nodes.begin(), std::min_element(nodes.begin(), nodes.end()), nodes.end());
  for (const std::int32_t node : nodes) {
    const auto n = static_cast<std::size_t>(node);
    loop.points.push_back({positions[2 * n - 2], positions[2 * n - 1]});
    if (!std::isfinite(loop.points.back()[0]) || !std::isfinite(loop.points.back()[1]))
      throw Failure("no outline of the blank: the position of node " + std::to_string(node) +
                    " is not finite");
  }
  loop.nodes = std::move(nodes);
  loop.area = signedArea(loop.points);
  return loop;
}

struct Edge {
  PlanePoint a, b;
  std::int32_t from, to;
  double left() const { return std::min(a[0], b[0]); }
  double right() const { return std::max(a[0], b[0]); }
};

double side(const PlanePoint& a, const PlanePoint& b, const PlanePoint& p) {
  return (b[0] - a[0]) * (p[1] - a[1]) - (b[1] - a[1]) * (p[0] - a[0]);
}

bool opposite(double p, double q) {
  return (p > 0.0 && q < 0.0) || (p < 0.0 && q > 0.0);
}

bool cross(const Edge& e, const Edge& f) {
  if (e.from == f.from || e.from == f.to || e.to == f.from || e.to == f.to) return false;
  if (std::max(e.a[1], e.b[1]) < std::min(f.a[1], f.b[1]) ||
      std::max(f.a[1], f.b[1]) < std::min(e.a[1], e.b[1]))
    return false;
  return opposite(side(e.a, e.b, f.a), side(e.a, e.b, f.b)) &&
         opposite(side(f.a, f.b, e.a), side(f.a, f.b, e.b));
}

}  // namespace

std::int64_t countCrossings(const std::vector<OutlineLoop>& loops) {
  std::vector<Edge> edges;
  for (const OutlineLoop& loop : loops)
    for (std::size_t k = 0, n = loop.points.size(); k < n; ++k)
      edges.push_back({loop.points[k], loop.points[(k + 1) % n], loop.nodes[k], loop.nodes[(k + 1) % n]});
  std::sort(edges.begin(), edges.end(), [](const Edge& e, const Edge& f) { return e.left() < f.left(); });
  std::int64_t crossings = 0;
  for (std::size_t i = 0; i < edges.size(); ++i)  // only edges whose ranges of x overlap can meet
    for (std::size_t j = i + 1; j < edges.size() && edges[j].left() <= edges[i].right(); ++j)
      crossings += cross(edges[i], edges[j]);
  return crossings;
}

Outline outlineOf(const std::vector<std::int32_t>& corners, const std::vector<double>& positions) {
  const Halves halves(corners);
  std::vector<bool> taken(corners.size(), false);
  Outline outline;
  for (std::size_t first = 0; first < corners.size(); ++first) {
    if (taken[first] || halves.twin(first) != Halves::npos) continue;
    std::vector<std::int32_t> nodes;
    for (std::size_t half = first; !taken[half]; half = nextOnBorder(halves, half)) {
      taken[half] = true;
      nodes.push_back(corners[half]);
    }
    outline.loops.push_back(loopFrom(std::move(nodes), positions));
  }
  if (outline.loops.empty()) throw Failure("no outline of the blank: it has no border");
  std::stable_sort(
      outline.loops.begin(), outline.loops.end(),
      [](const OutlineLoop& a, const OutlineLoop& b) { return std::abs(a.area) > std::abs(b.area); });
  outline.crossings = countCrossings(outline.loops);
  return outline;
}

}  // namespace host
