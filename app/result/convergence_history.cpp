// How a run converged; see the header. The messages stand in docs/messages.md.
#include "result/convergence_history.hpp"

#include <new>

#include "system/text.hpp"

namespace host {

namespace {

// The numbers behind `lead` in the line; false: another line.
bool numbersBehind(std::string_view line, std::string_view lead, std::vector<double>& numbers) {
  const std::size_t at = line.find(lead);
  if (at == std::string_view::npos) return false;
  std::size_t position = at + lead.size();
  numbers.clear();
  double number;
  while (readReal(nextWord(line, position), number)) numbers.push_back(number);
  return true;
}

}  // namespace

void ConvergenceHistory::take(std::string_view line) noexcept {
  try {
    read(line);
  } catch (const std::bad_alloc&) {
  }
}

void ConvergenceHistory::read(std::string_view line) {
  std::vector<double> numbers;
  if (numbersBehind(line, "START INKRMEMENT", numbers)) {
    increments_.emplace_back();
    if (!numbers.empty()) increments_.back().number = static_cast<int>(numbers[0]);
    return;
  }
  if (line.find("START AUS ") != std::string_view::npos) {  // the sure path is one increment to the full part
    increments_.push_back({1, 1.0, false, {}, {}});
    return;
  }
  if (increments_.empty()) return;
  ReportIncrement& increment = increments_.back();
  if (numbersBehind(line, "FORTSCHRITT/SCHRITTWEITE", numbers)) {
    if (!numbers.empty()) increment.progress = numbers[0];
  } else if (numbersBehind(line, "MAX.GRAD, LS-FAK, EN", numbers)) {
    if (numbers.size() < 2) return;  // a field too narrow for its number
    increment.gradient.push_back(numbers[0]);
    increment.factor.push_back(numbers[1]);
  } else if (const std::size_t at = line.find("NEWTON "); at != std::string_view::npos) {
    // number, tangent, kind of step, its length, gradient, ...
    std::size_t position = at + 7;
    for (int word = 0; word < 3; ++word) nextWord(line, position);
    double length, gradient;
    if (!readReal(nextWord(line, position), length) || !readReal(nextWord(line, position), gradient)) return;
    increment.gradient.push_back(gradient);
    increment.factor.push_back(length);
  } else if (numbersBehind(line, "SEHNENSCHRITT", numbers) && !numbers.empty()) {
    increment.gradient.push_back(numbers[0]);
    increment.factor.push_back(1.0);
    ++increment.chords;
  } else if (line.find("INKREMENT WIRD WIEDERHOLT") != std::string_view::npos) {
    increment.repeated = true;
  }
}

}  // namespace host
