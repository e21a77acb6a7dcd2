// tornwalzen_sure_tables PARTS OUT: the runs behind the tables and pictures of the sure path. Into the folder OUT:
//   sure.csv           every sample and real part at about 5,000, 50,000 and 200,000 triangles with curves 0, 1, 2
//   sure_fixed.csv     both paths on the small ones: energies, and how far the blanks lie apart
//   sure_symmetry.csv  how far the blank of a part with planes of symmetry is from its own mirror image
//   sure_NAME.csv      nodes of a part to draw, with the blanks of both paths; sure_NAME_triangles.csv its triangles
// Status 1 where a run of the sure path does not converge to a certified minimum without inverted triangles.
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "host_kit/mirrored.hpp"
#include "host_kit/refined.hpp"
#include "verification/folded_sheets.hpp"
#include "verification/part_runs.hpp"
#include "verification/result_table.hpp"

namespace {

using host_kit::HostPart;
using verification::openTable;
using verification::PartRun;
using verification::runPart;

class Tables {
 public:
  Tables(const std::string& parts, const std::string& out) : parts_(parts), out_(out) {}
  void sizesAndCurves();
  void symmetry();
  void pictures();
  bool allRight() const { return right_; }

 private:
  void oneSize(std::FILE* table, const std::string& name, const HostPart& part);
  void bothPaths(std::FILE* table, const std::string& name, const HostPart& part);
  void picture(const std::string& name, const HostPart& part);

