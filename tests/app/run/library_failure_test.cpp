// The library's refusals in its own words.
#include "run/library_failure.hpp"

#include <gtest/gtest.h>

#include <cstring>

#include "run/analysis_handle.hpp"

using namespace host;

TEST(LibraryFailure, FatalTextsComeWithoutTheSignsAroundThem) {
  TornwalzenReport report{};
  EXPECT_EQ(fatalText(report), "");
  std::strcpy(report.fatal_text, " FATALER FEHLER : nele zu gross @");
  EXPECT_EQ(fatalText(report), "FATALER FEHLER : nele zu gross");
  std::strcpy(report.fatal_text, " @ ");
  EXPECT_EQ(fatalText(report), "");
}

TEST(LibraryFailure, TellsTheTextOfTheCode) {
  const AnalysisHandle analysis = newAnalysis();
  const std::int32_t code = tornwalzen_analysis_run(analysis.get());
  const Failure failure = libraryFailure(analysis.get(), code, "could not run");
  EXPECT_STREQ(failure.what(), "the library could not run: no mesh is set");
  EXPECT_EQ(failure.status(), exitRunFailed);
  EXPECT_STREQ(libraryFailure(analysis.get(), TORNWALZEN_NO_MEMORY, "could not take the part").what(),
               "the library could not take the part: there is not enough memory");
}

// Without a fatal text the code's own remains.
TEST(LibraryFailure, AFailedSetUpWithoutATextStillSaysWhat) {
  const AnalysisHandle analysis = newAnalysis();
  EXPECT_STREQ(libraryFailure(analysis.get(), TORNWALZEN_SETUP_FAILED, "could not set up 3 nodes").what(),
               "the library could not set up 3 nodes: the equations could not be set up, see fatal_text");
}
