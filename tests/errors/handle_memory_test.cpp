// Every request for memory of a handle refused in turn, those that throw too: the call answers with a code, no exception
// leaves the library, and the same calls afterwards give the same bits.
#include <gtest/gtest.h>

#include <functional>

#include "errors/refused_memory.hpp"
#include "interface/handle.hpp"

namespace extension {
namespace {

/// The calls of a host, whose own memory is there before.
struct Calls {
  explicit Calls(HostPart given)
      : part(std::move(given)), strains(static_cast<std::size_t>(part.elements())) {
    for (const std::int32_t free : part.arfa) held.push_back(1 - free);
    press.size = sizeof press;
    press.thickness_mm = 1.0;
    press.friction_punch = press.friction_die = 0.1;
    press.binder_force_n = 5000.0;
    press.flange_of_rim = 1;
  }
  /// The first code that is not zero, or zero.
  int operator()(TornwalzenAnalysis* analysis) {
    const double steel[] = {549.03, 0.007, 0.22};  // Swift's law, MPa
    int code = tornwalzen_analysis_set_mesh(analysis, part.nodes(), part.elements(), part.knots.data(),
                                            part.inzi.data(), 1);
    if (code == 0) code = tornwalzen_analysis_set_holds(analysis, held.data());
    if (code == 0) code = tornwalzen_analysis_set_law(analysis, TORNWALZEN_SWIFT, steel, 1.0);
    if (code == 0) code = tornwalzen_analysis_set_model(analysis, modelled ? 1 : 0);
    if (code == 0 && modelled) code = tornwalzen_analysis_set_press(analysis, &press);
    if (code == 0 && modelled && bead.size() == 2) {
      const std::int32_t length = 2;
      const double force = 5.0;  // N/mm
      code = tornwalzen_analysis_set_beads(analysis, 1, &length, bead.data(), &force);
    }
    if (code == 0) code = tornwalzen_analysis_set_path(analysis, path);
    if (code == 0) code = tornwalzen_analysis_run(analysis);
    if (code == 0) code = tornwalzen_analysis_strains(analysis, strains.data());
    return code;
  }

  HostPart part;
  std::vector<std::int32_t> held, bead;
  std::vector<TornwalzenElementStrain> strains;
  TornwalzenPress press{};
  bool modelled = true;
  std::int32_t path = 1;
};

/// Refuses the first request, then the second, until none is left to refuse. Returns how many there were.
int refuseEach(Calls& calls, const std::function<void(TornwalzenAnalysis*)>& settings = {}) {
  const auto begun = [&] {
    Handle handle = newHandle();
    if (settings) settings(handle.get());
    return handle;
  };
  const Handle whole = begun();
  EXPECT_EQ(calls(whole.get()), 0) << reportOf(whole).fatal_text;
  const std::vector<double> results = resultsOf(whole);
  for (int granted = 0; granted < 2000; ++granted) {
    const Handle handle = begun();
    int code = 0, refusals = 0;
    {
      const hostile::NoMemory none(granted, hostile::Requests::all);
      EXPECT_NO_THROW(code = calls(handle.get())) << "request " << granted + 1;
      refusals = none.refusals();
    }
    if (refusals == 0) return granted;
    const TornwalzenReport report = reportOf(handle);
    if (code != 0)
      EXPECT_NE(tornwalzen_analysis_error_text(handle.get(), code, 1)[0], '\0') << "request " << granted + 1;
    else if (report.converged == 1)  // an aid that the run can do without
      EXPECT_TRUE(sameBits(resultsOf(handle), results)) << "request " << granted + 1;
    else
      EXPECT_NE(std::string(report.fatal_text).find("kein Speicher"), std::string::npos)
          << "request " << granted + 1 << ": " << report.fatal_text;
    EXPECT_EQ(calls(handle.get()), 0) << "after request " << granted + 1;
    EXPECT_TRUE(sameBits(resultsOf(handle), results)) << "after request " << granted + 1;
    if (::testing::Test::HasFailure()) return granted;
  }
  return 2000;
}

TEST(HandleMemory, EveryRequestUnderThePressModelIsAnswered) {
  Calls calls(samplePart("round_cup", 300));
  calls.bead = {calls.part.inzi[0], calls.part.inzi[1]};
  EXPECT_GT(refuseEach(calls), 60);
}

TEST(HandleMemory, EveryRequestWithAMeshOnASideOfTheSheetIsAnswered) {
  Calls calls(samplePart("round_cup", 300));
  calls.press.mesh_side = 1;
  calls.press.r0 = calls.press.r90 = 1.8, calls.press.r45 = 1.4;
  EXPECT_GT(refuseEach(calls), 60);
}

TEST(HandleMemory, EveryRequestOfTheSurePathIsAnswered) {
  Calls calls(samplePart("round_cup", 300));
  calls.modelled = false;
  EXPECT_GT(refuseEach(calls), 40);
}

TEST(HandleMemory, EveryRequestOfTheFixedPathIsAnswered) {
  Calls calls(samplePart("round_cup", 300));
  calls.modelled = false;
  calls.path = 0;
  EXPECT_GT(refuseEach(calls), 20);
}

TEST(HandleMemory, ThreadsThatCannotBeHadAreToldAndTheAnalysisStaysOnOne) {
  for (int granted = 0;; ++granted) {
    const Handle handle = newHandle();
    int code = 0, refusals = 0;
    {
      const hostile::NoMemory none(granted, hostile::Requests::all);
      EXPECT_NO_THROW(code = tornwalzen_analysis_set_threads(handle.get(), 3));
      refusals = none.refusals();
    }
    if (refusals == 0) break;
    EXPECT_NE(code, 0) << "request " << granted + 1;
    ASSERT_LT(granted, 50);
  }
}

}  // namespace
}  // namespace extension
