// Settings reach the analysis behind a handle, and what it refuses is told in its words with the option's name.
#include "run/run_settings.hpp"

#include <gtest/gtest.h>

#include <thread>

#include "app/refusal.hpp"
#include "run/analysis_handle.hpp"

using namespace host;

TEST(RunSettings, AreAcceptedAsTheProgramSetsThem) {
  checkSettings({});
  RunSettings settings;
  settings.material = 2;
  settings.curve = {{0.0, 0.1, 0.5}, {200.0, 300.0, 400.0}, "curve.csv"};
  settings.r = 1.6;
  settings.partReference = false;
  checkSettings(settings);
}

TEST(RunSettings, AreRefusedWithTheOptionsName) {
  const auto refused = [](auto change) {
    RunSettings settings;
    change(settings);
    return refusal([&] { checkSettings(settings); });
  };
  EXPECT_EQ(refused([](RunSettings& s) { s.material = 3; }),
            "--material: there is no flow curve 3, or it cannot be replaced");
  EXPECT_EQ(refused([](RunSettings& s) { s.r = -1.0; }),
            "--r: the normal anisotropy r is -1, it must be positive and finite");
  EXPECT_EQ(refused([](RunSettings& s) { s.pathFactor = 2.0; }),
            "--tolerance: tolerance factor 2 is 2, it must be above 0 and at most 1");
  EXPECT_EQ(refused([](RunSettings& s) {
              s.curve = {{0.0, 0.1, 0.1}, {1.0, 2.0, 3.0}, "steel.csv"};
            }),
            "steel.csv: strain 3 of the flow curve is 0.1, not larger than the one before it");
}

TEST(RunSettings, StartTheThreadsThatWereChosen) {
  const auto threadsOf = [](int chosen) {
    const AnalysisHandle analysis = newAnalysis();
    RunSettings settings;
    settings.threads = chosen;
    applyThreads(settings, analysis.get());
    TornwalzenReport report{};
    report.size = sizeof report;
    tornwalzen_analysis_report(analysis.get(), &report);
    return report.threads;
  };
  EXPECT_EQ(threadsOf(3), 3);
  EXPECT_EQ(threadsOf(1), 1);
  EXPECT_EQ(threadsOf(0), static_cast<int>(std::thread::hardware_concurrency()));
  EXPECT_EQ(refusal([&] { threadsOf(65); }),
            "--threads 65: the number of threads is 65, allowed are 1 to 64");
}
