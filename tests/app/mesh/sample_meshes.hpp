// Meshes for whole runs, as OBJ texts.
#pragma once

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

// The same as a closed solid: the wall between the radii 30 mm and 30 mm less the thickness.
inline std::string halfPipeSolidObj(int nx, int ny, double thickness) {
  std::ostringstream text;
  text.precision(17);
  for (const double radius : {30.0, 30.0 - thickness})
    for (int j = 0; j <= ny; ++j)
      for (int i = 0; i <= nx; ++i) {
        const double angle = (2.0 * i / nx - 1.0) * 75.0 * pi / 180.0;
        text << "v " << radius * std::sin(angle) << " " << 40.0 * j / ny << " " << radius * std::cos(angle)
             << "\n";
      }
  const int layer = (nx + 1) * (ny + 1);
  const auto at = [&](int i, int j, bool inside) { return j * (nx + 1) + i + 1 + (inside ? layer : 0); };
  const auto quad = [&](int a, int b, int c, int d) {
    text << "f " << a << " " << b << " " << c << "\nf " << a << " " << c << " " << d << "\n";
  };
  for (int j = 0; j < ny; ++j)
    for (int i = 0; i < nx; ++i) {
      quad(at(i, j, false), at(i + 1, j, false), at(i + 1, j + 1, false), at(i, j + 1, false));
      quad(at(i, j, true), at(i, j + 1, true), at(i + 1, j + 1, true), at(i + 1, j, true));
    }
  for (int i = 0; i < nx; ++i) {
    quad(at(i, 0, true), at(i + 1, 0, true), at(i + 1, 0, false), at(i, 0, false));
    quad(at(i, ny, false), at(i + 1, ny, false), at(i + 1, ny, true), at(i, ny, true));
  }
  for (int j = 0; j < ny; ++j) {
    quad(at(0, j, false), at(0, j + 1, false), at(0, j + 1, true), at(0, j, true));
    quad(at(nx, j, true), at(nx, j + 1, true), at(nx, j + 1, false), at(nx, j, false));
  }
  return text.str();
}

inline std::string plateObj(int nx, int ny) {
  return gridObj(
      nx, ny, [=](int i, int j) { return std::to_string(10.0 * i) + " " + std::to_string(10.0 * j) + " 0"; });
}
