#include "command/chosen_settings.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/refusal.hpp"

using namespace host;

TEST(ChosenSettings, DefaultIsTheTightEndOverThePartWithRepeats) {
  const RunSettings settings = settingsOf({});
  EXPECT_EQ(settings.material, 1);
  EXPECT_TRUE(settings.curve.strain.empty());
  EXPECT_EQ(settings.r, 1.0);
  EXPECT_TRUE(settings.partReference);
  EXPECT_EQ(settings.finalFactor, 0.001);
  EXPECT_EQ(settings.pathFactor, 1.0);
  EXPECT_TRUE(settings.mayRepeat);
}

TEST(ChosenSettings, ToleranceOfTheUserIsNotRepeated) {
  SolveOptions options;
  options.tolerance = "0.5";
  EXPECT_EQ(settingsOf(options).finalFactor, 0.5);
  EXPECT_EQ(settingsOf(options).pathFactor, 1.0);
  EXPECT_FALSE(settingsOf(options).mayRepeat);
  options.tolerance = "0.5,0.25";
  EXPECT_EQ(settingsOf(options).pathFactor, 0.25);
  options.energy = "blank";
  EXPECT_FALSE(settingsOf(options).partReference);
}

// A thickness measured on the part stands in for --thickness, in the press model too.
TEST(ChosenSettings, AMeasuredThicknessStandsIn) {
  SolveOptions options;
  options.law = "swift:K=500,e0=0.01,n=0.2";
  EXPECT_FALSE(settingsOf(options).press.chosen);
  const RunSettings measured = settingsOf(options, {}, 1.25);
  EXPECT_TRUE(measured.press.chosen);
  EXPECT_EQ(measured.press.press.thickness_mm, 1.25);
  options.press.thickness = "2";
  EXPECT_EQ(settingsOf(options, {}, 1.25).press.press.thickness_mm, 2.0);
  options.press.thickness.clear();
  options.path = "fixed";  // a thickness serves more than the press model: the path counts
  EXPECT_FALSE(settingsOf(options, {}, 1.25).press.chosen);
  options.press.thickness = "2";
  EXPECT_FALSE(settingsOf(options).press.chosen);
  options.press.thickness.clear();
  options.path = "sure", options.law.clear();
  EXPECT_FALSE(settingsOf(options, {}, 1.25).press.chosen);  // no stresses in MPa
}

// Before the part is read nothing is refused that its thickness may cure, and everything else is.
TEST(ChosenSettings, RefusalsBeforeThePartIsRead) {
  SolveOptions options;
  options.law = "swift:K=500,e0=0.01,n=0.2";
  options.press.mu = "0.1";
  EXPECT_NO_THROW(settingsOf(options, {}, std::nullopt));
  EXPECT_THAT(refusal([&] { settingsOf(options, {}, 0.0); }),
              testing::StartsWith("--mu belongs to --model press"));
  EXPECT_EQ(settingsOf(options, {}, 1.0).press.press.friction_punch, 0.1);
  options.press.model = "press";
  EXPECT_NO_THROW(settingsOf(options, {}, std::nullopt));
  EXPECT_EQ(refusal([&] { settingsOf(options, {}, 0.0); }), "--model press needs --thickness");
  options.press.mu = "x";
  EXPECT_EQ(refusal([&] { settingsOf(options, {}, std::nullopt); }), "--mu: \"x\" is not a number");
}

TEST(ChosenSettings, RefusalsNameTheirOption) {
  const auto refusalOf = [](auto change) {
    SolveOptions options;
    change(options);
    return refusal([&] { settingsOf(options); });
  };
  EXPECT_EQ(refusalOf([](SolveOptions& o) { o.tolerance = "small"; }),
            "--tolerance wants FINAL or FINAL,PATH, not \"small\"");
  EXPECT_EQ(refusalOf([](SolveOptions& o) { o.tolerance = "1,"; }),
            "--tolerance wants FINAL or FINAL,PATH, not \"1,\"");
  EXPECT_EQ(refusalOf([](SolveOptions& o) { o.tolerance = "1,0"; }),
            "--tolerance: tolerance factor 2 is 0, it must be above 0 and at most 1");
  EXPECT_EQ(refusalOf([](SolveOptions& o) { o.r = 0.0; }),
            "--r: the normal anisotropy r is 0, it must be positive and finite");
  EXPECT_EQ(refusalOf([](SolveOptions& o) { o.material = "10", o.r = 2.0, o.rGiven = true; }),
            "--curve, --law and --r describe a material, which --material 10 does not read; use 0, 1 or 2");
  EXPECT_EQ(refusalOf([](SolveOptions& o) { o.material = "10", o.law = "hollomon:K=500,n=0.2"; }),
            "--curve, --law and --r describe a material, which --material 10 does not read; use 0, 1 or 2");
}
