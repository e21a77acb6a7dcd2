// Composition of the lines of driver and line search. The spelling of the texts is part of the interface.
#include "driver/driver_report.hpp"

#include "ground/messages.hpp"
#include "ground/progress.hpp"
#include "ground/run_record.hpp"

namespace tornwalzen {

void openProgress(const LoadPath& path) {
  inipgr(&lambdaEnd);
  progre(&path.lambda);
}

void reportIncrement(const LoadPath& path) {
  printMessage(MessageLine().text(" @"));
  printMessage(MessageLine().text(" START INKRMEMENT ").integer(path.k, 5));
  printMessage(
      MessageLine().text(" FORTSCHRITT/SCHRITTWEITE ").fixed(path.lambda, 10, 6).fixed(path.dlam, 10, 6));
  progre(&path.lambda);
  proinf(MessageLine()
             .text(" Tornwalzen - Inverse Projektion :    ")
             .text(" Fortschritt / Schrittweite ")
             .fixed(path.lambda * 100.0, 7, 2)
             .text(" %%  ")
             .fixed(path.dlam * 100.0, 7, 2)
             .text(" %%")
             .nul()
             .buffer(),
         messageLength);
  procpu();
}

void reportIteration(double EN) {
  printMessage(MessageLine()
                   .text("MAX.GRAD, LS-FAK, EN")
                   .exponent(run.maxgrad, 13, 6)
                   .exponent(run.lsfak, 13, 6)
                   .exponent(EN, 13, 6));
}

void reportRepeat() {
  printMessage(MessageLine().text("INKREMENT WIRD WIEDERHOLT @"));
}

void reportMinimumStep() {
  static const char text[] = " KEINE KONVERGENZ, MINIMLAE SCHRITTWEITE @";
  noteFatalText(text);
  printMessage(MessageLine().text(text));
}

void reportDegenerateFullStep() {
  printMessage(MessageLine().text(" DEG. ELEMENTE BEIM VOLLEN LINE-SEARCH@"));
}

void reportDegenerateHalving() {
  printMessage(MessageLine().text(" DEG. ELEMENTE IM LINE-SEARCH@"));
}

}  // namespace tornwalzen
