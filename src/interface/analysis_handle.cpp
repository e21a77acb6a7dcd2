// The functions of tornwalzen_analysis.h: checks of what the host gives, then the analysis behind the handle.
#include "interface/analysis_handle.hpp"

#include <cmath>
#include <new>

#include "ground/refusal_text.hpp"
#include "material/hardening_laws.hpp"

using namespace tornwalzen;

namespace {

constexpr Int64 mostNodes =
    715827882;  // three coordinates a node, and three entries of the pattern, in 31 bits
constexpr Int64 mostTriangles = 715827882;  // three corners a triangle likewise

Int passStep(void* self, const ProgressPoint& point) {
  const auto& handle = *static_cast<const TornwalzenAnalysis*>(self);
  if (handle.stepHandler == nullptr) return 0;
  const TornwalzenStep step{static_cast<int32_t>(sizeof step),
                            static_cast<int32_t>(point.phase),
                            point.fraction,
                            point.increment,
                            point.iteration,
                            point.residual};
  return handle.stepHandler(handle.stepData, &step);
}

void passMessage(void* self, const char* line) {
  const auto& handle = *static_cast<const TornwalzenAnalysis*>(self);
  if (handle.messageHandler != nullptr) handle.messageHandler(handle.messageData, line);
}

/// 0 for a mesh that can be taken.
Int checkMesh(Refusal& refusal, const GivenMesh& mesh) {
  if (mesh.nn < 1 || mesh.nn > mostNodes) return refuse(refusal, TORNWALZEN_BAD_COUNT, 2, mesh.nn);
  if (mesh.ne < 1 || mesh.ne > mostTriangles) return refuse(refusal, TORNWALZEN_BAD_COUNT, 3, mesh.ne);
  if (mesh.points == nullptr) return refuse(refusal, TORNWALZEN_NULL_POINTER, 4, 0.0);
  if (mesh.triangles == nullptr) return refuse(refusal, TORNWALZEN_NULL_POINTER, 5, 0.0);
  if (mesh.firstIndex != 0 && mesh.firstIndex != 1)
    return refuse(refusal, TORNWALZEN_BAD_FIRST_INDEX, 0, mesh.firstIndex);
  for (Int64 k = 0; k < 3 * Int64{mesh.nn}; ++k)
    if (!std::isfinite(mesh.points[k]))
      return refuse(refusal, TORNWALZEN_COORDINATE_NOT_FINITE, static_cast<Int>(k) + 1, mesh.points[k]);
  const Int64 last = Int64{mesh.nn} - 1 + mesh.firstIndex;
  for (Int64 k = 0; k < 3 * Int64{mesh.ne}; ++k)
    if (mesh.triangles[k] < mesh.firstIndex || mesh.triangles[k] > last)
      return refuse(refusal, TORNWALZEN_BAD_NODE, static_cast<Int>(k) + 1, mesh.triangles[k]);
  return TORNWALZEN_OK;
}

}  // namespace

