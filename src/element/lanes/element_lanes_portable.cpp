// Lanes of the baseline instruction set: two doubles.
#include "element/density_plastic_body.hpp"
#include "element/expansion.hpp"
#include "element/kinematics.hpp"
#include "element/lanes/element_lanes.hpp"

namespace {
constexpr int VL = 2;
using Lanes = double __attribute__((vector_size(VL * sizeof(double))));
inline Lanes squareRoot(Lanes x) {
  for (int l = 0; l < VL; ++l) x[l] = __builtin_sqrt(x[l]);
  return x;
}
}  // namespace

#include "element/lanes/element_lanes_body.hpp"
#include "element/lanes/map_lanes_body.hpp"

namespace tornwalzen {

const ElementLanes portableElementLanes = {"portable", evaluate, evaluateOverPart};

}  // namespace tornwalzen
