// A free edge under tension along it bears no traction: what the potential pulls there, the edge's term takes away.
#include "forces/free_edges.hpp"

#include <gtest/gtest.h>

#include "element/press_work.hpp"
#include "flat_sheet.hpp"
#include "ground/analysis.hpp"
#include "material/material_setup.hpp"

namespace forces {
namespace {

using namespace tornwalzen;

struct FreeEdgesTest : ::testing::Test {
  Analysis run;
  void SetUp() override { materialSetup(run, 1); }
};

TEST_F(FreeEdgesTest, AreFreeOfTractionUnderTensionAlongThem) {
  const double e = 0.1;
  FlatSheet sheet(4, 3, 2.0, std::exp(-e), std::exp(0.5 * e));  // drawn along u, narrower along v
  const FlowCurve CURVE(run);
  const SheetWork work(CURVE, 206000.0 / run.smin, 50.0 / run.smin);
  std::vector<double> zero(3 * static_cast<std::size_t>(sheet.elements), 0.0), frames(4 * zero.size() / 3);
  const PressWorkTerm term(work, {}, {3, 1.0, Bending::none}, {"CURVATURE", zero.data(), 3, sheet.elements},
                           {});
  DensityTerms terms;
  terms.append(term);
  const PotentialMesh mesh{sheet.triangles(), {"FRAMES", frames.data(), 4, sheet.elements}};
  ASSERT_EQ(measurePartFrames(mesh.INTA, sheet.knots(), {"FRAMES", frames.data(), 4, sheet.elements}), 0);

  std::vector<double> RR(sheet.RX.size()),
      WORK(static_cast<std::size_t>(sheet.elements), work.at(e * e).value);
  std::vector<Int> PLANE(sheet.RX.size(), 0);
  const Vector<double> R("RR", RR.data(), 2 * sheet.nodes);
  const Vector<const double> RX("RX", sheet.RX.data(), 2 * sheet.nodes);
  potentialResidual(mesh, RX, {terms, 0.2, 0.0}, R);
  const Int edge = sheet.node(2, 0), opposite = sheet.node(1, 3);
  EXPECT_GT(std::fabs(R(2 * edge)), 0.1);  // the pull that is not there in the press
  addEdgeLoads(sheet.triangles(), sheet.twins(), {"PLANE", PLANE.data(), 2 * sheet.nodes},
               {"WORK", WORK.data(), sheet.elements}, RX, R);
  for (const Int n : {edge, opposite}) {
    EXPECT_NEAR(R(2 * n - 1), 0.0, 1e-12);
    EXPECT_NEAR(R(2 * n), 0.0, 1e-12);
  }
  // at the drawn end what is left is the force that draws it, pulled back: σ·t0·width now, over the blank's stretch
  double force = 0.0;
  for (Int j = 0; j <= 3; ++j) force += R(2 * sheet.node(4, j) - 1);
  const double width = 3 * 2.0, stretch = std::exp(e), thickness = std::exp(-0.5 * e);
  EXPECT_NEAR(force, 2.0 * work.at(e * e).sigma * width * thickness * stretch, 1e-9);  // over ½·t0·σ0
}

TEST_F(FreeEdgesTest, DoNotLieInPlanesOfSymmetry) {
  FlatSheet sheet(2, 2, 1.0, 1.0, 1.0);
  std::vector<Int> ARFA(sheet.RX.size(), 1), PLANE(sheet.RX.size());
  for (Int j = 0; j <= 2; ++j)
    ARFA[2 * static_cast<std::size_t>(sheet.node(0, j)) - 2] = 0;  // u held on x = 0
  const Vector<Int> P("PLANE", PLANE.data(), 2 * sheet.nodes);
  symmetryPlanes(sheet.triangles(), sheet.twins(), {"ARFA", ARFA.data(), 2 * sheet.nodes}, P);
  Int free = 0;
  for (Int e = 1; e <= sheet.elements; ++e)
    for (Int k = 1; k <= 3; ++k) free += freeSide(sheet.triangles(), sheet.twins(), P, e, k) ? 1 : 0;
  EXPECT_EQ(free, 6);  // of eight
  EXPECT_EQ(P(2 * sheet.node(0, 1) - 1), 1);
  EXPECT_EQ(P(2 * sheet.node(0, 1)), 0);
  EXPECT_EQ(P(2 * sheet.node(1, 0) - 1), 0);
}

}  // namespace
}  // namespace forces
