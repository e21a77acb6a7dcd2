// What the press path knows of the part before it begins, and what it tells at its end.
#include <algorithm>
#include <cmath>

#include "driver/press_path.hpp"
#include "driver/press_report.hpp"
#include "element/part_curvature.hpp"
#include "forces/flange_of_rim.hpp"
#include "forces/free_edges.hpp"

namespace tornwalzen {

bool PressPath::prepare(const PotentialMesh& mesh, Table<const double> KNG, Vector<const Int> ARFA,
                        Table<const Int> TWIN, const double (&AXES)[3][3], const FreeMoves& moves) {
  const Int64 ne = mesh.INTA.rows(), nn = KNG.rows();
  mesh_ = mesh;
  KNG_ = KNG;
  TWIN_ = TWIN;
  moves_ = moves;
  for (Int i = 0; i < 3; ++i) {
    for (Int k = 0; k < 2; ++k) view_[k][i] = AXES[k][i];
    draw_[i] = AXES[2][i];
  }
  run_.record.press = PressRecord{};
  OwnArray<double> normals("NORMALS");
  if (!supply(nn, ne) || !normals.allocate(3 * nn)) return false;
  load_.fill(0.0);
  symmetryPlanes(mesh.INTA, TWIN, ARFA, plane_.vector());
  nodeNormals(mesh.INTA, KNG, plane_.vector(), normals.table(nn));
  triangleCurvatures(mesh.INTA, KNG, mesh.FRAMES, normals.table(nn), curvature_.table(ne));
  triangleAxes();
  nodeWeights(sheet(), weight_.vector());
  return setTerms() && markFlange(draw_) && findBeads();
}

bool middleOfSheet(const PressOptions& options, const DriverArrays& a, Table<const Int> TWIN,
                   Table<double> MIDDLE) {
  OwnArray<Int> plane("PLANE");
  OwnArray<double> normals("NORMALS");
  const Int64 nodes = MIDDLE.rows();
  if (!plane.allocate(2 * nodes) || !normals.allocate(3 * nodes)) return false;
  symmetryPlanes(a.INTA, TWIN, a.ARFA, plane.vector());
  nodeNormals(a.INTA, a.KNG, plane.vector(), normals.table(nodes));
  const bool up = (options.meshSide == MeshSide::punch) !=
                  options.punchAbove;  // the punch below: its side is the lower one
  const double way = (up ? 0.5 : -0.5) * options.thickness;
  for (Int n = 1; n <= nodes; ++n)
    for (Int i = 1; i <= 3; ++i) MIDDLE(n, i) = a.KNG(n, i) + way * normals.table(nodes)(i, n);
  return true;
}

bool PressPath::supply(Int64 nodes, Int64 elements) {
  const bool planar = anisotropy_.planar();
  for (OwnArray<double>* array : {&curvature_, &forces_})
    if (!array->allocate(3 * elements)) return false;
  for (OwnArray<double>* array : {&slip_, &force_})
    if (!array->allocate(2 * elements)) return false;
  for (OwnArray<double>* array : {&area_, &density_, &contact_, &grip_})
    if (!array->allocate(elements)) return false;
  for (OwnArray<double>* array : {&load_, &origin_, &past_, &residual_, &ahead_, &step_})
    if (!array->allocate(2 * nodes)) return false;
  for (Kept* kept : {&start_, &kept_, &best_, &base_})
    for (OwnArray<double>* array : {&kept->blank, &kept->load, &kept->origin})
      if (!array->allocate(2 * nodes)) return false;
  if (loads_ && !mixing_.prepare(2 * nodes)) return false;
  return turned_.allocate(planar ? 3 * elements : 0) && axes_.allocate(6 * elements) &&
         maps_.allocate(4 * elements) && plane_.allocate(2 * nodes) && weight_.allocate(nodes);
}

void PressPath::triangleAxes() {
  const Table<double> AXES = axes_.table(area_.length());
  for (Int e = 1; e <= mesh_.INTA.rows(); ++e) {
    area_.vector()(e) = 0.5 * mesh_.FRAMES(frame::weight, e);
    const double a = mesh_.FRAMES(frame::along, e), b = mesh_.FRAMES(frame::tilt, e),
                 c = mesh_.FRAMES(frame::across, e);
    for (Int i = 1; i <= 3; ++i) {
      const double P = KNG_(mesh_.INTA(e, 2), i) - KNG_(mesh_.INTA(e, 1), i),
                   Q = KNG_(mesh_.INTA(e, 3), i) - KNG_(mesh_.INTA(e, 1), i);
      AXES(i, e) = a * P;
      AXES(3 + i, e) = b * P + c * Q;
    }
  }
}

bool PressPath::setTerms() {
  const Int64 ne = area_.length();
  term_.reset(new (std::nothrow) PressWorkTerm(
      work_, anisotropy_, Section{options_.points, options_.thickness, acting_.bending}, curvature_.table(ne),
      anisotropy_.planar() ? turned_.table(ne) : Table<double>()));
  if (!term_) return false;
  terms_ = DensityTerms();
  terms_.append(*term_);
  return true;
}

/// The elements under the binder: the host's marks, without which a run is refused, or those of the rim.
bool PressPath::markFlange(const double (&draw)[3]) {
  if (!acting_.binder) return true;
  const Int64 ne = area_.length();
  OwnArray<Int> scratch("SCRATCH");
  if (!flange_.allocate(ne) || !scratch.allocate(ne)) return false;
  Int marked = 0;
  if (options_.flangeOfRim)
    marked = flangeOfRim(sheet(), KNG_, TWIN_, plane_.vector(), draw, scratch.vector(), flange_.vector());
  else
    for (Int64 e = 1; e <= ne; ++e) marked += flange_.vector()(e) = marks_.FLANGE(e);
  if (marked < 0) return false;
  run_.record.press.flangeElements = marked;
  return true;
}

/// The pieces of all beads. The host's nodes have been checked: each two in a row share an edge.
bool PressPath::findBeads() {
  Int64 pieces = 0;
  for (Int64 bead = 1, first = 1; bead <= marks_.BEADENDS.length(); first = marks_.BEADENDS(bead++) + 1)
    pieces += marks_.BEADENDS(bead) - first;
  if (!beads_.allocate(pieces)) return false;
  Int64 at = 0;
  for (Int64 bead = 1, first = 1; bead <= marks_.BEADENDS.length(); first = marks_.BEADENDS(bead++) + 1)
    for (Int64 i = first; i < marks_.BEADENDS(bead); ++i) {
      const Int side = sideBetween(mesh_.INTA, marks_.BEADNODES(i), marks_.BEADNODES(i + 1));
      beads_.data()[at++] = {(side - 1) / 3 + 1, (side - 1) % 3 + 1, marks_.BEADFORCE(bead)};
    }
  return true;
}

void PressPath::keepRecord(const SureProblem& problem) {
  PressRecord& record = run_.record.press;
  record.bending = static_cast<Int>(acting_.bending);
  record.edge = loads_ && acting_.edge;
  record.contact = loads_ && acting_.contact;
  record.binder = loads_ && acting_.binder;
  record.beads = loads_ && acting_.beads;
  const Int ne = static_cast<Int>(area_.length());
  const double side = options_.punchAbove ? -1.0 : 1.0;
  lookAt(problem);
  if (loads_ && acting_.tools()) {
    toolForces();
    for (Int64 e = 1; e <= marks_.CONTACT.length(); ++e) marks_.CONTACT(e) = contact_.vector()(e) * side;
    for (Int64 e = 1; e <= marks_.GRIP.length(); ++e) marks_.GRIP(e) = grip_.vector()(e);
  }
  double low = INFINITY, high = -INFINITY;
  for (Int n = 1; n <= KNG_.rows(); ++n) {
    const double z = draw_[0] * KNG_(n, 1) + draw_[1] * KNG_(n, 2) + draw_[2] * KNG_(n, 3);
    low = std::min(low, z);
    high = std::max(high, z);
  }
  record.depth = high - low;
  record.thinnest = INFINITY;
  for (Int e = 1; e <= ne; ++e) {
    const double area =
        maps_.table(ne)(1, e) * maps_.table(ne)(4, e) - maps_.table(ne)(2, e) * maps_.table(ne)(3, e);
    record.thinnest = std::min(record.thinnest, options_.thickness * area);
    record.thickest = std::max(record.thickest, options_.thickness * area);
    record.work += 2.0 * scale_ * area_.vector()(e) * area * density_.vector()(e);
    if (!loads_ || !acting_.tools()) continue;
    const Table<double> FORCE = force_.table(ne), SLIP = slip_.table(ne);
    record.frictionWork -= FORCE(1, e) * SLIP(1, e) + FORCE(2, e) * SLIP(2, e);
    const double q = side * contact_.vector()(e);
    record.punchPressure = std::max(record.punchPressure, q);
    record.diePressure = std::max(record.diePressure, -q);
  }
  if (record.depth > 0.0) record.punchForce = (record.work + record.frictionWork) / record.depth;
  reportPressEnd(run_);
}

}  // namespace tornwalzen
