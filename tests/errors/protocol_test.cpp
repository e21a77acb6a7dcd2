// Calls out of order, repeated, on the next mesh, and with arrays that moved: refused with -1, or the same
// bits as the straight run.
#include <cstring>
#include <limits>

#include "errors/hostile_case.hpp"

namespace {

using namespace hostile;

HOSTILE_SUITE(HostileProtocol);

std::vector<double> blankOf(const Mesh& mesh, Flush flush) {
  Host host(mesh, flush);
  host.setUp();
  EXPECT_EQ(host.analyse(), 1);
  EXPECT_TRUE(host.converged());
  host.expectTruth();
  return {host.RX.begin(), host.RX.end()};
}

void expectBlank(const Host& host, const std::vector<double>& blank) {
  ASSERT_EQ(host.RX.length(), static_cast<std::int64_t>(blank.size()));
  EXPECT_EQ(std::memcmp(host.RX.data(), blank.data(), blank.size() * sizeof(double)), 0) << "another blank";
}

HOSTILE_CASE(HostileProtocol, TheStraightRunConverges) {
  Host host(dome(), flush);
  host.setUp();
  EXPECT_EQ(host.analyse(), 1);
  EXPECT_TRUE(host.converged());
  host.expectTruth();
}

HOSTILE_CASE(HostileProtocol, UnknownModesDoNothing) {
  Host host(dome(), flush);
  host.NIWOR[0] = host.NRK[0] = 77;
  const std::int32_t capacity = host.MNSYSM[0];
  for (const std::int32_t mode : {0, 4, 11, 44, -1, std::numeric_limits<std::int32_t>::min(),
                                  std::numeric_limits<std::int32_t>::max()}) {
    EXPECT_EQ(host.init(mode), 0) << mode;
    EXPECT_EQ(host.NIWOR[0], 77);
    EXPECT_EQ(host.NRK[0], 77);
    EXPECT_EQ(host.MNSYSM[0], capacity);
    EXPECT_EQ(host.COLS[0], -1) << "written";
  }
  EXPECT_EQ(printedOut() + printedError(), "");
}

HOSTILE_CASE(HostileProtocol, TheLaterModesFirst) {
  Host host(dome(), flush);
  EXPECT_EQ(host.init(2), -1);
  EXPECT_EQ(host.init(3), -1);
  EXPECT_EQ(host.init(1), 0);
}

HOSTILE_CASE(HostileProtocol, TheSymbolicModeBeforeTheOrdering) {
  Host host(dome(), flush);
  EXPECT_EQ(host.init(1), 0);
  host.supply();
  EXPECT_EQ(host.init(3), -1);
  EXPECT_EQ(host.init(2), 0) << "a call out of order does not spoil the mesh";
}

HOSTILE_CASE(HostileProtocol, TheAnalysisWithoutASetUp) {
  Host host(dome(), flush);
  EXPECT_EQ(host.analyse(), -1);
  EXPECT_FALSE(host.converged());
}

HOSTILE_CASE(HostileProtocol, TheAnalysisAfterOneModeOnly) {
  Host host(dome(), flush);
  ASSERT_EQ(host.init(1), 0);
  host.supply();
  EXPECT_EQ(host.analyse(), -1);
  EXPECT_FALSE(host.converged());
}

HOSTILE_CASE(HostileProtocol, TheAnalysisBeforeTheSymbolicMode) {
  Host host(dome(), flush);
  ASSERT_EQ(host.init(1), 0);
  host.supply();
  ASSERT_EQ(host.init(2), 0);
  host.supply();
  EXPECT_EQ(host.analyse(), -1);
  EXPECT_FALSE(host.converged());
}

HOSTILE_CASE(HostileProtocol, EveryModeTwiceGivesTheSameBlank) {
  const std::vector<double> blank = blankOf(dome(), flush);
  Host host(dome(), flush);
  for (std::int32_t mode = 1; mode <= 3; ++mode) {
    ASSERT_EQ(host.init(mode), 0);
    if (mode == 1) {
      ASSERT_EQ(host.init(mode), 0);
      host.supply();
    } else if (mode == 2) {  // the ordering needs its first length again
      ASSERT_EQ(host.init(mode), host.NIWOR[0] < host.WORK.length() ? -1 : 0);
      if (host.ISTAT[0] != 0) {
        ASSERT_EQ(host.init(1), 0);
        ASSERT_EQ(host.init(2), 0);
      }
      host.supply();
    } else {
      const std::int32_t integers = host.NIWOR[0], reals = host.NRK[0];
      host.supply();
      ASSERT_EQ(host.init(mode), 0);
      EXPECT_EQ(host.NIWOR[0], integers);
      EXPECT_EQ(host.NRK[0], reals);
    }
  }
  EXPECT_EQ(host.analyse(), 1);
  expectBlank(host, blank);
}

HOSTILE_CASE(HostileProtocol, TheOrderingAfterTheSymbolicModeAsksForIt) {
  Host host(dome(), flush);
  host.setUp();
  ASSERT_EQ(host.init(2), 0);
  EXPECT_EQ(host.analyse(), -1) << "the layout of the factor is stale";
  EXPECT_FALSE(host.converged());
}

HOSTILE_CASE(HostileProtocol, TheAnalysisTwiceGivesTheSameBlank) {
  const std::vector<double> blank = blankOf(dome(), flush);
  Host host(dome(), flush);
  host.setUp();
  EXPECT_EQ(host.analyse(), 1);
  EXPECT_EQ(host.analyse(), 1);
  EXPECT_TRUE(host.converged());
  expectBlank(host, blank);
  host.setUp();
  EXPECT_EQ(host.analyse(), 1);
  expectBlank(host, blank);
}

HOSTILE_CASE(HostileProtocol, ASecondMeshAfterTheFirst) {
  const std::vector<double> small = blankOf(dome(2), flush), large = blankOf(dome(6), flush);
  Host host(dome(4), flush);
  host.setUp();
  EXPECT_EQ(host.analyse(), 1);
  host.open(dome(6));
  host.setUp();
  EXPECT_EQ(host.analyse(), 1);
  expectBlank(host, large);
  host.open(dome(2));
  host.setUp();
  EXPECT_EQ(host.analyse(), 1);
  expectBlank(host, small);
}

HOSTILE_CASE(HostileProtocol, TheFirstMeshesWorkServesNoSecondMesh) {
  for (const int cells : {2, 6}) {
    Host host(dome(4), flush);
    host.setUp();
    host.open(dome(cells));
    ASSERT_EQ(host.init(1), 0);
    host.ROWI.resize(host.MNSYSM[0]);
    host.SYSM.resize(host.MNSYSM[0]);
    host.WORK.resize(host.NIWOR[0]);  // the front still is the first mesh's
    EXPECT_EQ(host.init(3), -1);
    EXPECT_EQ(host.analyse(), -1);
    EXPECT_FALSE(host.converged());
  }
}

HOSTILE_CASE(HostileProtocol, ARefusedMeshLeavesNoOldOneToRunOn) {
  Host host(dome(4), flush);
  host.setUp();
  host.NEQ[0] = 3;
  EXPECT_EQ(host.init(1), -1);
  EXPECT_EQ(host.init(2), -1);
  EXPECT_EQ(host.init(3), -1);
  EXPECT_EQ(host.analyse(), -1);
  EXPECT_FALSE(host.converged());
}

HOSTILE_CASE(HostileProtocol, ARefusedPatternLeavesNoOldOneToRunOn) {
  Host host(dome(4), flush);
  host.setUp();
  host.open(dome(6));
  host.WORK.resize(0);  // a host learns no length from a mode that failed
  host.RWORK.resize(0);
  host.MNSYSM[0] = 20;
  host.ROWI.resize(20);
  host.SYSM.resize(20);
  EXPECT_EQ(host.init(1), -1);
  EXPECT_EQ(host.init(2), -1);
  EXPECT_EQ(host.init(3), -1);
  EXPECT_EQ(host.analyse(), -1);
  EXPECT_FALSE(host.converged());
}

HOSTILE_CASE(HostileProtocol, ArraysMayMoveBetweenAnyTwoCalls) {
  const std::vector<double> blank = blankOf(dome(), flush);
  Host host(dome(), flush);
  for (std::int32_t mode = 1; mode <= 3; ++mode) {
    ASSERT_EQ(host.init(mode), 0);
    host.supply();
    host.moveAll();
  }
  EXPECT_EQ(host.analyse(), 1);
  expectBlank(host, blank);
  host.moveAll();
  EXPECT_EQ(host.analyse(), 1);
  expectBlank(host, blank);
}

HOSTILE_CASE(HostileProtocol, FailedSetUpIsForgottenByTheNextOne) {
  const std::vector<double> blank = blankOf(dome(), flush);
  Host host(dome(), flush);
  host.INZI[5] = 0;
  EXPECT_EQ(host.init(1), -1);
  host.open(dome());
  host.setUp();
  EXPECT_EQ(host.analyse(), 1);
  expectBlank(host, blank);
}

HOSTILE_CASE(HostileProtocol, AnUnknownMaterialRunsAsTheGeometricOne) {
  for (const std::int32_t material :
       {3, -1, 11, std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max()}) {
    Host host(dome(), flush);
    host.setUp();
    EXPECT_EQ(host.analyse(material), 0);
    EXPECT_TRUE(host.converged());
    host.expectTruth();
  }
}

HOSTILE_CASE(HostileProtocol, AnAbortedRunIsNeverTakenForASuccessLater) {
  Mesh tangle = dome();
  for (double& x : tangle.knots) x = 0.0;  // every area ratio 0/0
  Host host(tangle, flush);
  host.setUp();
  host.analyse();
  EXPECT_FALSE(host.converged());
  host.open(dome());
  host.setUp();
  host.analyse();
  host.expectTruth();
}

}  // namespace
