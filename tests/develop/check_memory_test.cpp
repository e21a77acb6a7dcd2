// Every request for memory of the checks refused in turn: each is answered, none is forgotten.
#include <gtest/gtest.h>

#include "develop/blank_checks.hpp"
#include "develop/check_meshes.hpp"
#include "errors/refused_memory.hpp"

using namespace tornwalzen;
using namespace tornwalzen::test;

namespace {

/// Calls until nothing is refused any more: until then the call must fail. Returns the requests it makes.
template <class Call>
int requestsOf(Call call) {
  for (int granted = 0;; ++granted) {
    const hostile::NoMemory none(granted);
    const bool done = call();
    if (none.refusals() == 0) {
      EXPECT_TRUE(done);
      return granted;
    }
    EXPECT_FALSE(done) << "request " << granted + 1;
    if (granted > 100) return -1;
  }
}

/// A ring of squares round a hole; the blank is folded in the middle.
CheckMesh foldedSheet() {
  CheckMesh sheet = gridSheet(5, 5);
  sheet.triangles.erase(sheet.triangles.begin() + 24, sheet.triangles.begin() + 26);
  sheet.blank[2 * 7] = 3.5;
  return sheet;
}

}  // namespace

TEST(CheckMemory, Topology) {
  CheckMesh sheet = foldedSheet();
  const PartMesh M = sheet.mesh();
  PartTopology T;
  EXPECT_GE(requestsOf([&] { return findPartTopology(M, T); }), 8);
  EXPECT_EQ(T.loops, 2);
  OwnArray<Int> TWIN("TWIN");
  EXPECT_EQ(requestsOf([&] { return pairHalfEdges(M, TWIN); }), 4);
}

TEST(CheckMemory, MeanNormal) {
  CheckMesh tube = gridSheet(40, 1);
  for (std::size_t n = 0; n < tube.nodes.size(); ++n) {
    const double t = 2.0 * std::acos(-1.0) * double(n % 41) / 40.0;
    tube.nodes[n] = {std::cos(t), double(n / 41), std::sin(t)};
  }
  const PartMesh M = tube.mesh();
  MeanNormal F;
  EXPECT_EQ(requestsOf([&] { return findMeanNormal(M, F); }), 7);
  EXPECT_TRUE(F.fromPatch);
}

TEST(CheckMemory, Blank) {
  CheckMesh sheet = foldedSheet();
  const PartMesh M = sheet.mesh();
  PartTopology T;
  MeanNormal F;
  BlankChecks B;
  ASSERT_TRUE(findPartTopology(M, T) && findMeanNormal(M, F));
  EXPECT_EQ(requestsOf([&] { return checkBlank(M, T, F, sheet.RX(), {}, B); }), 8);
  EXPECT_GT(B.overlappedArea, 0.0);
}

TEST(CheckMemory, AnArrayThatCannotBeIsEmpty) {
  OwnArray<double> array("A");
  ASSERT_TRUE(array.allocate(3, 0.0));
  EXPECT_EQ(array.vector()(3), 0.0);
  EXPECT_FALSE(array.allocate(Int64{1} << 62));
  EXPECT_EQ(array.length(), 0);
  EXPECT_EQ(array.vector().length(), 0);
  ASSERT_TRUE(array.allocate(0));
  EXPECT_EQ(array.length(), 0);
}