extern "C" {

TornwalzenAnalysis* tornwalzen_analysis_create(void) {
  TornwalzenAnalysis* const analysis = new (std::nothrow) TornwalzenAnalysis;
  if (analysis == nullptr) return nullptr;
  Analysis& run = analysis->own.run;
  run.progress.monitor = passStep;
  run.progress.monitorData = analysis;
  run.messages.handler = passMessage;
  run.messages.userdata = analysis;
  return analysis;
}

int32_t tornwalzen_analysis_destroy(TornwalzenAnalysis* analysis) {
  if (analysis == nullptr) return TORNWALZEN_OK;
  if (const Int code = refuseChange(analysis)) return code;
  delete analysis;
  return TORNWALZEN_OK;
}

int32_t tornwalzen_analysis_set_mesh(TornwalzenAnalysis* analysis, int32_t nn, int32_t ne,
                                     const double* points, const int32_t* triangles, int32_t first_index) {
  if (const Int code = refuseChange(analysis)) return code;
  OwnAnalysis& own = analysis->own;
  const GivenMesh mesh{nn, ne, points, triangles, first_index};
  if (const Int code = checkMesh(own.run.refusal, mesh)) return code;
  const Int code = own.takeMesh(mesh);
  return code == TORNWALZEN_OK ? code : refuse(own.run.refusal, code, 0, 0.0);
}

int32_t tornwalzen_analysis_set_holds(TornwalzenAnalysis* analysis, const int32_t* held) {
  if (const Int code = refuseChange(analysis)) return code;
  Analysis& run = analysis->own.run;
  if (!analysis->own.hasMesh()) return refuse(run.refusal, TORNWALZEN_NO_MESH, 0, 0.0);
  if (held == nullptr) return refuse(run.refusal, TORNWALZEN_NULL_POINTER, 2, 0.0);
  for (Int i = 0; i < run.neq; ++i)
    if (held[i] != 0 && held[i] != 1) return refuse(run.refusal, TORNWALZEN_BAD_HOLD, i + 1, held[i]);
  analysis->own.hold(held);
  return TORNWALZEN_OK;
}

int32_t tornwalzen_analysis_set_material(TornwalzenAnalysis* analysis, int32_t selector) {
  if (const Int code = refuseChange(analysis)) return code;
  Analysis& run = analysis->own.run;
  if (selector != 0 && selector != 1 && selector != 2 && selector != 10)
    return refuse(run.refusal, TORNWALZEN_BAD_SELECTOR, 0, selector);
  for (HostCurve& curve : run.options.curves) curve = HostCurve{};
  analysis->own.selector = selector;
  return TORNWALZEN_OK;
}

int32_t tornwalzen_analysis_set_flow_curve(TornwalzenAnalysis* analysis, int32_t n, const double* strain,
                                           const double* stress_mpa) {
  if (const Int code = refuseChange(analysis)) return code;
  Analysis& run = analysis->own.run;
  if (n == 0) return refuse(run.refusal, TORNWALZEN_BAD_POINT_COUNT, 0, n);
  const Int code = setFlowCurve(run, 1, n, strain, stress_mpa);
  if (code == TORNWALZEN_OK) analysis->own.selector = 1;
  return code;
}

int32_t tornwalzen_analysis_set_law(TornwalzenAnalysis* analysis, int32_t law, const double* parameters,
                                    double strain_to) {
  if (const Int code = refuseChange(analysis)) return code;
  Refusal& refusal = analysis->own.run.refusal;
  if (lawParameters(law) == 0) return refuse(refusal, TORNWALZEN_BAD_SELECTOR_OF_LAW, 0, law);
  if (parameters == nullptr) return refuse(refusal, TORNWALZEN_NULL_POINTER, 3, 0.0);
  double strain[mostCurvePoints], stress[mostCurvePoints];
  if (const Int code = lawPoints(refusal, static_cast<HardeningLaw>(law), parameters, strain_to,
                                 mostCurvePoints, strain, stress))
    return code;
  return tornwalzen_analysis_set_flow_curve(analysis, mostCurvePoints, strain, stress);
}

int32_t tornwalzen_analysis_set_normal_anisotropy(TornwalzenAnalysis* analysis, double r) {
  return analysis == nullptr ? TORNWALZEN_NULL_POINTER : setNormalAnisotropy(analysis->own.run, r);
}

int32_t tornwalzen_analysis_set_energy_reference(TornwalzenAnalysis* analysis, int32_t reference) {
  return analysis == nullptr ? TORNWALZEN_NULL_POINTER : setEnergyReference(analysis->own.run, reference);
}

int32_t tornwalzen_analysis_set_tolerance_factors(TornwalzenAnalysis* analysis, double final_factor,
                                                  double path_factor) {
  return analysis == nullptr ? TORNWALZEN_NULL_POINTER
                             : setToleranceFactors(analysis->own.run, final_factor, path_factor);
}

int32_t tornwalzen_analysis_set_threads(TornwalzenAnalysis* analysis, int32_t threads) {
  return analysis == nullptr ? TORNWALZEN_NULL_POINTER : setThreads(analysis->own.run, threads);
}

int32_t tornwalzen_analysis_set_path(TornwalzenAnalysis* analysis, int32_t path) {
  return analysis == nullptr ? TORNWALZEN_NULL_POINTER : setPath(analysis->own.run, path);
}

int32_t tornwalzen_analysis_set_start(TornwalzenAnalysis* analysis, int32_t start) {
  return analysis == nullptr ? TORNWALZEN_NULL_POINTER : setStart(analysis->own.run, start);
}

int32_t tornwalzen_analysis_on_step(TornwalzenAnalysis* analysis, TornwalzenStepHandler handler,
                                    void* userdata) {
  if (const Int code = refuseChange(analysis)) return code;
  analysis->stepHandler = handler;
  analysis->stepData = userdata;
  return TORNWALZEN_OK;
}

int32_t tornwalzen_analysis_on_message(TornwalzenAnalysis* analysis, TornwalzenMessageHandler handler,
                                       void* userdata) {
  if (const Int code = refuseChange(analysis)) return code;
  analysis->messageHandler = handler;
  analysis->messageData = userdata;
  return TORNWALZEN_OK;
}

int32_t tornwalzen_analysis_run(TornwalzenAnalysis* analysis) {
  if (const Int code = refuseChange(analysis)) return code;
  Refusal& refusal = analysis->own.run.refusal;
  if (!analysis->own.hasMesh()) return refuse(refusal, TORNWALZEN_NO_MESH, 0, 0.0);
  if (const Int code = refusePress(analysis->own)) return code;
  const Int code = analysis->own.analyse();
  if (code == TORNWALZEN_NO_MEMORY || code == TORNWALZEN_SETUP_FAILED) refuse(refusal, code, 0, 0.0);
  return code;
}

int32_t tornwalzen_analysis_report(TornwalzenAnalysis* analysis, TornwalzenReport* report) {
  return analysis == nullptr ? TORNWALZEN_NULL_POINTER : fillReport(analysis->own.run, report);
}

int32_t tornwalzen_analysis_nodes(const TornwalzenAnalysis* analysis) {
  return analysis == nullptr ? 0 : analysis->own.run.nkno;
}

int32_t tornwalzen_analysis_triangles(const TornwalzenAnalysis* analysis) {
  return analysis == nullptr ? 0 : analysis->own.run.nele;
}

const double* tornwalzen_analysis_blank(const TornwalzenAnalysis* analysis) {
  return analysis != nullptr && analysis->own.hasRun() ? analysis->own.blank() : nullptr;
}

const double* tornwalzen_analysis_starting_blank(const TornwalzenAnalysis* analysis) {
  return analysis != nullptr && analysis->own.hasRun() ? analysis->own.startingBlank() : nullptr;
}

const double* tornwalzen_analysis_element_table(const TornwalzenAnalysis* analysis) {
  return analysis != nullptr && analysis->own.hasRun() ? analysis->own.elementTable() : nullptr;
}

const int32_t* tornwalzen_analysis_oriented_triangles(const TornwalzenAnalysis* analysis) {
  return analysis != nullptr && analysis->own.hasRun() ? analysis->own.orientedTriangles() : nullptr;
}

int32_t tornwalzen_analysis_strains(TornwalzenAnalysis* analysis, TornwalzenElementStrain* strains) {
  if (const Int code = refuseChange(analysis)) return code;
  Refusal& refusal = analysis->own.run.refusal;
  if (!analysis->own.hasRun()) return refuse(refusal, TORNWALZEN_NO_RESULTS, 0, 0.0);
  if (strains == nullptr) return refuse(refusal, TORNWALZEN_NULL_POINTER, 2, 0.0);
  analysis->own.strains(strains);
  return TORNWALZEN_OK;
}

int64_t tornwalzen_analysis_matrix_entries(const TornwalzenAnalysis* analysis) {
  return analysis == nullptr ? 0 : analysis->own.run.solver.nsysm;
}

const char* tornwalzen_analysis_error_text(TornwalzenAnalysis* analysis, int32_t code, int32_t language) {
  return analysis == nullptr ? "" : refusalText(analysis->own.run, code, language);
}

}  // extern "C"
