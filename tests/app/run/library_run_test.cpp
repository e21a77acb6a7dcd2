// Runs of the library on one part: the structure stands from run to run, and a listener hears and ends them.
#include "run/library_run.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>

#include "app/mesh/sample_meshes.hpp"
#include "app/refusal.hpp"
#include "app/run/sample_run.hpp"
#include "mesh/obj_reader.hpp"
#include "run/hold.hpp"

using namespace host;
using testing::AllOf;
using testing::Contains;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

namespace {

struct BentPipe {
  Part part = checkMesh(readObj(halfPipeObj(12, 6), "pipe.obj"), false);
  Hold hold = holdUnknowns(part, "auto");
};

// Keeps what it hears; ends the run in the phase `endPhase`.
struct Ear {
  std::vector<std::int32_t> phases;
  std::string messages;
  std::int32_t endPhase = -1;
  RunListener listener() {
    return {[this](const ProgressRecord& record) { phases.push_back(record.phase()); },
            [this](std::string_view line) { messages += std::string(line) + "\n"; },
            [this] { return phases.back() == endPhase; }};
  }
};

bool sameBits(const std::vector<double>& a, const std::vector<double>& b) {
  return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size() * sizeof(double)) == 0;
}

}  // namespace

TEST(LibraryRun, ARepeatHasTheBitsOfARunOfItsOwnAndKeepsTheStructure) {
  const BentPipe pipe;
  RunSettings rough = byIncrements(), tight = rough;
  tight.pathFactor = 0.1;
  Ear first, second, alone;
  LibraryRun library(pipe.part, pipe.hold);
  const RunOutput before = library.run(rough, first.listener());
  const RunOutput repeat = library.run(tight, second.listener());
  const RunOutput own = LibraryRun(pipe.part, pipe.hold).run(tight, alone.listener());
  EXPECT_EQ(own.report.converged, 1);
  EXPECT_FALSE(sameBits(before.RX, own.RX));
  EXPECT_TRUE(sameBits(repeat.RX, own.RX));
  EXPECT_TRUE(sameBits(repeat.EVAL, own.EVAL));
  EXPECT_EQ(repeat.corners, own.corners);
  EXPECT_EQ(repeat.matrixEntries, own.matrixEntries);
  EXPECT_THAT(alone.messages, AllOf(StartsWith("beginn loeini @"), EndsWith(second.messages)));
  EXPECT_THAT(second.messages, Not(HasSubstr("beginn loeini")));
  EXPECT_THAT(first.phases, Contains(TORNWALZEN_PHASE_ORDERING));
  EXPECT_THAT(second.phases, Not(Contains(TORNWALZEN_PHASE_ORDERING)));
  EXPECT_EQ(repeat.times.ordering, before.times.ordering);
  EXPECT_GT(repeat.times.increments, 0.0);
}

TEST(LibraryRun, ResultsHaveTheShapesOfThePart) {
  const BentPipe pipe;
  Ear ear;
  const RunOutput run = LibraryRun(pipe.part, pipe.hold).run({}, ear.listener());
  const auto nodes = static_cast<std::size_t>(pipe.part.nodes()),
             elements = static_cast<std::size_t>(pipe.part.elements());
  EXPECT_EQ(run.RX.size(), 2 * nodes);
  EXPECT_EQ(run.startingBlank.size(), 2 * nodes);
  EXPECT_EQ(run.EVAL.size(), 5 * elements);
  EXPECT_EQ(run.strains.size(), elements);
  EXPECT_EQ(run.corners.size(), 3 * elements);
  EXPECT_GT(run.matrixEntries, pipe.part.nodes());
  EXPECT_EQ(run.report.reason, TORNWALZEN_CONVERGED);
  // the held unknowns are those of the part
  for (std::size_t i = 0; i < pipe.hold.ARFA.size(); ++i)
    if (pipe.hold.ARFA[i] == 0) {
      EXPECT_EQ(run.RX[i], pipe.part.points[i / 2 * 3 + i % 2]) << i;
    }
  for (const TornwalzenElementStrain& strain : run.strains) EXPECT_TRUE(std::isfinite(strain.equivalent));
}

TEST(LibraryRun, EndsWhereTheListenerAsksAndRunsWholeAfterwards) {
  const BentPipe pipe;
  Ear undisturbed;
  const RunOutput whole = LibraryRun(pipe.part, pipe.hold).run(byIncrements(), undisturbed.listener());
  for (const std::int32_t phase : {TORNWALZEN_PHASE_STRUCTURE, TORNWALZEN_PHASE_ORDERING,
                                   TORNWALZEN_PHASE_DEVELOPMENT, TORNWALZEN_PHASE_INCREMENTS}) {
    Ear ear, again;
    ear.endPhase = phase;
    LibraryRun library(pipe.part, pipe.hold);
    const RunOutput ended = library.run(byIncrements(), ear.listener());
    EXPECT_EQ(ended.report.reason, TORNWALZEN_STOPPED_BY_HOST) << phase;
    EXPECT_EQ(ear.phases.back(), phase) << "asked no more";
    if (phase < TORNWALZEN_PHASE_DEVELOPMENT) {
      EXPECT_THAT(ended.RX, IsEmpty()) << phase;
      EXPECT_THAT(ended.strains, IsEmpty()) << phase;
    }
    EXPECT_TRUE(sameBits(library.run(byIncrements(), again.listener()).RX, whole.RX)) << phase;
  }
}

TEST(LibraryRun, APartThatTheLibraryRefusesIsToldInItsWords) {
  BentPipe pipe;
  pipe.part.corners[4] = 92;  // of 91 nodes
  EXPECT_EQ(
      refusal([&] { LibraryRun(pipe.part, pipe.hold); }),
      "the library could not take 91 nodes and 144 triangles: entry 5 of the incidences is 92, which is no "
      "node number");
}
