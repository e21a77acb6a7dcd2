// Views of what the state holds.
#include "ground/analysis.hpp"

namespace tornwalzen {

Table<double> flowCurve(Analysis& run) {
  return {"FC", run.FC, curveRows, curveColumns};
}

}  // namespace tornwalzen
