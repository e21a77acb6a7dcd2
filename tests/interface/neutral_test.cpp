// Nothing called against everything called with its neutral value: the same bits and the same lines.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "host_kit/parts.hpp"
#include "tornwalzen_ext.h"

namespace extension {

using namespace host_kit;
namespace {

struct Result {
  std::uint64_t hash;
  std::string lines;
};

Result runOnce(const HostPart& part, int material) {
  testing::internal::CaptureStdout();
  const std::uint64_t hash = WholeRun(part, material).hash();
  return {hash, testing::internal::GetCapturedStdout()};
}

void setNeutralValues() {
  const double strain[3] = {0.0, 0.1, 0.5}, stress[3] = {100.0, 200.0, 300.0};
  for (int selector = 0; selector < 3; ++selector) {
    ASSERT_EQ(tornwalzen_set_flow_curve(selector, 3, strain, stress), 0);
    ASSERT_EQ(tornwalzen_set_flow_curve(selector, 0, nullptr, nullptr), 0);
  }
  ASSERT_EQ(tornwalzen_set_normal_anisotropy(1.0), 0);
  ASSERT_EQ(tornwalzen_set_energy_reference(0), 0);
  ASSERT_EQ(tornwalzen_set_path(0), 0);
  ASSERT_EQ(tornwalzen_set_start(0), 0);
  ASSERT_EQ(tornwalzen_set_tolerance_factors(1.0, 1.0), 0);
}

void expectSameBits(const HostPart& part, const std::vector<int>& materials) {
  for (const int material : materials) {
    const Result untouched = runOnce(part, material);
    setNeutralValues();
    const Result neutral = runOnce(part, material);
    EXPECT_EQ(untouched.hash, neutral.hash) << "material " << material;
    EXPECT_EQ(untouched.lines, neutral.lines) << "material " << material;

    TornwalzenReport report;
    report.size = sizeof report;
    ASSERT_EQ(tornwalzen_get_report(&report), 0);
    ASSERT_EQ(tornwalzen_reset(), 0);
    const Result reset = runOnce(part, material);
    EXPECT_EQ(untouched.hash, reset.hash) << "material " << material;
    EXPECT_EQ(untouched.lines, reset.lines) << "material " << material;
  }
}

class NeutralOnSamples : public ::testing::TestWithParam<std::string> {};

TEST_P(NeutralOnSamples, ValuesChangeNoBitAndNoLine) {
  expectSameBits(samplePart(GetParam(), 300), {0, 1, 2, 10});
  expectSameBits(samplePart(GetParam(), 200, 5), {1});
}

std::vector<std::string> sampleNames() {
  std::vector<std::string> names;
  for (const shapes::ShapeInfo& shape : shapes::catalogue()) names.push_back(shape.name);
  return names;
}

INSTANTIATE_TEST_SUITE_P(Extension, NeutralOnSamples, ::testing::ValuesIn(sampleNames()),
                         [](const auto& which) { return which.param; });

class NeutralOnRealParts : public ::testing::TestWithParam<std::string> {};

TEST_P(NeutralOnRealParts, ValuesChangeNoBitAndNoLine) {
  const std::string folder = TORNWALZEN_PARTS;
  if (!std::filesystem::exists(folder)) GTEST_SKIP() << "skipped: there is no folder " << folder;
  expectSameBits(realPart(folder, GetParam()), {1});
}

INSTANTIATE_TEST_SUITE_P(Extension, NeutralOnRealParts, ::testing::ValuesIn(realParts()),
                         [](const auto& which) { return which.param; });

TEST(NeutralValues, OtherValuesDoChangeTheBlank) {
  const HostPart part = samplePart("round_cup", 300);
  const std::vector<double> blank = WholeRun(part, 1).RX;
  ASSERT_EQ(tornwalzen_set_normal_anisotropy(1.5), 0);
  EXPECT_NE(WholeRun(part, 1).RX, blank);
  ASSERT_EQ(tornwalzen_set_normal_anisotropy(1.0), 0);
  ASSERT_EQ(tornwalzen_set_energy_reference(1), 0);
  EXPECT_NE(WholeRun(part, 1).RX, blank);
  ASSERT_EQ(tornwalzen_set_energy_reference(0), 0);
  ASSERT_EQ(tornwalzen_set_tolerance_factors(1e-3, 1.0), 0);
  EXPECT_NE(WholeRun(part, 1).RX, blank);
  ASSERT_EQ(tornwalzen_reset(), 0);
  EXPECT_EQ(WholeRun(part, 1).RX, blank);
}

}  // namespace
}  // namespace extension
