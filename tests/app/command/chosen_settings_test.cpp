#include "command/chosen_settings.hpp"

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
