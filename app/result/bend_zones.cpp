// Zones bent along a straight line; see the header.
#include "result/bend_zones.hpp"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

#include "system/vector.hpp"

namespace host {

namespace {

constexpr double degree = std::numbers::pi / 180.0;
constexpr double cylindrical = 0.3;  // of the first eigenvalue: a cone or torus so slim counts as a cylinder
const double grownCosine = std::cos(8.0 * degree);
const double absorbedSine = std::sin(6.0 * degree);
constexpr double largestSpread = 2.5;  // degrees, root mean square
constexpr std::size_t fewest = 8;      // triangles of a zone beside others
constexpr double mostJoined = 0.5;     // of the border that is not

Vector pointOf(const std::vector<double>& points, std::int32_t node) {
  const auto n = 3 * static_cast<std::size_t>(node) - 3;
  return {points[n], points[n + 1], points[n + 2]};
}

struct Neighbours {
  struct Neighbour {
    std::size_t triangle;
    double edge;  // length
  };
  std::vector<std::vector<Neighbour>> of;  // over edges that are no creases
  Neighbours(const SheetBending& bending, const std::vector<double>& points) : of(bending.bent.size()) {
    for (const InnerEdge& edge : bending.edges) {
      if (edge.crease) continue;
      const auto [s, t] = edge.triangles;
      const double l = norm(minus(pointOf(points, edge.nodes[1]), pointOf(points, edge.nodes[0])));
      of[s].push_back({t, l});
      of[t].push_back({s, l});
    }
  }
};

class Zones {
 public:
  Zones(const SheetBending& bending, const std::vector<std::int32_t>& corners,
        const std::vector<double>& points)
      : bending_(bending),
        corners_(corners),
        points_(points),
        neighbours_(bending, points),
        taken_(bending.bent.size()) {
    for (std::size_t t = 0; t < taken_.size(); ++t) {
      rulings_.push_back(rulingOf(bending.tensors[t]));
      areas_.push_back(0.5 * norm(cross(minus(at(3 * t + 1), at(3 * t)), minus(at(3 * t + 2), at(3 * t)))));
    }
  }

  std::vector<StraightBend> straight() {
    std::vector<std::size_t> seeds;
    for (std::size_t t = 0; t < taken_.size(); ++t)
      if (bending_.bent[t] && rulings_[t].share <= cylindrical) seeds.push_back(t);
    std::stable_sort(seeds.begin(), seeds.end(),
                     [&](std::size_t a, std::size_t b) { return rulings_[a].share < rulings_[b].share; });
    std::vector<StraightBend> bends;
    for (const std::size_t seed : seeds) {
      if (taken_[seed]) continue;
      StraightBend bend = grownFrom(seed);
      if (!isStraight(bend)) continue;
      bend.axis = acrossNormals(bend);
      bends.push_back(std::move(bend));
    }
    addEdges(bends);
    taken_.assign(taken_.size(), false);
    for (const StraightBend& bend : bends)
      for (const std::size_t t : bend.triangles) taken_[t] = true;
    for (StraightBend& bend : bends) absorbBeside(bend);
    std::sort(bends.begin(), bends.end(), [](const StraightBend& a, const StraightBend& b) {
      return a.triangles.front() < b.triangles.front();
    });
    return bends;
  }

 private:
  Vector at(std::size_t corner) const { return pointOf(points_, corners_[corner]); }

  bool sameSide(std::size_t a, std::size_t b) const {
    return (rulings_[a].strength > 0.0) == (rulings_[b].strength > 0.0);
  }

