// Whole runs of the sure path by way of the exported functions: exact developments beyond 90 degrees, blanks that do
// not depend on how the part lies, holds, and what cannot be.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <random>

#include "blank_error.hpp"
#include "developments.hpp"
#include "folded_sheets.hpp"
#include "host_kit/mirrored.hpp"
#include "host_kit/parts.hpp"
#include "part_runs.hpp"
#include "tornwalzen_ext.h"

namespace verification {
namespace {

using host_kit::HostPart;
using host_kit::WholeRun;

TornwalzenReport report() {
  TornwalzenReport r;
  r.size = sizeof r;
  EXPECT_EQ(tornwalzen_get_report(&r), 0);
  return r;
}

class SurePath : public ::testing::Test {
 protected:
  void SetUp() override {
    tornwalzen_reset();
    ASSERT_EQ(tornwalzen_set_path(1), 0);
    ASSERT_EQ(tornwalzen_set_energy_reference(1), 0);
  }
  void TearDown() override { tornwalzen_reset(); }
  WholeRun quiet(const HostPart& part, int curve = 1) {
    testing::internal::CaptureStdout();
    WholeRun run(part, curve);
    lines = testing::internal::GetCapturedStdout();
    return run;
  }
  std::string lines;
};

/// Turned by `a` about x, then by `b` about the new y (radians).
HostPart tilted(const HostPart& part, double a, double b) {
  HostPart result = part;
  for (std::size_t n = 0; n < part.knots.size(); n += 3) {
    const double x = part.knots[n], y = std::cos(a) * part.knots[n + 1] - std::sin(a) * part.knots[n + 2],
                 z = std::sin(a) * part.knots[n + 1] + std::cos(a) * part.knots[n + 2];
    result.knots[n] = std::cos(b) * x + std::sin(b) * z;
    result.knots[n + 1] = y;
    result.knots[n + 2] = -std::sin(b) * x + std::cos(b) * z;
  }
  host_kit::holdRigidMotion(result);
  return result;
}

TEST_F(SurePath, FoldedSheetsOpenExactlyHoweverTheyLie) {
  for (const FoldedSheet& folded : foldedSheets(6.0))
    for (const double tilt : {0.0, 0.9, 2.5}) {
      const WholeRun run = quiet(tilted(host_kit::fromSheet(folded.sheet), tilt, 0.6 * tilt));
      const TornwalzenReport r = report();
      EXPECT_EQ(r.converged, 1) << folded.name << " " << r.fatal_text;
      EXPECT_EQ(r.minimum_certified, 1) << folded.name;
      EXPECT_LE(r.factorizations, 2) << folded.name;
      EXPECT_LT(distance(run.RX, folded.sheet.blank), 1e-9) << folded.name << " tilted by " << tilt;
    }
}

TEST_F(SurePath, TheBlankDoesNotDependOnHowThePartLies) {
  for (const char* shape : {"square_cup", "box", "s_rail", "flanged_hole"})
    for (const int curve : {0, 1, 2}) {
      const HostPart part = host_kit::samplePart(shape, 1200);
      const std::vector<double> lying = quiet(part, curve).RX;
      EXPECT_EQ(report().converged, 1) << shape;
      for (const auto& [a, b] : {std::pair{0.785, 0.0}, {0.0, -1.4}, {2.2, 0.5}, {3.1, 3.0}}) {
        const std::vector<double> turned = quiet(tilted(part, a, b), curve).RX;
        EXPECT_EQ(report().converged, 1) << shape;
        EXPECT_LT(distance(turned, lying), 1e-4) << shape << " curve " << curve << " " << a << " " << b;
      }
    }
}

TEST_F(SurePath, ASymmetricPartHasASymmetricBlank) {
  const HostPart quarter = host_kit::readObj(std::string(TORNWALZEN_PARTS) + "/dfg_cup_quarter.obj");
  if (quarter.knots.empty()) GTEST_SKIP() << "skipped: the drawn cup is not there";
  std::vector<std::size_t> HALF, TWIN;
  const HostPart half = host_kit::mirrored(quarter, 0, HALF), whole = host_kit::mirrored(half, 1, TWIN);
  ASSERT_EQ(tornwalzen_set_tolerance_factors(0.001, 1.0), 0);
  const std::vector<double> blank = quiet(whole).RX;
  ASSERT_EQ(report().converged, 1);
  EXPECT_LE(distance(host_kit::mirrorImage(blank, TWIN), blank), 1e-9 * sizeOf(whole));
}

TEST_F(SurePath, AgreesWithTheFixedPathWhereThatIsRight) {
  for (const char* shape : {"round_cup", "box"})
    for (const int reference : {0, 1}) {
      ASSERT_EQ(tornwalzen_set_energy_reference(reference), 0);
      ASSERT_EQ(tornwalzen_set_tolerance_factors(0.001, 1.0), 0);
      const HostPart part = host_kit::samplePart(shape, 800);
      ASSERT_EQ(tornwalzen_set_path(0), 0);
      const std::vector<double> fixed = quiet(part).RX;
      ASSERT_EQ(report().converged, 1);
      EXPECT_EQ(report().path, 0);
      ASSERT_EQ(tornwalzen_set_path(1), 0);
      const WholeRun sure = quiet(part);
      EXPECT_EQ(report().converged, 1);
      EXPECT_EQ(report().path, 1);
      double farthest = 0.0;
      for (std::size_t i = 0; i < fixed.size(); ++i)
        farthest = std::max(farthest, std::fabs(fixed[i] - sure.RX[i]));
      EXPECT_LT(farthest, 0.01) << shape << " reference " << reference;
    }
}

TEST_F(SurePath, HeldUnknownsStandWhereTheHostHoldsThem) {
  const HostPart free = host_kit::samplePart("box", 600);
  HostPart symmetric = free, corners = free;
  host_kit::holdSymmetryPlanes(symmetric);
  corners.arfa.assign(corners.arfa.size(), 1);
  for (const std::size_t i : {0, 1, 40, 41, 90}) corners.arfa[i] = 0;  // more than the rigid motion: they pin
  for (const HostPart& part : {free, symmetric, corners}) {
    const WholeRun run = quiet(part);
    EXPECT_EQ(report().converged, 1) << report().fatal_text;
    for (std::size_t i = 0; i < part.arfa.size(); ++i)
      if (part.arfa[i] == 0) {
        EXPECT_EQ(run.RX[i], part.knots[3 * (i / 2) + i % 2]);
      }
  }
}

TEST_F(SurePath, PinsThatLoadTheBlankStillGiveAnEquilibrium) {
  HostPart part = host_kit::samplePart("box", 600);
  part.arfa[0] = part.arfa[1] = 0;
  const std::size_t last = part.arfa.size() - 1;
  part.arfa[last] = part.arfa[last - 1] = 0;
  const WholeRun run = quiet(part);
  const TornwalzenReport r = report();
  EXPECT_EQ(r.converged, 1) << r.fatal_text;
  EXPECT_EQ(r.laplace_factorizations, 2);  // u and v are held at different nodes
  for (std::size_t i = 0; i < run.RR.size(); ++i)
    if (part.arfa[i] != 0) {
      EXPECT_LE(std::fabs(run.RR[i]), 1.001 * r.gradient_limit);
    }
}

TEST_F(SurePath, AHoldThatNoTurnReachesPins) {
  HostPart part = host_kit::samplePart("flanged_hole", 800);
  part.arfa.assign(part.arfa.size(), 1);
  // nodes of the collar's rim: their circle is smaller in the blank
  std::size_t low = 0, high = 0;
  for (std::size_t n = 0; n < part.knots.size() / 3; ++n) {
    const double radius = std::hypot(part.knots[3 * n], part.knots[3 * n + 1]);
    if (radius > 15.5) continue;
    if (part.knots[3 * n] < part.knots[3 * low] ||
        std::hypot(part.knots[3 * low], part.knots[3 * low + 1]) > 15.5)
      low = n;
    if (part.knots[3 * n] > part.knots[3 * high] ||
        std::hypot(part.knots[3 * high], part.knots[3 * high + 1]) > 15.5)
      high = n;
  }
  part.arfa[2 * low] = part.arfa[2 * low + 1] = part.arfa[2 * high] = 0;
  const WholeRun run = quiet(part);
  const TornwalzenReport r = report();
  EXPECT_EQ(r.converged, 1) << r.fatal_text;
  EXPECT_EQ(run.RX[2 * high], part.knots[3 * high]);
  EXPECT_EQ(run.RX[2 * low + 1], part.knots[3 * low + 1]);
  EXPECT_GT(std::fabs(run.RR[2 * high]), 100.0 * r.gradient_limit);  // it takes a force
}

TEST_F(SurePath, TheArraysHoldWhatTheHeaderSays) {
  const HostPart part = host_kit::samplePart("box", 600);
  const WholeRun run = quiet(part);
  EXPECT_EQ(run.ISTAT[0], 1);
  for (const double t : run.TEMP) EXPECT_EQ(t, 0.0);
  const auto nodes = static_cast<std::size_t>(run.nodes());
  for (std::size_t n = 0; n < nodes; ++n)
    for (std::size_t i = 0; i < 2; ++i) EXPECT_EQ(run.RXA[2 * n + i], run.KNA[i * nodes + n]);
  EXPECT_EQ(run.KNZ, run.KNG);
  const TornwalzenReport r = report();
  EXPECT_LE(*std::max_element(run.RR.begin(), run.RR.end()), 1.001 * r.gradient_limit);
  const auto ne = static_cast<std::size_t>(run.triangles());
  double energy = 0.0;
  for (std::size_t e = 0; e < ne; ++e) {
    for (std::size_t c = 0; c < 5; ++c) EXPECT_EQ(run.EVAL[5 * e + c], run.ELG[c * ne + e]);
    energy += 2.0 * run.EVAL[5 * e + 4] * run.EVAL[5 * e + 1];
  }
  EXPECT_NEAR(energy, r.energy, 1e-9 * r.energy);
  EXPECT_EQ(run.progress.fractions.back(), 1.0);
  EXPECT_EQ(run.progress.times, 2);
  EXPECT_TRUE(std::is_sorted(run.progress.fractions.begin(), run.progress.fractions.end()));
  EXPECT_EQ(r.progress, 1.0);
  EXPECT_NE(lines.find(" SICHERER WEG KONVERGIERT"), std::string::npos);
  EXPECT_NE(lines.find(" START AUS MITTLERER NORMALE @"), std::string::npos);
  EXPECT_GT(r.hinged_elements, 0);
  EXPECT_EQ(r.laplace_factorizations, 1);
  EXPECT_GE(r.solves, r.factorizations);
  EXPECT_GT(r.smallest_stretch, 0.5);
  EXPECT_EQ(r.blank_inverted, 0);
}

TEST_F(SurePath, TheSameInputGivesTheSameBitsAndTheFixedPathKeepsIts) {
  const HostPart part = tilted(host_kit::samplePart("square_cup", 800), 0.4, 0.2);
  const std::uint64_t first = quiet(part).hash();
  ASSERT_EQ(tornwalzen_set_path(0), 0);
  const HostPart cup = host_kit::samplePart("round_cup", 300);
  const std::uint64_t after = quiet(cup).hash();
  tornwalzen_reset();
  ASSERT_EQ(tornwalzen_set_energy_reference(1), 0);
  EXPECT_EQ(quiet(cup).hash(), after);
  ASSERT_EQ(tornwalzen_set_path(1), 0);
  EXPECT_EQ(quiet(part).hash(), first);
}

TEST_F(SurePath, BothStartsAgreeOnAPartWithoutUndercut) {
  const HostPart part = host_kit::samplePart("square_cup", 800);
  const std::vector<double> one = quiet(part).RX;
  const double energy = report().energy;
  ASSERT_EQ(tornwalzen_set_start(1), 0);
  const std::vector<double> other = quiet(part).RX;
  EXPECT_EQ(report().converged, 1);
  EXPECT_EQ(report().flat_patch_start, 1);
  EXPECT_NEAR(report().energy, energy, 1e-8 * energy);
  EXPECT_LT(distance(other, one), 1e-4);
  EXPECT_NE(lines.find(" START AUS NORMALE EINER FLACHEN STELLE @"), std::string::npos);
}

TEST_F(SurePath, ASlenderSlitConeStartsFromAPatch) {
  // seen along its axis every triangle is steep; its mean normal is that axis all the same
  shapes::Sheet sheet;
  const double pi = 3.14159265358979323846;
  const int around = 60, along = 12;
  for (int k = 0; k <= around; ++k)
    for (int j = 0; j <= along; ++j) {
      const double slant = 40.0 + 5.0 * j, radius = 0.1 * slant, angle = 1.99 * pi * k / around;
      sheet.knots.insert(sheet.knots.end(),
                         {radius * std::cos(angle), radius * std::sin(angle), -slant * std::sqrt(0.99)});
    }
  for (int k = 0; k < around; ++k)
    for (int j = 0; j < along; ++j) {
      const int a = k * (along + 1) + j + 1, b = a + along + 1;
      sheet.inzi.insert(sheet.inzi.end(), {a, a + 1, b + 1, a, b + 1, b});
    }
  quiet(host_kit::fromSheet(sheet));
  const TornwalzenReport r = report();
  EXPECT_EQ(r.converged, 1) << r.fatal_text;
  EXPECT_EQ(r.flat_patch_start, 1);
  EXPECT_LT(r.energy, 0.01);  // it is developable but for its chords
}

TEST_F(SurePath, AStripTwistedAllTheWayRoundOpens) {
  // the edges of a twisted strip are longer than its middle by its slope squared, and the potential is the square of
  // that: a whole turn and a quarter has 5^4 times that of a quarter turn
  const auto strip = [](double degrees) {
    shapes::Sheet sheet;
    const int along = 200, across = 10;
    const double turn = degrees / 180.0 * 3.14159265358979323846;
    for (int i = 0; i <= along; ++i)
      for (int j = 0; j <= across; ++j) {
        const double t = static_cast<double>(i) / along, r = 20.0 * j / across - 10.0;
        sheet.knots.insert(sheet.knots.end(), {200.0 * t, r * std::cos(turn * t), r * std::sin(turn * t)});
      }
    for (int i = 0; i < along; ++i)
      for (int j = 0; j < across; ++j) {
        const int a = i * (across + 1) + j + 1, b = a + across + 1, c = b + 1, d = a + 1;
        if ((i + j) % 2 != 0)
          sheet.inzi.insert(sheet.inzi.end(), {a, b, c, a, c, d});
        else
          sheet.inzi.insert(sheet.inzi.end(), {a, b, d, b, c, d});
      }
    return host_kit::fromSheet(sheet);
  };
  quiet(strip(90.0));
  const double quarter = report().energy;
  for (const double degrees : {360.0, 450.0}) {
    quiet(strip(degrees));
    const TornwalzenReport r = report();
    EXPECT_EQ(r.converged, 1) << degrees << " degrees: " << r.fatal_text;
    EXPECT_EQ(r.crossings, 0) << degrees << " degrees";
    EXPECT_NEAR(r.energy / quarter / std::pow(degrees / 90.0, 4), 1.0, 0.05) << degrees << " degrees";
  }
}

TEST_F(SurePath, WhatHasNoBlankIsRefusedInASentence) {
  const auto refusal = [&](HostPart part) {
    part.arfa.assign(2 * part.knots.size() / 3, 1);
    const WholeRun run = quiet(part);
    EXPECT_EQ(report().converged, 0);
    EXPECT_EQ(report().reason, TORNWALZEN_GAVE_UP);
    EXPECT_EQ(run.ISTAT[0], 1);
    EXPECT_TRUE(run.progress.fractions.empty() || run.progress.fractions.back() < 1.0);
    EXPECT_NE(lines.find(report().fatal_text), std::string::npos);
    return std::string(report().fatal_text);
  };
  const std::vector<double> tetrahedron{0, 0, 0, 10, 0, 0, 0, 10, 0, 0, 0, 10};
  EXPECT_EQ(refusal({tetrahedron, {1, 3, 2, 1, 2, 4, 2, 3, 4, 3, 1, 4}, {}}),
            "SICHERER WEG: DIE FLAECHE HAT KEINEN RAND");
  EXPECT_EQ(refusal({tetrahedron, {1, 2, 2}, {}}),
            "SICHERER WEG: ELEMENT         1 HAT ZWEIMAL KNOTEN         2");
  EXPECT_EQ(refusal({tetrahedron, {1, 2, 3, 1, 2, 4}, {}}),
            "SICHERER WEG: KANTE         1 -         2 MIT UNEINIGEM UMLAUFSINN");
  EXPECT_EQ(refusal({{0, 0, 0, 10, 0, 0, 5, 9, 0, 5, -9, 0, 5, 0, 9}, {1, 2, 3, 2, 1, 4, 1, 2, 5}, {}}),
            "SICHERER WEG: KANTE         1 -         2 HAT MEHR ALS ZWEI ELEMENTE");
  EXPECT_EQ(refusal({{0, 0, 0, 10, 0, 0, 20, 0, 0}, {1, 2, 3}, {}}),
            "SICHERER WEG: ELEMENT OHNE FLAECHE, NUMMER  0.100000E+01");
  EXPECT_EQ(refusal(host_kit::fromSheet(sphereCap(175.0, 12))).substr(0, 50),
            "SICHERER WEG: ZU VIELE GEWENDETE ELEMENTE IM START");
  const HostPart cup = host_kit::samplePart("box", 200);
  quiet(cup);
  EXPECT_EQ(report().converged, 1) << "a refusal must leave nothing behind";
}

TEST_F(SurePath, AMeshWithoutATriangleIsRefused) {
  HostPart nothing{{0, 0, 0, 1, 0, 0}, {}, {1, 1, 1, 1}};
  quiet(nothing);
  EXPECT_EQ(report().reason, TORNWALZEN_GAVE_UP);
  EXPECT_STREQ(report().fatal_text, "SICHERER WEG: KEIN ELEMENT");
}

TEST_F(SurePath, ANodeWithoutATriangleDoesNotDisturb) {
  HostPart part = host_kit::samplePart("box", 300);
  const std::vector<double> without = quiet(part).RX;
  part.knots.insert(part.knots.end(), {500.0, 7.0, 0.0});
  part.arfa.insert(part.arfa.end(), {1, 1});
  const WholeRun run = quiet(part);
  EXPECT_EQ(report().converged, 1) << report().fatal_text;
  EXPECT_EQ(run.RX[run.RX.size() - 2], 500.0);
  for (std::size_t i = 0; i < without.size(); ++i) EXPECT_NEAR(run.RX[i], without[i], 1e-9);
}

TEST_F(SurePath, TheGeometricDensityAndTheBlankAsReferenceConverge) {
  for (const int curve : {10, 1})
    for (const int reference : {0, 1}) {
      ASSERT_EQ(tornwalzen_set_energy_reference(reference), 0);
      const WholeRun run = quiet(host_kit::samplePart("flanged_hole", 600), curve);
      const TornwalzenReport r = report();
      EXPECT_EQ(r.converged, 1) << curve << " " << reference << " " << r.fatal_text;
      EXPECT_EQ(r.minimum_certified, 1);
      EXPECT_EQ(lines.find(" ENERGIEBEZUG AB JETZT DIE PLATINE @") != std::string::npos, reference == 0);
      for (std::size_t i = 0; i < run.RR.size(); ++i)
        EXPECT_LE(std::fabs(run.RR[i]), curve == 10 ? 1e9 : 1.001 * r.gradient_limit);
    }
}

TEST_F(SurePath, TheEnergyOverTheBlankGivesUpWhereATriangleVanishes) {
  ASSERT_EQ(tornwalzen_set_energy_reference(0), 0);
  quiet(host_kit::fromSheet(sphereCap(150.0, 14)));
  const TornwalzenReport r = report();
  EXPECT_EQ(r.reason, TORNWALZEN_GAVE_UP);
  EXPECT_EQ(std::string(r.fatal_text).substr(0, 55),
            "SICHERER WEG: ELEMENT VERSCHWINDET IN DER PLATINE, S-MI");
}

}  // namespace
}  // namespace verification