  std::string parts_, out_;
  bool right_ = true;
};

void Tables::oneSize(std::FILE* table, const std::string& name, const HostPart& part) {
  for (const int curve : {0, 1, 2}) {
    const auto begin = std::chrono::steady_clock::now();
    const PartRun run = runPart(part, 1, curve);
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    const TornwalzenReport& r = run.report;
    const bool right = run.converged() && r.minimum_certified != 0 && r.blank_inverted == 0;
    right_ = right_ && right;
    std::fprintf(table, "%s,%d,%d,%d,%d,%d,%d,%lld,%.4f,%.3f\n", name.c_str(), part.elements(), curve,
                 r.converged, r.minimum_certified, r.factorizations, r.blank_inverted,
                 static_cast<long long>(r.crossings), r.smallest_stretch, seconds);
    std::fflush(table);
    if (!right)
      std::printf("%s, %d triangles, curve %d: %s\n", name.c_str(), part.elements(), curve, r.fatal_text);
  }
}

void Tables::bothPaths(std::FILE* table, const std::string& name, const HostPart& part) {
  for (const int curve : {0, 1, 2}) {
    const PartRun fixed = runPart(part, 0, curve), sure = runPart(part, 1, curve);
    std::fprintf(
        table, "%s,%d,%d,%d,%d,%d,%d,%.9g,%.9g,%.3g\n", name.c_str(), part.elements(), curve,
        fixed.report.converged, fixed.report.blank_inverted, fixed.report.factorizations,
        sure.report.factorizations, fixed.energy, sure.energy,
        fixed.converged() && sure.converged() ? verification::distance(fixed.blank, sure.blank) : NAN);
    std::fflush(table);
  }
}

void Tables::sizesAndCurves() {
  constexpr std::int32_t sizes[] = {5000, 50000, 200000};
  std::FILE* table = openTable(
      out_ + "/sure.csv",
      "part,triangles,curve,converged,minimum,factorizations,inverted,crossings,smallest_stretch,seconds");
  std::FILE* both = openTable(out_ + "/sure_fixed.csv",
                              "part,triangles,curve,fixed_converged,fixed_inverted,fixed_factorizations,"
                              "sure_factorizations,fixed_energy_mm2,sure_energy_mm2,apart_mm");
  for (const char* sample : {"hat", "square_cup", "round_cup", "half_pipe", "s_rail", "box", "cone_sector",
                             "flanged_hole", "l_bend"})
    for (const std::int32_t triangles : sizes) {
      const HostPart part = host_kit::samplePart(sample, triangles, 1);
      oneSize(table, sample, part);
      if (triangles == sizes[0]) bothPaths(both, sample, part);
    }
  for (const std::string& name : host_kit::realParts()) {
    HostPart part = host_kit::realPart(parts_, name);
    if (part.knots.empty()) continue;
    host_kit::holdRigidMotion(part);
    bothPaths(both, name, part);
    for (; part.elements() <= 1.3 * sizes[2]; part = host_kit::refined(part)) oneSize(table, name, part);
  }
  std::fclose(both);
  std::fclose(table);
}

void Tables::symmetry() {
  std::FILE* table = openTable(out_ + "/sure_symmetry.csv", "part,triangles,curve,plane,asymmetry_of_size");
  for (const char* name : {"dfg_cup_quarter", "round_cup_18", "dome_15"}) {
    const HostPart quarter = host_kit::readObj(parts_ + "/" + name + ".obj");
    if (quarter.knots.empty()) continue;
    std::vector<std::size_t> HALF, TWIN;
    const HostPart half = host_kit::mirrored(quarter, 0, HALF), whole = host_kit::mirrored(half, 1, TWIN);
    for (const int curve : {0, 1, 2}) {
      const PartRun run = runPart(whole, 1, curve);
      const double apart = verification::distance(host_kit::mirrorImage(run.blank, TWIN), run.blank);
      std::fprintf(table, "%s,%d,%d,y,%.2e\n", name, whole.elements(), curve,
                   apart / verification::sizeOf(whole));
      std::fflush(table);
    }
  }
  std::fclose(table);
}

void Tables::picture(const std::string& name, const HostPart& part) {
  const PartRun fixed = runPart(part, 0), sure = runPart(part, 1);
  std::FILE* nodes = openTable(out_ + "/sure_" + name + ".csv", "x,y,z,fixed_u,fixed_v,sure_u,sure_v");
  for (std::size_t n = 0; n < part.knots.size() / 3; ++n)
    std::fprintf(nodes, "%.9g,%.9g,%.9g,%.9g,%.9g,%.9g,%.9g\n", part.knots[3 * n], part.knots[3 * n + 1],
                 part.knots[3 * n + 2], fixed.blank[2 * n], fixed.blank[2 * n + 1], sure.blank[2 * n],
                 sure.blank[2 * n + 1]);
  std::fclose(nodes);
  std::FILE* triangles =
      openTable(out_ + "/sure_" + name + "_triangles.csv", "n1,n2,n3,fixed_converged,sure_converged");
  for (std::size_t e = 0; e < part.inzi.size(); e += 3)
    std::fprintf(triangles, "%d,%d,%d,%d,%d\n", part.inzi[e], part.inzi[e + 1], part.inzi[e + 2],
                 fixed.report.converged, sure.report.converged);
  std::fclose(triangles);
}

void Tables::pictures() {
  HostPart hat = host_kit::samplePart("hat", 2000);
  for (std::size_t n = 0; n < hat.knots.size(); n += 3) {  // by 45 degrees about y
    const double x = hat.knots[n], z = hat.knots[n + 2], half = std::sqrt(0.5);
    hat.knots[n] = half * (x + z);
    hat.knots[n + 2] = half * (z - x);
  }
  host_kit::holdRigidMotion(hat);
  picture("hat", hat);
  for (const verification::FoldedSheet& folded : verification::foldedSheets(4.0)) {
    if (folded.name == "hem 180") picture("hem", host_kit::fromSheet(folded.sheet));
    if (folded.name == "slit tube") picture("tube", host_kit::fromSheet(folded.sheet));
  }
  const shapes::Profile profile = shapes::Profile({0, 0}, 0)
                                      .line(25.0)
                                      .arc(6.0, 90.0)
                                      .line(40.0)
                                      .arc(6.0, 90.0)
                                      .line(52.0)
                                      .arc(6.0, 90.0)
                                      .line(40.0)
                                      .arc(6.0, 90.0)
                                      .line(26.0);
  picture("crash_box", host_kit::fromSheet(verification::foldedSheet(profile, 120.0, 4.0)));
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: tornwalzen_sure_tables PARTS OUT\n");
    return 2;
  }
  Tables tables(argv[1], argv[2]);
  tables.pictures();
  tables.symmetry();
  tables.sizesAndCurves();
  return tables.allRight() ? 0 : 1;
}