  StraightBend grownFrom(std::size_t seed) {
    StraightBend bend;
    BendingTensor sum = bending_.tensors[seed];
    bend.axis = rulings_[seed].direction;
    bend.triangles.push_back(seed);
    taken_[seed] = true;
    for (std::size_t k = 0; k < bend.triangles.size(); ++k)  // grows in its own loop, near triangles first
      for (const auto& [other, edge] : neighbours_.of[bend.triangles[k]]) {
        const Ruling& ruling = rulings_[other];
        if (taken_[other] || !bending_.bent[other] || !sameSide(seed, other) || ruling.share > cylindrical)
          continue;
        if (std::abs(dot(ruling.direction, bend.axis)) < grownCosine) continue;
        taken_[other] = true;
        bend.triangles.push_back(other);
        sum.add(bending_.tensors[other]);
        bend.axis = rulingOf(sum).direction;
      }
    std::sort(bend.triangles.begin(), bend.triangles.end());
    return bend;
  }

  bool isStraight(const StraightBend& bend) const {
    double area = 0.0, spread = 0.0, perimeter = 0.0;
    for (const std::size_t t : bend.triangles) {
      const double sine = norm(cross(rulings_[t].direction, bend.axis));
      area += areas_[t];
      spread += areas_[t] * sine * sine;
      for (std::size_t k = 0; k < 3; ++k) perimeter += norm(minus(at(3 * t + (k + 1) % 3), at(3 * t + k)));
    }
    if (!(area > 0.0) || std::sqrt(spread / area) > std::sin(largestSpread * degree)) return false;
    double joined = 0.0;
    const auto inside = [&](std::size_t t) {
      return std::binary_search(bend.triangles.begin(), bend.triangles.end(), t);
    };
    for (const std::size_t t : bend.triangles)
      for (const auto& [other, edge] : neighbours_.of[t]) {
        if (inside(other))
          perimeter -= edge;
        else if (bending_.bent[other] && sameSide(t, other))
          joined += edge;
      }
    if (joined > 0.0 && bend.triangles.size() < fewest) return false;
    return joined <= mostJoined * (perimeter - joined);
  }

  Vector acrossNormals(const StraightBend& bend) const {
    BendingTensor normals;
    std::vector<std::size_t> members = bend.triangles;
    for (const std::size_t t : bend.triangles)
      for (const auto& [other, edge] : neighbours_.of[t]) members.push_back(other);
    std::sort(members.begin(), members.end());
    members.erase(std::unique(members.begin(), members.end()), members.end());
    for (const std::size_t t : members) normals.addDyad(bending_.normals[t], areas_[t]);
    return leastDirection(normals);
  }

  void absorbBeside(StraightBend& bend) {
    for (std::size_t k = 0; k < bend.triangles.size(); ++k)
      for (const auto& [other, edge] : neighbours_.of[bend.triangles[k]]) {
        if (taken_[other] || !bending_.bent[other]) continue;
        if (std::abs(dot(bending_.normals[other], bend.axis)) > absorbedSine) continue;
        taken_[other] = true;
        bend.triangles.push_back(other);
      }
    std::sort(bend.triangles.begin(), bend.triangles.end());
  }

  void addEdges(std::vector<StraightBend>& bends) const {
    std::vector<std::size_t> bendOf(taken_.size(), none);
    for (std::size_t b = 0; b < bends.size(); ++b)
      for (const std::size_t t : bends[b].triangles) bendOf[t] = b;
    for (std::size_t e = 0; e < bending_.edges.size(); ++e) {
      const InnerEdge& edge = bending_.edges[e];
      if (edge.crease) continue;
      const std::size_t a = bendOf[edge.triangles[0]], b = bendOf[edge.triangles[1]];
      if (a != none) bends[a].edges.push_back(e);
      if (b != none && b != a) bends[b].edges.push_back(e);
    }
  }

  static constexpr std::size_t none = std::numeric_limits<std::size_t>::max();
  const SheetBending& bending_;
  const std::vector<std::int32_t>& corners_;
  const std::vector<double>& points_;
  Neighbours neighbours_;
  std::vector<double> areas_;
  std::vector<bool> taken_;
  std::vector<Ruling> rulings_;
};

}  // namespace

std::vector<StraightBend> straightBends(const SheetBending& bending, const std::vector<std::int32_t>& corners,
                                        const std::vector<double>& points) {
  return Zones(bending, corners, points).straight();
}

}  // namespace host
