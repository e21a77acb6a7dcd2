// Round cups of several strokes, radii and frictions, by the library and in one dimension.
#pragma once

#include "verification/axisymmetric_cup.hpp"
#include "verification/press_parts.hpp"

namespace verification {

struct RingCase {
  const char* name;
  RoundCup cup;
  double friction, binder, r;  // binder: N on the whole cup
};

constexpr RingCase ringCases[] = {{"shallow", {50.0, 8.0, 6.0, 20.0, 3.0, 75.0}, 0.10, 20000.0, 1.0},
                                  {"deep", {50.0, 8.0, 6.0, 30.0, 3.0, 72.0}, 0.05, 40000.0, 1.0},
                                  {"small", {25.0, 6.0, 5.0, 14.0, 1.0, 40.0}, 0.15, 8000.0, 1.8},
                                  {"blunt", {40.0, 20.0, 10.0, 25.0, 10.0, 65.0}, 0.20, 15000.0, 0.7}};

/// [0] by the library, [1] in one dimension; mm.
struct RingComparison {
  bool solved = false;
  double exponent = 0.0, spread = 0.0;  // spread: of the edge's radius in the library's blank
  double edge[2] = {}, thinnest[2] = {}, thickest[2] = {};
};

inline RingComparison compareWithRings(const RingCase& given, bool tools, std::int32_t triangles,
                                       double size) {
  const RoundCup& cup = given.cup;
  const RingLaw law{swiftSteel[0], swiftSteel[1], swiftSteel[2], 206000.0, given.r};
  AxisymmetricCup rings(cup, law, {1.0, given.friction, given.binder, tools}, size);
  RingComparison both;
  if (!rings.solve()) return both;
  shapes::MeshChoice choice;
  choice.triangles = triangles;
  choice.quarter = true;
  host_kit::HostPart part = host_kit::fromSheet(shapes::makeShape("round_cup", choice,
                                                                  {{"radius", cup.radius},
                                                                   {"punch_radius", cup.punchRadius},
                                                                   {"die_radius", cup.dieRadius},
                                                                   {"depth", cup.depth},
                                                                   {"draft", cup.draft},
                                                                   {"edge_radius", cup.edge}}));
  host_kit::holdSymmetryPlanes(part);
  const Handle handle = handleOf(part, false);
  TornwalzenPress press = sheetOf(1.0);
  press.r0 = press.r45 = press.r90 = given.r;
  if (tools) {
    press.friction_punch = press.friction_die = given.friction;
    press.binder_force_n = 0.25 * given.binder;
    press.flange_of_rim = 1;
  }
  const PressRun run = runPress(handle.get(), press);
  if (run.code != TORNWALZEN_OK) return both;
  double least = INFINITY, most = 0.0;
  for (const auto& [a, b] : outerEdge(part))
    for (const std::size_t n : {a, b}) {
      const double radius = std::hypot(run.RX[2 * n], run.RX[2 * n + 1]);
      least = std::min(least, radius), most = std::max(most, radius);
    }
  return {true,
          run.result.exponent,
          most - least,
          {0.5 * (least + most), rings.edge()},
          {run.result.thinnest_mm, rings.thinnest()},
          {run.result.thickest_mm, rings.thickest()}};
}

}  // namespace verification
