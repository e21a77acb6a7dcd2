// Parts that are none: the run ends, and is not called a success unless its blank is one.
#include <cmath>
#include <limits>

#include "errors/hostile_case.hpp"

namespace {

using namespace hostile;

HOSTILE_SUITE(HostileGeometry);

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

// Runs the part with every material; `mustFail`: no such run may claim to have converged.
void run(const Mesh& mesh, Flush flush, bool mustFail) {
  for (const std::int32_t material : {0, 1, 2, 10}) {
    isolated([&] {  // an aborted run would end the next one early
      Host host(mesh, flush);
      host.setUp();
      const std::int32_t status = host.analyse(material);
      EXPECT_TRUE(status == -1 || status == (material == 10 ? 0 : 1)) << status;
      host.expectTruth();
      EXPECT_FALSE(mustFail && host.converged()) << "material " << material;
    });
  }
}

#define GEOMETRY_CASE(name)            \
  static void name##Body(Flush flush); \
  TEST_P(HostileGeometry, name) {      \
    name##Body(GetParam());            \
  }                                    \
  static void name##Body(Flush flush)

GEOMETRY_CASE(CoordinatesThatAreNoNumbers) {
  for (const double bad : {nan, infinity, -infinity})
    for (const std::size_t place : {0, 1, 2, 36, 37, 38}) {  // of the first node and of the middle one
      Mesh mesh = dome();
      mesh.knots[place] = bad;
      run(mesh, flush, true);
    }
}

GEOMETRY_CASE(AllCoordinatesTheSameNonsense) {
  for (const double bad : {nan, infinity, 0.0, 1e300, 5e-324}) {
    Mesh mesh = dome();
    std::fill(mesh.knots.begin(), mesh.knots.end(), bad);
    run(mesh, flush, true);
  }
}

GEOMETRY_CASE(OneEnormousCoordinate) {
  for (const double bad : {1e300, -1e300, 1e160, 1e10})
    for (const std::size_t place : {36, 38}) {
      Mesh mesh = dome();
      mesh.knots[place] = bad;
      run(mesh, flush, false);
    }
}

GEOMETRY_CASE(PartsOfExtremeSize) {
  for (const double scale : {1e300, 1e150, 1e30, 1e-30, 1e-150, 1e-300, 1e-320}) {
    Mesh mesh = dome();
    for (double& x : mesh.knots) x *= scale;
    run(mesh, flush, false);
  }
}

GEOMETRY_CASE(OneTinyCoordinate) {
  Mesh mesh = dome();
  for (const double tiny : {1e-300, 5e-324, -1e-300}) {
    mesh.knots[38] = tiny;
    run(mesh, flush, false);
  }
}

GEOMETRY_CASE(TrianglesWithoutArea) {
  Mesh collapsed = dome();
  for (int c = 0; c < 3; ++c) collapsed.knots[36 + c] = collapsed.knots[39 + c];  // two nodes in one place
  run(collapsed, flush, true);
  Mesh line{{0, 0, 0, 10, 0, 0, 20, 0, 0, 0, 10, 0}, {1, 2, 3, 1, 2, 4}};
  run(line, flush, true);
  Mesh repeated = dome();
  repeated.inzi[4] = repeated.inzi[3];  // a corner twice
  run(repeated, flush, true);
  repeated.inzi[5] = repeated.inzi[3];  // three times
  run(repeated, flush, true);
}

GEOMETRY_CASE(Needles) {
  for (const double width : {1e-3, 1e-8, 1e-14}) {
    const Mesh mesh{{0, 0, 0, 100, 0, 0, 50, width, 0, 50, 40, 5}, {1, 2, 3, 1, 3, 4, 3, 2, 4}};
    run(mesh, flush, false);
  }
}

GEOMETRY_CASE(VerticalWallsProjectOntoALine) {
  const Mesh wall = [] {
    Mesh mesh = plate();
    for (std::size_t n = 0; n < mesh.knots.size(); n += 3) std::swap(mesh.knots[n + 1], mesh.knots[n + 2]);
    return mesh;
  }();
  run(wall, flush, false);
}

GEOMETRY_CASE(TurnedOverAndMixedOrientation) {
  Mesh turned = dome();
  for (std::size_t e = 0; e < turned.inzi.size(); e += 3) std::swap(turned.inzi[e + 1], turned.inzi[e + 2]);
  run(turned, flush, false);
  Mesh mixed = dome();
  for (std::size_t e = 0; e < mixed.inzi.size(); e += 6) std::swap(mixed.inzi[e + 1], mixed.inzi[e + 2]);
  run(mixed, flush, false);
  Mesh one = dome();
  std::swap(one.inzi[0], one.inzi[1]);
  run(one, flush, false);
}

GEOMETRY_CASE(TwoSheetsAndUnusedNodes) {
  Mesh second = dome(3);
  for (std::size_t n = 0; n < second.knots.size(); n += 3) second.knots[n] += 100.0;
  run(together(dome(), second), flush, false);  // the second sheet is free to move
  Mesh unused = dome();
  unused.knots.insert(unused.knots.end(), {1, 2, 3, nan, nan, nan});
  run(unused, flush, false);
}

GEOMETRY_CASE(TheSameTriangleAgainAndAgain) {
  Mesh mesh{{0, 0, 0, 10, 0, 1, 0, 10, 0}, {}};
  for (int e = 0; e < 200; ++e) mesh.inzi.insert(mesh.inzi.end(), {1, 2, 3});
  run(mesh, flush, false);
}

GEOMETRY_CASE(RandomNonsense) {
  std::uint64_t state = 20260707;  // Marsaglia's xorshift
  const auto next = [&state] {
    state ^= state << 13;
    state ^= state >> 7;
    return state ^= state << 17;
  };
  for (int trial = 0; trial < 20; ++trial) {
    Mesh mesh;
    const std::size_t nodes = 3 + next() % 10, triangles = 1 + next() % 20;
    for (std::size_t i = 0; i < 3 * nodes; ++i)
      mesh.knots.push_back(static_cast<double>(next() % 2001) / 100.0 - 10.0);
    for (std::size_t i = 0; i < 3 * triangles; ++i)
      mesh.inzi.push_back(static_cast<std::int32_t>(1 + next() % nodes));
    run(mesh, flush, false);
  }
}

}  // namespace
