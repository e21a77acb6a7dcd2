// Figures of the blank into the record.
#include "driver/result_checks.hpp"

#include "develop/blank_checks.hpp"
#include "driver/known_topology.hpp"
#include "element/element_strains.hpp"
#include "ground/own_array.hpp"

namespace tornwalzen {

namespace {

/// Did the run get as far as a blank that strains can be measured on?
bool hasStrains(RunEnd end) {
  return end != RunEnd::notDeveloped && end != RunEnd::leftoverError && end != RunEnd::refused;
}

void keepFigures(const BlankChecks& B, const PartTopology& T, RunRecord& record) {
  BlankFigures& f = record.blank;
  f.topology = T.code;
  f.notFinite = B.notFinite;
  f.firstNotFinite = B.firstNotFinite;
  f.inverted = B.inverted;
  f.firstInverted = B.firstInverted;
  f.smallestStretch = B.smallestStretch;
  f.smallestStretchTriangle = B.smallestStretchTriangle;
  f.openNodes = B.openNodes;
  f.firstOpenNode = B.firstOpenNode;
  f.sheetChecked = B.sheetChecked;
  f.crossings = B.outline.crossings;
  f.crossingsComplete = B.outline.complete;
  f.crossingPlace[0] = B.outline.PLACE[0];
  f.crossingPlace[1] = B.outline.PLACE[1];
  f.misplacedLoops = B.outline.misplacedLoops;
  f.firstMisplacedNode = B.outline.firstMisplacedNode;
  f.overlappedArea = B.overlappedArea;
  f.partArea = B.partArea;
  f.blankArea = B.blankArea;
  f.undercutArea = B.undercutArea;
  f.undercutShare = B.undercutShare;
  f.shareBeyondCurve = B.shareBeyondCurve;
  f.firstBeyondCurve = B.firstBeyondCurve;
  f.shareBeyondOne = B.shareBeyondLarge;
  f.firstBeyondOne = B.firstBeyondLarge;
  record.checked = true;
}

}  // namespace

void checkResult(Analysis& run, const DriverArrays& a) {
  const ProcessorTime time(run.record.checks);
  if (run.record.path == 0) run.record.minimumCertified = run.record.negativePivots == 0;
  OwnArray<double> strain("STRAIN");
  StrainCheck limits;
  if (hasStrains(run.record.end)) {
    if (strain.allocate(run.nele)) {
      measureStrains(run, a, strain.vector());
      limits.STRAIN = strain.vector();
      // the geometric density reads no curve: nothing lies beyond it
      limits.curveEnd = run.istat != 0 && run.npkt >= 2 ? flowCurve(run)(run.npkt - 1, 1) : farCurveStrain;
    }
    recordLargestStrain(run, a, limits.STRAIN);
  }
  if (run.nele == 0 || run.record.refusal != 0) return;  // no blank was looked for
  const PartMesh mesh{a.KNG, a.INTA, run.nkno, run.nele};
  const PartTopology* const topology = topologyOf(run, mesh);
  MeanNormal normal;
  BlankChecks blank;
  if (topology != nullptr && findMeanNormal(mesh, normal) &&
      checkBlank(mesh, *topology, normal, a.RX, limits, blank))
    keepFigures(blank, *topology, run.record);
}

}  // namespace tornwalzen
