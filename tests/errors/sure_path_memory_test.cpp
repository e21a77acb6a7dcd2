// Every request for memory of the sure path refused in turn: the run ends with a text, and the next one is whole.
#include <gtest/gtest.h>

#include <string>

#include "driver/sure_path.hpp"
#include "driver/test_run.hpp"
#include "errors/refused_memory.hpp"

using namespace tornwalzen;
using namespace tornwalzen::test;

namespace {

/// Runs with so many requests granted. Returns whether one was refused.
bool refusedAfter(int granted, TestPart& part, std::vector<double>& EVAL) {
  const hostile::NoMemory none(granted);
  run.ierrso = 0;
  run.record = RunRecord{};
  surePath(run, part.arrays(), {"EVAL", EVAL.data(), static_cast<Int64>(EVAL.size())});
  return none.refusals() > 0;
}

TEST(SurePathMemory, EveryRequestIsAnswered) {
  freshState();
  run.progress = ProgressChannel{};  // no handler of another test's host
  // held in both directions, at different nodes: two systems beside the host's
  for (const bool pinned : {false, true}) {
    TestPart part = dome(3, 12.0);
    part.hold(1);
    if (pinned) part.ARFA[60] = part.ARFA[80] = part.ARFA[93] = 0;
    run.options.patchStart = !pinned;
    prepareSolver(part);
    selectMaterial(1);
    std::vector<double> EVAL(5 * static_cast<std::size_t>(part.nele));
    testing::internal::CaptureStdout();
    int granted = 0;
    while (refusedAfter(granted, part, EVAL)) {
      EXPECT_EQ(run.record.end, RunEnd::solverFailed) << "request " << granted + 1;
      EXPECT_TRUE(failed(run.ierrso));
      EXPECT_EQ(std::string(run.record.fatalText), "FATALER FEHLER : kein Speicher fuer den sicheren Weg");
      for (const double t : part.TEMP) EXPECT_EQ(t, 0.0);
      ASSERT_LT(++granted, 100);
    }
    testing::internal::GetCapturedStdout();
    EXPECT_EQ(run.record.end, RunEnd::converged);
    EXPECT_FALSE(failed(run.ierrso));
    EXPECT_GT(granted, 20);
  }
  freshState();
}

}  // namespace
