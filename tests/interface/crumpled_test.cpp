// Small grids crumpled at random, up to what no sheet can be: whatever comes of them is told truly. A run that calls its
// blank right has one that is finite, turned over nowhere and exactly where it is held; one that gives up says why in one
// of the sentences, each of which some of these grids bring about.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <random>
#include <string>

#include "handle.hpp"
#include "tornwalzen_ext.h"

namespace extension {
namespace {

/// Random numbers that are the same everywhere.
class Draw {
 public:
  explicit Draw(unsigned seed) : engine_(seed) {}
  double within(double a, double b) { return a + (b - a) * (static_cast<double>(engine_()) / 4294967296.0); }
  int below(int n) { return static_cast<int>(engine_() % static_cast<unsigned>(n)); }
  bool coin() { return below(2) == 1; }

 private:
  std::mt19937 engine_;
};

struct Kind {
  int mostSquares;                     // a side
  double least, most;                  // heights, as powers of ten (mm)
  double mostShift;                    // of the nodes in the plane (mm), whose distance is 10
  double smallest = 0.0;               // the grid is shrunk by up to this power of ten
  bool press = false, needle = false;  // are two nodes of an edge drawn nearly together?
};

constexpr Kind crumpled{6, -1.0, 3.0, 60.0}, tiny{14, -1.0, 1.5, 12.0, -40.0},
    pressed{6, -1.0, 3.0, 60.0, 0.0, true}, needled{4, -1.0, 0.7, 1.0, 0.0, false, true};

/// Draws two nodes of an edge together, by up to all digits that there are; half of the parts are flat.
void drawANeedle(Draw& draw, int nx, int ny, std::vector<double>& knots) {
  const int i = draw.below(nx - 1), j = draw.below(ny), n = j * nx + i;
  const double apart = std::pow(10.0, draw.within(-22.0, -8.0));  // mm
  for (int axis = 0; axis < 3; ++axis) {
    const double moved = knots[static_cast<std::size_t>(3 * n + axis)];
    for (std::size_t k = static_cast<std::size_t>(axis); k < knots.size(); k += 3) knots[k] -= moved;
    knots[static_cast<std::size_t>(3 * (n + 1) + axis)] = axis == 0 ? apart : 0.0;
  }
  if (draw.coin())
    for (std::size_t k = 2; k < knots.size(); k += 3) knots[k] = 0.0;
}

HostPart crumpledGrid(Draw& draw, const Kind& kind) {
  HostPart part;
  const int nx = 2 + draw.below(kind.mostSquares), ny = 2 + draw.below(kind.mostSquares);
  const double size = kind.smallest < 0.0 ? std::pow(10.0, draw.within(kind.smallest, -4.0)) : 1.0;
  const double lift = std::pow(10.0, draw.within(kind.least, kind.most));
  const double shift = draw.coin() ? draw.within(0.0, kind.mostShift) : 0.0;
  for (int j = 0; j < ny; ++j)
    for (int i = 0; i < nx; ++i) {
      part.knots.push_back(size * (10.0 * i + draw.within(-shift, shift)));
      part.knots.push_back(size * (10.0 * j + draw.within(-shift, shift)));
      part.knots.push_back(size * draw.within(-lift, lift));
    }
  if (kind.needle) drawANeedle(draw, nx, ny, part.knots);
  for (int j = 0; j + 1 < ny; ++j)
    for (int i = 0; i + 1 < nx; ++i) {
      const int a = j * nx + i + 1, c = a + nx;
      for (const int node : {a, a + 1, c + 1, a, c + 1, c}) part.inzi.push_back(node);
    }
  part.arfa.assign(2 * part.knots.size() / 3, 1);
  const int unknowns = static_cast<int>(part.arfa.size());
  const int holds = draw.below(4);
  if (holds == 1) part.arfa[0] = part.arfa[1] = part.arfa[part.arfa.size() - 1] = 0;
  for (int k = holds == 2 ? 6 : holds == 3 ? 3 : 0; k > 0; --k)
    part.arfa[static_cast<std::size_t>(draw.below(unknowns))] = 0;
  return part;
}

TornwalzenPress anyPress(Draw& draw) {
  TornwalzenPress press{};
  press.size = sizeof press;
  press.thickness_mm = draw.within(0.1, 3.0);
  if (draw.coin()) {
    press.friction_punch = draw.coin() ? draw.within(0.0, 1.0) : 0.0;
    press.friction_die = draw.within(0.0, 1.0);
  }
  if (draw.coin()) {
    press.binder_force_n = std::pow(10.0, draw.within(1.0, 6.0));
    press.flange_of_rim = 1;
  }
  press.bending = draw.below(4);
  press.edge = draw.below(3);
  press.mesh_side = draw.below(3);
  press.punch_above = draw.below(2);
  if (draw.coin()) {
    press.r0 = draw.within(0.5, 3.0), press.r45 = draw.within(0.5, 3.0), press.r90 = draw.within(0.5, 3.0);
    press.rolling_angle_deg = draw.within(0.0, 90.0);
  }
  return press;
}

void choose(const Handle& handle, Draw& draw, const Kind& kind) {
  constexpr std::int32_t materials[] = {1, 0, 2, 10};
  EXPECT_EQ(tornwalzen_analysis_set_material(handle.get(), materials[draw.below(kind.press ? 3 : 4)]), 0);
  EXPECT_EQ(tornwalzen_analysis_set_energy_reference(handle.get(), draw.below(2)), 0);
  EXPECT_EQ(tornwalzen_analysis_set_start(handle.get(), draw.below(2)), 0);
  EXPECT_EQ(tornwalzen_analysis_set_path(handle.get(), 1), 0);
  if (!kind.press) return;
  const TornwalzenPress press = anyPress(draw);
  EXPECT_EQ(tornwalzen_analysis_set_press(handle.get(), &press), 0);
  EXPECT_EQ(tornwalzen_analysis_set_model(handle.get(), 1), 0);
}

void expectARightBlank(const Handle& handle, const HostPart& part, const std::string& name) {
  const double* const blank = tornwalzen_analysis_blank(handle.get());
  const std::int32_t* const triangles = tornwalzen_analysis_oriented_triangles(handle.get());
  const TornwalzenReport report = reportOf(handle);
  EXPECT_LE(report.last_gradient, report.gradient_limit) << name;
  EXPECT_EQ(report.blank_inverted + report.not_finite, 0) << name;
  EXPECT_EQ(report.progress, 1.0) << name;
  for (std::size_t i = 0; i < part.arfa.size(); ++i) {
    EXPECT_TRUE(std::isfinite(blank[i])) << name;
    if (part.arfa[i] == 0) {
      EXPECT_EQ(blank[i], part.knots[i / 2 * 3 + i % 2]) << name;
    }
  }
  for (std::int32_t e = 0; e < part.elements(); ++e) {
    const double *a = blank + 2 * (triangles[3 * e] - 1), *b = blank + 2 * (triangles[3 * e + 1] - 1),
                 *c = blank + 2 * (triangles[3 * e + 2] - 1);
    EXPECT_GT((b[0] - a[0]) * (c[1] - a[1]) - (b[1] - a[1]) * (c[0] - a[0]), 0.0) << name << ", " << e + 1;
  }
}

/// The sentence without the number at its end.
std::string sentenceOf(const TornwalzenReport& report) {
  std::string text = report.fatal_text;
  text = text.substr(0, text.find_first_of(",.0123456789"));
  return text.substr(0, text.find_last_not_of(' ') + 1);
}

/// How often each sentence came, "" for a blank that was found.
using Ends = std::map<std::string, int>;

void crumple(unsigned seed, const Kind& kind, Ends& ends) {
  Draw draw(seed);
  const HostPart part = crumpledGrid(draw, kind);
  const std::string name = "grid " + std::to_string(seed);
  const Handle handle = newHandle();
  ASSERT_EQ(take(handle, part), 0) << name;
  choose(handle, draw, kind);
  ASSERT_EQ(tornwalzen_analysis_run(handle.get()), 0) << name;
  const TornwalzenReport report = reportOf(handle);
  ++ends[sentenceOf(report)];
  if (report.converged == 1) {
    EXPECT_EQ(report.reason, TORNWALZEN_CONVERGED) << name;
    EXPECT_STREQ(report.fatal_text, "") << name;
    expectARightBlank(handle, part, name);
  } else {
    EXPECT_EQ(report.reason, TORNWALZEN_GAVE_UP) << name << ": " << report.fatal_text;
    EXPECT_STRNE(report.fatal_text, "") << name;
    EXPECT_LT(report.progress, 1.0) << name;
  }
  if (!kind.press) return;
  TornwalzenPressResult result{};
  result.size = sizeof result;
  ASSERT_EQ(tornwalzen_analysis_press_result(handle.get(), &result), 0) << name;
  if (report.converged == 1) {
    EXPECT_GE(result.exponent, 1.0) << name;
    EXPECT_LE(result.exponent, 2.0) << name;
    EXPECT_GE(result.thickest_mm, result.thinnest_mm) << name;
    EXPECT_GT(result.thinnest_mm, 0.0) << name;
  } else {
    EXPECT_EQ(result.loads_held, 0) << name;
  }
}

const std::string sure = "SICHERER WEG: ", foundOne;

void expectEach(Ends ends, const std::vector<std::string>& sentences) {
  for (const std::string& sentence : sentences) EXPECT_GT(ends[sentence], 0) << sentence;
}

TEST(CrumpledGrid, HasABlankOrASentence) {
  Ends ends;
  for (unsigned seed = 0; seed < 1200; ++seed) crumple(seed, crumpled, ends);
  crumple(2336, crumpled, ends);  // its holds lie too close in the equilibrium: they pin from then on
  for (unsigned seed = 0; seed < 600; ++seed) crumple(seed, tiny, ends);
  expectEach(ends, {foundOne, sure + "ZU VIELE GEWENDETE ELEMENTE IM START",
                    sure + "ELEMENT VERSCHWINDET IN DER PLATINE", sure + "KEINE KONVERGENZ",
                    sure + "KEIN ABSTIEG MEHR", sure + "TANGENTE NICHT ZERLEGBAR"});
}

TEST(CrumpledGrid, WithANeedleHasABlankOrASentence) {
  Ends ends;
  for (unsigned seed = 0; seed < 1800; ++seed) crumple(seed, needled, ends);
  crumple(3169, needled, ends);  // converges past a tangent without a factor, whose text is forgotten
  expectEach(ends, {foundOne, sure + "ELEMENT OHNE FLAECHE", sure + "ELEMENTE ZU SCHMAL FUER DEN START",
                    sure + "ENERGIE ODER GRADIENT IST KEINE ZAHL", sure + "KEINE KONVERGENZ",
                    sure + "TANGENTE NICHT ZERLEGBAR"});
}

TEST(CrumpledGrid, InThePressHasABlankOrASentence) {
  Ends ends;
  for (unsigned seed = 0; seed < 250; ++seed) crumple(seed, pressed, ends);
  // one whose blank runs away, a slow one without loads, last members that hold loosely alone
  for (const unsigned seed : {269u, 424u, 2257u, 2461u}) crumple(seed, pressed, ends);
  expectEach(ends, {foundOne, sure + "ZU VIELE GEWENDETE ELEMENTE IM START",
                    sure + "ELEMENT VERSCHWINDET IN DER PLATINE", "PRESSE: NIEDERHALTER OHNE FLANSCH"});
}

}  // namespace
}  // namespace extension
