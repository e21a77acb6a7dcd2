// How the mesh of a part is bent: per triangle how sharply, to which side, and along which ruling.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "system/vector.hpp"

namespace host {

// The symmetric tensor of bending, sum of angle * length * e e^T over edges of direction e, in the points' unit: angle in
// rad between the normals of an edge's two triangles, positive where the sheet turns towards its normal (D. Cohen-Steiner,
// J.-M. Morvan, Restricted Delaunay triangulations and normal cycle, 2003). On a cylinder its one large eigenvalue belongs
// to the ruling.
struct BendingTensor {
  double xx = 0.0, yy = 0.0, zz = 0.0, xy = 0.0, xz = 0.0, yz = 0.0;
  void add(const BendingTensor& other);
  void addDyad(const Vector& vector, double weight);  // weight * vector vector^T
};

struct Ruling {
  Vector direction{};     // unit vector of the eigenvalue that is largest in size
  double strength = 0.0;  // that eigenvalue, signed
  double share =
      1.0;  // size of the next one over it, 0..1: 0 on a cylinder, 1 on a sphere and where all is 0
};

Ruling rulingOf(const BendingTensor& tensor);

// The unit eigenvector of the eigenvalue that is smallest in size.
Vector leastDirection(const BendingTensor& tensor);

// An edge of two triangles with area that are turned the same way.
struct InnerEdge {
  std::array<std::int32_t, 2> nodes{};     // lower one first, from 1
  std::array<std::size_t, 2> triangles{};  // from 0
  double angle = 0.0;                      // rad, signed as above
  bool crease = false;                     // 20 degrees or more: bent over no radius
};

struct SheetBending {
  std::vector<InnerEdge> edges;  // by their nodes, ascending
  std::vector<Vector> normals;   // per triangle; 0 without area
  std::vector<bool> bent;  // per triangle: curvature * radius >= 1, and no flat row that only touches a bend
  std::vector<BendingTensor> tensors;  // per triangle: of the edges at its corners, without creases
};

// corners: three node numbers per triangle, from 1, all turned the same way. points: x, y, z of node 1, of node 2, ...
// radius: the points' unit, > 0: what is bent less sharply counts as flat.
// The curvature of a triangle is the largest difference of the normals at two of its corners over their distance; the
// normal at a corner is the mean, weighed by area, over the triangles around the node that lie within 20 degrees of it. A
// triangle is bent whose curvature reaches 1/radius and half of the largest among its neighbours: so the flat row that only
// touches a bend stays outside. Three times, a bent triangle with two flat neighbours then goes with them, and a flat one whose neighbours are all bent.
// Triangles without area are flat.
SheetBending bendingOf(const std::vector<std::int32_t>& corners, const std::vector<double>& points,
                       double radius);

}  // namespace host
