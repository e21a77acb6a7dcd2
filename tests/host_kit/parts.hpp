// The parts of the whole runs: the samples at small resolutions, and the real parts where they are.
#pragma once

#include <array>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "host_kit/whole_run.hpp"
#include "shapes.hpp"

namespace host_kit {

inline HostPart fromSheet(const shapes::Sheet& sheet) {
  HostPart part{sheet.knots, sheet.inzi, {}};
  holdRigidMotion(part);
  return part;
}

inline HostPart samplePart(const std::string& name, std::int32_t triangles, std::uint64_t seed = 0) {
  shapes::MeshChoice choice;
  choice.triangles = triangles;
  choice.seed = seed;
  return fromSheet(shapes::makeShape(name, choice));
}

/// Nodes and triangles of an OBJ file of "v x y z" and "f a b c" lines; empty if it cannot be opened.
inline HostPart readObj(const std::string& path) {
  HostPart part;
  std::ifstream file(path);
  for (std::string line; std::getline(file, line);) {
    std::istringstream words(line);
    std::string key;
    words >> key;
    if (key == "v") {
      std::array<double, 3> p{};
      words >> p[0] >> p[1] >> p[2];
      part.knots.insert(part.knots.end(), p.begin(), p.end());
    } else if (key == "f") {
      for (int c = 0; c < 3; ++c) {
        std::string corner;
        words >> corner;
        part.inzi.push_back(std::stoi(corner));  // up to the first slash
      }
    }
  }
  return part;
}

/// u held where x = 0, v where y = 0.
inline void holdSymmetryPlanes(HostPart& part) {
  part.arfa.assign(2 * part.knots.size() / 3, 1);
  for (std::size_t n = 0; n < part.knots.size() / 3; ++n)
    for (std::size_t i = 0; i < 2; ++i)
      if (part.knots[3 * n + i] < 1e-4 && part.knots[3 * n + i] > -1e-4) part.arfa[2 * n + i] = 0;
}

inline const std::vector<std::string>& realParts() {
  static const std::vector<std::string> names{"scan_tray", "sheet_panel_13holes", "sheet_rail_channel",
                                              "car_hood_outer", "dfg_cup_quarter"};
  return names;
}

inline HostPart realPart(const std::string& folder, const std::string& name) {
  HostPart part = readObj(folder + "/" + name + ".obj");
  if (part.knots.empty()) return part;
  if (name == "dfg_cup_quarter")
    holdSymmetryPlanes(part);
  else
    holdRigidMotion(part);
  return part;
}

}  // namespace host_kit
