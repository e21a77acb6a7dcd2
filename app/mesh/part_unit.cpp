// The unit of a part's lengths; see the header.
#include "mesh/part_unit.hpp"

#include "system/text.hpp"

namespace host {

namespace {
constexpr double smallestPart = 5.0;     // mm; what is drawn from sheet lies between these sizes
constexpr double largestPart = 20000.0;  // mm
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

}  // namespace host
