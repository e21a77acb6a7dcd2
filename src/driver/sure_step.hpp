// How far a step of the sure path goes, and along which way.
#pragma once

#include "driver/sure_problem.hpp"

namespace tornwalzen {

struct StepTaken {
  bool accepted;
  bool curved;      // by turns of the triangles, not straight
  double length;    // t: fraction of RB
  SureValue value;  // at the new blank
};

/// Moves RX along RB so that the energy falls (L. Armijo, 1966).
///
/// Where the step turns a triangle by more than 0.05, first curved: every triangle is turned exactly, one solve of
/// the joiner makes a blank of them; from t = min(1, 1/turn), four halvings. Else, or if that fails, straight: from
/// t = min(1, 0.9 of the step to the first inversion), halved while the energy does not fall.
/// before: in, energy and gradient at RX; descent: in, Σ RR·RB, > 0. soft: in, was the tangent softened? Then a full
/// step that brings more than was foretold is doubled. RX: inout; with accepted = false unchanged.
/// RR: inout, the residual at RX.
StepTaken takeStep(const SureProblem& problem, const SureValue& before, double descent, bool soft);

}  // namespace tornwalzen
