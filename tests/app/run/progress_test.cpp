#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <thread>

#include "run/progress_record.hpp"
#include "run/progress_view.hpp"

using namespace host;

namespace {

TornwalzenStep stepOf(std::int32_t phase, double fraction, std::int32_t increment = 0,
                      std::int32_t iteration = 0, double residual = -1.0) {
  return {sizeof(TornwalzenStep), phase, fraction, increment, iteration, residual};
}

// A record and a view that is told of each of its steps.
struct Shown {
  ProgressRecord record;
  ProgressView view;
  explicit Shown(bool terminal) : view(terminal) {}

  void tell(const TornwalzenStep& step) {
    record.take(step);
    view.update(record);
  }
  void develop(double fraction, std::int32_t iteration) {
    tell(stepOf(TORNWALZEN_PHASE_DEVELOPMENT, fraction, 0, iteration));
  }
  // An increment with one iteration. fraction: where it begins.
  void increment(double fraction, std::int32_t number) {
    tell(stepOf(TORNWALZEN_PHASE_INCREMENTS, fraction, number));
    tell(stepOf(TORNWALZEN_PHASE_INCREMENTS, fraction, number, 1, 0.0123));
  }
};

// What is printed while `tell` is at work.
template <class Tell>
std::string printed(bool terminal, Tell tell) {
  testing::internal::CaptureStderr();
  Shown shown(terminal);
  tell(shown);
  shown.view.finish();
  return testing::internal::GetCapturedStderr();
}

}  // namespace

TEST(ProgressRecord, CountsIncrementsWithTheirRepeatsButNotTheirIterations) {
  ProgressRecord record;
  EXPECT_EQ(record.phase(), 0);
  record.take(stepOf(TORNWALZEN_PHASE_DEVELOPMENT, 1.0, 0, 7));
  EXPECT_EQ(record.phase(), TORNWALZEN_PHASE_DEVELOPMENT);
  EXPECT_EQ(record.steps(), 0);
  for (const std::int32_t number : {1, 2, 2}) {  // the second is tried again
    record.take(stepOf(TORNWALZEN_PHASE_INCREMENTS, 0.25, number));
    record.take(stepOf(TORNWALZEN_PHASE_INCREMENTS, 0.25, number, 1, 0.5));
  }
  EXPECT_EQ(record.phase(), TORNWALZEN_PHASE_INCREMENTS);
  EXPECT_EQ(record.steps(), 3);
  EXPECT_EQ(record.iteration(), 1);
  EXPECT_EQ(record.residual(), 0.5);
  record.beginRun();
  EXPECT_EQ(record.steps(), 0);
  EXPECT_EQ(record.phase(), 0);
}

TEST(ProgressRecord, MeasuresThePhasesAndKeepsThoseOfTheStructure) {
  const auto wait = [] { std::this_thread::sleep_for(std::chrono::milliseconds(20)); };
  ProgressRecord record;
  record.beginRun();
  record.take(stepOf(TORNWALZEN_PHASE_ORDERING, 0.0));
  wait();
  record.take(stepOf(TORNWALZEN_PHASE_DEVELOPMENT, 0.0));
  wait();
  record.take(stepOf(TORNWALZEN_PHASE_DEVELOPMENT, 1.0, 0, 1));
  wait();
  record.endRun();
  const PhaseTimes first = record.times();
  EXPECT_GE(first.ordering, 0.02);
  EXPECT_GE(first.development, 0.04);
  EXPECT_EQ(first.increments, 0.0);

  record.beginRun();  // on the structure that stands, and no blank is developed
  record.endRun();
  EXPECT_EQ(record.times().ordering, first.ordering);
  EXPECT_EQ(record.times().development, 0.0);
}

// Both paths have a starting blank and Newton iterations.
TEST(ProgressRecord, CountsTheTimesOfTheSurePathUnderTheSameNames) {
  ProgressRecord record;
  record.beginRun();
  record.take(stepOf(TORNWALZEN_PHASE_START, 0.0));
  std::this_thread::sleep_for(std::chrono::milliseconds(10));
  record.take(stepOf(TORNWALZEN_PHASE_NEWTON, 0.0, 0, 1, 1.0));
  std::this_thread::sleep_for(std::chrono::milliseconds(20));
  record.endRun();
  EXPECT_GE(record.times().development, 0.01);
  EXPECT_GE(record.times().increments, 0.02);
  EXPECT_EQ(record.steps(), 0);
}

