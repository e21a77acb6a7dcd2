// Every sample and every real part under the press model, what the terms cost, and the fields of the drawn cup.
#pragma once

#include <string>

namespace verification {

/// OUT/press_survey.csv: one line per part, mesh and press: how far the run came, and its cost.
void surveyParts(const std::string& parts, const std::string& out);

/// OUT/press_rings.csv: round cups against the calculation in one dimension.
void ringCups(const std::string& out);

/// OUT/press_blank_*.csv: the square cup with r0, r45, r90 and its blank, for scripts/verify_residual.py.
void writeBlank(const std::string& out);

/// OUT/press_cost.csv: processor time on the whole rectangular cup, over that of the sure path with the fixed model.
void measureCost(const std::string& parts, const std::string& out);

/// OUT/press_fields.csv: thickness of every element of the drawn cup in the simulation and by both models.
void writeFields(const std::string& parts, const std::string& out);

}  // namespace verification
