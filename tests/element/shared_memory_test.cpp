// Memory that the shared passes ask for and do not get: one thread makes them, with the same bits.
#include <gtest/gtest.h>

#include "element/element.hpp"
#include "element/element_parts.hpp"
#include "element/map_joining.hpp"
#include "element/potential_sums.hpp"
#include "errors/refused_memory.hpp"
#include "one_triangle.hpp"
#include "small_mesh.hpp"

namespace reference {
namespace {

using tornwalzen::ElementParts;
using tornwalzen::PartsPointer;
using tornwalzen::ThreadPool;

constexpr Int cells = 41;  // 3362 elements: enough to be shared

class SharedMemory : public ElementTest {
 protected:
  void TearDown() override {
    run.parts.reset();
    run.pool.reset();
    ElementTest::TearDown();
  }
  PartsPointer partsOf(ThreadPool* pool) {
    return ElementParts::divide(pool, mesh.elements, mesh.nodes, mesh.incidences(), mesh.target());
  }
  SmallMesh mesh{cells};
};

TEST_F(SharedMemory, WithoutItTheElementsAreNotDivided) {
  const auto pool = ThreadPool::start(3);
  ASSERT_NE(pool, nullptr);
  int granted = 0;
  for (;; ++granted) {
    const hostile::NoMemory none(granted);
    const PartsPointer parts = partsOf(pool.get());
    EXPECT_EQ(parts == nullptr, none.refusals() > 0) << "request " << granted + 1;
    if (none.refusals() == 0) break;
  }
  EXPECT_EQ(granted, 3);
}

TEST_F(SharedMemory, WithoutItElementsAreMeasuredOneByOne) {
  run.istat = 1;
  std::vector<double> alone, ELG;
  double sumAlone = 0.0, sum = 0.0;
  for (const Int threads : {1, 3}) {
    run.pool = threads > 1 ? ThreadPool::start(threads) : nullptr;
    mesh.enter();
    ELG.assign(5 * static_cast<std::size_t>(mesh.elements), 77.0);
    {
      const hostile::NoMemory none;
      tornwalzen::measureElements(run, mesh.incidences(), mesh.blank(), mesh.target(),
                                  tornwalzen::FlowCurve(run), sum, {"ELG", ELG.data(), mesh.elements, 5});
      EXPECT_EQ(none.refusals() > 0, threads > 1);
    }
    if (threads == 1) alone = ELG, sumAlone = sum;
  }
  EXPECT_EQ(ELG, alone);
  EXPECT_EQ(sum, sumAlone);
}

TEST_F(SharedMemory, WithoutItThePotentialIsSummedOnOneThread) {
  run.istat = 1;
  mesh.enter();
  std::vector<double> FRAMES(4 * static_cast<std::size_t>(mesh.elements));
  const tornwalzen::Table<double> frames("FRAMES", FRAMES.data(), 4, mesh.elements);
  ASSERT_EQ(measurePartFrames(mesh.incidences(), mesh.target(), frames), 0);
  const tornwalzen::FlowCurve CURVE(run);
  const tornwalzen::PlasticWorkTerm work(CURVE, true);
  tornwalzen::DensityTerms terms;
  ASSERT_TRUE(terms.append(work));
  const tornwalzen::ExtendedPotential potential{terms, 0.01, 0.0};
  std::vector<double> alone(static_cast<std::size_t>(mesh.equations)), RR(alone);
  const tornwalzen::PotentialMesh single{mesh.incidences(), frames};
  const double energy =
      potentialResidual(single, mesh.blank(), potential, {"RR", alone.data(), mesh.equations});

  const auto pool = ThreadPool::start(3);
  ASSERT_NE(pool, nullptr);
  const PartsPointer parts = partsOf(pool.get());
  ASSERT_NE(parts, nullptr);
  const tornwalzen::PotentialMesh shared{mesh.incidences(), frames, nullptr, pool.get(), parts.get()};
  {
    const hostile::NoMemory none;
    EXPECT_EQ(potentialEnergy(shared, mesh.blank(), potential), energy);
    EXPECT_EQ(potentialResidual(shared, mesh.blank(), potential, {"RR", RR.data(), mesh.equations}), energy);
    EXPECT_EQ(none.refusals(), 2);
  }
  EXPECT_EQ(RR, alone);
  RR.assign(RR.size(), 7.0);
  EXPECT_EQ(potentialEnergy(shared, mesh.blank(), potential), energy) << "with memory, on three threads";
  EXPECT_EQ(potentialResidual(shared, mesh.blank(), potential, {"RR", RR.data(), mesh.equations}), energy);
  EXPECT_EQ(RR, alone);
}

}  // namespace
}  // namespace reference
