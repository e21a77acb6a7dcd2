// The unit of a part's lengths; see the header.
#include "mesh/part_unit.hpp"

#include "system/text.hpp"

namespace host {

namespace {
constexpr double smallestPart = 5.0;     // mm; what is drawn from sheet lies between these sizes
constexpr double largestPart = 20000.0;  // mm
constexpr double thinnestSheet = 0.15;   // mm
constexpr double inchSized = 60.0;       // mm; a small part, or a common one in inches

bool isUsual(double size, double thickness) {
  return size >= smallestPart && size <= largestPart && (thickness == 0.0 || thickness >= thinnestSheet);
}
}  // namespace

Part inMillimetres(const Part& part, const Unit& unit) {
  Part scaled = part;
  for (double& coordinate : scaled.points) coordinate *= unit.millimetres;
  scaled.size *= unit.millimetres;
  scaled.unit = "mm";
  return scaled;
}

std::string sizeWarning(const Part& part, const Unit& unit) {
  const double size = part.size * unit.millimetres;
  if (size >= smallestPart && size <= largestPart) return "";
  return "the longest side of the part is " + decimal(size) + " mm, unusually " +
         (size < smallestPart ? "small" : "large") + " for a drawn part; is --unit " + unit.name + " right?";
}

std::string unitGuess(double size, double thickness, const Unit& unit) {
  const bool usual = isUsual(size * unit.millimetres, thickness * unit.millimetres);
  const bool small = unit.name == "mm" && thickness == 0.0 && size < inchSized;
  if (usual && !small) return "";
  std::string guess;
  for (const char* name : {"mm", "inch", "cm", "m"}) {
    const Unit other = unitOf(name);
    if (other.name == unit.name || (usual && other.name != "inch") ||
        !isUsual(size * other.millimetres, thickness * other.millimetres))
      continue;
    guess += (guess.empty() ? "" : ", or ") + shortDecimal(size * other.millimetres, 1) + " mm if they are " +
             other.name + " (--unit " + other.name + ")";
  }
  if (guess.empty()) return "";
  return "with the lengths in " + unit.name + " the part is " + shortDecimal(size * unit.millimetres, 3) +
         " mm across" +
         (thickness > 0.0 ? " and " + shortDecimal(thickness * unit.millimetres, 4) + " mm thick" : "") +
         "; " + guess;
}

}  // namespace host
