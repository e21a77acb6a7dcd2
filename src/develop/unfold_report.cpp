// Composition of the unfolding's lines.
#include "develop/unfold_report.hpp"

#include "ground/messages.hpp"
#include "ground/progress.hpp"

namespace tornwalzen {

void reportSharpElements(Analysis& run, Int sharp) {
  printMessage(run,
               MessageLine().text(" ANZAHL DER ELEMENTE MIT WINKEL < 10 Grad ").integer(sharp, 6).text("@"));
}

void reportIteration(Analysis& run, const DescentState& state) {
  printMessage(run, MessageLine()
                        .text("IZ,EN,EN1,L-FAK ")
                        .integer(state.degenerate, 5)
                        .exponent(state.EN, 13, 6)
                        .exponent(state.EN1, 13, 6)
                        .exponent(state.step, 13, 6)
                        .exponent(state.qmax, 13, 6)
                        .integer(state.iteration, 5)
                        .text("@"));
}

void reportAdvance(Analysis& run, const DescentState& state) {
  const double range = state.qmaxAtStart - targetMeasure;
  const double percentage = (1.0 - (state.qmin - targetMeasure) / range) * 100.0;
  reportInformation(run.progress, MessageLine()
                                      .text(" Tornwalzen - Geometrie abwickeln:       Fortschritt: ")
                                      .fixed(percentage, 7, 2)
                                      .text(" %%      ")
                                      .integer(state.degenerate, 5)
                                      .text(" degenerierte Elemente  ")
                                      .nul()
                                      .buffer());
  reportProcessorTime(run.progress);
}

void reportNoConvergence(Analysis& run, Int degenerate, Int iteration) {
  const MessageLine line = MessageLine()
                               .text(" Tornwalzen - Geometrie abwickeln: ")
                               .integer(degenerate, 5)
                               .text(" deg.Elemente  ")
                               .integer(iteration, 5)
                               .text(" Iterationen ,    KEINE KONVERGENZ -> ABBRUCH !!!")
                               .nul();
  noteFatalText(run.record, line.buffer());
  reportInformation(run.progress, line.buffer());
}

}  // namespace tornwalzen
