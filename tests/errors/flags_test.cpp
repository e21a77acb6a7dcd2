// What is held: everything, nothing, and flags that are neither 0 nor 1.
#include <limits>

#include "errors/hostile_case.hpp"

namespace {

using namespace hostile;

HOSTILE_SUITE(HostileFlags);

HOSTILE_CASE(HostileFlags, EverythingHeldIsLeftWhereItProjects) {
  const Mesh mesh = dome();
  Host host(mesh, flush);
  std::fill(host.ARFA.begin(), host.ARFA.end(), 0);
  host.setUp();
  EXPECT_EQ(host.analyse(), 1);
  host.expectTruth();
  for (std::int32_t n = 0; n < mesh.nodes(); ++n) {
    EXPECT_EQ(host.RX[2 * n], mesh.knots[3 * n]);
    EXPECT_EQ(host.RX[2 * n + 1], mesh.knots[3 * n + 1]);
  }
}

HOSTILE_CASE(HostileFlags, NothingHeldEndsAndTellsTheTruth) {
  for (const std::int32_t material : {1, 10}) {
    Host host(dome(), flush);
    std::fill(host.ARFA.begin(), host.ARFA.end(), 1);
    host.setUp();
    host.analyse(material);
    host.expectTruth();
  }
}

HOSTILE_CASE(HostileFlags, TurningIsNotHeld) {
  Host host(dome(), flush);
  std::fill(host.ARFA.begin() + 2, host.ARFA.end(), 1);
  host.setUp();
  host.analyse();
  host.expectTruth();
}

HOSTILE_CASE(HostileFlags, OddValues) {
  const std::int32_t odd[] = {
      2, -1, 3, 1 << 30, std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max()};
  for (const std::int32_t flag : odd) {
    Host one(dome(), flush);
    one.ARFA[20] = flag;
    one.setUp();
    one.analyse();
    one.expectTruth();
    Host all(dome(), flush);
    std::fill(all.ARFA.begin(), all.ARFA.end(), flag);
    all.setUp();
    all.analyse();
    all.expectTruth();
  }
}

}  // namespace
