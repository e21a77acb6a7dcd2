// What the set-up tells the host to supply, and what the ordering made of the pattern. The lengths follow
// exactly from the mesh by the order of the eliminations, the supernodes and the sequence of the fronts; a
// run with other ones would be as right, but slower or larger, so nothing else notices when a choice among
// equals goes the wrong way.
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <sstream>
#include <string>

#include "golden/sample_parts.hpp"
#include "host_kit/default_run.hpp"
#include "sparse/work_layout.hpp"

namespace {

struct Case {
  const char* sample;
  std::int32_t triangles;
  std::uint64_t seed;  // 0: regular mesh
};
constexpr Case cases[] = {{"l_bend", 20, 0},         {"hat", 200, 3},     {"flanged_hole", 400, 1},
                          {"round_cup", 1000, 2},    {"s_rail", 2000, 5}, {"square_cup", 3000, 0},
                          {"flanged_hole", 4000, 0}, {"box", 5000, 7},    {"flanged_hole", 30000, 3}};

std::string lengths(const Case& c) {
  namespace header = tornwalzen::header;
  tornwalzen::freshState();  // as a freshly loaded library
  hostile::Host host(golden::samplePart(c.sample, c.triangles, c.seed), hostile::Flush::end);
  std::ostringstream text;
  text << c.sample << ' ' << host.NELE[0] << " seed " << c.seed << ':';
  testing::internal::CaptureStdout();
  for (std::int32_t mode = 1; mode <= 3; ++mode) {
    EXPECT_EQ(host.init(mode), 0) << c.sample << ", mode " << mode;
    host.supply();
    if (mode == 1) text << " MNSYSM " << host.MNSYSM[0] << ',';
    text << " mode " << mode << " NIWOR " << host.NIWOR[0];
    if (mode > 1) text << " NRK " << host.NRK[0];
    text << ',';
  }
  testing::internal::GetCapturedStdout();
  text << " supernodes " << host.WORK[header::supernodes - 1] << ", subscripts "
       << host.WORK[header::subscripts - 1] << ", entries of L " << host.WORK[header::leanEntries - 1]
       << ", stored " << host.WORK[header::factorEntries - 1] << ", largest front "
       << host.WORK[header::largestFront - 1] << ", largest update " << host.WORK[header::largestUpdate - 1]
       << ", scratch " << host.WORK[header::scratchDoubles - 1] << '\n';
  return text.str();
}

TEST(SolverLengths, AreAsRecorded) {
  std::string text;
  for (const Case& c : cases) text += lengths(c);
  std::ifstream file(TORNWALZEN_LENGTHS);
  const std::string recorded{std::istreambuf_iterator<char>(file), {}};
  EXPECT_EQ(text, recorded) << "after a deliberate change of the method, this is the new recording:\n"
                            << text;
}

}  // namespace
