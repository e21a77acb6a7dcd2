// Composition of the press path's lines.
#include "driver/press_report.hpp"

#include "ground/messages.hpp"

namespace tornwalzen {

void reportPressWork(Analysis& run, double exponent, bool held, double gradient, double smallest) {
  printMessage(run, MessageLine()
                        .text(" PRESSE: UMFORMARBEIT, EXPONENT ")
                        .fixed(exponent, 7, 4)
                        .text(held ? " HAELT " : " HAELT NICHT ")
                        .exponent(gradient, 13, 6)
                        .exponent(smallest, 13, 6));
}

void reportPressExponent(Analysis& run, double exponent) {
  printMessage(run, MessageLine()
                        .text(exponent == 1.0 ? " PRESSE: UMFORMARBEIT ERREICHT, EXPONENT "
                                              : " PRESSE: UMFORMARBEIT NICHT ERREICHT, LETZTER EXPONENT ")
                        .fixed(exponent, 7, 4));
}

void reportPressRound(Analysis& run, Int round, double gradient, double smallest) {
  printMessage(run, MessageLine()
                        .text(" PRESSE: RUNDE ")
                        .integer(round, 3)
                        .exponent(gradient, 13, 6)
                        .exponent(smallest, 13, 6));
}

void reportPressLoads(Analysis& run, bool held, double gradient) {
  printMessage(run, MessageLine()
                        .text(" PRESSE: RANDKRAEFTE UND WERKZEUGE ")
                        .text(held ? " HALTEN " : " HALTEN NICHT ")
                        .exponent(gradient, 13, 6));
}

void reportPressEnd(Analysis& run) {
  const PressRecord& record = run.record.press;
  printMessage(run, MessageLine()
                        .text(" PRESSE: DICKE VON BIS (MM) ")
                        .fixed(record.thinnest, 9, 4)
                        .fixed(record.thickest, 9, 4));
  printMessage(run, MessageLine()
                        .text(" PRESSE: DRUCK AM STEMPEL, MATRIZE, HALTER (MPA) ")
                        .fixed(record.punchPressure, 9, 2)
                        .fixed(record.diePressure, 9, 2)
                        .fixed(record.binderPressure, 9, 2));
  printMessage(run,
               MessageLine().text(" PRESSE: MITTLERE STEMPELKRAFT (N) ").exponent(record.punchForce, 13, 6));
}

}  // namespace tornwalzen
