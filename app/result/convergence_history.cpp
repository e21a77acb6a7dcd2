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
  if (increments_.empty()) return;
  ReportIncrement& increment = increments_.back();
  if (numbersBehind(line, "FORTSCHRITT/SCHRITTWEITE", numbers)) {
    if (!numbers.empty()) increment.progress = numbers[0];
  } else if (numbersBehind(line, "MAX.GRAD, LS-FAK, EN", numbers)) {
    if (numbers.size() < 2) return;  // a field too narrow for its number
    increment.gradient.push_back(numbers[0]);
    increment.factor.push_back(numbers[1]);
  } else if (line.find("INKREMENT WIRD WIEDERHOLT") != std::string_view::npos) {
    increment.repeated = true;
  }
}

}  // namespace host
