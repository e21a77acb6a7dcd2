// Lengths to millimetres and back; see the header.
#include "result/unit.hpp"

#include "system/failure.hpp"
#include "system/text.hpp"

namespace host {

namespace {
constexpr double smallestPart = 5.0;     // mm; what is drawn from sheet lies between these sizes
constexpr double largestPart = 20000.0;  // mm
}  // namespace

Unit unitOf(const std::string& name) {
  for (const Unit& unit : {Unit{"mm", 1.0}, Unit{"cm", 10.0}, Unit{"m", 1000.0}, Unit{"inch", 25.4}})
    if (unit.name == name) return unit;
  throw Failure("there is no unit \"" + shown(name) + "\"; mm, cm, m and inch are known");
}

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
