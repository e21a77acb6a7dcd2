// The one instance of the run scalars and of the material block.
#include "ground/run_state.hpp"

namespace tornwalzen {

RunState run;
MaterialBlock material;

Table<double> flowCurve() {
  return {"FC", material.FC, curveRows, curveColumns};
}

}  // namespace tornwalzen
