// Lines and tangent arcs: the arc of radius r that starts at P with direction a has the centre
// C = P + σ r n(a), n the left normal, σ the sign of the turn, and the points C - σ r n(a + s/r · σ).
#include "profile.hpp"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace shapes {

namespace {

constexpr double degree = std::numbers::pi / 180.0;
constexpr double largestTurnPerRow = 15.0;  // degrees: six rows round a right angle
constexpr double growth = 0.25;             // increase of the cell size per length

Point2 leftNormal(double degrees) {
  const Point2 t = unitVector(degrees);
  return {-t.y, t.x};
}

}  // namespace

Point2 unitVector(double degrees) {
  const double quarters = degrees / 90.0;
  if (quarters == std::floor(quarters)) {
    const int k = static_cast<int>(std::fmod(quarters, 4.0) + 4.0) % 4;
    constexpr double cosine[4] = {1.0, 0.0, -1.0, 0.0};
    return {cosine[k], cosine[(k + 3) % 4]};
  }
  if (2.0 * quarters == std::floor(2.0 * quarters)) {  // on a diagonal both are the same to the last bit
    const Point2 side = unitVector(degrees - 45.0), next = unitVector(degrees + 45.0);
    return {std::numbers::sqrt2 / 2.0 * (side.x + next.x), std::numbers::sqrt2 / 2.0 * (side.y + next.y)};
  }
  return {std::cos(degrees * degree), std::sin(degrees * degree)};
}

std::vector<double> gradedDivision(double length, double sizeAtStart, double size, double sizeAtEnd) {
  if (sizeAtStart >= size && sizeAtEnd >= size) {
    const int n = std::max(1, static_cast<int>(std::ceil(length / size - 1e-9)));
    std::vector<double> s(n + 1);
    for (int i = 0; i <= n; ++i) s[i] = i == n ? length : length * i / n;
    return s;
  }
  // The number of cells up to x is the integral of 1/size; boundaries lie at equal steps of it.
  constexpr int samples = 2000;
  std::vector<double> cells(samples + 1, 0.0);
  const double dx = length / samples;
  for (int i = 0; i < samples; ++i) {
    const double x = (i + 0.5) * dx;
    const double h = std::min({size, sizeAtStart + growth * x, sizeAtEnd + growth * (length - x)});
    cells[i + 1] = cells[i] + dx / h;
  }
  const int n = std::max(1, static_cast<int>(std::ceil(cells[samples] - 1e-9)));
  std::vector<double> s(n + 1, 0.0);
  int i = 0;
  for (int k = 1; k < n; ++k) {
    const double wanted = cells[samples] * k / n;
    while (cells[i + 1] < wanted) ++i;
    s[k] = dx * (i + (wanted - cells[i]) / (cells[i + 1] - cells[i]));
  }
  s[n] = length;
  return s;
}

Profile& Profile::line(double length) {
  if (length == 0.0) return *this;
  pieces_.push_back({end_, direction_, length_, length, 0.0, 0.0});
  const Point2 t = unitVector(direction_);
  end_ = {end_.x + length * t.x, end_.y + length * t.y};
  length_ += length;
  return *this;
}

Profile& Profile::arc(double radius, double turn) {
  const Piece piece{end_, direction_, length_, radius * std::abs(turn) * degree, radius, turn};
  pieces_.push_back(piece);
  direction_ += turn;
  const double side = turn > 0.0 ? radius : -radius;
  const Point2 from = leftNormal(piece.direction), to = leftNormal(direction_);
  end_ = {end_.x + side * from.x - side * to.x, end_.y + side * from.y - side * to.y};
  length_ += piece.length;
  return *this;
}

const Profile::Piece& Profile::pieceAt(double s) const {
  std::size_t k = 0;
  while (k + 1 < pieces_.size() && s >= pieces_[k + 1].s) ++k;
  return pieces_[k];
}

Point2 Profile::point(double s) const {
  const Piece& p = pieceAt(s);
  if (p.turn == 0.0) {
    const Point2 t = unitVector(p.direction);
    return {p.start.x + (s - p.s) * t.x, p.start.y + (s - p.s) * t.y};
  }
  if (s >= length_) return end_;
  const double side = p.turn > 0.0 ? p.radius : -p.radius;
  const Point2 from = leftNormal(p.direction), to = leftNormal(p.direction + p.turn * ((s - p.s) / p.length));
  return {p.start.x + side * from.x - side * to.x, p.start.y + side * from.y - side * to.y};
}

Point2 Profile::normal(double s) const {
  const Piece& p = pieceAt(s);
  return leftNormal(p.direction + p.turn * ((s - p.s) / p.length));
}

double Profile::rowSize(const Piece& piece, double size) const {
  return piece.turn == 0.0 ? size : std::min(size, piece.radius * largestTurnPerRow * degree);
}

std::vector<Profile::Row> Profile::rows(double size) const {
  std::vector<Row> rows{{0.0, true}};
  for (std::size_t k = 0; k < pieces_.size(); ++k) {
    const Piece& p = pieces_[k];
    const double own = rowSize(p, size);
    const double before = k > 0 ? rowSize(pieces_[k - 1], size) : size;
    const double after = k + 1 < pieces_.size() ? rowSize(pieces_[k + 1], size) : size;
    const std::vector<double> s = gradedDivision(p.length, before, own, after);
    for (std::size_t i = 1; i < s.size(); ++i) {
      const bool joint = i + 1 == s.size();
      const double at = !joint ? p.s + s[i] : (k + 1 < pieces_.size() ? pieces_[k + 1].s : length_);
      rows.push_back({at, joint});
    }
  }
  return rows;
}

}  // namespace shapes
