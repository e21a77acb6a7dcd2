// The topology of the part, found once in a run and asked for before, during and after it.
#pragma once

#include "develop/part_topology.hpp"
#include "ground/analysis.hpp"

namespace tornwalzen {

/// Found at the first call and kept in run.topology, until that is reset: where triangles are turned round it must be.
/// mesh: in, the part. Null: no memory.
inline const PartTopology* topologyOf(Analysis& run, const PartMesh& mesh) {
  if (run.topology) return run.topology.get();
  TopologyPointer found(new (std::nothrow) PartTopology, [](PartTopology* topology) { delete topology; });
  if (!found || !findPartTopology(mesh, *found, run.pool.get())) return nullptr;
  run.topology = std::move(found);
  return run.topology.get();
}

}  // namespace tornwalzen
