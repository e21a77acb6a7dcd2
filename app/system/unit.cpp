// Units of length; see the header.
#include "system/unit.hpp"

#include "system/failure.hpp"
#include "system/text.hpp"

namespace host {

Unit unitOf(const std::string& name) {
  for (const Unit& unit : {Unit{"mm", 1.0}, Unit{"cm", 10.0}, Unit{"m", 1000.0}, Unit{"inch", 25.4}})
    if (unit.name == name) return unit;
  throw Failure("there is no unit \"" + shown(name) + "\"; mm, cm, m and inch are known");
}

}  // namespace host
