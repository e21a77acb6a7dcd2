// Anisotropy, energy reference, tolerances, the reset, the version, and the texts of the codes.
#include <cmath>
#include <cstring>
#include <limits>
#include <string>

#include "driver/load_path.hpp"
#include "ground/refusal.hpp"
#include "host_kit/parts.hpp"
#include "material/equivalent_strain.hpp"
#include "refusals.hpp"

namespace extension {

using namespace host_kit;
namespace {

using tornwalzen::run;

using Options = ExtensionTest;

TEST_F(Options, RefusesAnisotropiesThatAreNotPositiveAndFinite) {
  ASSERT_EQ(tornwalzen_set_normal_anisotropy(1.4), 0);
  for (const auto& [r, text] : {std::pair{0.0, "0"},
                                {-1.5, "-1.5"},
                                {std::numeric_limits<double>::infinity(), "inf"},
                                {std::numeric_limits<double>::quiet_NaN(), "nan"}})
    expectRefused(
        [r = r] { return tornwalzen_set_normal_anisotropy(r); }, TORNWALZEN_BAD_ANISOTROPY,
        std::string("die senkrechte Anisotropie r ist ") + text + ", sie muss positiv und endlich sein",
        std::string("the normal anisotropy r is ") + text + ", it must be positive and finite");
  EXPECT_EQ(run.options.anisotropy, 1.4);
}

TEST_F(Options, RefusesEnergyReferencesOtherThanBlankAndPart) {
  ASSERT_EQ(tornwalzen_set_energy_reference(1), 0);
  for (const int reference : {-1, 2})
    expectRefused(
        [=] { return tornwalzen_set_energy_reference(reference); }, TORNWALZEN_BAD_REFERENCE,
        "der Energiebezug ist " + std::to_string(reference) + ", erlaubt sind 0 (Platine) und 1 (Teil)",
        "the energy reference is " + std::to_string(reference) + ", allowed are 0 (blank) and 1 (part)");
  EXPECT_TRUE(run.options.partReference);
}

TEST_F(Options, RefusesPathsAndStartsThatThereAreNot) {
  ASSERT_EQ(tornwalzen_set_path(1), 0);
  ASSERT_EQ(tornwalzen_set_start(1), 0);
  for (const int other : {-1, 2}) {
    const std::string value = std::to_string(other);
    expectRefused([=] { return tornwalzen_set_path(other); }, TORNWALZEN_BAD_PATH,
                  "der Weg ist " + value + ", erlaubt sind 0 (fest) und 1 (sicher)",
                  "the path is " + value + ", allowed are 0 (fixed) and 1 (sure)");
    expectRefused([=] { return tornwalzen_set_start(other); }, TORNWALZEN_BAD_START,
                  "der Start ist " + value + ", erlaubt sind 0 (mittlere Normale) und 1 (flache Stelle)",
                  "the start is " + value + ", allowed are 0 (mean normal) and 1 (flat patch)");
  }
  EXPECT_TRUE(run.options.surePath);
  EXPECT_TRUE(run.options.patchStart);
  ASSERT_EQ(tornwalzen_reset(), 0);
  EXPECT_FALSE(run.options.surePath);
  EXPECT_FALSE(run.options.patchStart);
}

TEST_F(Options, RefusesToleranceFactorsOutsideZeroToOne) {
  ASSERT_EQ(tornwalzen_set_tolerance_factors(0.5, 0.25), 0);
  expectRefused([] { return tornwalzen_set_tolerance_factors(0.0, 1.0); }, TORNWALZEN_BAD_TOLERANCE,
                "Toleranzfaktor 1 ist 0, er muss groesser als 0 und hoechstens 1 sein",
                "tolerance factor 1 is 0, it must be above 0 and at most 1");
  expectRefused([] { return tornwalzen_set_tolerance_factors(1.0, 1.5); }, TORNWALZEN_BAD_TOLERANCE,
                "Toleranzfaktor 2 ist 1.5, er muss groesser als 0 und hoechstens 1 sein",
                "tolerance factor 2 is 1.5, it must be above 0 and at most 1");
  expectRefused(
      [] { return tornwalzen_set_tolerance_factors(1.0, std::numeric_limits<double>::quiet_NaN()); },
      TORNWALZEN_BAD_TOLERANCE, "Toleranzfaktor 2 ist nan, er muss groesser als 0 und hoechstens 1 sein",
      "tolerance factor 2 is nan, it must be above 0 and at most 1");
  EXPECT_EQ(run.options.finalTolerance, 0.5);
  EXPECT_EQ(run.options.pathTolerance, 0.25);
}

TEST_F(Options, TheFirstToleranceFactorIsThatOfTheFinalIncrement) {
  ASSERT_EQ(tornwalzen_set_tolerance_factors(0.5, 0.25), 0);
  EXPECT_EQ(tornwalzen::toleranceFactor(tornwalzen::run, 1.0), 0.5);
  EXPECT_EQ(tornwalzen::toleranceFactor(tornwalzen::run, 0.999), 0.25);
}

TEST_F(Options, WeightsOfTheIsotropicStrainAreTheBuiltInOnesToTheBit) {
  const tornwalzen::StrainWeights weights(1.0);
  EXPECT_EQ(weights.sumWeight, 0.75);
  EXPECT_EQ(weights.differenceWeight, 0.25);
  EXPECT_EQ(weights.strainFactor, 1.154700517654419);
  EXPECT_EQ(weights.rateFactor, 0.5773502588272095);
}

TEST_F(Options, UniaxialTensionGivesItsOwnStrainForEveryAnisotropy) {
  // under uniaxial stress e2 = -r/(1+r)·e1, and the equivalent strain is e1
  for (const double r : {0.5, 1.0, 1.6, 3.0}) {
    const tornwalzen::StrainWeights w(r);
    const double e1 = 0.3, e2 = -r / (1.0 + r) * e1, s = e1 + e2, t = e1 - e2;
    const double strain = w.strainFactor * std::sqrt(w.sumWeight * s * s + w.differenceWeight * t * t);
    EXPECT_NEAR(strain, e1, 2e-8) << "2/sqrt(3) is held in single precision";
  }
}

TEST_F(Options, ResetClearsALeftoverElementErrorWord) {
  const HostPart part = samplePart("round_cup", 200);
  tornwalzen::run.ierrel = tornwalzen::errorSet;
  testing::internal::CaptureStdout();
  const WholeRun blocked(part, 1);
  EXPECT_NE(blocked.progress.fractions.back(), 1.0)
      << "the word of an earlier run ends every run after its development";
  ASSERT_EQ(tornwalzen_reset(), 0);
  const WholeRun free(part, 1);
  testing::internal::GetCapturedStdout();
  EXPECT_EQ(free.progress.fractions.back(), 1.0);
}

TEST_F(Options, ResetReturnsToTheStateAfterLoading) {
  const std::string before = libraryState();
  const double strain[3] = {0.0, 0.1, 0.5}, stress[3] = {100.0, 200.0, 300.0};
  ASSERT_EQ(tornwalzen_set_flow_curve(2, 3, strain, stress), 0);
  ASSERT_EQ(tornwalzen_set_normal_anisotropy(2.0), 0);
  ASSERT_EQ(tornwalzen_set_energy_reference(1), 0);
  ASSERT_EQ(tornwalzen_set_tolerance_factors(0.1, 0.1), 0);
  testing::internal::CaptureStdout();
  WholeRun(samplePart("plate", 50), 2);
  testing::internal::GetCapturedStdout();
  EXPECT_NE(libraryState(), before);
  ASSERT_EQ(tornwalzen_reset(), 0);
  EXPECT_EQ(tornwalzen::run.options.anisotropy, 1.0);
  EXPECT_EQ(tornwalzen::run.nkno, 0);
  EXPECT_EQ(tornwalzen::run.npkt, 0);
  EXPECT_EQ(tornwalzen::run.record.end, tornwalzen::RunEnd::noRun);
}

/// Calls every function from within the progress handler.
struct Intruder {
  int set[7] = {}, report = 1, reason = -1;
  static void call(void* self, const TornwalzenProgress*) {
    auto& intruder = *static_cast<Intruder*>(self);
    intruder.set[0] = tornwalzen_set_flow_curve(1, 0, nullptr, nullptr);
    intruder.set[1] = tornwalzen_set_normal_anisotropy(2.0);
    intruder.set[2] = tornwalzen_set_energy_reference(1);
    intruder.set[3] = tornwalzen_set_tolerance_factors(0.1, 0.1);
    intruder.set[4] = tornwalzen_reset();
    intruder.set[5] = tornwalzen_set_path(1);
    intruder.set[6] = tornwalzen_set_start(1);
    TornwalzenReport report;
    report.size = sizeof report;
    intruder.report = tornwalzen_get_report(&report);
    intruder.reason = report.reason;
  }
};

TEST_F(Options, NothingIsSetWhileAnAnalysisRuns) {
  const HostPart part = samplePart("round_cup", 200);
  testing::internal::CaptureStdout();
  WholeRun first(part, 1);
  const std::vector<double> blank = first.RX;
  Intruder intruder;
  PlivaneSetProgressHdlr(&Intruder::call, &intruder);
  first.analyse();
  testing::internal::GetCapturedStdout();
  for (const int code : intruder.set) EXPECT_EQ(code, TORNWALZEN_BUSY);
  EXPECT_EQ(intruder.report, 0);
  EXPECT_EQ(intruder.reason, TORNWALZEN_RUNNING);
  EXPECT_EQ(first.RX, blank);
  EXPECT_STREQ(tornwalzen_error_text(TORNWALZEN_BUSY, 0),
               "waehrend OSMAIN laeuft, kann nichts gesetzt werden");
  EXPECT_STREQ(tornwalzen_error_text(TORNWALZEN_BUSY, 1), "nothing can be set while OSMAIN runs");
  EXPECT_EQ(tornwalzen_reset(), 0) << "allowed again";
}

TEST_F(Options, TextsOfUnknownCodesAndOfOtherRefusals) {
  EXPECT_STREQ(tornwalzen_error_text(0, 0), "kein Fehler");
  EXPECT_STREQ(tornwalzen_error_text(0, 1), "no error");
  EXPECT_STREQ(tornwalzen_error_text(-99, 0), "unbekannter Fehlercode -99");
  EXPECT_STREQ(tornwalzen_error_text(-99, 7), "unknown error code -99");
  EXPECT_STREQ(tornwalzen_error_text(TORNWALZEN_BAD_ANISOTROPY, 1),
               "the normal anisotropy r is x, it must be positive and finite");
  EXPECT_STREQ(tornwalzen_error_text(TORNWALZEN_BAD_TOLERANCE, 0),
               "Toleranzfaktor n ist x, er muss groesser als 0 und hoechstens 1 sein");
  for (int code = TORNWALZEN_BAD_SELECTOR_OF_LAW; code < 0; ++code) {
    EXPECT_EQ(std::strncmp(tornwalzen_error_text(code, 1), "unknown", 7) == 0, false) << code;
    EXPECT_EQ(std::strncmp(tornwalzen_error_text(code, 0), "unbekannt", 9) == 0, false) << code;
  }
}

TEST_F(Options, TextsOfPartsThatAreNoSheet) {
  const struct {
    int code;
    const char *german, *english;
  } texts[] = {
      {TORNWALZEN_CLOSED_SURFACE,
       "das Teil ist eine geschlossene Flaeche aus 7 Dreiecken: ohne Rand keine Platine",
       "the part is a closed surface of 7 triangles: without a boundary there is no blank"},
      {TORNWALZEN_SEVERAL_PIECES,
       "das Teil besteht aus 7 getrennten Stuecken, Dreieck 3 liegt nicht im groessten",
       "the part consists of 7 separate pieces, triangle 3 is not in the largest one"},
      {TORNWALZEN_HANDLE, "das Teil hat Henkel (7): es laesst sich nicht in die Ebene legen",
       "the part has handles (7): it cannot be laid into the plane"},
      {TORNWALZEN_PINCHED_NODE, "in Knoten 3 haengt das Blech nur an einem Punkt zusammen (solche Knoten: 7)",
       "at node 3 the sheet hangs together by a point alone (nodes like this: 7)"},
      {TORNWALZEN_EDGE_OF_THREE, "die Kante zwischen den Knoten 3 und 7 gehoert zu mehr als zwei Dreiecken",
       "the edge between nodes 3 and 7 belongs to more than two triangles"},
      {TORNWALZEN_MIXED_ORIENTATION,
       "die beiden Dreiecke an der Kante zwischen den Knoten 3 und 7 sind verschieden herum orientiert",
       "the two triangles at the edge between nodes 3 and 7 are turned opposite ways"},
      {TORNWALZEN_REPEATED_NODE, "Dreieck 3 nennt den Knoten 7 zweimal", "triangle 3 names node 7 twice"},
  };
  for (const auto& text : texts) {
    tornwalzen::refuse(run.refusal, text.code, 3, 7.0);
    EXPECT_STREQ(tornwalzen_error_text(text.code, 0), text.german);
    EXPECT_STREQ(tornwalzen_error_text(text.code, 1), text.english);
  }
}

TEST_F(Options, VersionHasThreeNumbers) {
  int major = -1, minor = -1, patch = -1;
  EXPECT_EQ(std::sscanf(tornwalzen_version(), "%d.%d.%d", &major, &minor, &patch), 3);
}

}  // namespace
}  // namespace extension
