// Writes part or blank with the results as a VTK unstructured grid; see the header.
#include "result/vtu_writer.hpp"

#include <cstdint>
#include <limits>
#include <vector>

#include "result/vtu_array.hpp"

namespace host {

namespace {

void writePoints(FileWriter& file, const RunReport& report, Shape shape) {
  file.write("<Points>\n");
  writeArray(file, "position_" + report.unit.name,
             shape == Shape::part ? report.part.points : report.results.blankPoints,
             "NumberOfComponents=\"3\" ");
  file.write("</Points>\n");
}

TornwalzenElementStrain noStrain() {
  constexpr double none = std::numeric_limits<double>::quiet_NaN();
  return {none, none, {none, none}, {none, none, none}, none, none, none};
}

// Strains and flow stress of the elements (NaN where the run came to no blank), with the direction of the major strain in the shape that is
// written.
void writeStrains(FileWriter& file, const RunReport& report, Shape shape) {
  std::vector<double> major, minor, equivalent, stress, direction;
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
  writeArray(file, "strain_major_log", major);
  writeArray(file, "strain_minor_log", minor);
  writeArray(file, "strain_equivalent", equivalent);
  writeArray(file, "flow_stress_MPa", stress);
  writeArray(file, "direction_of_strain_major", direction, "NumberOfComponents=\"3\" ");
}

// Per element, mm; NaN where there is no ratio.
std::vector<double> thicknesses(const RunReport& report) {
  std::vector<double> values;
  for (const double ratio : report.results.thicknessRatio) values.push_back(report.shop.thickness * ratio);
  return values;
}

void writeCellData(FileWriter& file, const RunReport& report, Shape shape) {
  const Results& results = report.results;
  file.write("<CellData Scalars=\"thickness_strain_ln_Ablank_by_Apart\">\n");
  writeArray(file, "thickness_strain_ln_Ablank_by_Apart", results.thicknessStrain);
  writeArray(file, "thickness_ratio_Ablank_by_Apart", results.thicknessRatio);
  if (report.shop.thickness > 0.0) writeArray(file, "thickness_mm", thicknesses(report));
  if (report.shop.limitCurve) {
    writeArray(file, "limit_zone_0safe_1marginal_2split_3wrinkling", report.shop.limit.zone);
    writeArray(file, "limit_distance_percent", report.shop.limit.distance);
  }
  writeArray(file, "minus_E11_plus_E22", results.minusTraceE);
  writeArray(file, "density", results.density);
  writeArray(file, "smallest_angle_deg", results.smallestAngle);
  writeArray(file, "part_area_" + report.unit.name + "2", results.partArea);
  writeArray(file, "blank_area_" + report.unit.name + "2", results.blankArea);
  writeStrains(file, report, shape);
  if (!report.run.contact.empty()) {
    writeArray(file, "contact_pressure_MPa", report.run.contact);
    writeArray(file, "binder_pressure_MPa", report.run.binder);
  }
  writeArray(file, "element_number_in_file", report.part.fileElement);
  if (!report.part.ids.element.empty()) writeArray(file, "element_id", report.part.ids.element);
  if (!report.part.ids.part.empty()) writeArray(file, "part_id", report.part.ids.part);
  file.write("</CellData>\n");
}

void writePointData(FileWriter& file, const RunReport& report) {
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
  file.write("<PointData Vectors=\"displacement_part_minus_blank_" + unit + "\">\n");
  writeArray(file, "displacement_part_minus_blank_" + unit, report.results.displacement,
             "NumberOfComponents=\"3\" ");
  writeArray(file, "u_blank_" + unit, u);
  writeArray(file, "v_blank_" + unit, v);
  writeArray(file, "thickness_strain_node_mean", report.results.nodeThicknessStrain);
  writeArray(file, "held_u", heldU);
  writeArray(file, "held_v", heldV);
  writeArray(file, "node_number_in_file", number);
  if (!report.part.ids.node.empty()) writeArray(file, "node_id", report.part.ids.node);
  file.write("</PointData>\n");
}

}  // namespace

void writeVtu(FileWriter& file, const RunReport& report, Shape shape) {
  file.write("<?xml version=\"1.0\"?>\n");
  if (!report.verdict.converged) file.write("<!-- NOT CONVERGED: " + report.verdict.reason + " -->\n");
  file.write(vtuOpening() + "<FieldData>\n");
  writeArray(file, "converged", std::vector<std::int32_t>{report.verdict.converged ? 1 : 0},
             "NumberOfTuples=\"1\" ");
  file.write("</FieldData>\n<Piece NumberOfPoints=\"" + std::to_string(report.part.nodes()) +
             "\" NumberOfCells=\"" + std::to_string(report.part.elements()) + "\">\n");
  writePoints(file, report, shape);
  writeTriangles(file, report.run.corners);
  writeCellData(file, report, shape);
  writePointData(file, report);
  file.write("</Piece>\n</UnstructuredGrid>\n</VTKFile>\n");
}

}  // namespace host
