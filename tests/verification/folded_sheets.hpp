// Sheets folded along straight lines, with their exact blanks: bends beyond 90 degrees, hems, curls, tubes.
#pragma once

#include <cmath>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "profile.hpp"
#include "shapes.hpp"

namespace verification {

struct FoldedSheet {
  std::string name;
  shapes::Sheet sheet;
};

/// The section in x and z, drawn `width` mm along y, with triangles of about `size` mm. The blank is that of the
/// chords: its lengths agree with the mesh to rounding.
inline shapes::Sheet foldedSheet(const shapes::Profile& profile, double width, double size) {
  shapes::Sheet sheet;
  const auto rows = profile.rows(size);
  const auto across = static_cast<std::int32_t>(std::ceil(width / size));
  double s = 0.0;
  for (std::size_t r = 0; r < rows.size(); ++r) {
    const shapes::Point2 p = profile.point(rows[r].s);
    if (r > 0) {
      const shapes::Point2 q = profile.point(rows[r - 1].s);
      s += std::hypot(p.x - q.x, p.y - q.y);
    }
    for (std::int32_t k = 0; k <= across; ++k) {
      const double y = width * k / across;
      sheet.knots.insert(sheet.knots.end(), {p.x, y, p.y});
      sheet.blank.insert(sheet.blank.end(), {s, y});
    }
  }
  for (std::size_t r = 0; r + 1 < rows.size(); ++r)
    for (std::int32_t k = 0; k < across; ++k) {
      const auto a = static_cast<std::int32_t>(r) * (across + 1) + k + 1, b = a + across + 1;
      if ((static_cast<std::int32_t>(r) + k) % 2 == 0)
        sheet.inzi.insert(sheet.inzi.end(), {a, b, b + 1, a, b + 1, a + 1});
      else
        sheet.inzi.insert(sheet.inzi.end(), {a, b, a + 1, b, b + 1, a + 1});
    }
  return sheet;
}

/// size: in, edge length (mm).
inline std::vector<FoldedSheet> foldedSheets(double size) {
  using shapes::Profile;
  std::vector<FoldedSheet> all;
  const auto add = [&](const std::string& name, const Profile& profile) {
    all.push_back({name, foldedSheet(profile, 60.0, size)});
  };
  for (const double turn : {100.0, 120.0, 135.0, 150.0, 160.0, 170.0})
    add("bend " + std::to_string(static_cast<int>(turn)),
        Profile({0, 0}, 0).line(60.0).arc(5.0, turn).line(40.0));
  add("hem 180", Profile({0, 0}, 0).line(80.0).arc(1.5, 180.0).line(12.0));
  add("curl 270", Profile({0, 0}, 0).line(80.0).arc(6.0, 270.0));
  add("slit tube", Profile({0, 0}, 0).arc(20.0, 350.0));
  add("half-open tube", Profile({0, 0}, 0).arc(20.0, 270.0));
  add("Z", Profile({0, 0}, 0).line(50.0).arc(3.0, 150.0).line(40.0).arc(3.0, -150.0).line(50.0));
  add("Z 180", Profile({0, 0}, 0).line(50.0).arc(3.0, 180.0).line(40.0).arc(3.0, -180.0).line(50.0));
  add("lipped C", Profile({0, 15}, -90)
                      .line(15.0)
                      .arc(3.0, 90.0)
                      .line(0.0)
                      .line(40.0)
                      .arc(3.0, 90.0)
                      .line(60.0)
                      .arc(3.0, 90.0)
                      .line(40.0)
                      .arc(3.0, 90.0)
                      .line(15.0));
  add("U, walls 120 mm",
      Profile({0, 0}, -90).line(120.0).arc(4.0, 90.0).line(60.0).arc(4.0, 90.0).line(120.0));
  return all;
}

/// Part of a sphere of radius 50 mm from the pole to the polar angle `angle` (degrees): a doubly curved sheet with
/// undercut beyond 90 degrees. rings: in, of triangles.
inline shapes::Sheet sphereCap(double angle, std::int32_t rings) {
  const double pi = 3.14159265358979323846, radius = 50.0;
  shapes::Sheet sheet;
  sheet.knots = {0.0, 0.0, radius};
  for (std::int32_t r = 1; r <= rings; ++r) {
    const double polar = angle * pi / 180.0 * r / rings;
    for (std::int32_t k = 0; k < 6 * r; ++k) {
      const double about = 2.0 * pi * k / (6 * r);
      sheet.knots.insert(sheet.knots.end(),
                         {radius * std::sin(polar) * std::cos(about),
                          radius * std::sin(polar) * std::sin(about), radius * std::cos(polar)});
    }
  }
  const auto first = [](std::int32_t r) { return r == 0 ? 1 : 2 + 3 * r * (r - 1); };
  for (std::int32_t r = 1; r <= rings; ++r)
    for (std::int32_t sector = 0; sector < 6; ++sector)
      for (std::int32_t k = 0; k < r; ++k) {
        const auto outer = [&](std::int32_t i) { return first(r) + (sector * r + i) % (6 * r); };
        const auto inner = [&](std::int32_t i) {
          return r == 1 ? 1 : first(r - 1) + (sector * (r - 1) + i) % (6 * (r - 1));
        };
        sheet.inzi.insert(sheet.inzi.end(), {inner(k), outer(k), outer(k + 1)});
        if (k + 1 < r) sheet.inzi.insert(sheet.inzi.end(), {inner(k), outer(k + 1), inner(k + 1)});
      }
  return sheet;
}

}  // namespace verification
