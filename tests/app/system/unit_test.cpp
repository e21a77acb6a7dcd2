#include "system/unit.hpp"

#include <gtest/gtest.h>

#include "app/refusal.hpp"

using namespace host;

TEST(Units, AreMillimetresCentimetresMetresAndInches) {
  EXPECT_EQ(unitOf("mm").millimetres, 1.0);
  EXPECT_EQ(unitOf("cm").millimetres, 10.0);
  EXPECT_EQ(unitOf("m").millimetres, 1000.0);
  EXPECT_EQ(unitOf("inch").millimetres, 25.4);
  EXPECT_EQ(refusal([] { unitOf("ell"); }), "there is no unit \"ell\"; mm, cm, m and inch are known");
}
