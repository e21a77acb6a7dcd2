// The whole program with the press model: when it is taken, what it refuses, what the summary tells.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "app/mesh/sample_meshes.hpp"
#include "app/program/program.hpp"

using testing::HasSubstr;

namespace {

const std::string steel = " --law swift:K=549.03,e0=0.007,n=0.22";

// A flat flange around a hump.
std::string humpObj() {
  return gridObj(24, 24, [](int i, int j) {
    const double x = 4.0 * i - 48.0, y = 4.0 * j - 48.0, r = std::hypot(x, y);
    const double z = r < 32.0 ? 6.0 * (1.0 + std::cos(pi * r / 32.0)) : 0.0;
    return std::to_string(x) + " " + std::to_string(y) + " " + std::to_string(z);
  });
}

struct PressProgram : testing::Test {
  ScratchFolder folder;
  void SetUp() override { folder.write("hump.obj", humpObj()); }
  Outcome solve(const std::string& options) {
    return tornwalzen(folder, "solve hump.obj --out run --force" + options);
  }
  nlohmann::json summary() { return nlohmann::json::parse(folder.read("run/summary.json")); }
};

TEST_F(PressProgram, IsTakenWhereThicknessAndStressesAreGiven) {
  ASSERT_EQ(solve(steel + " --thickness 1").status, 0);
  EXPECT_EQ(summary()["model"], "press");
  EXPECT_EQ(summary()["press"]["exponent"], 1.0);
  EXPECT_EQ(summary()["press"]["binder"], false);
  ASSERT_EQ(solve(steel).status, 0);
  EXPECT_EQ(summary()["model"], "fixed");
  EXPECT_TRUE(summary()["press"].is_null());
  ASSERT_EQ(solve(steel + " --thickness 1 --model fixed").status, 0);
  EXPECT_EQ(summary()["model"], "fixed");
}

TEST_F(PressProgram, TellsOfToolsMarksAndBeads) {
  folder.write("flange.txt", "# the first rows\n1\n2\n3\n4\n");
  folder.write("bead.txt", "28\n29\n30\n");
  const Outcome all = solve(steel + " --thickness 1 --mu 0.1,0.12 --binder 20000");
  ASSERT_EQ(all.status, 0) << all.err;
  EXPECT_THAT(all.out, HasSubstr("bending kept, free edges, friction, binder"));
  EXPECT_GT(summary()["press"]["contact_pressure_punch_MPa"], 0.0);
  EXPECT_GT(summary()["press"]["punch_force_mean_N"], 0.0);
  const Outcome marked =
      solve(steel +
            " --thickness 1 --mu 0.1 --binder 100 --flange flange.txt --bead bead.txt:50 --bending released");
  ASSERT_EQ(marked.status, 0) << marked.err;
  EXPECT_EQ(summary()["press"]["flange_triangles"], 4);
  EXPECT_EQ(summary()["press"]["beads"], true);
  EXPECT_EQ(summary()["press"]["bending"], "released");
}

TEST_F(PressProgram, RefusesByNameAndValue) {
  folder.write("far.txt", "1\n99999\n");
  folder.write("off.txt", "1\n300\n");
  const std::pair<const char*, const char*> all[] = {
      {" --mu 0.1", "--mu belongs to --model press"},
      {" --model press", "--model press needs --thickness"},
      {" --thickness 0", "thickness of the sheet is missing or not positive: 0 mm"},
      {" --thickness 1 --mu -0.1", "is -0.1, allowed is 0 to 1"},
      {" --thickness 1 --mu 0.1,0.2,0.3", "--mu wants"},
      {" --thickness 1 --binder x", "\"x\" is not a number"},
      {" --thickness 1 --planar-r 1,0,1", "r45 is 0"},
      {" --thickness 1 --planar-r 0,0,0", "must be positive, not 0"},
      {" --thickness 1 --binder 10 --flange far.txt", "element 99999"},
      {" --thickness 1 --bead off.txt:50", "off the mesh"},
      {" --thickness 1 --bead off.txt", "FILE:N/MM"},
      {" --thickness 1 --path fixed --model press", "goes the sure path"}};
  for (const auto& [options, words] : all) {
    const Outcome outcome = solve((std::string(options) == " --mu 0.1" ? "" : steel) + options);
    EXPECT_NE(outcome.status, 0) << options;
    EXPECT_THAT(outcome.err, HasSubstr(words)) << options;
  }
}

}  // namespace
