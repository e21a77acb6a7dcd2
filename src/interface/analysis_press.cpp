// The press model's functions of tornwalzen_analysis.h: checks of what the host gives, and what the last run did.
#include <cmath>
#include <cstring>

#include "interface/analysis_handle.hpp"

using namespace tornwalzen;

namespace {

constexpr double stiffest = 1e6;  // MPa: more than any metal has

bool among(Int value, Int last) {
  return value >= 0 && value <= last;
}

Int checkChoices(Refusal& refusal, const TornwalzenPress& press) {
  if (!among(press.bending, TORNWALZEN_BENDING_KEPT))
    return refuse(refusal, TORNWALZEN_BAD_PRESS_CHOICE, 1, press.bending);
  if (!among(press.edge, TORNWALZEN_ON)) return refuse(refusal, TORNWALZEN_BAD_PRESS_CHOICE, 2, press.edge);
  if (!among(press.mesh_side, 2)) return refuse(refusal, TORNWALZEN_BAD_PRESS_CHOICE, 3, press.mesh_side);
  if (!among(press.punch_above, 1)) return refuse(refusal, TORNWALZEN_BAD_PRESS_CHOICE, 4, press.punch_above);
  if (!among(press.flange_of_rim, 1))
    return refuse(refusal, TORNWALZEN_BAD_PRESS_CHOICE, 5, press.flange_of_rim);
  return TORNWALZEN_OK;
}

Int checkSheet(Refusal& refusal, const TornwalzenPress& press) {
  if (!(press.thickness_mm > 0.0) || !std::isfinite(press.thickness_mm))
    return refuse(refusal, TORNWALZEN_BAD_THICKNESS, 0, press.thickness_mm);
  if (!(press.young_mpa >= 0.0 && press.young_mpa <= stiffest))
    return refuse(refusal, TORNWALZEN_BAD_YOUNG, 0, press.young_mpa);
  if (press.thickness_points != 0 && press.thickness_points != 3 && press.thickness_points != 5)
    return refuse(refusal, TORNWALZEN_BAD_THICKNESS_POINTS, 0, press.thickness_points);
  const double r[] = {press.r0, press.r45, press.r90};
  const bool given = r[0] != 0.0 || r[1] != 0.0 || r[2] != 0.0;
  for (Int k = 0; k < 3; ++k)
    if (given && (!(r[k] > 0.0) || !std::isfinite(r[k])))
      return refuse(refusal, TORNWALZEN_BAD_PLANAR_ANISOTROPY, 45 * k, r[k]);
  if (!std::isfinite(press.rolling_angle_deg))
    return refuse(refusal, TORNWALZEN_BAD_ROLLING, 0, press.rolling_angle_deg);
  return TORNWALZEN_OK;
}

Int checkTools(Refusal& refusal, const TornwalzenPress& press) {
  const double mu[] = {press.friction_punch, press.friction_die};
  for (Int k = 0; k < 2; ++k)
    if (!(mu[k] >= 0.0 && mu[k] <= 1.0)) return refuse(refusal, TORNWALZEN_BAD_FRICTION, k + 1, mu[k]);
  if (!(press.binder_force_n >= 0.0) || !std::isfinite(press.binder_force_n))
    return refuse(refusal, TORNWALZEN_BAD_BINDER, 0, press.binder_force_n);
  return TORNWALZEN_OK;
}

PressOptions optionsOf(const TornwalzenPress& press, bool chosen) {
  PressOptions options;
  options.chosen = chosen;
  options.thickness = press.thickness_mm;
  if (press.young_mpa > 0.0) options.young = press.young_mpa;
  if (press.thickness_points != 0) options.points = press.thickness_points;
  options.r0 = press.r0, options.r45 = press.r45, options.r90 = press.r90;
  options.rolling = press.rolling_angle_deg;
  options.frictionPunch = press.friction_punch, options.frictionDie = press.friction_die;
  options.binderForce = press.binder_force_n;
  options.flangeOfRim = press.flange_of_rim == 1;
  options.meshSide = static_cast<MeshSide>(press.mesh_side);
  options.punchAbove = press.punch_above == 1;
  options.bending = static_cast<BendingChoice>(press.bending);
  options.edge = static_cast<Choice>(press.edge);
  return options;
}

TornwalzenPressResult resultOf(const PressRecord& record) {
  return {static_cast<int32_t>(sizeof(TornwalzenPressResult)),
          record.bending,
          record.edge ? 1 : 0,
          record.contact ? 1 : 0,
          record.binder ? 1 : 0,
          record.beads ? 1 : 0,
          record.rounds,
          record.flangeElements,
          record.loadsHeld ? 1 : 0,
          0,
          record.exponent,
          record.thinnest,
          record.thickest,
          record.punchPressure,
          record.diePressure,
          record.binderPressure,
          record.binderArea,
          record.work,
          record.frictionWork,
          record.depth,
          record.punchForce};
}

/// Do the nodes a and b, from 1, share an edge of the mesh?
bool sharedEdge(Table<const Int> INTA, Int a, Int b) {
  for (Int64 e = 1; e <= INTA.rows(); ++e)
    for (Int64 k = 1; k <= 3; ++k) {
      const Int p = INTA(e, k), q = INTA(e, k % 3 + 1);
      if ((p == a && q == b) || (p == b && q == a)) return true;
    }
  return false;
}

/// 0 for beads that lie on the mesh.
Int checkBeads(OwnAnalysis& own, Int count, const Int* lengths, const Int* nodes, const double* force) {
  Refusal& refusal = own.run.refusal;
  Int64 at = 0;
  for (Int bead = 0; bead < count; ++bead) {
    if (lengths[bead] < 2) return refuse(refusal, TORNWALZEN_BAD_BEAD_LENGTH, bead + 1, lengths[bead]);
    if (!(force[bead] > 0.0) || !std::isfinite(force[bead]))
      return refuse(refusal, TORNWALZEN_BAD_BEAD_FORCE, bead + 1, force[bead]);
    for (Int i = 0; i < lengths[bead]; ++i, ++at) {
      const Int node = nodes[at], number = node + 1 - own.firstIndex;
      if (node < own.firstIndex || number > own.run.nkno)
        return refuse(refusal, TORNWALZEN_BAD_BEAD_NODE, static_cast<Int>(at) + 1, node);
      if (i > 0 && !sharedEdge(own.triangles(), number, nodes[at - 1] + 1 - own.firstIndex))
        return refuse(refusal, TORNWALZEN_BEAD_OFF_MESH, static_cast<Int>(at) + 1, node);
    }
  }
  return TORNWALZEN_OK;
}

}  // namespace

