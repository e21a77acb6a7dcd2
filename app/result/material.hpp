// A sheet material: what is known of it, and from where.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace host {

struct SourcedValue {
  double value = 0.0;
  bool minimum = false;  // all that is known is that it is not less
  std::string source;    // never empty
};

enum class MaterialClass { mildSteel, steel, stainlessSteel, aluminium, other };

struct Material {
  std::string name, number, standard;  // name is empty: none was chosen by name
  MaterialClass kind = MaterialClass::other;
  bool keeler = false;  // the limit curve of keelerCurve (forming_limit.hpp) holds for it; mild steels only
  // of Swift's law K (e0 + e)^n: MPa, and dimensionless twice; without e0 of Hollomon's, K e^n
  std::optional<SourcedValue> K, e0, n;
  std::optional<SourcedValue> E, density;  // MPa; kg/m^3
  std::optional<SourcedValue> r0, r45,
      r90;  // normal anisotropy along, at 45 degrees and across the rolling direction

  bool hasCurve() const { return measured(K) && measured(n) && (!e0 || measured(e0)); }
  bool hasMeanR() const { return measured(r0) && measured(r45) && measured(r90); }
  double meanR() const { return 0.25 * (r0->value + 2.0 * r45->value + r90->value); }

 private:
  // A value itself, not a bound of it.
  static bool measured(const std::optional<SourcedValue>& value) { return value && !value->minimum; }
};

// The key of each value, with its unit, as files and summary have it; in a fixed order.
struct MaterialKey {
  const char* key;
  std::optional<SourcedValue> Material::*value;
  double least, most;  // what a file may give
};
inline constexpr MaterialKey materialKeys[] = {{"K_MPa", &Material::K, 1.0, 20000.0},
                                               {"e0", &Material::e0, 1e-9, 1.0},
                                               {"n", &Material::n, 1e-3, 1.0},
                                               {"E_MPa", &Material::E, 100.0, 1e6},
                                               {"density_kg_per_m3", &Material::density, 100.0, 25000.0},
                                               {"r0", &Material::r0, 0.01, 10.0},
                                               {"r45", &Material::r45, 0.01, 10.0},
                                               {"r90", &Material::r90, 0.01, 10.0}};

struct MaterialClassName {
  MaterialClass kind;
  const char* name;
};
inline constexpr MaterialClassName materialClasses[] = {{MaterialClass::mildSteel, "mild steel"},
                                                        {MaterialClass::steel, "steel"},
                                                        {MaterialClass::stainlessSteel, "stainless steel"},
                                                        {MaterialClass::aluminium, "aluminium"},
                                                        {MaterialClass::other, "other"}};

}  // namespace host
