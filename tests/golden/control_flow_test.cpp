// The decisions of whole runs, read from the messages: iterations of the development, increments, repeats,
// Newton iterations, and the fractions that the line searches accepted. They must equal the recorded ones in
// every build: a compiler that reorders a sum, or a check that changes a value, shows here.
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <map>
#include <sstream>
#include <string>

#include "golden/sample_parts.hpp"
#include "host_kit/default_run.hpp"
#include "sparse/kernels/dense_kernels.hpp"

namespace {

struct Case {
  const char* sample;
  std::int32_t triangles, material;
};
// None whose gradient is zero but for rounding, such as a flat plate: there the rounding decides.
constexpr Case cases[] = {{"square_cup", 400, 1}, {"round_cup", 300, 0},    {"round_cup", 300, 2},
                          {"box", 300, 1},        {"flanged_hole", 300, 1}, {"s_rail", 300, 2},
                          {"s_rail", 300, 10},    {"hat", 200, 1},          {"half_pipe", 200, 10},
                          {"l_bend", 100, 1}};

// The decisions in the messages of one run, as one line.
std::string decisions(const std::string& messages) {
  std::istringstream lines(messages);
  int increments = 0, repeats = 0, iterations = 0, collapses = 0;
  std::string descent = "0";
  std::map<std::string, int> fractions;  // how often each was accepted
  for (std::string line; std::getline(lines, line);) {
    if (line.rfind("IZ,EN,EN1,L-FAK ", 0) == 0) descent = line.substr(line.find_last_not_of("@ \n") - 4, 5);
    if (line.rfind(" START INKRMEMENT ", 0) == 0) ++increments;
    if (line.rfind("INKREMENT WIRD WIEDERHOLT @", 0) == 0) ++repeats;
    if (line.rfind(" KEINE KONVERGENZ", 0) == 0) ++collapses;
    if (line.rfind("MAX.GRAD, LS-FAK, EN", 0) != 0) continue;
    ++iterations;
    ++fractions[line.substr(20 + 13, 13)];
  }
  std::ostringstream text;
  text << "development " << std::stoi(descent) << ", increments " << increments << ", repeats " << repeats
       << ", iterations " << iterations << ", aborts " << collapses << ", fractions";
  for (const auto& [fraction, count] : fractions) text << fraction << " x" << count;
  return text.str();
}

std::string runCase(const Case& c) {
  tornwalzen::freshState();  // as a freshly loaded library
  hostile::Host host(golden::samplePart(c.sample, c.triangles), hostile::Flush::end);
  golden::holdMiddle(host);
  testing::internal::CaptureStdout();
  host.setUp();
  host.analyse(c.material);
  const std::string messages = testing::internal::GetCapturedStdout();
  host.expectTruth();
  return std::string(c.sample) + " " + std::to_string(host.NELE[0]) + " material " +
         std::to_string(c.material) + ": " + decisions(messages) +
         (host.converged() ? ", converged" : ", not converged");
}

TEST(ControlFlow, IsAsRecorded) {
  std::string text;
  for (const Case& c : cases) text += runCase(c) + "\n";
  std::ifstream file(TORNWALZEN_GOLDEN);
  const std::string recorded{std::istreambuf_iterator<char>(file), {}};
  EXPECT_EQ(text, recorded) << "after a deliberate change of the method, this is the new recording:\n"
                            << text;
}

}  // namespace
