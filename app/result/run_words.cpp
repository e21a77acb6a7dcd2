// What a run was made with, in words; see the header.
#include "result/run_words.hpp"

#include <utility>

#include "system/text.hpp"

namespace host {

std::string materialText(const RunReport& report) {
  const std::string number = std::to_string(report.settings.material);
  const std::string& source = report.settings.curve.source;
  const std::string& name = report.shop.material.name;
  if (name.empty()) return number + (source.empty() ? "" : " as " + source);
  if (source.empty()) return name + " with built-in curve " + number;
  const std::string own = "--material ";  // the curve is that of the material itself
  return source.starts_with(own) ? source.substr(own.size()) : name + " with " + source;
}

std::string pressText(const RunReport& report) {
  const TornwalzenPressResult& r = report.run.press;
  std::string text = "work" + std::string(r.exponent == 1.0 ? "" : " to the exponent " + decimal(r.exponent));
  if (r.bending != 0) text += r.bending == 2 ? ", bending kept" : ", bending released";
  for (const auto& [acts, words] : {std::pair{r.edge, ", free edges"},
                                    {r.contact, ", friction"},
                                    {r.binder, ", binder"},
                                    {r.beads, ", beads"}})
    if (acts == 1) text += words;
  return text;
}

std::string scopeText(const RunReport& report) {
  const TornwalzenPressResult& r = report.run.press;
  std::string missing;
  for (const auto& [acts, words] : {std::pair{r.contact == 1 || r.binder == 1, "no friction, "},
                                    {r.binder == 1, "no blank holder, "},
                                    {r.bending != 0, "no bending, "}})
    if (!report.settings.press.chosen || !acts) missing += words;
  return "A one-step estimate by deformation theory: " + missing +
         "no springback, no history of the forming.";
}

}  // namespace host
