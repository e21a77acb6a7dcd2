// A null pointer in place of each argument in turn: -1 where the call needs it, no difference where it does
// not.
#include <set>

#include "errors/hostile_case.hpp"

namespace {

using namespace hostile;

HOSTILE_SUITE(HostileMissing);

const std::vector<std::string> initArguments = {"MODE", "NKNO",  "NELE", "NEQ",  "MNSYSM", "NIWOR",
                                                "NRK",  "KNOTS", "INZI", "INTA", "COLS",   "ROWI",
                                                "WORK", "RWORK", "KNG",  "ISTAT"};
const std::vector<std::string> mainArguments = {"INTA", "ARFA", "COLS", "ROWI",  "WORK", "RWORK", "RR",
                                                "RB",   "RX",   "TEMP", "KNG",   "KNZ",  "KNA",   "ELG",
                                                "SYSM", "RXA",  "WRHS", "ICTRL", "EVAL", "ISTAT"};

// `mode` without the argument `name`, after the modes before it.
void initWithout(const std::string& name, std::int32_t mode, bool needed, Flush flush) {
  SCOPED_TRACE("mode " + std::to_string(mode) + " without " + name);
  isolated([&] {
    Host host(dome(3), flush);
    for (std::int32_t before = 1; before < mode; ++before) {
      ASSERT_EQ(host.init(before), 0);
      host.supply();
    }
    ASSERT_TRUE(host.drop(name));
    host.ISTAT[0] = 5;
    EXPECT_EQ(host.init(mode), name == "ISTAT" ? 5 : needed ? -1 : 0);
  });
}

TEST_P(HostileMissing, InTheFirstMode) {
  const std::set<std::string> unused{"NRK", "WORK", "RWORK"};
  for (const std::string& name : initArguments) initWithout(name, 1, unused.count(name) == 0, GetParam());
}

TEST_P(HostileMissing, InTheSecondMode) {
  const std::set<std::string> needed{"MODE", "NIWOR", "NRK", "COLS", "ROWI", "WORK"};
  for (const std::string& name : initArguments) initWithout(name, 2, needed.count(name) == 1, GetParam());
}

TEST_P(HostileMissing, InTheThirdMode) {
  const std::set<std::string> needed{"MODE", "NIWOR", "NRK", "COLS", "ROWI", "WORK", "RWORK"};
  for (const std::string& name : initArguments) initWithout(name, 3, needed.count(name) == 1, GetParam());
}

TEST_P(HostileMissing, InTheAnalysis) {
  for (const std::string& name : mainArguments) {
    SCOPED_TRACE("without " + name);
    isolated([&, flush = GetParam()] {
      Host host(dome(3), flush);
      host.setUp();
      ASSERT_TRUE(host.drop(name));
      host.ISTAT[0] = 5;
      EXPECT_EQ(host.analyse(), name == "ISTAT" ? 5 : -1);
      EXPECT_FALSE(host.converged());
    });
  }
}

HOSTILE_CASE(HostileMissing, ARefusedModeMayBeRepeatedWithTheArray) {
  Host host(dome(), flush);
  host.drop("WORK");
  ASSERT_EQ(host.init(1), 0);
  host.supply();
  EXPECT_EQ(host.init(2), -1);
  host.drop("none");
  host.setUp();
  EXPECT_EQ(host.analyse(), 1);
  EXPECT_TRUE(host.converged());
}

}  // namespace
