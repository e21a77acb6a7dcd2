// Meshes for whole runs, as OBJ texts.
#ifndef TORNWALZEN_TESTS_APP_SAMPLE_MESHES_HPP
#define TORNWALZEN_TESTS_APP_SAMPLE_MESHES_HPP

#include <cmath>
#include <functional>
#include <sstream>
#include <string>

constexpr double pi = 3.14159265358979323846;

// A grid of nx by ny quadrilaterals, two triangles each; place(i, j) prints x y z of a node.
inline std::string gridObj(int nx, int ny, const std::function<std::string(int, int)>& place) {
  std::ostringstream text;
  for (int j = 0; j <= ny; ++j)
    for (int i = 0; i <= nx; ++i) text << "v " << place(i, j) << "\n";
  for (int j = 0; j < ny; ++j)
    for (int i = 0; i < nx; ++i) {
      const int a = j * (nx + 1) + i + 1, b = a + 1, c = a + nx + 1, d = c + 1;
      text << "f " << a << " " << b << " " << d << "\nf " << a << " " << d << " " << c << "\n";
    }
  return text.str();
}

// A shell of radius 30 mm bent by 75 degrees to each side of the crown, 40 mm long: its exact blank is a
// rectangle of 2 * 30 * 75 degrees = 78.54 mm by 40 mm.
inline std::string halfPipeObj(int nx, int ny) {
  return gridObj(nx, ny, [=](int i, int j) {
    const double angle = (2.0 * i / nx - 1.0) * 75.0 * pi / 180.0;
    std::ostringstream xyz;
    xyz.precision(17);
    xyz << 30.0 * std::sin(angle) << " " << 40.0 * j / ny << " " << 30.0 * std::cos(angle);
    return xyz.str();
  });
}

inline std::string plateObj(int nx, int ny) {
  return gridObj(
      nx, ny, [=](int i, int j) { return std::to_string(10.0 * i) + " " + std::to_string(10.0 * j) + " 0"; });
}

#endif
