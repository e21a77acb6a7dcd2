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

#include "verification/folded_sheets.hpp"
#include "verification/part_runs.hpp"

namespace {

using host_kit::HostPart;
using verification::PartRun;
using verification::runPart;

std::FILE* openTable(const std::string& folder, const std::string& name, const char* heading) {
  std::FILE* file = std::fopen((folder + "/" + name).c_str(), "w");
  if (file == nullptr) {
    std::perror((folder + "/" + name).c_str());
    std::exit(2);
  }
  std::fprintf(file, "%s\n", heading);
  return file;
}

/// Every triangle in four, by the middles of its edges.
HostPart refined(const HostPart& part) {
  HostPart fine;
  fine.knots = part.knots;
  std::map<std::pair<std::int32_t, std::int32_t>, std::int32_t> middles;
  const auto middle = [&](std::int32_t a, std::int32_t b) {
    const auto [place, isNew] = middles.try_emplace(std::minmax(a, b), fine.nodes() + 1);
    if (isNew)
      for (std::size_t i = 0; i < 3; ++i)
        fine.knots.push_back(0.5 * (part.knots[3 * static_cast<std::size_t>(a - 1) + i] +
                                    part.knots[3 * static_cast<std::size_t>(b - 1) + i]));
    return place->second;
  };
  for (std::size_t e = 0; e < part.inzi.size(); e += 3) {
    const std::int32_t a = part.inzi[e], b = part.inzi[e + 1], c = part.inzi[e + 2];
    const std::int32_t ab = middle(a, b), bc = middle(b, c), ca = middle(c, a);
    fine.inzi.insert(fine.inzi.end(), {a, ab, ca, ab, b, bc, ca, bc, c, ab, bc, ca});
  }
  host_kit::holdRigidMotion(fine);
  return fine;
}

/// The part and its mirror image in the plane x = 0 (axis 0) or y = 0 (axis 1), joined where it meets the plane.
/// TWIN: out, the mirror image of each node, from 0.
HostPart mirrored(const HostPart& part, std::size_t axis, std::vector<std::size_t>& TWIN) {
  HostPart whole;
  whole.knots = part.knots;
  const std::size_t nodes = part.knots.size() / 3;
  TWIN.assign(nodes, 0);
  for (std::size_t n = 0; n < nodes; ++n) {
    TWIN[n] = n;
    if (std::fabs(part.knots[3 * n + axis]) < 1e-4) {
      whole.knots[3 * n + axis] = 0.0;
      continue;
    }
    TWIN[n] = whole.knots.size() / 3;
    for (std::size_t i = 0; i < 3; ++i)
      whole.knots.push_back((i == axis ? -1.0 : 1.0) * part.knots[3 * n + i]);
    TWIN.push_back(n);
  }
  whole.inzi = part.inzi;
  for (std::size_t e = 0; e < part.inzi.size(); e += 3)
    for (const std::size_t corner : {0, 2, 1})
      whole.inzi.push_back(
          static_cast<std::int32_t>(TWIN[static_cast<std::size_t>(part.inzi[e + corner] - 1)]) + 1);
  host_kit::holdRigidMotion(whole);
  return whole;
}

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
      out_, "sure.csv",
      "part,triangles,curve,converged,minimum,factorizations,inverted,crossings,smallest_stretch,seconds");
  std::FILE* both = openTable(out_, "sure_fixed.csv",
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
    for (; part.elements() <= 1.3 * sizes[2]; part = refined(part)) oneSize(table, name, part);
  }
  std::fclose(both);
  std::fclose(table);
}

void Tables::symmetry() {
  std::FILE* table = openTable(out_, "sure_symmetry.csv", "part,triangles,curve,plane,asymmetry_of_size");
  for (const char* name : {"dfg_cup_quarter", "round_cup_18", "dome_15"}) {
    const HostPart quarter = host_kit::readObj(parts_ + "/" + name + ".obj");
    if (quarter.knots.empty()) continue;
    std::vector<std::size_t> HALF, TWIN;
    const HostPart half = mirrored(quarter, 0, HALF), whole = mirrored(half, 1, TWIN);
    for (const int curve : {0, 1, 2}) {
      const PartRun run = runPart(whole, 1, curve);
      std::vector<double> image(run.blank.size());
      for (std::size_t n = 0; n < TWIN.size(); ++n)
        for (std::size_t i = 0; i < 2; ++i) image[2 * TWIN[n] + i] = run.blank[2 * n + i];
      const double apart = verification::distance(image, run.blank);
      std::fprintf(table, "%s,%d,%d,y,%.2e\n", name, whole.elements(), curve,
                   apart / verification::sizeOf(whole));
      std::fflush(table);
    }
  }
  std::fclose(table);
}

void Tables::picture(const std::string& name, const HostPart& part) {
  const PartRun fixed = runPart(part, 0), sure = runPart(part, 1);
  std::FILE* nodes = openTable(out_, "sure_" + name + ".csv", "x,y,z,fixed_u,fixed_v,sure_u,sure_v");
  for (std::size_t n = 0; n < part.knots.size() / 3; ++n)
    std::fprintf(nodes, "%.9g,%.9g,%.9g,%.9g,%.9g,%.9g,%.9g\n", part.knots[3 * n], part.knots[3 * n + 1],
                 part.knots[3 * n + 2], fixed.blank[2 * n], fixed.blank[2 * n + 1], sure.blank[2 * n],
                 sure.blank[2 * n + 1]);
  std::fclose(nodes);
  std::FILE* triangles =
      openTable(out_, "sure_" + name + "_triangles.csv", "n1,n2,n3,fixed_converged,sure_converged");
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
