// Fill of the ordering, counts of the runs.
#include "quality.hpp"

#include <fstream>
#include <sstream>
#include <stdexcept>

#include "contender_tornwalzen.hpp"
#include "plane_mesh.hpp"
#include "sample_run.hpp"

namespace bench {

namespace {

const std::string samplePrefix = "sample ", partPrefix = "part ";
constexpr std::int32_t sampleTriangles = 5000;

struct OrderingCase {
  const char* name;
  PlaneMesh (*mesh)(std::int32_t, Numbering, std::uint64_t);
  std::int32_t nodes;
  Numbering numbering;
};
const OrderingCase orderings[] = {{"jittered-1k", jitteredDelaunayMesh, 1000, Numbering::mesher},
                                  {"jittered-10k", jitteredDelaunayMesh, 10000, Numbering::mesher},
                                  {"jittered-100k", jitteredDelaunayMesh, 100000, Numbering::mesher},
                                  {"structured-1k", structuredMesh, 1000, Numbering::rows},
                                  {"structured-10k", structuredMesh, 10000, Numbering::rows},
                                  {"structured-100k", structuredMesh, 100000, Numbering::rows}};

/// Vertices and triangles of an OBJ file; a polygon becomes a fan.
shapes::Sheet readObj(const std::string& path) {
  std::ifstream file(path);
  shapes::Sheet sheet;
  for (std::string line; std::getline(file, line);) {
    std::istringstream words(line);
    std::string word;
    words >> word;
    if (word == "v") {
      double c[3] = {};
      words >> c[0] >> c[1] >> c[2];
      sheet.knots.insert(sheet.knots.end(), c, c + 3);
    } else if (word == "f") {
      std::vector<std::int32_t> corners;
      while (words >> word) corners.push_back(std::stoi(word));
      for (std::size_t k = 2; k < corners.size(); ++k)
        sheet.inzi.insert(sheet.inzi.end(), {corners[0], corners[k - 1], corners[k]});
    }
  }
  if (sheet.inzi.empty()) throw std::runtime_error("no triangles in " + path);
  return sheet;
}

std::vector<QualityRow> runCounts(const std::string& subject, const shapes::Sheet& sheet) {
  SampleRun run(sheet);
  run.analyse(1);
  return {{subject, "converged", run.converged()},
          {subject, "increments", probes.increments},
          {subject, "iterations", probes.newton.calls},
          {subject, "residual passes", probes.residual.calls},
          {subject, "unfolding iterations", probes.unfoldIterations},
          {subject, "unfolding evaluations", probes.unfoldEvaluations}};
}

std::vector<QualityRow> orderingCounts(const OrderingCase& which) {
  const SymmetricMatrix a = membraneMatrix(which.mesh(which.nodes, which.numbering, 1), 2);
  Tornwalzen solver(a);
  solver.analyse();
  const Fill fill = solver.fill();
  return {{which.name, "nnz(L)", static_cast<std::int64_t>(fill.entries)},
          {which.name, "flops", static_cast<std::int64_t>(fill.flops)},
          {which.name, "stored", static_cast<std::int64_t>(solver.storedEntries())}};
}

}  // namespace

std::vector<std::string> qualitySubjects(const std::string& parts) {
  std::vector<std::string> subjects;
  for (const OrderingCase& which : orderings) subjects.push_back(which.name);
  for (const shapes::ShapeInfo& shape : shapes::catalogue()) subjects.push_back(samplePrefix + shape.name);
  for (const char* part :
       {"car_hood_outer", "dfg_cup_quarter", "scan_tray", "sheet_panel_13holes", "sheet_rail_channel"})
    if (std::ifstream(parts + "/" + part + ".obj")) subjects.push_back(partPrefix + part);
  return subjects;
}

std::vector<QualityRow> quality(const std::string& subject, const std::string& parts) {
  for (const OrderingCase& which : orderings)
    if (subject == which.name) return orderingCounts(which);
  if (subject.rfind(partPrefix, 0) == 0)
    return runCounts(subject, readObj(parts + "/" + subject.substr(partPrefix.size()) + ".obj"));
  shapes::MeshChoice choice;
  choice.triangles = sampleTriangles;
  choice.seed = 1;
  // A longer wall of the bend comes down by way of crumpled states, where the last bits decide on the increments.
  std::vector<shapes::Change> changes;
  if (subject == samplePrefix + "l_bend") changes = {{"wall", 40.0}};
  return runCounts(subject, shapes::makeShape(subject.substr(samplePrefix.size()), choice, changes));
}

std::string csvLine(const QualityRow& row) {
  return row.subject + "," + row.quantity + "," + std::to_string(row.value);
}

}  // namespace bench
