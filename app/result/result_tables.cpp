// The results per triangle and per node as tables; see the header.
#include "result/result_tables.hpp"

#include <cmath>

#include "result/csv_table.hpp"
#include "system/text.hpp"

namespace host {

namespace {

// A column of one member of the strains, empty where the run came to no blank.
CsvColumn strainColumn(const std::string& heading, const RunReport& report,
                       double TornwalzenElementStrain::*member) {
  return {heading, [&report, member](std::size_t row) {
            const double value = report.run.strains[row].*member;
            return report.results.developed && std::isfinite(value) ? decimal(value) : std::string();
          }};
}

}  // namespace

void writeTriangleTable(FileWriter& file, const RunReport& report) {
  const Results& results = report.results;
  const std::string& unit = report.unit.name;
  const double thickness = report.shop.thickness;
  const PartIds& ids = report.part.ids;
  std::vector<CsvColumn> columns{integerColumn("element_number_in_file", report.part.fileElement)};
  if (!ids.element.empty()) columns.push_back(integerColumn("element_id", ids.element));
  if (!ids.part.empty()) columns.push_back(integerColumn("part_id", ids.part));
  const std::vector<CsvColumn> shape{
      integerColumn("node_1", report.run.corners, 3, 0), integerColumn("node_2", report.run.corners, 3, 1),
      integerColumn("node_3", report.run.corners, 3, 2),
      realColumn("thickness_ratio_Ablank_by_Apart", results.thicknessRatio),
      realColumn("thickness_strain_ln_Ablank_by_Apart", results.thicknessStrain)};
  columns.insert(columns.end(), shape.begin(), shape.end());
  if (thickness > 0.0)
    columns.push_back({"thickness_mm", [&results, thickness](std::size_t row) {
                         const double value = thickness * results.thicknessRatio[row];
                         return std::isfinite(value) ? decimal(value) : std::string();
                       }});
  columns.push_back(strainColumn("strain_major_log", report, &TornwalzenElementStrain::major));
  columns.push_back(strainColumn("strain_minor_log", report, &TornwalzenElementStrain::minor));
  columns.push_back(strainColumn("strain_equivalent", report, &TornwalzenElementStrain::equivalent));
  columns.push_back(strainColumn("flow_stress_MPa", report, &TornwalzenElementStrain::flow_stress));
  if (report.shop.limitCurve) {
    columns.push_back({"limit_zone", [&report](std::size_t row) {
                         const int zone = report.shop.limit.zone[row];
                         return zone < 0 ? std::string()
                                         : std::string(limitZoneNames[static_cast<std::size_t>(zone)]);
                       }});
    columns.push_back(realColumn("limit_distance_percent", report.shop.limit.distance));
  }
  columns.push_back(realColumn("minus_E11_plus_E22", results.minusTraceE));
  columns.push_back(realColumn("density", results.density));
  columns.push_back(realColumn("smallest_angle_deg", results.smallestAngle));
  columns.push_back(realColumn("part_area_" + unit + "2", results.partArea));
  columns.push_back(realColumn("blank_area_" + unit + "2", results.blankArea));
  writeCsv(file, columns, report.run.corners.size() / 3);
}

void writeNodeTable(FileWriter& file, const RunReport& report) {
  const Results& results = report.results;
  const std::string& unit = report.unit.name;
  std::vector<CsvColumn> columns{
      {"node_number_in_file", [](std::size_t row) { return std::to_string(row + 1); }}};
  if (!report.part.ids.node.empty()) columns.push_back(integerColumn("node_id", report.part.ids.node));
  const char* axes[] = {"x_", "y_", "z_"};
  for (std::size_t axis = 0; axis < 3; ++axis)
    columns.push_back(realColumn("part_" + (axes[axis] + unit), report.part.points, 3, axis));
  columns.push_back(realColumn("u_blank_" + unit, results.blankPoints, 3, 0));
  columns.push_back(realColumn("v_blank_" + unit, results.blankPoints, 3, 1));
  columns.push_back(realColumn("thickness_strain_node_mean", results.nodeThicknessStrain));
  const auto heldColumn = [&](const std::string& heading, std::size_t offset) {
    return CsvColumn{heading, [&report, offset](std::size_t row) {
                       return std::string(report.hold.ARFA[2 * row + offset] == 0 ? "1" : "0");
                     }};
  };
  columns.push_back(heldColumn("held_u", 0));
  columns.push_back(heldColumn("held_v", 1));
  writeCsv(file, columns, report.run.RX.size() / 2);
}

}  // namespace host
