// The elements shared out among threads: every element where its nodes are, sums and what a failed pass leaves behind as on
// one thread.
#include "element/element_parts.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

#include "element/element.hpp"
#include "one_triangle.hpp"
#include "small_mesh.hpp"

namespace reference {
namespace {

using tornwalzen::ElementParts;
using tornwalzen::Int64;
using tornwalzen::PartsPointer;
using tornwalzen::ThreadPool;

constexpr Int cells = 41;  // 3362 elements: enough to be shared, two of them in a batch of their own

/// Numbers the nodes of `mesh` at random: a range of numbers is then all over it.
void shuffle(SmallMesh& mesh) {
  std::vector<Int> NEW(mesh.nodes);
  for (Int n = 0; n < mesh.nodes; ++n) NEW[n] = n;
  std::shuffle(NEW.begin(), NEW.end(), std::mt19937(7));
  const SmallMesh before = mesh;
  std::vector<std::array<Int, 3>> corners;
  for (Int e = 1; e <= mesh.elements; ++e) {
    corners.push_back(before.corners(e));
    for (Int& n : corners.back()) n = NEW[n - 1] + 1;
  }
  for (Int n = 0; n < mesh.nodes; ++n) {
    for (int i = 0; i < 2; ++i) mesh.RX[2 * NEW[n] + i] = before.RX[2 * n + i];
    for (int i = 0; i < 3; ++i) mesh.KNZ[i * mesh.nodes + NEW[n]] = before.KNZ[i * mesh.nodes + n];
  }
  mesh.setCorners(corners);
}

PartsPointer partsOf(const SmallMesh& mesh, ThreadPool* pool) {
  return ElementParts::divide(pool, mesh.elements, mesh.nodes, mesh.incidences(), mesh.target());
}

Int64 listed(const ElementParts& parts) {
  Int64 all = 0;
  for (Int part = 0; part < parts.count(); ++part)
    all += std::distance(parts.batches(part).begin(), parts.batches(part).end());
  return all;
}

void expectEveryBatchAtItsNodes(const SmallMesh& mesh, const ElementParts& parts) {
  Int64 expected = 0;
  for (Int first = 1; first <= mesh.elements; first += 8) {
    std::set<Int> touched;
    for (Int e = first; e < first + 8 && e <= mesh.elements; ++e)
      for (const Int n : mesh.corners(e)) touched.insert(parts.partOf(n));
    expected += static_cast<Int64>(touched.size());
    for (const Int part : touched) {
      const auto batches = parts.batches(part);
      EXPECT_TRUE(std::binary_search(batches.begin(), batches.end(), first / 8 + 1))
          << first << " in " << part;
    }
  }
  EXPECT_EQ(listed(parts), expected);
  EXPECT_EQ(parts.bytes(), mesh.nodes + 4 * expected);
}

TEST(ElementParts, HoldEveryBatchThatTouchesTheirNodesOnce) {
  for (const bool shuffled : {false, true})
    for (const Int threads : {2, 3, 8}) {
      SmallMesh mesh(cells);
      if (shuffled) shuffle(mesh);
      const auto pool = ThreadPool::start(threads);
      const auto parts = partsOf(mesh, pool.get());
      ASSERT_NE(parts, nullptr);
      EXPECT_EQ(parts->count(), threads);
      expectEveryBatchAtItsNodes(mesh, *parts);
      // a border is a row of the mesh, whatever the numbers
      const Int row = 2 * cells / 8, batches = mesh.elements / 8;
      EXPECT_LE(listed(*parts), batches + 2 * row * (threads - 1));
      for (Int part = 0; part < threads; ++part)
        EXPECT_GE(std::distance(parts->batches(part).begin(), parts->batches(part).end()),
                  batches / threads - row);
    }
}

TEST(ElementParts, TakeAPositionThatIsNoNumber) {
  SmallMesh mesh(cells);
  shuffle(mesh);
  const auto pool = ThreadPool::start(2);
  for (const double bad :
       {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity()}) {
    for (Int n = 0; n < 3; ++n) mesh.KNZ[500 + n * mesh.nodes] = bad;
    const auto parts = partsOf(mesh, pool.get());
    ASSERT_NE(parts, nullptr);
    expectEveryBatchAtItsNodes(mesh, *parts);
  }
}

TEST(ElementParts, AreNoneWithoutThreadsOrElementsEnough) {
  EXPECT_EQ(partsOf(SmallMesh(cells), nullptr), nullptr);
  const auto pool = ThreadPool::start(2);
  EXPECT_EQ(partsOf(SmallMesh(10), pool.get()), nullptr);
  SmallMesh scattered(cells);  // every batch is all over the part
  std::vector<std::array<Int, 3>> corners;
  for (Int e = 1; e <= scattered.elements; ++e) corners.push_back(scattered.corners(e));
  std::shuffle(corners.begin(), corners.end(), std::mt19937(7));
  scattered.setCorners(corners);
  EXPECT_EQ(partsOf(scattered, pool.get()), nullptr);
}

class SharedPasses : public ElementTest, public ::testing::WithParamInterface<int> {
 protected:
  void SetUp() override {
    ElementTest::SetUp();
    run.istat = GetParam();
  }
  void TearDown() override {
    run.parts.reset();
    run.pool.reset();
    ElementTest::TearDown();
  }
  void workOn(Int threads, const SmallMesh& mesh) {
    run.parts.reset();
    run.pool = threads > 1 ? ThreadPool::start(threads) : nullptr;
    run.parts = partsOf(mesh, run.pool.get());
    run.ierrel = 0;
  }
};

INSTANTIATE_TEST_SUITE_P(BothDensities, SharedPasses, ::testing::Values(0, 1),
                         [](const auto& which) { return which.param == 0 ? "geometric" : "plasticWork"; });

/// Turns the blank of element e over.
void turnOver(SmallMesh& mesh, Int e) {
  const auto corner = mesh.corners(e);
  for (int i = 0; i < 2; ++i)
    mesh.RX[2 * corner[0] - 2 + i] =
        3.0 * mesh.RX[2 * corner[1] - 2 + i] - 2.0 * mesh.RX[2 * corner[0] - 2 + i];
}

TEST_P(SharedPasses, LeaveTheBitsOfOneThreadAlsoWhereAnElementIsDegenerate) {
  for (const bool shuffled : {false, true})
    for (const Int bad : {0, 1601, 3361}) {
      SmallMesh start(cells);
      if (shuffled) shuffle(start);
      if (bad > 0) turnOver(start, bad);
      SmallMesh alone = start;
      workOn(1, alone);
      alone.assemble(tornwalzen::residualAndMatrix);
      EXPECT_EQ(run.ierrel != 0, bad > 0);
      for (const Int threads : {2, 3, 8}) {
        SmallMesh shared = start;
        workOn(threads, shared);
        ASSERT_NE(run.parts, nullptr);
        shared.assemble(tornwalzen::residualAndMatrix);
        EXPECT_EQ(run.ierrel != 0, bad > 0);
        EXPECT_EQ(shared.RR, alone.RR) << bad << " on " << threads;
        EXPECT_EQ(shared.SYSM, alone.SYSM) << bad << " on " << threads;
      }
    }
}

TEST_P(SharedPasses, FindTheLargestFreeResidualWhereverItIsAndWhatIsNoNumber) {
  SmallMesh mesh(182);  // so many unknowns that the search is shared, too
  for (Int round = 0; round < 4; ++round) {
    workOn(1, mesh);
    mesh.assemble(tornwalzen::residualOnly);
    const double alone = run.maxgrad;
    Int largest = 0;
    for (Int i = 0; i < mesh.equations; ++i)
      if (mesh.ARFA[i] * std::fabs(mesh.RR[i]) > mesh.ARFA[largest] * std::fabs(mesh.RR[largest]))
        largest = i;
    EXPECT_EQ(alone, std::fabs(mesh.RR[largest]));
    for (const Int threads : {2, 3, 8}) {
      workOn(threads, mesh);
      mesh.assemble(tornwalzen::residualOnly);
      EXPECT_EQ(run.maxgrad, alone) << threads;
    }
    mesh.ARFA[largest] = 0;
  }
  for (const Int i : {0, mesh.equations / 2, mesh.equations - 1}) {
    SmallMesh broken = mesh;
    broken.RX[i] = std::numeric_limits<double>::quiet_NaN();
    for (const Int threads : {2, 8}) {
      workOn(threads, broken);
      broken.assemble(tornwalzen::residualOnly);
      EXPECT_TRUE(std::isnan(run.maxgrad)) << i << " on " << threads;
    }
  }
}

TEST_P(SharedPasses, MeasureWhatOneThreadMeasures) {
  for (const Int bad : {0, 1601}) {
    SmallMesh mesh(cells);
    if (bad > 0) turnOver(mesh, bad);
    std::vector<double> alone(5 * mesh.elements, 77.0);
    double sumAlone = 0.0;
    for (const Int threads : {1, 2, 3, 8}) {
      workOn(threads, mesh);
      mesh.enter();
      std::vector<double> ELG(5 * mesh.elements, 77.0);
      double sum;
      tornwalzen::measureElements(tornwalzen::run, mesh.incidences(), mesh.blank(), mesh.target(),
                                  tornwalzen::FlowCurve(run), sum, {"ELG", ELG.data(), mesh.elements, 5});
      EXPECT_EQ(run.ierrel != 0, bad > 0);
      if (threads == 1) alone = ELG, sumAlone = sum;
      EXPECT_EQ(ELG, alone) << bad << " on " << threads;
      EXPECT_EQ(sum, sumAlone) << bad << " on " << threads;
    }
    if (bad > 0) {
      EXPECT_EQ(alone[mesh.elements - 1], 77.0);  // behind it the table stays
    }
  }
}

}  // namespace
}  // namespace reference
