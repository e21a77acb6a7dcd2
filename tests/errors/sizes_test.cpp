// Counts and lengths that are wrong, and node numbers out of range.
#include <gmock/gmock.h>

#include <limits>

#include "errors/hostile_case.hpp"

namespace {

using namespace hostile;
using testing::HasSubstr;

HOSTILE_SUITE(HostileSizes);

constexpr std::int32_t largest = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t lowest = std::numeric_limits<std::int32_t>::min();

// The entries that the pattern of the mesh needs.
std::int32_t entriesOf(const Mesh& mesh, Flush flush) {
  Host host(mesh, flush);
  EXPECT_EQ(host.init(1), 0);
  return host.MNSYSM[0];
}

HOSTILE_CASE(HostileSizes, ExactlyTheEntriesNeeded) {
  const std::int32_t entries = entriesOf(dome(), flush);
  Host host(dome(), flush);
  host.MNSYSM[0] = entries;
  host.ROWI.resize(entries);
  EXPECT_EQ(host.init(1), 0);
  EXPECT_EQ(host.MNSYSM[0], entries);
}

HOSTILE_CASE(HostileSizes, RoomForTheMatrixTooSmall) {
  const std::int32_t entries = entriesOf(dome(), flush);
  for (const std::int32_t given : {entries - 1, entries / 2, 2, 1, 0, -1, lowest}) {
    Host host(dome(), flush);
    host.MNSYSM[0] = given;
    host.ROWI.resize(std::max(0, given));
    EXPECT_EQ(host.init(1), -1) << given;
    EXPECT_EQ(host.MNSYSM[0], given) << "stays as the host gave it";
    EXPECT_EQ(host.NIWOR[0], -1) << "not written";
    EXPECT_EQ(host.init(2), -1);
  }
}

HOSTILE_CASE(HostileSizes, MoreRoomThanThereIsIsNotTouched) {
  const std::int32_t entries = entriesOf(dome(), flush);
  Host host(dome(), flush);
  host.MNSYSM[0] = largest;
  host.ROWI.resize(entries);
  EXPECT_EQ(host.init(1), 0);
  EXPECT_EQ(host.MNSYSM[0], entries);
}

HOSTILE_CASE(HostileSizes, EquationsThatAreNotTwoPerNode) {
  for (const std::int32_t neq : {0, -1, 1, 49, 51, 25, 100, largest, lowest}) {
    Host host(dome(), flush);  // 25 nodes
    host.NEQ[0] = neq;
    EXPECT_EQ(host.init(1), -1) << neq;
    EXPECT_EQ(host.COLS[0], -1) << "nothing written";
  }
}

HOSTILE_CASE(HostileSizes, NegativeCounts) {
  for (const std::int32_t count : {-1, -2, lowest, lowest / 2}) {
    Host nodes(dome(), flush);
    nodes.NKNO[0] = count;
    nodes.NEQ[0] = static_cast<std::int32_t>(2 * std::int64_t{count});
    EXPECT_EQ(nodes.init(1), -1) << count;
    Host triangles(dome(), flush);
    triangles.NELE[0] = count;
    EXPECT_EQ(triangles.init(1), -1) << count;
  }
}

// The products are formed in 64 bits: a mesh that wraps around to a small one is refused before an array is
// read.
HOSTILE_CASE(HostileSizes, CountsWhoseProductsLeaveThirtyOneBits) {
  for (const std::int32_t nodes : {1 << 30, (1 << 30) + 12, largest}) {
    Host host(dome(), flush);
    host.NKNO[0] = nodes;
    host.NEQ[0] = static_cast<std::int32_t>(2u * static_cast<std::uint32_t>(nodes));
    EXPECT_EQ(host.init(1), -1) << nodes;
  }
  for (const std::int32_t triangles : {715827883, 1431655766, largest}) {
    Host host(dome(), flush);
    host.NELE[0] = triangles;
    EXPECT_EQ(host.init(1), -1) << triangles;
  }
  for (const std::int32_t nodes : {715827883, (1 << 30) - 1}) {  // three entries per node at least
    Host host(dome(), flush);
    host.NKNO[0] = nodes;
    host.NEQ[0] = 2 * nodes;
    host.NELE[0] = 0;
    EXPECT_EQ(host.init(1), -1) << nodes;
  }
}

HOSTILE_CASE(HostileSizes, NoNodesAndNoTriangles) {
  Host host(Mesh{}, flush);
  host.setUp();
  EXPECT_EQ(host.MNSYSM[0], 0);
  EXPECT_EQ(host.COLS[0], 1);
  host.analyse();
  host.expectTruth();
}

HOSTILE_CASE(HostileSizes, NodesWithoutTriangles) {
  Host host(Mesh{{0, 0, 0, 10, 0, 0}, {}}, flush);
  std::fill(host.ARFA.begin(), host.ARFA.end(), 0);
  host.setUp();
  EXPECT_EQ(host.MNSYSM[0], 6);
  EXPECT_EQ(host.analyse(), 1);
  host.expectTruth();
}

HOSTILE_CASE(HostileSizes, TrianglesWithoutNodes) {
  Host host(Mesh{{}, {1, 2, 3}}, flush);
  EXPECT_EQ(host.init(1), -1);
  EXPECT_THAT(printedError(),
              HasSubstr("fort: (2): Subscript #1 of the array KNG has value 1 which is greater than "
                        "the upper bound of 0\n"));
}

HOSTILE_CASE(HostileSizes, OneNodeAndOneTriangle) {
  Host one(Mesh{{1, 2, 3}, {1, 1, 1}}, flush);
  one.setUp();
  EXPECT_EQ(one.MNSYSM[0], 3);
  one.analyse();
  EXPECT_FALSE(one.converged());
  Host triangle(Mesh{{0, 0, 0, 10, 0, 1, 0, 10, 0}, {1, 2, 3}}, flush);
  triangle.setUp();
  triangle.analyse();
  triangle.expectTruth();
}

HOSTILE_CASE(HostileSizes, NodeNumbersOutOfRange) {
  const Mesh mesh = dome();
  for (const std::int32_t node : {0, -1, lowest, mesh.nodes() + 1, largest})
    for (const std::size_t place : {std::size_t{0}, std::size_t{40}, mesh.inzi.size() - 1}) {
      Mesh broken = mesh;
      broken.inzi[place] = node;
      Host host(broken, flush);
      EXPECT_EQ(host.init(1), -1) << node << " at " << place;
      const std::string value =
          "Subscript #1 of the array KNG has value " + std::to_string(node) + " which is ";
      EXPECT_THAT(printedError(),
                  HasSubstr(node < 1 ? "fort: (3): " + value + "less than the lower bound of 1\n"
                                     : "fort: (2): " + value + "greater than the upper bound of 25\n"));
      EXPECT_EQ(host.init(2), -1);
    }
}

HOSTILE_CASE(HostileSizes, NodeNumbersOutOfRangeInTheAnalysis) {
  for (const std::int32_t node : {0, -1, lowest, 26, largest}) {
    Host host(dome(), flush);
    host.setUp();
    host.INTA[33] = node;
    EXPECT_EQ(host.analyse(), -1) << node;
    EXPECT_FALSE(host.converged());
    EXPECT_THAT(printedError(), HasSubstr("Subscript #1 of the array KNG has value " + std::to_string(node)));
  }
}

}  // namespace