Int refusePress(OwnAnalysis& own) {
  const PressOptions& press = own.run.options.press;
  Refusal& refusal = own.run.refusal;
  if (!press.chosen) return TORNWALZEN_OK;
  if (!(press.thickness > 0.0)) return refuse(refusal, TORNWALZEN_BAD_THICKNESS, 0, press.thickness);
  if (own.selector == 10) return refuse(refusal, TORNWALZEN_PRESS_WITHOUT_CURVE, 0, own.selector);
  if (press.binderForce > 0.0 && !press.flangeOfRim && !own.hasFlange())
    return refuse(refusal, TORNWALZEN_NO_FLANGE, 0, press.binderForce);
  return TORNWALZEN_OK;
}

extern "C" {

int32_t tornwalzen_analysis_set_model(TornwalzenAnalysis* analysis, int32_t model) {
  if (const Int code = refuseChange(analysis)) return code;
  Analysis& run = analysis->own.run;
  if (!among(model, 1)) return refuse(run.refusal, TORNWALZEN_BAD_MODEL, 0, model);
  run.options.press.chosen = model == 1;
  return TORNWALZEN_OK;
}

int32_t tornwalzen_analysis_set_press(TornwalzenAnalysis* analysis, const TornwalzenPress* press) {
  if (const Int code = refuseChange(analysis)) return code;
  Analysis& run = analysis->own.run;
  if (press == nullptr) return refuse(run.refusal, TORNWALZEN_NULL_POINTER, 2, 0.0);
  if (press->size < static_cast<int32_t>(sizeof *press))
    return refuse(run.refusal, TORNWALZEN_SHORT_PRESS, 0, press->size);
  if (const Int code = checkChoices(run.refusal, *press)) return code;
  if (const Int code = checkSheet(run.refusal, *press)) return code;
  if (const Int code = checkTools(run.refusal, *press)) return code;
  run.options.press = optionsOf(*press, run.options.press.chosen);
  return TORNWALZEN_OK;
}

int32_t tornwalzen_analysis_set_flange(TornwalzenAnalysis* analysis, const int32_t* marks) {
  if (const Int code = refuseChange(analysis)) return code;
  OwnAnalysis& own = analysis->own;
  if (!own.hasMesh()) return refuse(own.run.refusal, TORNWALZEN_NO_MESH, 0, 0.0);
  for (Int e = 0; marks != nullptr && e < own.run.nele; ++e)
    if (!among(marks[e], 1)) return refuse(own.run.refusal, TORNWALZEN_BAD_FLANGE, e + 1, marks[e]);
  const Int code = own.takeFlange(marks);
  return code == TORNWALZEN_OK ? code : refuse(own.run.refusal, code, 0, 0.0);
}

int32_t tornwalzen_analysis_set_beads(TornwalzenAnalysis* analysis, int32_t count, const int32_t* lengths,
                                      const int32_t* nodes, const double* force_n_per_mm) {
  if (const Int code = refuseChange(analysis)) return code;
  OwnAnalysis& own = analysis->own;
  Refusal& refusal = own.run.refusal;
  if (!own.hasMesh()) return refuse(refusal, TORNWALZEN_NO_MESH, 0, 0.0);
  if (count < 0) return refuse(refusal, TORNWALZEN_BAD_COUNT, 2, count);
  const void* const pointers[] = {lengths, nodes, force_n_per_mm};
  for (Int k = 0; count > 0 && k < 3; ++k)
    if (pointers[k] == nullptr) return refuse(refusal, TORNWALZEN_NULL_POINTER, k + 3, 0.0);
  if (const Int code = checkBeads(own, count, lengths, nodes, force_n_per_mm)) return code;
  const Int code = own.takeBeads(count, lengths, nodes, force_n_per_mm);
  return code == TORNWALZEN_OK ? code : refuse(refusal, code, 0, 0.0);
}

int32_t tornwalzen_analysis_press_result(TornwalzenAnalysis* analysis, TornwalzenPressResult* result) {
  if (const Int code = refuseChange(analysis)) return code;
  Refusal& refusal = analysis->own.run.refusal;
  if (result == nullptr) return refuse(refusal, TORNWALZEN_NULL_POINTER, 2, 0.0);
  if (result->size < static_cast<int32_t>(sizeof *result))
    return refuse(refusal, TORNWALZEN_SHORT_PRESS, 0, result->size);
  if (!analysis->own.hasRun()) return refuse(refusal, TORNWALZEN_NO_RESULTS, 0, 0.0);
  *result = resultOf(analysis->own.run.record.press);
  return TORNWALZEN_OK;
}

const double* tornwalzen_analysis_contact_pressure(const TornwalzenAnalysis* analysis) {
  return analysis != nullptr && analysis->own.hasPressures() ? analysis->own.contactPressure() : nullptr;
}

const double* tornwalzen_analysis_binder_pressure(const TornwalzenAnalysis* analysis) {
  return analysis != nullptr && analysis->own.hasPressures() ? analysis->own.binderPressure() : nullptr;
}

}  // extern "C"
