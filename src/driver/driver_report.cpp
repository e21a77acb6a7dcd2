// Composition of the lines of driver and line search. The spelling of the texts is part of the interface.
#include "driver/driver_report.hpp"

#include "ground/messages.hpp"
#include "ground/progress.hpp"

namespace tornwalzen {

void openProgress(Analysis& run, const LoadPath& path) {
  openScale(run.progress, lambdaEnd);
  reportFraction(run.progress, path.lambda);
}

void reportIncrement(Analysis& run, const LoadPath& path) {
  printMessage(run, MessageLine().text(" @"));
  printMessage(run, MessageLine().text(" START INKRMEMENT ").integer(path.k, 5));
  printMessage(
      run,
      MessageLine().text(" FORTSCHRITT/SCHRITTWEITE ").fixed(path.lambda, 10, 6).fixed(path.dlam, 10, 6));
  reportFraction(run.progress, path.lambda);
  reportInformation(run.progress, MessageLine()
                                      .text(" Tornwalzen - Inverse Projektion :    ")
                                      .text(" Fortschritt / Schrittweite ")
                                      .fixed(path.lambda * 100.0, 7, 2)
                                      .text(" %%  ")
                                      .fixed(path.dlam * 100.0, 7, 2)
                                      .text(" %%")
                                      .nul()
                                      .buffer());
  reportProcessorTime(run.progress);
}

void reportIteration(Analysis& run, double EN) {
  printMessage(run, MessageLine()
                        .text("MAX.GRAD, LS-FAK, EN")
                        .exponent(run.maxgrad, 13, 6)
                        .exponent(run.lsfak, 13, 6)
                        .exponent(EN, 13, 6));
}

void reportRepeat(Analysis& run) {
  printMessage(run, MessageLine().text("INKREMENT WIRD WIEDERHOLT @"));
}

void reportMinimumStep(Analysis& run) {
  static const char text[] = " KEINE KONVERGENZ, MINIMLAE SCHRITTWEITE @";
  noteFatalText(run.record, text);
  printMessage(run, MessageLine().text(text));
}

void reportDegenerateFullStep(Analysis& run) {
  printMessage(run, MessageLine().text(" DEG. ELEMENTE BEIM VOLLEN LINE-SEARCH@"));
}

void reportDegenerateHalving(Analysis& run) {
  printMessage(run, MessageLine().text(" DEG. ELEMENTE IM LINE-SEARCH@"));
}

}  // namespace tornwalzen
