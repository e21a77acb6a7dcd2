#include "command/flow_curve.hpp"

#include <gtest/gtest.h>

#include <cmath>

#include "app/refusal.hpp"
#include "app/scratch_folder.hpp"

using namespace host;

namespace {

FlowCurve read(const std::string& content) {
  const ScratchFolder folder;
  folder.write("c.csv", content);
  return readFlowCurve(folder.file("c.csv"));
}

}  // namespace

TEST(FlowCurveFile, TakesCommasSemicolonsTabsAndBlanks) {
  const std::vector<double> strain{0.0, 0.1, 0.25}, stress{200.0, 300.5, 350.0};
  for (const char* content :
       {"0,200\n0.1,300.5\n0.25,350\n", "0;200\r\n0.1;300.5\r\n0.25;350", "0\t200\n0.1\t300.5\n0.25\t350\n",
        "  0 200\n0.1   300.5 \n0.25, 350\n", "0;200\n0,1;300,5\n0,25;350\n"}) {
    const FlowCurve curve = read(content);
    EXPECT_EQ(curve.strain, strain) << content;
    EXPECT_EQ(curve.stress, stress) << content;
  }
}

TEST(FlowCurveFile, PassesOverCommentsEmptyLinesAndOneLineOfHeadings) {
  const FlowCurve curve = read("# DC04, 0.95 mm\n\nplastic strain,stress in MPa\n0,200\n\n# end\n0.1,300\n");
  EXPECT_EQ(curve.strain, (std::vector<double>{0.0, 0.1}));
}

TEST(FlowCurveFile, RefusesWhatIsNoPointByItsLine) {
  const ScratchFolder folder;
  folder.write("c.csv", "strain,stress\n0,200\n0.1,soft\n");
  const std::string path = folder.file("c.csv");
  EXPECT_EQ(
      refusal([&] { readFlowCurve(path); }),
      "--curve " + path + ", line 3: wanted a plastic strain and a flow stress in MPa, not \"0.1,soft\"");
  folder.write("c.csv", "0,200\n0.1,250,7\n");
  EXPECT_EQ(
      refusal([&] { readFlowCurve(path); }),
      "--curve " + path + ", line 2: wanted a plastic strain and a flow stress in MPa, not \"0.1,250,7\"");
  folder.write("c.csv", "strain,stress\nunit,MPa\n");
  EXPECT_EQ(
      refusal([&] { readFlowCurve(path); }),
      "--curve " + path + ", line 2: wanted a plastic strain and a flow stress in MPa, not \"unit,MPa\"");
  folder.write("c.csv", "# nothing\n");
  EXPECT_EQ(refusal([&] { readFlowCurve(path); }), "--curve " + path + ": there is no point in the file");
  EXPECT_EQ(refusal([] { readFlowCurve("/nonexistent"); }),
            "cannot read /nonexistent: No such file or directory");
}

TEST(HardeningLawOption, TabulatesEachLaw) {
  const auto last = [](const char* text) { return hardeningLaw(text).stress.back(); };
  EXPECT_NEAR(last("hollomon:K=500,n=0.2"), 500.0, 1e-9);
  EXPECT_NEAR(last("swift:K=500,e0=0.01,n=0.2"), 500.0 * std::pow(1.01, 0.2), 1e-9);
  EXPECT_NEAR(last("ludwik:s0=100,K=400,n=0.5"), 500.0, 1e-9);
  EXPECT_NEAR(last("voce:s0=100,ss=300,rate=5"), 300.0 - 200.0 * std::exp(-5.0), 1e-9);
  EXPECT_NEAR(last("hockett-sherby:s0=100,ss=300,rate=5,n=0.6"), 300.0 - 200.0 * std::exp(-5.0), 1e-9);
  const FlowCurve curve = hardeningLaw("ludwik:n=0.5,K=400,to=0.25,s0=100");
  EXPECT_EQ(curve.strain.size(), 49u);
  EXPECT_EQ(curve.strain.front(), 0.0);
  EXPECT_EQ(curve.strain.back(), 0.25);
  EXPECT_EQ(curve.stress.back(), 300.0);
  EXPECT_EQ(curve.source, "--law ludwik:n=0.5,K=400,to=0.25,s0=100");
}

TEST(HardeningLawOption, RefusesUnknownLawsKeysAndNumbers) {
  EXPECT_EQ(
      refusal([] { hardeningLaw("power:K=1"); }),
      "--law power:K=1: there is no law \"power\"; known are hollomon:K,n, swift:K,e0,n, ludwik:s0,K,n, "
      "voce:s0,ss,rate, hockett-sherby:s0,ss,rate,n");
  EXPECT_EQ(refusal([] { hardeningLaw("swift:K=1,m=2"); }),
            "--law swift:K=1,m=2: swift has no \"m\", it takes K,e0,n and to");
  EXPECT_EQ(refusal([] { hardeningLaw("swift:K=1,n"); }), "--law swift:K=1,n: \"n\" is not KEY=NUMBER");
  EXPECT_EQ(refusal([] { hardeningLaw("swift:K=x"); }), "--law swift:K=x: \"K=x\" is not KEY=NUMBER");
  EXPECT_EQ(refusal([] { hardeningLaw("swift:K=1,n=0.2"); }), "--law swift:K=1,n=0.2: swift also needs e0");
  EXPECT_EQ(refusal([] { hardeningLaw("swift"); }), "--law swift: swift also needs K");
  EXPECT_EQ(refusal([] { hardeningLaw("hollomon:K=-5,n=0.2"); }),
            "--law hollomon:K=-5,n=0.2: parameter 1 of the hardening law is -5, outside its range");
}
