// Bits flipped in the host's arrays between the calls: refused, or a finite end that tells the truth; never a
// write outside an array. What the checksum of WORK covers is always noticed: the run fails, or gives the
// same bits.
#include <cstring>
#include <random>

#include "errors/hostile_case.hpp"

namespace {

using namespace hostile;

HOSTILE_SUITE(HostileDamage);

// Under the address checker a process costs ten times as much, and on another system it starts from nothing.
#if defined(__SANITIZE_ADDRESS__) || defined(_WIN32)
constexpr unsigned draws = 5;
constexpr std::int64_t wordStep = 7;
#else
constexpr unsigned draws = 25;  // per array and moment
constexpr std::int64_t wordStep = 1;
#endif

enum class Moment { beforeOrdering, beforeSymbolic, beforeAnalysis };
constexpr Moment moments[] = {Moment::beforeOrdering, Moment::beforeSymbolic, Moment::beforeAnalysis};

// Flips one to eight bits, or exchanges elements, or plants numbers of the array's own range.
void damage(const Ints& array, std::mt19937& draw) {
  if (array.length() == 0) return;
  const auto anywhere = [&] {
    return static_cast<std::int64_t>(draw() % static_cast<std::uint64_t>(array.length()));
  };
  const unsigned count = 1 + draw() % 8;
  const unsigned way = draw() % 3;
  for (unsigned i = 0; i < count; ++i) {
    const std::int64_t at = anywhere();
    if (way == 0)
      array[at] = static_cast<std::int32_t>(static_cast<std::uint32_t>(array[at]) ^ (1u << draw() % 32));
    else if (way == 1)
      std::swap(array[at], array[anywhere()]);
    else
      array[at] = array[anywhere()] + static_cast<std::int32_t>(draw() % 3) - 1;
  }
}

// The protocol with one array damaged once; true if every call was accepted.
bool runDamaged(Host& host, const Ints& array, Moment moment, std::mt19937& draw) {
  for (std::int32_t mode = 1; mode <= 3; ++mode) {
    if ((mode == 2 && moment == Moment::beforeOrdering) || (mode == 3 && moment == Moment::beforeSymbolic))
      damage(array, draw);
    if (host.init(mode) != 0) return false;
    host.supply();
  }
  if (moment == Moment::beforeAnalysis) damage(array, draw);
  return host.analyse() != -1;
}

void tryDamage(Ints Host::*array, Flush flush, bool sameOrRefused) {
  std::vector<double> blank;
  for (const Moment moment : moments)
    for (unsigned seed = 1; seed <= draws; ++seed) {
      SCOPED_TRACE("seed " + std::to_string(seed) + ", moment " + std::to_string(static_cast<int>(moment)));
      isolated([&] {
        Host straight(dome(3), flush);
        straight.setUp();
        ASSERT_EQ(straight.analyse(), 1);
        Host host(dome(3), flush);
        std::mt19937 draw(seed);
        if (!runDamaged(host, host.*array, moment, draw)) {
          EXPECT_FALSE(host.converged());
          return;
        }
        host.expectTruth();
        const bool same =
            std::memcmp(host.RX.data(), straight.RX.data(), sizeof(double) * host.RX.length()) == 0;
        EXPECT_TRUE(same || !sameOrRefused);
      });
    }
}

TEST_P(HostileDamage, ColumnPointers) {
  tryDamage(&Host::COLS, GetParam(), false);
}
TEST_P(HostileDamage, RowIndices) {
  tryDamage(&Host::ROWI, GetParam(), false);
}
TEST_P(HostileDamage, Incidences) {
  tryDamage(&Host::INTA, GetParam(), false);
}
TEST_P(HostileDamage, SolverIntegers) {
  tryDamage(&Host::WORK, GetParam(), true);
}

// One word after the other: no place of WORK is outside the promise.
constexpr unsigned manySeconds = 60;  // some hundred cases

TEST_P(HostileDamage, EveryWordOfTheSolverIntegers) {
  isolated(
      [flush = GetParam()] {
        const Mesh mesh{{0, 0, 0, 10, 0, 1, 0, 10, 0, 10, 10, 2}, {1, 2, 4, 1, 4, 3}};
        Host straight(mesh, flush);
        straight.setUp();
        ASSERT_EQ(straight.analyse(), 1);
        constexpr std::int32_t values[] = {-1, 0, 1 << 30};
        for (std::int64_t word = 0; word < straight.WORK.length(); word += wordStep) {
          SCOPED_TRACE("word " + std::to_string(word + 1));
          isolated([&] {
            Host host(mesh, flush);
            host.setUp();
            host.WORK[word] = values[word % 3] == host.WORK[word] ? 7 : values[word % 3];
            if (host.analyse() == -1) {
              EXPECT_FALSE(host.converged());
              return;
            }
            EXPECT_EQ(std::memcmp(host.RX.data(), straight.RX.data(), sizeof(double) * host.RX.length()), 0);
          });
        }
      },
      manySeconds);
}

TEST_P(HostileDamage, TheFactorsPlaceAndTheResultsAreOnlyWritten) {
  isolated([flush = GetParam()] {
    Host straight(dome(3), flush), host(dome(3), flush);
    straight.setUp();
    straight.analyse();
    host.setUp();
    for (const Reals* array : {&host.RWORK, &host.RR, &host.RB, &host.RX, &host.TEMP, &host.KNZ, &host.KNA,
                               &host.ELG, &host.SYSM, &host.RXA, &host.WRHS, &host.EVAL})
      std::fill(array->begin(), array->end(), 1e308);
    EXPECT_EQ(host.analyse(), 1);
    EXPECT_TRUE(host.converged());
    EXPECT_EQ(std::memcmp(host.RX.data(), straight.RX.data(), sizeof(double) * host.RX.length()), 0);
    EXPECT_EQ(std::memcmp(host.EVAL.data(), straight.EVAL.data(), sizeof(double) * host.EVAL.length()), 0);
  });
}

}  // namespace
