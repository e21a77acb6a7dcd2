// Every refusal of the set-up keeps its text in the solver's message buffer, to the letter; and what happens
// where memory cannot be had.
#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "errors/hostile_host.hpp"
#include "errors/refused_memory.hpp"
#include "host_kit/default_run.hpp"

namespace {

using namespace hostile;
using tornwalzen::run;

class RefusalText : public testing::Test {
 protected:
  void SetUp() override {
    tornwalzen::freshState();
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
  }
  void TearDown() override {
    testing::internal::GetCapturedStdout();
    testing::internal::GetCapturedStderr();
  }
  static std::string kept() {
    std::string text(run.messages.MSGSTR_solver, tornwalzen::messageLength);
    text.erase(text.find_last_not_of(' ') + 1);
    return text;
  }
  Host host{dome(2), Flush::end};
};

TEST_F(RefusalText, NegativeCounts) {
  for (Ints* count : {&host.NKNO, &host.NELE, &host.MNSYSM}) {
    const std::int32_t sound = (*count)[0];
    (*count)[0] = -1;
    tornwalzen::freshState();
    EXPECT_EQ(host.init(1), -1);
    EXPECT_EQ(kept(), " FATALER FEHLER : nkno, nele oder mnsysm negativ @");
    (*count)[0] = sound;
  }
}

TEST_F(RefusalText, EquationsThatAreNotTwoPerNode) {
  host.NEQ[0] -= 1;
  EXPECT_EQ(host.init(1), -1);
  EXPECT_EQ(kept(), " FATALER FEHLER : neq ist nicht 2*nkno @");
}

TEST_F(RefusalText, TooManyTriangles) {
  host.NELE[0] = 715827883;
  EXPECT_EQ(host.init(1), -1);
  EXPECT_EQ(kept(), " FATALER FEHLER : nele zu gross @");
}

TEST_F(RefusalText, TooManyNodesForTheirDiagonalBlocks) {
  host.NKNO[0] = 715827883;
  host.NEQ[0] = 2 * 715827883;
  EXPECT_EQ(host.init(1), -1);
  EXPECT_EQ(kept(), " FATALER FEHLER : zu viele Matrixeintraege @");
}

TEST_F(RefusalText, RoomForTheMatrixTooSmall) {
  host.MNSYSM[0] = 10;
  host.ROWI.resize(10);
  EXPECT_EQ(host.init(1), -1);
  EXPECT_EQ(kept(), " FATALER FEHLER : mnsysm zu klein @");
}

TEST_F(RefusalText, MissingArguments) {
  for (const std::string name : {"MODE", "NKNO", "KNOTS", "KNG", "ROWI"}) {
    host.drop(name);
    EXPECT_EQ(host.init(1), -1);
    EXPECT_EQ(kept(), " FATALER FEHLER : Argument " + name + " fehlt @");
  }
}

TEST_F(RefusalText, NoMemoryForTheStructure) {
  {
    const NoMemory none;
    EXPECT_EQ(host.init(1), -1);
  }
  EXPECT_EQ(kept(), " FATALER FEHLER : kein Speicher fuer die Matrixstruktur @");
  EXPECT_EQ(host.NIWOR[0], -1) << "not written";
  host.setUp();
  EXPECT_EQ(host.analyse(), 1) << "and the next attempt succeeds";
  EXPECT_TRUE(host.converged());
}

TEST_F(RefusalText, NoMemoryForTheListOfMovingTrianglesCostsTimeAlone) {
  host.setUp();
  EXPECT_EQ(host.analyse(), 1);
  const std::vector<double> blank(host.RX.begin(), host.RX.end());
  const NoMemory none;
  EXPECT_EQ(host.analyse(), 1);
  EXPECT_TRUE(host.converged());
  EXPECT_EQ(std::vector<double>(host.RX.begin(), host.RX.end()), blank);
}

}  // namespace
