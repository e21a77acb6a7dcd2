// Composition of the sure path's lines.
#include "driver/sure_report.hpp"

#include <cmath>

#include "ground/messages.hpp"
#include "ground/progress.hpp"
#include "tornwalzen_ext.h"

namespace tornwalzen {

namespace {

constexpr double endOfScale = 1.0;
constexpr double startShare = 0.2;  // of the scale: reached when the start stands

/// The share of the path that a run of so many iterations has behind it: half of what was left at each.
double shareBehind(Int iterations) {
  return 1.0 - (1.0 - startShare) * std::pow(0.5, iterations);
}

void inform(Analysis& run, double share, const char* what, double gradient, double smallest) {
  reportFraction(run.progress, share);
  reportInformation(run.progress, MessageLine()
                                      .text(" Tornwalzen - Sicherer Weg :  ")
                                      .text(what)
                                      .text("  Residuum ")
                                      .exponent(gradient, 11, 4)
                                      .text("  kleinster Singulaerwert ")
                                      .fixed(smallest, 8, 4)
                                      .nul()
                                      .buffer());
}

}  // namespace

void openSureProgress(Analysis& run) {
  openScale(run.progress, endOfScale);
  reportFraction(run.progress, 0.0);
}

void reportSureStart(Analysis& run, bool flatPatch, Int hinged, Int inverted, double smallest) {
  printMessage(run, MessageLine().text(flatPatch ? " START AUS NORMALE EINER FLACHEN STELLE @"
                                                 : " START AUS MITTLERER NORMALE @"));
  printMessage(run, MessageLine()
                        .text(" DREHUNGEN UEBER KANTEN, GEWENDET, S-MIN ")
                        .integer(hinged, 9)
                        .integer(inverted, 9)
                        .exponent(smallest, 13, 6));
  const double share = startShare;
  reportFraction(run.progress, share);
  reportProcessorTime(run.progress);
}

void reportSureIteration(Analysis& run, Int iteration, double theta, bool curved, double length,
                         double gradient, double smallest, double energy) {
  printMessage(run, MessageLine()
                        .text(" NEWTON ")
                        .integer(iteration, 3)
                        .text(theta == 0.0 ? " GENAU " : " MILD  ")
                        .text(curved ? "GEDREHT" : "GERADE ")
                        .fixed(length, 8, 4)
                        .exponent(gradient, 13, 6)
                        .exponent(smallest, 13, 6)
                        .exponent(energy, 13, 6));
  inform(run, shareBehind(iteration), "Newton", gradient, smallest);
}

bool reportSureStep(Analysis& run, Int iteration, double gradient) {
  return hostContinues(run.progress,
                       {RunPhase::newton, 1.0 - std::pow(0.5, iteration), 0, iteration, gradient});
}

void reportSureChord(Analysis& run, double gradient, double smallest, double energy) {
  printMessage(run, MessageLine()
                        .text(" SEHNENSCHRITT                    ")
                        .exponent(gradient, 13, 6)
                        .exponent(smallest, 13, 6)
                        .exponent(energy, 13, 6));
}

void reportSureThreshold(Analysis& run, double s0) {
  printMessage(run, MessageLine().text(" SCHWELLE DER DEHNUNGEN GESENKT AUF ").exponent(s0, 13, 6));
}

void reportSureReference(Analysis& run) {
  printMessage(run, MessageLine().text(" ENERGIEBEZUG AB JETZT DIE PLATINE @"));
}

void reportSureEnd(Analysis& run, bool converged, Int factorizations, Int solves, double gradient,
                   double smallest) {
  printMessage(run, MessageLine()
                        .text(converged ? " SICHERER WEG KONVERGIERT, ZERLEGUNGEN, LOESUNGEN "
                                        : " SICHERER WEG BEENDET, ZERLEGUNGEN, LOESUNGEN ")
                        .integer(factorizations, 5)
                        .integer(solves, 5));
  if (converged) {
    inform(run, endOfScale, "Ende", gradient, smallest);
    reportProcessorTime(run.progress);
  }
  reportProcessorTime(run.progress);
}

void reportSureTopology(Analysis& run, Int code, Int index, double value) {
  struct Fault {
    Int code;
    const char *before, *between, *after;  // around index and value, of which null leaves one out
  };
  static constexpr Fault faults[] = {
      {TORNWALZEN_BAD_COUNT, " SICHERER WEG: KEIN ELEMENT", nullptr, nullptr},
      {TORNWALZEN_REPEATED_NODE, " SICHERER WEG: ELEMENT", " HAT ZWEIMAL KNOTEN", ""},
      {TORNWALZEN_EDGE_OF_THREE, " SICHERER WEG: KANTE", " -", " HAT MEHR ALS ZWEI ELEMENTE"},
      {TORNWALZEN_MIXED_ORIENTATION, " SICHERER WEG: KANTE", " -", " MIT UNEINIGEM UMLAUFSINN"},
      {TORNWALZEN_SEVERAL_PIECES, " SICHERER WEG: ELEMENT", " GEHOERT NICHT DAZU, TEILE:", ""},
      {TORNWALZEN_PINCHED_NODE, " SICHERER WEG: KNOTEN", " HAELT DAS BLECH ALLEIN, SOLCHE:", ""},
      {TORNWALZEN_CLOSED_SURFACE, " SICHERER WEG: DIE FLAECHE HAT KEINEN RAND", nullptr, nullptr},
      {TORNWALZEN_HANDLE, " SICHERER WEG: DIE FLAECHE HAT EINEN HENKEL", nullptr, nullptr}};
  for (const Fault& fault : faults) {
    if (fault.code != code) continue;
    MessageLine line;
    line.text(fault.before);
    if (fault.between != nullptr)
      line.integer(index, 10).text(fault.between).integer(static_cast<Int>(value), 10).text(fault.after);
    line.text(" @").nul();
    run.record.refusal = code;
    noteFatalText(run.record, line.buffer());
    printMessage(run, line);
  }
}

void reportSureRefusal(Analysis& run, const char* text, double value) {
  MessageLine line;
  line.text(text);
  if (std::isfinite(value)) line.text(" ").exponent(value, 13, 6);
  line.text(" @").nul();
  noteFatalText(run.record, line.buffer());
  printMessage(run, line);
}

}  // namespace tornwalzen
