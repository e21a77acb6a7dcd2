#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "run/progress_record.hpp"
#include "run/progress_view.hpp"

using namespace host;

namespace {

const char* const incrementLine =
    " Tornwalzen - Inverse Projektion :     Fortschritt / Schrittweite   50.00 %%  ";
const char* const developmentLine = " Tornwalzen - Geometrie abwickeln:       Fortschritt:   10.00";

void tellFraction(ProgressRecord& record, double value) {
  record.take({value, 0, nullptr});
}
void tellText(ProgressRecord& record, const char* text) {
  record.take({0.0, 1, text});
}

// One increment as the driver reports it.
void tellIncrement(ProgressRecord& record, double fraction) {
  tellFraction(record, fraction);
  tellText(record, incrementLine);
  tellText(record, "TIME: 1sec");
}

// What the view prints while it is told `steps`.
template <class Tell>
std::string printed(bool terminal, Tell tell) {
  testing::internal::CaptureStderr();
  ProgressRecord record;
  ProgressView view(terminal);
  tell(record, view);
  view.finish();
  return testing::internal::GetCapturedStderr();
}

}  // namespace

TEST(ProgressRecord, TellsDevelopmentFromIncrements) {
  ProgressRecord record;
  tellFraction(record, 1.0);
  tellText(record, developmentLine);
  EXPECT_EQ(record.phase(), RunPhase::development);
  tellIncrement(record, 0.5);
  tellIncrement(record, 1.0);
  EXPECT_EQ(record.phase(), RunPhase::increments);
  EXPECT_EQ(record.steps(), 2);
  EXPECT_EQ(record.fraction(), 1.0);
}

TEST(ProgressBar, FillsInProportion) {
  EXPECT_EQ(progressBar(0, 10), "[..........]");
  EXPECT_EQ(progressBar(59, 10), "[#####.....]");
  EXPECT_EQ(progressBar(100, 10), "[##########]");
}

TEST(ProgressView, PrintsPlainLinesWhereThereIsNoTerminal) {
  const std::string text = printed(false, [](ProgressRecord& record, ProgressView& view) {
    for (const double fraction : {0.0, 0.05, 0.12, 0.18, 0.31}) {
      tellFraction(record, fraction);
      view.update(record);
    }
    tellFraction(record, 0.0);
    view.update(record);
    tellIncrement(record, 0.0075);
    view.update(record);
    view.update(record);
    tellIncrement(record, 1.0);
    view.update(record);
  });
  EXPECT_EQ(text,
            "developing the part 0 %\ndeveloping the part 12 %\ndeveloping the part 31 %\n"
            "increment 1, 0 % of the part\nincrement 2, 100 % of the part\n");
}

TEST(ProgressView, NeverRunsBackwards) {
  const std::string text = printed(false, [](ProgressRecord& record, ProgressView& view) {
    for (const double fraction : {0.0, 0.95}) {
      tellFraction(record, fraction);
      view.update(record);
    }
    for (const double fraction :
         {0.25, 0.75, 0.5, 0.7, 0.875}) {  // the second increment failed and was repeated
      tellIncrement(record, fraction);
      view.update(record);
    }
  });
  EXPECT_EQ(text,
            "developing the part 0 %\ndeveloping the part 95 %\nincrement 1, 25 % of the part\n"
            "increment 2, 75 % of the part\nincrement 3, 75 % of the part\nincrement 4, 75 % of the part\n"
            "increment 5, 87 % of the part\n");
}

TEST(ProgressView, RedrawsOneLineOnATerminal) {
  const std::string text = printed(true, [](ProgressRecord& record, ProgressView& view) {
    tellIncrement(record, 0.5);
    view.update(record);
    tellIncrement(record, 1.0);
    view.update(record);
  });
  // each line covers the longest one before it
  EXPECT_EQ(text,
            "\r[####################....................] increment 1, 50 % of the part       "
            "\r[########################################] increment 2, 100 % of the part      \n");
}

TEST(ProgressView, StandsFractionsOutsideTheRange) {
  const double odd[] = {-3.0, std::numeric_limits<double>::quiet_NaN(),
                        std::numeric_limits<double>::infinity(), 7.0};
  for (const double fraction : odd) {
    const std::string text = printed(true, [&](ProgressRecord& record, ProgressView& view) {
      tellFraction(record, fraction);
      view.update(record);
    });
    EXPECT_EQ(text.size(), std::string("\r[........................................] ").size() + 36 + 1)
        << fraction;
  }
}
