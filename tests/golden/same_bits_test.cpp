// The same input gives the same bits, run after run, wherever the arrays lie and however they are aligned.
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "golden/sample_parts.hpp"
#include "host_kit/default_run.hpp"

namespace {

// Every double that a run leaves behind.
std::vector<double> results(hostile::Host& host) {
  std::vector<double> all;
  for (const hostile::Reals* array :
       {&host.RX, &host.EVAL, &host.RR, &host.RB, &host.RXA, &host.KNZ, &host.SYSM, &host.ELG, &host.TEMP})
    all.insert(all.end(), array->begin(), array->end());
  return all;
}

bool sameBits(const std::vector<double>& a, const std::vector<double>& b) {
  return a.size() == b.size() && std::memcmp(a.data(), b.data(), sizeof(double) * a.size()) == 0;
}

std::vector<double> fresh(const char* sample, std::int32_t material, hostile::Flush flush) {
  tornwalzen::freshState();
  hostile::Host host(golden::samplePart(sample, 300), flush);
  golden::holdMiddle(host);
  testing::internal::CaptureStdout();
  host.setUp();
  host.analyse(material);
  testing::internal::GetCapturedStdout();
  EXPECT_TRUE(host.converged());
  return results(host);
}

class SameBits : public testing::TestWithParam<std::int32_t> {};

TEST_P(SameBits, WhereverTheArraysLie) {
  for (const char* sample : {"square_cup", "s_rail"})
    EXPECT_TRUE(sameBits(fresh(sample, GetParam(), hostile::Flush::end),
                         fresh(sample, GetParam(), hostile::Flush::start)))
        << sample;
}

TEST_P(SameBits, RunAfterRun) {
  const std::vector<double> first = fresh("round_cup", GetParam(), hostile::Flush::end);
  hostile::Host host(golden::samplePart("round_cup", 300), hostile::Flush::end);
  golden::holdMiddle(host);
  testing::internal::CaptureStdout();
  for (int again = 0; again < 3; ++again) {
    if (again != 1) host.setUp();  // the second time on the structure that stands
    host.analyse(GetParam());
    EXPECT_TRUE(sameBits(results(host), first)) << again;
    host.moveAll();
  }
  testing::internal::GetCapturedStdout();
}

INSTANTIATE_TEST_SUITE_P(Materials, SameBits, testing::Values(0, 1, 2, 10));

}  // namespace
