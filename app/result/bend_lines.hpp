// Where the part is bent, as lines on its blank.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "result/outline.hpp"

namespace host {

// Lines of the blank's unit, in this order:
//   one per straight bend (bend_zones.hpp): its direction is the mean of the part's ruling carried over to the blank,
//     its place the least-squares one through the middles of the zone's edges, weighed by angle and length: the middle
//     of the angle. It ends on the outline where the zone reaches it, else with the zone, and leaves holes out;
//   one per straight crease (20 degrees or more over no radius): through its edges, likewise;
//   the edges that border what else is bent, and those of creases that are not straight, by their nodes, ascending.
// A bend whose rulings spread by more than 3 degrees on the blank, as a root mean square, is not straight there.
//   corners  three node numbers per triangle, from 1, all turned the same way
//   part     x, y, z of node 1, of node 2, ...
//   blank    u, v of node 1, of node 2, ...; of the unit that the loops have
//   loops    the blank's outline
//   radius   the part's unit, > 0: what is bent less sharply counts as flat
std::vector<std::array<PlanePoint, 2>> bendLines(const std::vector<std::int32_t>& corners,
                                                 const std::vector<double>& part,
                                                 const std::vector<double>& blank,
                                                 const std::vector<OutlineLoop>& loops, double radius);

}  // namespace host
