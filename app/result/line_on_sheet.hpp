// Pieces of a straight line that lie on the blank.
#pragma once

#include <array>
#include <vector>

#include "result/outline.hpp"

namespace host {

// A line of the plane; a place on it is its distance s from `through` along `direction`.
struct PlaneLine {
  PlanePoint through{}, direction{1.0, 0.0};  // direction: unit vector
  PlanePoint at(double s) const { return {through[0] + s * direction[0], through[1] + s * direction[1]}; }
  double along(const PlanePoint& point) const {
    return (point[0] - through[0]) * direction[0] + (point[1] - through[1]) * direction[1];
  }
  double beside(const PlanePoint& point) const {  // positive to the left
    return (point[1] - through[1]) * direction[0] - (point[0] - through[0]) * direction[1];
  }
};

// Places where the line crosses a closed polygon, in ascending order, in pairs: between the first and the second, the
// third and the fourth it lies inside, by the rule of odd and even.
// Places beyond the range of numbers are left out.
std::vector<double> crossings(const PlaneLine& line, const std::vector<OutlineLoop>& loops);

// From each piece of the line that lies on the sheet what lies between the first and the last of the `covered` stretches
// there; an end that the outline follows within `reach` goes on to it. Pieces without a stretch are left out.
// loops: of the sheet. covered: from, to, with from <= to. reach: the loops' unit, 0 or more.
std::vector<std::array<PlanePoint, 2>> coveredPieces(const PlaneLine& line,
                                                     const std::vector<OutlineLoop>& loops,
                                                     const std::vector<std::array<double, 2>>& covered,
                                                     double reach);

}  // namespace host
