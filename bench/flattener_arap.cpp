// A peer of the whole run: CGAL's as-rigid-as-possible parameterization of a disc with holes, as a program of its own.
// usage: flattener_arap PART.obj BLANK.txt
// BLANK.txt: out, u v of each node per line. Prints processor and wall seconds of the parameterization alone.
#include <CGAL/Polygon_mesh_processing/measure.h>
#include <CGAL/Simple_cartesian.h>
#include <CGAL/Surface_mesh.h>
#include <CGAL/Surface_mesh_parameterization/ARAP_parameterizer_3.h>
#include <CGAL/Surface_mesh_parameterization/parameterize.h>

#include <chrono>
#include <ctime>
#include <fstream>
#include <sstream>
#include <string>

namespace {

using Kernel = CGAL::Simple_cartesian<double>;
using Mesh = CGAL::Surface_mesh<Kernel::Point_3>;
namespace Parameterization = CGAL::Surface_mesh_parameterization;

bool readObj(const char* path, Mesh& mesh) {
  std::ifstream file(path);
  for (std::string line; std::getline(file, line);) {
    std::istringstream words(line);
    std::string key;
    words >> key;
    if (key == "v") {
      double x, y, z;
      words >> x >> y >> z;
      mesh.add_vertex({x, y, z});
    } else if (key == "f") {
      unsigned a, b, c;
      words >> a >> b >> c;
      mesh.add_face(Mesh::Vertex_index(a - 1), Mesh::Vertex_index(b - 1), Mesh::Vertex_index(c - 1));
    }
  }
  return mesh.number_of_faces() > 0;
}

}  // namespace

int main(int argc, char** argv) {
  Mesh mesh;
  if (argc != 3 || !readObj(argv[1], mesh)) return 1;
  const auto border = CGAL::Polygon_mesh_processing::longest_border(mesh).first;
  auto uv = mesh.add_property_map<Mesh::Vertex_index, Kernel::Point_2>("v:uv").first;
  const std::clock_t cpu = std::clock();
  const auto wall = std::chrono::steady_clock::now();
  const auto code =
      Parameterization::parameterize(mesh, Parameterization::ARAP_parameterizer_3<Mesh>(), border, uv);
  const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - wall).count();
  if (code != Parameterization::OK) return 2;
  std::printf("%.4f %.4f\n", static_cast<double>(std::clock() - cpu) / CLOCKS_PER_SEC, seconds);
  std::ofstream out(argv[2]);
  out.precision(17);
  for (const auto v : mesh.vertices()) out << uv[v].x() << ' ' << uv[v].y() << '\n';
  return out.flush() ? 0 : 1;
}
