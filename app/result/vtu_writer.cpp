// Writes part or blank with the results as a VTK unstructured grid; see the header.
#include "result/vtu_writer.hpp"

#include <cstdint>
#include <limits>
#include <utility>
#include <vector>

#include "result/vtu_file.hpp"

namespace host {

namespace {

void addPoints(VtuFile& file, const RunReport& report, Shape shape) {
  file.add("<Points>\n");
  file.array("position_" + report.unit.name,
             shape == Shape::part ? report.part.points : report.results.blankPoints,
             "NumberOfComponents=\"3\" ");
  file.add("</Points>\n");
}

TornwalzenElementStrain noStrain() {
  constexpr double none = std::numeric_limits<double>::quiet_NaN();
  return {none, none, {none, none}, {none, none, none}, none, none, none};
}

// Strains and flow stress of the elements (NaN where the run came to no blank), with the direction of the major strain in the shape that is
// written.
void addStrains(VtuFile& file, const RunReport& report, Shape shape) {
  std::vector<double> major, minor, equivalent, stress, direction;
  for (auto* values : {&major, &minor, &equivalent, &stress}) values->reserve(report.run.strains.size());
  direction.reserve(3 * report.run.strains.size());
  for (TornwalzenElementStrain strain : report.run.strains) {
    if (!report.results.developed) strain = noStrain();
    major.push_back(strain.major);
    minor.push_back(strain.minor);
    equivalent.push_back(strain.equivalent);
    stress.push_back(strain.flow_stress);
    if (shape == Shape::part)
      direction.insert(direction.end(), strain.direction_part, strain.direction_part + 3);
    else
      direction.insert(direction.end(), {strain.direction_blank[0], strain.direction_blank[1], 0.0});
  }
  file.keepArray("strain_major_log", std::move(major));
  file.keepArray("strain_minor_log", std::move(minor));
  file.keepArray("strain_equivalent", std::move(equivalent));
  file.keepArray("flow_stress_MPa", std::move(stress));
  file.keepArray("direction_of_strain_major", std::move(direction), "NumberOfComponents=\"3\" ");
}

// Per element, mm; NaN where there is no ratio.
std::vector<double> thicknesses(const RunReport& report) {
  std::vector<double> values;
  for (const double ratio : report.results.thicknessRatio) values.push_back(report.shop.thickness * ratio);
  return values;
}

void addCellData(VtuFile& file, const RunReport& report, Shape shape) {
  const Results& results = report.results;
  file.add("<CellData Scalars=\"thickness_strain_ln_Ablank_by_Apart\">\n");
  file.array("thickness_strain_ln_Ablank_by_Apart", results.thicknessStrain);
  file.array("thickness_ratio_Ablank_by_Apart", results.thicknessRatio);
  if (report.shop.thickness > 0.0) file.keepArray("thickness_mm", thicknesses(report));
  if (report.shop.limitCurve) {
    file.array("limit_zone_0safe_1marginal_2split_3wrinkling", report.shop.limit.zone);
    file.array("limit_distance_percent", report.shop.limit.distance);
  }
  file.array("minus_E11_plus_E22", results.minusTraceE);
  file.array("density", results.density);
  file.array("smallest_angle_deg", results.smallestAngle);
  file.array("part_area_" + report.unit.name + "2", results.partArea);
  file.array("blank_area_" + report.unit.name + "2", results.blankArea);
  addStrains(file, report, shape);
  if (!report.run.contact.empty()) {
    file.array("contact_pressure_MPa", report.run.contact);
    file.array("binder_pressure_MPa", report.run.binder);
  }
  file.array("element_number_in_file", report.part.fileElement);
  if (!report.part.ids.element.empty()) file.array("element_id", report.part.ids.element);
  if (!report.part.ids.part.empty()) file.array("part_id", report.part.ids.part);
  file.add("</CellData>\n");
}

void addPointData(VtuFile& file, const RunReport& report) {
  std::vector<double> u, v;
  std::vector<std::uint8_t> heldU, heldV;
  std::vector<std::int32_t> number;
  for (std::size_t k = 0; k < report.run.RX.size(); k += 2) {
    u.push_back(report.results.blankPoints[k / 2 * 3]);
    v.push_back(report.results.blankPoints[k / 2 * 3 + 1]);
    heldU.push_back(report.hold.ARFA[k] == 0);
    heldV.push_back(report.hold.ARFA[k + 1] == 0);
    number.push_back(static_cast<std::int32_t>(k / 2) + 1);
  }
  const std::string& unit = report.unit.name;
  file.add("<PointData Vectors=\"displacement_part_minus_blank_" + unit + "\">\n");
  file.array("displacement_part_minus_blank_" + unit, report.results.displacement,
             "NumberOfComponents=\"3\" ");
  file.keepArray("u_blank_" + unit, std::move(u));
  file.keepArray("v_blank_" + unit, std::move(v));
  file.array("thickness_strain_node_mean", report.results.nodeThicknessStrain);
  file.keepArray("held_u", std::move(heldU));
  file.keepArray("held_v", std::move(heldV));
  file.keepArray("node_number_in_file", std::move(number));
  if (!report.part.ids.node.empty()) file.array("node_id", report.part.ids.node);
  file.add("</PointData>\n");
}

}  // namespace

void writeVtu(FileWriter& writer, const RunReport& report, Shape shape, bool compressed) {
  VtuFile file(report.verdict.converged ? "" : "NOT CONVERGED: " + report.verdict.reason, compressed);
  file.add("<FieldData>\n");
  file.keepArray("converged", std::vector<std::int32_t>{report.verdict.converged ? 1 : 0},
                 "NumberOfTuples=\"1\" ");
  file.add("</FieldData>\n<Piece NumberOfPoints=\"" + std::to_string(report.part.nodes()) +
           "\" NumberOfCells=\"" + std::to_string(report.part.elements()) + "\">\n");
  addPoints(file, report, shape);
  file.triangles(report.run.corners);
  addCellData(file, report, shape);
  addPointData(file, report);
  file.add("</Piece>\n");
  file.write(writer);
}

}  // namespace host
