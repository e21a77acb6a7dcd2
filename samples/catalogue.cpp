// The shapes by name, their dimensions, and the mesh size that meets a wanted number of triangles.
#include <algorithm>
#include <cmath>
#include <stdexcept>

#include "makers.hpp"

namespace shapes {

namespace {

constexpr double mostTriangles = 2e7;
constexpr double metTo = 0.1;  // how well a wanted number of triangles is met

struct Entry {
  ShapeInfo info;
  Sheet (*make)(const Dimensions&, const MeshChoice&);
};

std::vector<Dimension> hatDimensions() {
  return {{"top", 60.0, "width between the walls at the top (mm)"},
          {"height", 40.0, "height (mm)"},
          {"flange", 20.0, "width of each flat flange (mm)"},
          {"punch_radius", 6.0, "radius between top and wall (mm)"},
          {"die_radius", 6.0, "radius between wall and flange (mm)"},
          {"draft", 8.0, "angle of the wall to the drawing direction (degrees)"}};
}

std::vector<Dimension> sRailDimensions() {
  std::vector<Dimension> dims = hatDimensions();
  dims.push_back({"straight", 50.0, "length of each straight end (mm)"});
  dims.push_back({"bend_radius", 160.0, "radius of both bends in plan (mm)"});
  dims.push_back({"bend_angle", 30.0, "turn of each bend in plan (degrees)"});
  return dims;
}

std::vector<Dimension> straightHatDimensions() {
  std::vector<Dimension> dims = hatDimensions();
  dims.push_back({"length", 100.0, "length (mm)"});
  return dims;
}

// Tools of the square cup: punch 70 × 70 mm with edges of 8 mm, die opening 74 × 74 mm with an edge of 5 mm,
// sheet of 0.8 mm; the middle surface lies half a sheet off the tools.
const std::vector<Entry>& entries() {
  static const std::vector<Entry> all{
      {{"square_cup",
        "square cup 40 mm deep with the drawn-in flange of a blank of about 150 x 150 mm",
        {{"half_width", 35.4, "half width at the punch (mm)"},
         {"corner_radius", 10.4, "radius of the vertical corners at the punch, in plan (mm)"},
         {"punch_radius", 8.4, "radius between bottom and wall (mm)"},
         {"die_radius", 5.4, "radius between wall and flange (mm)"},
         {"depth", 40.0, "depth (mm)"},
         {"draft", 2.6, "angle of the wall to the drawing direction (degrees)"},
         {"edge_on_axis", 53.2, "distance of the sheet's edge from the middle, on the axes (mm)"},
         {"edge_on_diagonal", 64.4, "x = y of the sheet's corner on the diagonal (mm)"}},
        true,
        false},
       makeSquareCup},
      {{"round_cup",
        "round cup with flange",
        {{"radius", 50.0, "radius at the punch (mm)"},
         {"punch_radius", 8.0, "radius between bottom and wall (mm)"},
         {"die_radius", 6.0, "radius between wall and flange (mm)"},
         {"depth", 35.0, "depth (mm)"},
         {"draft", 3.0, "angle of the wall to the drawing direction (degrees)"},
         {"edge_radius", 75.0, "radius of the sheet's edge (mm)"}},
        true,
        false},
       makeRoundCup},
      {{"box",
        "box with exactly vertical walls and a flange",
        {{"half_width", 50.0, "half width of the walls (mm)"},
         {"corner_radius", 15.0, "radius of the vertical corners, in plan (mm)"},
         {"punch_radius", 6.0, "radius between bottom and wall (mm)"},
         {"die_radius", 6.0, "radius between wall and flange (mm)"},
         {"depth", 40.0, "depth (mm)"},
         {"flange", 15.0, "width of the flat flange (mm)"}},
        true,
        false},
       makeBox},
      {{"flanged_hole",
        "square plate with a round hole whose rim is drawn up to a collar",
        {{"half_width", 50.0, "half width of the plate (mm)"},
         {"hole_radius", 15.0, "radius at the rim of the collar (mm)"},
         {"die_radius", 5.0, "radius between collar and plate (mm)"},
         {"collar", 4.0, "length of the straight collar (mm)"},
         {"draft", 5.0, "angle of the collar to the drawing direction (degrees)"}},
        true,
        false},
       makeFlangedHole},
      {{"s_rail", "hat rail that follows an S in plan", sRailDimensions(), false, false}, makeSRail},
      {{"hat", "straight hat rail; exact blank", straightHatDimensions(), false, true}, makeHat},
      {{"half_pipe",
        "half pipe, crown up; exact blank",
        {{"radius", 30.0, "radius (mm)"},
         {"half_angle", 75.0, "angle from the crown to each edge, up to 90 (degrees)"},
         {"length", 100.0, "length (mm)"}},
        false,
        true},
       makeHalfPipe},
      {{"cone_sector",
        "half a cone lying on its side, crown up; exact blank",
        {{"inner_slant", 60.0, "distance of the small end from the apex (mm)"},
         {"outer_slant", 160.0, "distance of the large end from the apex (mm)"},
         {"cone_angle", 20.0, "angle between generators and axis (degrees)"},
         {"half_angle", 75.0, "angle about the axis from the crown to each edge, up to 90 (degrees)"}},
        false,
        true},
       makeConeSector},
      {{"l_bend",
        "flat base and vertical wall joined by a bend of 90 degrees; exact blank",
        {{"base", 80.0, "length of the flat base (mm)"},
         {"wall", 80.0, "length of the flat wall (mm)"},
         {"radius", 5.0, "radius of the bend (mm)"},
         {"width", 60.0, "width along the bend (mm)"}},
        false,
        true},
       makeLBend},
      {{"plate",
        "flat rectangle; exact blank",
        {{"length", 150.0, "length in x (mm)"}, {"width", 100.0, "width in y (mm)"}},
        false,
        true},
       makePlate},
  };
  return all;
}

Sheet makeBySize(const Entry& entry, const Dimensions& dims, MeshChoice choice, double size) {
  choice.size = size;
  return entry.make(dims, choice);
}

double missBy(const Sheet& sheet, const MeshChoice& choice) {
  return std::abs(static_cast<double>(sheet.triangles()) / choice.triangles - 1.0);
}

/// The nearest mesh to a small number of triangles, edges of any length: the size is halved in, since the count
/// falls in steps of rows and columns.
Sheet makeCoarse(const Entry& entry, const Dimensions& dims, const MeshChoice& choice, double largest) {
  double fine = largest / 6.0, coarse = 10.0 * largest;
  Sheet best = makeBySize(entry, dims, choice, coarse);
  if (best.triangles() > choice.triangles && missBy(best, choice) > metTo)
    throw std::invalid_argument(entry.info.name + " takes at least " + std::to_string(best.triangles()) +
                                " triangles");
  for (int tries = 0; tries < 30; ++tries) {
    const double size = std::sqrt(fine * coarse);
    Sheet sheet = makeBySize(entry, dims, choice, size);
    (sheet.triangles() > choice.triangles ? fine : coarse) = size;
    if (missBy(sheet, choice) < missBy(best, choice)) best = std::move(sheet);
  }
  return best;
}

/// The count goes with 1/size², but for the least numbers of rows and columns: correct the size by the root
/// of the ratio, and keep the best of a few tries.
Sheet makeByCount(const Entry& entry, const Dimensions& dims, const MeshChoice& choice, double largest) {
  double size = 0.1 * largest;
  Sheet best;
  for (int tries = 0; tries < 8; ++tries) {
    Sheet sheet = makeBySize(entry, dims, choice, size);
    const double ratio = static_cast<double>(sheet.triangles()) / choice.triangles;
    if (best.triangles() == 0 || missBy(sheet, choice) < missBy(best, choice)) best = std::move(sheet);
    if (std::abs(ratio - 1.0) < 0.005) break;
    size = std::min(size * std::sqrt(ratio), largest / 6.0);
  }
  if (choice.strict && best.triangles() > choice.triangles && missBy(best, choice) > metTo)
    return makeCoarse(entry, dims, choice, largest);
  return best;
}

}  // namespace

double Dimensions::operator[](std::string_view name) const {
  for (const Dimension& d : values_) {
    if (d.name == name) return d.value;
  }
  throw std::logic_error("the catalogue lacks the dimension " + std::string(name));
}

double Dimensions::positive(std::string_view name) const {
  const double value = (*this)[name];
  if (!(value > 0.0)) throw std::invalid_argument(std::string(name) + " must be positive");
  return value;
}

const std::vector<ShapeInfo>& catalogue() {
  static const std::vector<ShapeInfo> infos = [] {
    std::vector<ShapeInfo> list;
    for (const Entry& entry : entries()) list.push_back(entry.info);
    return list;
  }();
  return infos;
}

Sheet makeShape(std::string_view name, const MeshChoice& choice, const std::vector<Change>& changes) {
  const auto& all = entries();
  const auto entry =
      std::find_if(all.begin(), all.end(), [&](const Entry& e) { return e.info.name == name; });
  if (entry == all.end()) throw std::invalid_argument("there is no shape \"" + std::string(name) + "\"");
  std::vector<Dimension> values = entry->info.dimensions;
  for (const Change& change : changes) {
    const auto d =
        std::find_if(values.begin(), values.end(), [&](const Dimension& v) { return v.name == change.name; });
    if (d == values.end()) {
      throw std::invalid_argument(entry->info.name + " has no dimension \"" + change.name + "\"");
    }
    if (!std::isfinite(change.value)) throw std::invalid_argument(change.name + " must be finite");
    d->value = change.value;
  }
  if (choice.quarter && !entry->info.hasQuarter) {
    throw std::invalid_argument(entry->info.name + " has no quarter");
  }
  if (choice.size != 0.0 && !(choice.size > 0.0 && std::isfinite(choice.size))) {
    throw std::invalid_argument("the mesh size must be positive");
  }
  const Dimensions dims(values);
  double largest = 0.0;
  for (const Dimension& d : values) largest = std::max(largest, std::abs(d.value));
  if (choice.size != 0.0) {
    // No shape of the catalogue's kind has less room for triangles than this; a slip of the unit ends here,
    // not in the machine's memory.
    if (largest * largest / (choice.size * choice.size) > mostTriangles) {
      throw std::invalid_argument("the mesh size is too small for the part");
    }
    return makeBySize(*entry, dims, choice, choice.size);
  }
  if (choice.triangles < 1 || choice.triangles > mostTriangles) {
    throw std::invalid_argument("the number of triangles must lie in 1..20000000");
  }
  return makeByCount(*entry, dims, choice, largest);
}

}  // namespace shapes