TEST(ProgressView, ShowsTheSurePath) {
  const auto tell = [](Shown& shown) {
    shown.tell(stepOf(TORNWALZEN_PHASE_START, 0.0));
    shown.tell(stepOf(TORNWALZEN_PHASE_NEWTON, 0.0, 0, 1, 2.5));
    shown.tell(stepOf(TORNWALZEN_PHASE_NEWTON, 0.5, 0, 2, 0.25));
    shown.view.reached(shown.record);
  };
  EXPECT_EQ(
      printed(false, tell),
      "laying out the starting blank\nfinding the blank 0 %\nfinding the blank 50 %\n100 % of the part\n");
  EXPECT_NE(printed(true, tell).find("] finding the blank 50 %, iteration 2, gradient 2.5e-01 mm "),
            std::string::npos);
}

TEST(ProgressRecord, StandsPhasesThatItDoesNotKnow) {
  ProgressRecord record;
  record.take(stepOf(99, 0.5));
  record.take(stepOf(-1, 0.5));
  record.endRun();
  EXPECT_EQ(record.times().increments, 0.0);
  EXPECT_EQ(printed(false, [](Shown& shown) { shown.tell(stepOf(99, 0.5)); }), "running 50 %\n");
}

TEST(ProgressBar, FillsInProportion) {
  EXPECT_EQ(progressBar(0, 10), "[..........]");
  EXPECT_EQ(progressBar(59, 10), "[#####.....]");
  EXPECT_EQ(progressBar(100, 10), "[##########]");
}

TEST(ProgressView, PrintsPlainLinesWhereThereIsNoTerminal) {
  const std::string text = printed(false, [](Shown& shown) {
    shown.tell(stepOf(TORNWALZEN_PHASE_STRUCTURE, 0.0));
    shown.tell(stepOf(TORNWALZEN_PHASE_ORDERING, 0.0));
    shown.tell(stepOf(TORNWALZEN_PHASE_SYMBOLIC, 0.0));
    std::int32_t k = 0;
    for (const double fraction : {0.0, 0.05, 0.12, 0.18, 0.31}) shown.develop(fraction, k++);
    shown.increment(0.0, 1);
    shown.increment(0.0075, 2);
    shown.view.reached(shown.record);
  });
  EXPECT_EQ(text,
            "building the structure of the equations\nordering the equations\nlaying out the factor\n"
            "developing the part 0 %\ndeveloping the part 12 %\ndeveloping the part 31 %\n"
            "increment 1, 0 % of the part\nincrement 2, 0 % of the part\nincrement 2, 100 % of the part\n");
}

TEST(ProgressView, NeverRunsBackwards) {
  const std::string text = printed(false, [](Shown& shown) {
    std::int32_t k = 0;
    for (const double fraction : {0.0, 0.95, 0.5, 0.97}) shown.develop(fraction, k++);
    std::int32_t number = 1;
    for (const double fraction : {0.25, 0.75, 0.5, 0.7, 0.875}) shown.increment(fraction, number++);
  });
  EXPECT_EQ(text,
            "developing the part 0 %\ndeveloping the part 95 %\nincrement 1, 25 % of the part\n"
            "increment 2, 75 % of the part\nincrement 3, 75 % of the part\nincrement 4, 75 % of the part\n"
            "increment 5, 87 % of the part\n");
}

TEST(ProgressView, RedrawsOneLineOnATerminalAtEveryIteration) {
  const std::string text = printed(true, [](Shown& shown) {
    shown.increment(0.5, 1);
    shown.view.reached(shown.record);
  });
  const auto line = [](const char* bar, std::string words) {
    words.resize(58, ' ');  // each line covers the longest one before it
    return "\r[" + std::string(bar) + "] " + words;
  };
  EXPECT_EQ(text, line("########........", "increment 1, 50 %") +
                      line("########........", "increment 1, 50 %, iteration 1, gradient 1.2e-02 mm") +
                      line("################", "increment 1, 100 % of the part") + "\n");
  EXPECT_LT(line("################", "").size() - 1, 80u);
}

TEST(ProgressView, RedrawsTheDevelopmentOnlyWhereItGainsAPercent) {
  const std::string text = printed(true, [](Shown& shown) {
    std::int32_t k = 0;
    for (const double fraction : {0.0, 0.004, 0.011, 0.002, 0.012}) shown.develop(fraction, k++);
  });
  EXPECT_EQ(std::count(text.begin(), text.end(), '\r'), 2);
}

TEST(ProgressView, StandsFractionsOutsideTheRange) {
  const double odd[] = {-3.0, std::numeric_limits<double>::quiet_NaN(),
                        std::numeric_limits<double>::infinity(), 7.0};
  for (const double fraction : odd) {
    const std::string text = printed(true, [&](Shown& shown) { shown.develop(fraction, 1); });
    EXPECT_EQ(text.size(), std::string("\r[................] ").size() + 58 + 1) << fraction;
  }
}
