// What `tornwalzen check` finds out about a part before it is run.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "command/arguments.hpp"
#include "mesh/draw_direction.hpp"
#include "mesh/mesh_census.hpp"
#include "mesh/sheet_shape.hpp"
#include "run/expected_cost.hpp"
#include "system/unit.hpp"

namespace host {

enum class Level { note, doubt, refusal };

struct Finding {
  Level level = Level::note;
  std::string kind;                    // a word with underscores: key in the JSON, array in the grid
  std::string sentence;                // without full stop
  std::vector<std::int32_t> elements;  // of the mesh that is checked, from 1; may be empty
};

struct PartCheck {
  Mesh mesh;  // as read, mended and with one skin of a solid, as far as that went
  Unit unit;
  bool sound = false;               // its numbers are in range and finite: what follows is known
  MeshCensus census;                // if sound
  std::optional<Part> part;         // in the user's unit; none where solve refuses the mesh
  DrawView asked, alongZ;           // if there is a part: along --draw, or the best; and along z
  std::vector<MirrorEdge> mirrors;  // likewise
  ExpectedCost cost;                // likewise
  std::vector<Finding> findings;
  Level worst() const;
};

// Throws Failure: the file cannot be read, or --draw is no direction. What solve would refuse later is a finding with
// the words that solve says.
PartCheck checkPart(const CheckOptions& options);

// The direction that --draw names; empty for auto. Throws Failure: not three numbers, or all zero.
std::optional<Vector> drawDirection(const std::string& text);

}  // namespace host
