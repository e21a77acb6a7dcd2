// tornwalzen_verify PARTS OUT: the runs behind docs/verification.md, as tables of comma-separated values in
// the folder OUT. PARTS: the folder of the drawn cup; what needs it is left out where it is absent.
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "tornwalzen_ext.h"
#include "verification/developments.hpp"
#include "verification/drawn_cup.hpp"
#include "verification/result_table.hpp"

namespace {

using host_kit::HostPart;
using host_kit::WholeRun;
using namespace verification;

class Table {
 public:
  Table(const std::string& folder, const std::string& name, const std::string& heading)
      : file_(openTable(folder + "/" + name, heading)) {}
  ~Table() { std::fclose(file_); }
  Table(const Table&) = delete;
  Table& operator=(const Table&) = delete;
  void row(const std::string& line) {
    std::fprintf(file_, "%s\n", line.c_str());
    std::fflush(file_);
  }

 private:
  std::FILE* file_;
};

template <class... Values>
std::string format(const char* pattern, Values... values) {
  char line[512];
  std::snprintf(line, sizeof line, pattern, values...);
  return line;
}

TornwalzenReport report() {
  TornwalzenReport r;
  r.size = sizeof r;
  tornwalzen_get_report(&r);
  return r;
}

void verifyDevelopments(const std::string& out) {
  Table table(out, "developments.csv",
              "part,size_mm,curve,fixed_converged,fixed_error_mm,fixed_iterations,same_energy_iterations,"
              "host_converged,"
              "host_error_mm,host_iterations,host_path_factor,runs,in_run_repeats");
  for (const Development& development : developments())
    for (const double size : {5.0, 2.5})
      for (const int curve : {0, 1, 2}) {
        shapes::MeshChoice choice;
        choice.size = size;
        const shapes::Sheet sheet = shapes::makeShape(development.shape, choice, development.changes);
        const Developed fixed = develop(sheet, curve, false, {1.0, 1.0});
        const Developed same = develop(sheet, curve, true, {1.0, 1.0});
        const Developed host = developAsTheHost(sheet, curve);
        table.row(format("\"%s\",%g,%d,%d,%.5f,%d,%d,%d,%.5f,%d,%g,%d,%d", development.name, size, curve,
                         fixed.report.converged, fixed.error, fixed.report.newton_iterations,
                         same.report.newton_iterations, host.report.converged, host.error,
                         host.report.newton_iterations, std::pow(0.1, host.runs - 1), host.runs,
                         host.report.repeats));
      }
}

/// A deep-drawing steel as an example of an own curve.
void setSteel(int selector) {
  double strain[49], stress[49];
  tornwalzen_points_swift(549.03, 0.007, 0.22, 1.0, 49, strain, stress);
  tornwalzen_set_flow_curve(selector, 49, strain, stress);
}

void writeCupFields(const std::string& out, const DrawnCup& cup, const std::vector<double>& fixed,
                    const std::vector<double>& best, const std::vector<double>& thickness) {
  Table edge(out, "cup_edge.csv", "true_u,true_v,fixed_u,fixed_v,best_u,best_v");
  std::vector<bool> onEdge(cup.blank.size() / 2, false);
  for (const auto& [a, b] : outerEdge(cup.part)) onEdge[a] = onEdge[b] = true;
  for (std::size_t n = 0; n < onEdge.size(); ++n)
    if (onEdge[n])
      edge.row(format("%.5f,%.5f,%.5f,%.5f,%.5f,%.5f", cup.blank[2 * n], cup.blank[2 * n + 1], fixed[2 * n],
                      fixed[2 * n + 1], best[2 * n], best[2 * n + 1]));
  Table nodes(out, "cup_nodes.csv", "u,v");
  for (std::size_t n = 0; n < onEdge.size(); ++n)
    nodes.row(format("%.5f,%.5f", cup.blank[2 * n], cup.blank[2 * n + 1]));
  Table elements(out, "cup_elements.csv", "n1,n2,n3,true_thickness_mm,thickness_mm");
  for (std::size_t e = 0; e < thickness.size(); ++e)
    elements.row(format("%d,%d,%d,%.5f,%.5f", cup.part.inzi[3 * e], cup.part.inzi[3 * e + 1],
                        cup.part.inzi[3 * e + 2], cup.thickness[e], thickness[e]));
}

void verifyDrawnCup(const std::string& parts, const std::string& out) {
  const DrawnCup cup = readDrawnCup(parts);
  if (cup.part.knots.empty()) {
    std::fprintf(stderr, "left out: no drawn cup in %s\n", parts.c_str());
    return;
  }
  Table table(
      out, "cup.csv",
      "curve,r,reference,final_factor,increments,iterations,edge_mean_mm,edge_largest_mm,thickness_rms_mm,"
      "correlation,largest_strain");
  std::vector<double> fixed;
  for (const char* curve : {"0", "1", "2", "steel"})
    for (const int reference : {0, 1})
      for (const double r : {1.0, 1.5})
        for (const double factor : {1.0, 0.001}) {
          tornwalzen_reset();
          const int selector = curve[0] == 's' ? 1 : curve[0] - '0';
          if (curve[0] == 's') setSteel(selector);
          tornwalzen_set_normal_anisotropy(r);
          tornwalzen_set_energy_reference(reference);
          tornwalzen_set_tolerance_factors(factor, 1.0);
          const WholeRun run(cup.part, selector);
          const CupErrors errors = compareCup(cup, run.RX);
          const TornwalzenReport told = report();
          table.row(format("%s,%g,%s,%g,%d,%d,%.3f,%.3f,%.5f,%.4f,%.4f", curve, r,
                           reference ? "part" : "blank", factor, told.increments, told.newton_iterations,
                           errors.edgeMean, errors.edgeLargest, errors.thicknessRms, errors.correlation,
                           told.largest_strain));
          if (curve[0] != '1' || factor != 1.0) continue;
          if (reference == 0 && r == 1.0) fixed = run.RX;
          if (reference == 1 && r == 1.5) writeCupFields(out, cup, fixed, run.RX, errors.thickness);
        }
}

/// Draw-in of the square cup: how much farther from the middle an edge node lies in the blank than on the
/// part.
double drawIn(const HostPart& part, const std::vector<double>& RX, std::size_t n) {
  return std::hypot(RX[2 * n], RX[2 * n + 1]) - std::hypot(part.knots[3 * n], part.knots[3 * n + 1]);
}

/// The nodes of the sheet's edge on the axis x and on the diagonal.
struct EdgeNodes {
  std::size_t axis, diagonal;
};

EdgeNodes edgeNodes(const HostPart& part) {
  const auto edges = outerEdge(part);
  EdgeNodes nodes{edges.front().first, edges.front().first};
  const auto offDiagonal = [&](std::size_t n) {
    return std::fabs(part.knots[3 * n] - part.knots[3 * n + 1]);
  };
  for (const auto& [a, b] : edges)
    for (const std::size_t n : {a, b}) {
      if (part.knots[3 * n + 1] < part.knots[3 * nodes.axis + 1]) nodes.axis = n;
      if (offDiagonal(n) < offDiagonal(nodes.diagonal)) nodes.diagonal = n;
    }
  return nodes;
}

/// The cup with the edge that was measured after drawing (46.5 mm on the axes), and with the one whose blank
/// the inverse run finds to be the square.
void verifySquareCup(const std::string& out) {
  Table table(
      out, "square_cup.csv",
      "edge_on_axis_mm,material,r,reference,iterations,draw_in_axis_mm,draw_in_diagonal_mm,half_side_mm,"
      "corner_mm,largest_strain");
  for (const double edge : {46.5, 53.2}) {
    shapes::MeshChoice choice;
    choice.triangles = 10000;
    choice.quarter = true;
    HostPart part = host_kit::fromSheet(shapes::makeShape("square_cup", choice, {{"edge_on_axis", edge}}));
    host_kit::holdSymmetryPlanes(part);
    const EdgeNodes nodes = edgeNodes(part);
    for (const char* material : {"0", "1", "2", "aluminium"})
      for (const int reference : {0, 1}) {
        tornwalzen_reset();
        const bool aluminium = material[0] == 'a';
        const double r = aluminium ? 0.64 : 1.0;
        if (aluminium) {
          double strain[49], stress[49];
          tornwalzen_points_swift(576.79, 0.01658, 0.3593, 1.0, 49, strain, stress);
          tornwalzen_set_flow_curve(1, 49, strain, stress);
        }
        tornwalzen_set_normal_anisotropy(r);
        tornwalzen_set_energy_reference(reference);
        tornwalzen_set_tolerance_factors(0.001, 1.0);
        const WholeRun run(part, aluminium ? 1 : material[0] - '0');
        const TornwalzenReport told = report();
        table.row(
            format("%g,%s,%g,%s,%d,%.2f,%.2f,%.2f,%.2f,%.3f", edge, material, r, reference ? "part" : "blank",
                   told.converged ? told.newton_iterations : -1, drawIn(part, run.RX, nodes.axis),
                   drawIn(part, run.RX, nodes.diagonal), run.RX[2 * nodes.axis],
                   std::hypot(run.RX[2 * nodes.diagonal], run.RX[2 * nodes.diagonal + 1]) / std::sqrt(2.0),
                   told.largest_strain));
      }
  }
  tornwalzen_reset();
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: tornwalzen_verify PARTS OUT\n");
    return 2;
  }
  verifyDevelopments(argv[2]);
  verifyDrawnCup(argv[1], argv[2]);
  verifySquareCup(argv[2]);
  return 0;
}
