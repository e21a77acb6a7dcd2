// A plane curve of straight lines and tangent arcs, and its division into rows: the section of a bent or
// drawn sheet. Lengths in mm, angles in degrees; arcs turn to the left for a positive angle.
#pragma once

#include <vector>

namespace shapes {

struct Point2 {
  double x = 0.0, y = 0.0;
};

/// Cosine and sine of an angle in degrees, exact at the multiples of 90: walls that shall be vertical are. On
/// the diagonals both are equal to the bit.
Point2 unitVector(double degrees);

/// Divides `length` > 0 into cells of at most about `size`, finer towards an end where a smaller size is
/// asked for. Sizes grow by a quarter of the distance from the end. Returns the cell boundaries from 0 to
/// length.
std::vector<double> gradedDivision(double length, double sizeAtStart, double size, double sizeAtEnd);

class Profile {
 public:
  /// A row of the division: arc length, point, and whether a line or arc begins or ends here.
  struct Row {
    double s;
    bool joint;
  };

  /// start: first point; direction: of the tangent there, from the first axis towards the second.
  Profile(Point2 start, double direction) : end_(start), direction_(direction) {}
  /// Appends a line. length ≥ 0; a line of no length is left out.
  Profile& line(double length);
  /// Appends an arc. radius > 0; turn ≠ 0.
  Profile& arc(double radius, double turn);

  double length() const { return length_; }
  Point2 end() const { return end_; }
  double endDirection() const { return direction_; }
  /// The point at arc length s, 0..length().
  Point2 point(double s) const;
  /// The unit normal to the left of the curve at arc length s.
  Point2 normal(double s) const;
  /// Rows of about `size`; an arc gets at least one row per 15 degrees, the lines beside it follow gradually.
  std::vector<Row> rows(double size) const;

 private:
  struct Piece {
    Point2 start;
    double direction, s, length, radius, turn;  // a line has the turn 0
  };
  const Piece& pieceAt(double s) const;
  double rowSize(const Piece& piece, double size) const;

  std::vector<Piece> pieces_;
  Point2 end_;
  double direction_;
  double length_ = 0.0;
};

}  // namespace shapes
