// A sheet under construction: nodes, and quadrilateral cells that become two triangles each.
#pragma once

#include <cstdint>

#include "shapes.hpp"

namespace shapes {

struct Point3 {
  double x = 0.0, y = 0.0, z = 0.0;
};

/// Reproducible uniform numbers, the same on every machine (S. Vigna's SplitMix64).
class Random {
 public:
  explicit Random(std::uint64_t seed) : state_(seed) {}
  std::uint64_t next();
  /// Uniform in (-limit, limit).
  double within(double limit);

 private:
  std::uint64_t state_;
};

class SurfaceMesh {
 public:
  /// seed 0: regular diagonals.
  explicit SurfaceMesh(std::uint64_t seed) : random_(seed), jittered_(seed != 0) {}

  /// Appends a node and returns its number, from 1.
  std::int32_t addNode(const Point3& p);
  void addBlank(double u, double v);
  /// Appends the cell a b c d (counter-clockwise). Its diagonal is the shorter one; where both are nearly
  /// equal it alternates with `parity`, or is drawn at random in a jittered mesh.
  void addCell(std::int32_t a, std::int32_t b, std::int32_t c, std::int32_t d, int parity);

  /// A displacement of a node, as a fraction of the neighbouring cell; 0 in a regular mesh.
  double jitter() { return jittered_ ? random_.within(0.2) : 0.0; }

  Sheet& sheet() { return sheet_; }

 private:
  Point3 node(std::int32_t n) const;
  Sheet sheet_;
  Random random_;
  bool jittered_;
};

/// The value at `at` moved by the fraction `t` (-1..1) of the step towards its neighbour on that side.
double movedWithin(double before, double at, double after, double t);

/// Copies the quarter x ≥ 0, y ≥ 0 of one mesh per quadrant to all four quadrants, by reflection in x = 0 and
/// y = 0, and joins them at the nodes on these planes. The quadrants have the same numbering and the same
/// nodes on the planes, and may differ elsewhere. quadrants: in x,y-order ++, -+, --, +-.
Sheet joinQuadrants(const Sheet (&quadrants)[4]);

}  // namespace shapes
