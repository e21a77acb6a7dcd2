#include "command/limit_curve.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "app/refusal.hpp"
#include "app/scratch_folder.hpp"

using namespace host;
using testing::HasSubstr;

namespace {

Material mildSteel() {
  Material material;
  material.name = "M";
  material.kind = MaterialClass::mildSteel;
  material.keeler = true;
  material.n = SourcedValue{0.2, true, "a standard"};
  return material;
}

}  // namespace

TEST(LimitCurveFile, IsLogarithmicOrInPercentByItsHeading) {
  const ScratchFolder folder;
  const LimitCurve plain = readLimitCurve(folder.write("a.csv", "minor,major\n-0.2,0.5\n0,0.3\n0.2,0.35\n"));
  EXPECT_EQ(plain.points[1].major, 0.3);
  const LimitCurve percent =
      readLimitCurve(folder.write("b.csv", "# DP600\nminor %;major %\n-20;50\n0;30,5\n20;35\n"));
  EXPECT_NEAR(percent.points[1].major, std::log(1.305), 1e-15);
  EXPECT_NEAR(percent.points[0].minor, std::log(0.8), 1e-15);
  EXPECT_THAT(percent.basis, HasSubstr("engineering strains in percent"));
}

TEST(LimitCurveFile, RefusalsNameTheLine) {
  const ScratchFolder folder;
  const auto refusalOf = [&](const std::string& text) {
    const std::string path = folder.write("f.csv", text);
    const std::string sentence = refusal([&] { readLimitCurve(path); }), head = "--flc " + path;
    return sentence.starts_with(head) ? sentence.substr(head.size()) : sentence;
  };
  EXPECT_EQ(refusalOf(""), ": there is no point in the file");
  EXPECT_EQ(refusalOf("minor,major\n"), ": there is no point in the file");
  EXPECT_EQ(refusalOf("0,0.3\nx,0.4\n"), ", line 2: wanted a minor and a major strain, not \"x,0.4\"");
  EXPECT_EQ(refusalOf("0,nan\n"), ", line 1: a strain is not finite");
  EXPECT_EQ(
      refusalOf("-20,50\n"),
      ", line 1: a logarithmic strain beyond 2; for percent of engineering strain write % into the heading");
  EXPECT_EQ(refusalOf("%\n-120,50\n"), ", line 2: engineering strains lie above -100 %");
  EXPECT_EQ(refusalOf("0,0\n"), ", line 1: the major strain must be positive");
  EXPECT_EQ(refusalOf("0,0.3\n0,0.4\n"), ", line 2: the minor strain is not larger than the one before it");
}

TEST(ChosenLimit, TheFormulaStandsWhereAllIsKnown) {
  const ChosenLimit limit = chosenLimit({}, mildSteel(), 1.0);
  ASSERT_TRUE(limit.curve);
  EXPECT_EQ(limit.margin, 10.0);
  EXPECT_THAT(limit.curve->basis, HasSubstr("a minimum: a standard"));
  ShopOptions options;
  options.n = 0.21;
  EXPECT_THAT(chosenLimit(options, mildSteel(), 1.0).curve->basis, testing::Not(HasSubstr("minimum")));
}

TEST(ChosenLimit, ElsewhereItIsRefusedOrLeftOutWithTheReason) {
  Material aluminium = mildSteel();
  aluminium.kind = MaterialClass::aluminium;
  aluminium.keeler = false;
  EXPECT_EQ(chosenLimit({}, aluminium, 1.0).why,
            "the formula holds for mild steels only, not for M; give --flc FILE");
  EXPECT_EQ(chosenLimit({}, aluminium, 1.0).margin, 8.0);
  EXPECT_EQ(chosenLimit({}, mildSteel(), 0.0).why,
            "the thickness is not known; give --thickness or --flc FILE");
  EXPECT_EQ(chosenLimit({}, {}, 1.0).why, "no material by name; --flc FILE gives a limit curve");
  Material withoutN = mildSteel();
  withoutN.n.reset();
  EXPECT_EQ(chosenLimit({}, withoutN, 1.0).why, "M has no n value; give --n or --flc FILE");
  ShopOptions options;
  options.flc = "keeler";
  EXPECT_EQ(refusal([&] { chosenLimit(options, aluminium, 1.0); }),
            "--flc keeler: the formula holds for mild steels only, not for M; give --flc FILE");
}
