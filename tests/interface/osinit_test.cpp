// The entry points' protocol at its edges: modes, empty meshes, refusals that leave the host's arguments
// alone, and the run status.
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "host_kit/default_run.hpp"
#include "host_kit/fixed_host.hpp"

namespace {

using namespace tornwalzen;
using testing::internal::CaptureStderr;
using testing::internal::CaptureStdout;
using testing::internal::GetCapturedStderr;
using testing::internal::GetCapturedStdout;

// A host with a tile of two triangles, one corner raised; its arrays are as long as the protocol asks. What no call has
// written yet is -77.
class Host : public testing::Test, protected host_kit::FixedHost<> {
 protected:
  void SetUp() override {
    run.ierrel = 0;
    open({0, 0, 0, 10, 0, 0, 10, 10, 2, 0, 10, 0}, {1, 2, 3, 1, 3, 4}, {0, 0, 1, 0, 1, 1, 1, 1});
    for (auto* array : {&NIWOR, &NRK, &ISTAT, &INTA, &COLS, &ROWI}) array->assign(array->size(), -77);
    KNG.assign(KNG.size(), -77.0);
  }
  void TearDown() override { run.ierrel = 0; }

  void osinit(int32_t mode) {
    CaptureStdout();
    init(mode);
    GetCapturedStdout();
  }
  void setUpSolver() {
    CaptureStdout();
    const bool done = setUp();
    GetCapturedStdout();
    ASSERT_TRUE(done) << "mode " << MODE[0];
  }
  int32_t osmain(int32_t selector) {
    CaptureStdout();
    analyse(selector);
    GetCapturedStdout();
    return ISTAT[0];
  }
};

TEST_F(Host, ModesOtherThanOneToThreeDoNothing) {
  for (int32_t mode : {0, 4, -1, 11, std::numeric_limits<int32_t>::min()}) {
    ISTAT[0] = -77;
    osinit(mode);
    EXPECT_EQ(ISTAT[0], 0) << mode;
  }
  EXPECT_EQ(MNSYSM[0], 36);
  EXPECT_EQ(NIWOR[0], -77);
  EXPECT_EQ(NRK[0], -77);
  EXPECT_EQ(KNG, std::vector<double>(12, -77.0));
  EXPECT_EQ(INTA, std::vector<int32_t>(6, -77));
  EXPECT_EQ(COLS, std::vector<int32_t>(9, -77));
  EXPECT_EQ(ROWI, std::vector<int32_t>(36, -77));
}

TEST_F(Host, ModeOneTurnsRowsIntoColumnsAndDoesItsOwnStepOnly) {
  osinit(1);
  EXPECT_EQ(ISTAT[0], 0);
  EXPECT_EQ(KNG, (std::vector<double>{0, 10, 10, 0, 0, 0, 10, 10, 0, 0, 2, 0}));
  EXPECT_EQ(INTA, (std::vector<int32_t>{1, 1, 2, 3, 3, 4}));
  EXPECT_EQ(MNSYSM[0], 36 - 4);  // 4 nodes with 3 entries each and 5 pairs with 4: one pair is shared
  EXPECT_EQ(COLS.front(), 1);
  EXPECT_EQ(COLS.back(), MNSYSM[0] + 1);
  EXPECT_GT(NIWOR[0], 0);
  EXPECT_EQ(NRK[0], -77);  // a later mode's result
  EXPECT_EQ(run.nkno, 4);
  EXPECT_EQ(run.nele, 2);
  EXPECT_EQ(run.neq, 8);
  EXPECT_EQ(run.solver.mnsysm, MNSYSM[0]);
}

TEST_F(Host, TheThreeModesReportWhatTheNextStepNeeds) {
  setUpSolver();
  EXPECT_GT(NIWOR[0], 0);
  EXPECT_GT(NRK[0], 0);
}

TEST_F(Host, AnEmptyMeshSkipsTheCopies) {
  NKNO[0] = NELE[0] = NEQ[0] = 0;
  osinit(1);
  EXPECT_EQ(ISTAT[0], 0);
  EXPECT_EQ(MNSYSM[0], 0);
  EXPECT_EQ(KNG, std::vector<double>(12, -77.0));
  EXPECT_EQ(INTA, std::vector<int32_t>(6, -77));
}

TEST_F(Host, NodesWithoutTrianglesGiveADiagonalPattern) {
  NELE[0] = 0;
  osinit(1);
  EXPECT_EQ(ISTAT[0], 0);
  EXPECT_EQ(MNSYSM[0], 12);  // per node two diagonal entries and the one between them
  EXPECT_EQ(INTA, std::vector<int32_t>(6, -77));
}

TEST_F(Host, AFailingModeOneLeavesMnsysmAndNiworAlone) {
  MNSYSM[0] = 31;  // one too few
  osinit(1);
  EXPECT_EQ(ISTAT[0], -1);
  EXPECT_EQ(MNSYSM[0], 31);
  EXPECT_EQ(NIWOR[0], -77);
  std::string fatal = " FATALER FEHLER : mnsysm zu klein @";
  fatal.resize(messageLength, ' ');
  EXPECT_EQ(std::string(run.messages.MSGSTR_solver, messageLength), fatal);
  for (std::size_t k = 31; k < ROWI.size(); ++k) EXPECT_EQ(ROWI[k], -77) << k;
}

TEST_F(Host, CountsThatDoNotFitTogetherAreRefused) {
  NEQ[0] = 9;
  osinit(1);
  EXPECT_EQ(ISTAT[0], -1);
  EXPECT_EQ(MNSYSM[0], 36);
  NEQ[0] = 8;
  NELE[0] = -1;
  osinit(1);
  EXPECT_EQ(ISTAT[0], -1);
  NELE[0] = 2;
  NKNO[0] = -4;
  NEQ[0] = -8;
  osinit(1);
  EXPECT_EQ(ISTAT[0], -1);
}

TEST_F(Host, AnIncidenceOutsideTheMeshIsNamedAndRefused) {
  INZI[5] = 5;
  CaptureStderr();
  osinit(1);
  EXPECT_EQ(
      GetCapturedStderr(),
      "fort: (2): Subscript #1 of the array KNG has value 5 which is greater than the upper bound of 4\n");
  EXPECT_EQ(ISTAT[0], -1);
  EXPECT_EQ(MNSYSM[0], 36);
}

TEST_F(Host, ASuccessAfterAFailureClearsTheErrorWord) {
  MNSYSM[0] = 1;
  osinit(1);
  ASSERT_EQ(ISTAT[0], -1);
  MNSYSM[0] = 36;
  osinit(1);
  EXPECT_EQ(ISTAT[0], 0);
  EXPECT_EQ(run.ierrso, 0);
}

TEST_F(Host, ARefusedMeshLeavesNoSolverToGoOnWith) {
  setUpSolver();
  MNSYSM[0] = 1;
  osinit(1);
  ASSERT_EQ(ISTAT[0], -1);
  osinit(2);
  EXPECT_EQ(ISTAT[0], -1);
}

// What the mesh before it was sized for must not be read in arrays that the host has meanwhile made smaller.
TEST_F(Host, ARefusedMeshLeavesNoSizesToReadBy) {
  for (const int32_t badNeq : {7, 8}) {  // refused by its counts, and while its pattern is built
    setUpSolver();
    ASSERT_EQ(ISTAT[0], 0);
    const int32_t keptNeq = NEQ[0], keptCapacity = MNSYSM[0];
    NEQ[0] = badNeq;
    if (badNeq == 8) MNSYSM[0] = 5;
    osinit(1);
    EXPECT_EQ(ISTAT[0], -1);
    EXPECT_EQ(run.nkno, 0);
    EXPECT_EQ(run.nele, 0);
    EXPECT_EQ(run.neq, 0);
    EXPECT_EQ(run.solver.mnsysm, 0);
    EXPECT_EQ(run.solver.niwor, 0);
    EXPECT_EQ(run.solver.nrk, 0);
    WORK.clear(), RWORK.clear();
    osinit(2);
    EXPECT_EQ(ISTAT[0], -1) << "nothing to order";
    NEQ[0] = keptNeq, MNSYSM[0] = keptCapacity;
  }
}

TEST_F(Host, CurvesZeroOneAndTwoRunWithStatusOne) {
  setUpSolver();
  for (int32_t selector : {0, 1, 2}) {
    run.ierrel = 0;
    EXPECT_EQ(osmain(selector), 1) << selector;
    EXPECT_EQ(run.istat, 1);
  }
}

TEST_F(Host, EveryOtherSelectorRunsWithStatusZero) {
  setUpSolver();
  for (int32_t selector : {10, 3, -1}) {
    run.ierrel = 0;
    EXPECT_EQ(osmain(selector), 0) << selector;
    EXPECT_EQ(run.istat, 0);
  }
}

TEST_F(Host, EachAnalysisReplacesTheCurve) {
  setUpSolver();
  osmain(2);
  EXPECT_EQ(run.npkt, 10);
  osmain(10);
  EXPECT_EQ(run.npkt, 26);
  osmain(0);
  EXPECT_EQ(run.npkt, 25);
  osmain(5);
  EXPECT_EQ(run.npkt, 25);
}

TEST_F(Host, AnAnalysisWithoutASelectorOrAnArrayIsRefusedByItsName) {
  for (const bool selector : {false, true}) {  // without the selector, then without the element table
    setUpSolver();
    const std::vector<double> before = RX;
    CaptureStdout();
    OSMAIN(INTA.data(), ARFA.data(), COLS.data(), ROWI.data(), WORK.data(), RWORK.data(), RR.data(),
           RB.data(), RX.data(), TEMP.data(), KNG.data(), KNZ.data(), KNA.data(),
           selector ? nullptr : ELG.data(), SYSM.data(), RXA.data(), WRHS.data(),
           selector ? ICTRL.data() : nullptr, EVAL.data(), ISTAT.data());
    GetCapturedStdout();
    EXPECT_EQ(ISTAT[0], -1);
    EXPECT_STREQ(run.record.fatalText,
                 selector ? "FATALER FEHLER : Argument ELG fehlt" : "FATALER FEHLER : Argument ICTRL fehlt");
    EXPECT_EQ(RX, before);
  }
  setUpSolver();
  EXPECT_EQ(osmain(1), 1) << "a refusal leaves nothing behind";
}

TEST_F(Host, WithoutAStatusNothingHappens) {
  int32_t mode = 1;
  OSINIT(&mode, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
         nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
         nullptr, nullptr, nullptr, nullptr, nullptr);
  EXPECT_EQ(KNG, std::vector<double>(12, -77.0));
}

}  // namespace
