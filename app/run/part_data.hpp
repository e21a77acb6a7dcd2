// The part as the writers of results take it.
#pragma once

#include "mesh/mesh_check.hpp"
#include "result/run_data.hpp"

namespace host {

PartData partData(const Part& part);

}  // namespace host
