// The command `tornwalzen materials`; see the header.
#include "command/materials.hpp"

#include <algorithm>
#include <cmath>

#include "command/talk.hpp"
#include "system/failure.hpp"
#include "system/text.hpp"

namespace host {

namespace {

std::string kindName(MaterialClass kind) {
  for (const MaterialClassName& known : materialClasses)
    if (known.kind == kind) return known.name;
  return "";
}

// Whole numbers without an exponent.
std::string plain(double value) {
  return value == std::floor(value) ? fixedDecimal(value, 0) : decimal(value);
}

}  // namespace

std::string materialsList(const std::vector<LibraryMaterial>& library) {
  std::string list =
      "0, 1, 2             built-in flow curves, plastic work\n"
      "10                  geometric measure, no material\n";
  for (const LibraryMaterial& entry : library) {
    const Material& material = entry.material;
    std::string name = material.name;
    name.resize(std::max<std::size_t>(20, name.size() + 2), ' ');
    list += name + kindName(material.kind);
    for (const std::string& text : {material.number, material.standard})
      if (!text.empty()) list += ", " + text;
    list += (entry.origin.empty() ? "" : " (" + entry.origin + ")") + std::string("\n");
    for (const MaterialKey& key : materialKeys) {
      const auto& value = material.*key.value;
      if (!value) continue;
      std::string cell = std::string("  ") + key.key;
      cell.resize(22, ' ');
      std::string number = (value->minimum ? "at least " : "") + plain(value->value);
      number.resize(std::max<std::size_t>(16, number.size() + 1), ' ');
      list += cell + number + value->source + "\n";
    }
    list += std::string("  limit curve         ") +
            (material.keeler ? "FLC0 of Keeler and Brazier, for mild steels\n" : "none: --flc FILE\n");
    if (!material.hasCurve())
      list += "  flow curve          none with a source: built-in curve 1 stands in, or --curve, --law\n";
  }
  return list;
}

int materials(const MaterialsOptions& options) {
  const std::vector<LibraryMaterial> library =
      readMaterials(options.file);  // a wrong file is refused in any case
  Talk{options.quiet, options.json}.result(materialsList(library), ownLibraryText());
  return exitConverged;
}

}  // namespace host
