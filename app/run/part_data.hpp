// The part as the writers of results take it.
#ifndef TORNWALZEN_APP_PART_DATA_HPP
#define TORNWALZEN_APP_PART_DATA_HPP

#include "mesh/mesh_check.hpp"
#include "result/run_data.hpp"

namespace host {

PartData partData(const Part& part);

}  // namespace host

#endif
