// Eight analyses of different parts, each in a thread of its own at the same time, give the bits of one after the
// other. The same test runs under the thread sanitizer (preset tsan).
#include <gtest/gtest.h>

#include <thread>

#include "handle.hpp"

namespace extension {
namespace {

TEST(HandlesInThreads, GiveTheBitsOfOneAfterTheOther) {
  const char* const samples[] = {"square_cup", "hat",         "s_rail", "round_cup",
                                 "half_pipe",  "cone_sector", "plate",  "box"};
  constexpr std::size_t count = 8;
  const auto analyse = [&samples](std::size_t k) {
    const Handle handle = newHandle();
    std::size_t lines = 0;
    tornwalzen_analysis_on_message(
        handle.get(), [](void* seen, const char*) { ++*static_cast<std::size_t*>(seen); }, &lines);
    take(handle, samplePart(samples[k], 200 + 20 * static_cast<std::int32_t>(k)),
         static_cast<std::int32_t>(k % 2));
    const double swift[] = {549.03, 0.007, 0.2 + 0.01 * static_cast<double>(k)};
    tornwalzen_analysis_set_law(handle.get(), TORNWALZEN_SWIFT, swift, 1.0);
    tornwalzen_analysis_set_normal_anisotropy(handle.get(), 1.0 + 0.1 * static_cast<double>(k));
    EXPECT_EQ(tornwalzen_analysis_run(handle.get()), 0) << samples[k];
    EXPECT_GT(lines, 10u);
    return resultsOf(handle);
  };
  std::vector<double> alone[count], together[count];
  for (std::size_t k = 0; k < count; ++k) alone[k] = analyse(k);
  std::vector<std::thread> threads;
  for (std::size_t k = 0; k < count; ++k) threads.emplace_back([&, k] { together[k] = analyse(k); });
  for (std::thread& thread : threads) thread.join();
  for (std::size_t k = 0; k < count; ++k) {
    EXPECT_FALSE(alone[k].empty());
    EXPECT_TRUE(sameBits(together[k], alone[k])) << samples[k];
  }
}

}  // namespace
}  // namespace extension
