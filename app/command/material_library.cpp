// The library of sheet materials; see the header.
#include "command/material_library.hpp"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <set>

#include "command/own_materials.hpp"
#include "system/failure.hpp"
#include "system/input_file.hpp"
#include "system/text.hpp"

namespace host {

namespace {

using Json = nlohmann::json;

constexpr const char* formatName = "tornwalzen materials 1";
constexpr std::size_t longestText = 200;  // of a name, a standard or a source

// Reads one file; `place` says in messages where it is.
class Reader {
 public:
  explicit Reader(std::string file) : file_(std::move(file)) {}

  std::vector<Material> read(const std::string& text) {
    const Json json = parsed(text);
    if (!json.is_object()) fail("wanted an object with \"format\" and \"materials\"");
    refuseOthers(json, {"format", "materials"});
    if (textOf(json, "format", true) != formatName)
      fail("\"format\" is not \"" + std::string(formatName) + "\"");
    const auto list = json.find("materials");
    if (list == json.end() || !list->is_array()) fail("there is no list \"materials\"");
    std::vector<Material> materials;
    for (const Json& entry : *list) {
      place_ = "material " + std::to_string(materials.size() + 1);
      materials.push_back(material(entry, materials));
    }
    return materials;
  }

 private:
  [[noreturn]] void fail(const std::string& sentence) const {
    throw Failure(file_ + (place_.empty() ? "" : ", " + place_) + ": " + sentence);
  }

  Json parsed(const std::string& text) const {
    // Of a key that occurs twice the last one would be taken silently: which of two numbers did the user mean?
    std::vector<std::set<std::string>> keys;
    const auto look = [&](int, Json::parse_event_t event, const Json& item) {
      if (event == Json::parse_event_t::object_start) keys.emplace_back();
      if (event == Json::parse_event_t::object_end) keys.pop_back();
      if (event == Json::parse_event_t::key && !keys.back().insert(item.get<std::string>()).second)
        fail("the key \"" + shown(item.get<std::string>()) + "\" occurs twice in one object");
      return true;
    };
    try {
      return Json::parse(text, look);
    } catch (const Json::parse_error& error) {
      const auto end = text.begin() + static_cast<std::ptrdiff_t>(std::min(error.byte, text.size()));
      fail("no JSON, near line " + std::to_string(1 + std::count(text.begin(), end, '\n')));
    } catch (const Json::out_of_range&) {
      fail("a number is too large");
    }
  }

  void refuseOthers(const Json& object, const std::vector<std::string>& known) const {
    for (const auto& [key, value] : object.items())
      if (std::find(known.begin(), known.end(), key) == known.end())
        fail("there is no key \"" + shown(key) + "\" here");
  }

  // The text under `key`; an absent one is empty unless it is needed.
  std::string textOf(const Json& object, const char* key, bool needed) const {
    const auto entry = object.find(key);
    if (entry == object.end()) {
      if (needed) fail(std::string("\"") + key + "\" is missing");
      return "";
    }
    if (!entry->is_string()) fail(std::string("\"") + key + "\" is no text");
    const std::string text = entry->get<std::string>();
    const bool printable =
        std::none_of(text.begin(), text.end(), [](unsigned char c) { return c < 32 || c == 127; });
    if (!printable || text.size() > longestText || (needed && text.empty()))
      fail(std::string("\"") + key + "\" is empty, longer than " + std::to_string(longestText) +
           " bytes or holds control characters");
    return text;
  }

  SourcedValue value(const Json& entry, const MaterialKey& key) const {
    const std::string name = key.key;
    if (!entry.is_object()) fail("\"" + name + "\" wants {\"value\": ..., \"source\": ...}");
    refuseOthers(entry, {"value", "bound", "source"});
    const auto number = entry.find("value");
    if (number == entry.end() || !number->is_number()) fail("\"" + name + "\" has no number \"value\"");
    SourcedValue value{number->get<double>(), false, textOf(entry, "source", false)};
    if (value.source.empty()) fail("\"" + name + "\" has no \"source\": where does the number come from?");
    if (!(value.value >= key.least && value.value <= key.most))
      fail("\"" + name + "\" is " + decimal(value.value) + ", not between " + decimal(key.least) + " and " +
           decimal(key.most));
    const std::string bound = textOf(entry, "bound", false);
    if (!bound.empty() && bound != "minimum") fail("\"bound\" of \"" + name + "\" may only be \"minimum\"");
    value.minimum = bound == "minimum";
    return value;
  }

  Material material(const Json& entry, const std::vector<Material>& before) {
    if (!entry.is_object()) fail("wanted an object");
    Material material;
    material.name = textOf(entry, "name", true);
    place_ += " (\"" + shown(material.name) + "\")";
    refuseOthers(entry, {"name", "number", "standard", "class", "limit_curve", "values"});
    if (std::int64_t number; readInteger(material.name, number))
      fail("a whole number cannot be a name: it stands for a built-in flow curve");
    for (const Material& other : before)
      if (other.name == material.name) fail("the name occurs twice");
    material.number = textOf(entry, "number", false);
    material.standard = textOf(entry, "standard", false);
    material.kind = kindOf(textOf(entry, "class", true));
    const std::string limit = textOf(entry, "limit_curve", false);
    if (!limit.empty() && limit != "keeler" && limit != "none")
      fail("\"limit_curve\" may be \"keeler\" or \"none\"");
    material.keeler = limit == "keeler";
    if (material.keeler && material.kind != MaterialClass::mildSteel)
      fail("the limit curve \"keeler\" holds for mild steel only");
    const auto values = entry.find("values");
    if (values == entry.end() || !values->is_object()) fail("there is no object \"values\"");
    std::vector<std::string> known;
    for (const MaterialKey& key : materialKeys) known.push_back(key.key);
    refuseOthers(*values, known);
    for (const MaterialKey& key : materialKeys)
      if (const auto found = values->find(key.key); found != values->end())
        material.*key.value = value(*found, key);
    return material;
  }

  MaterialClass kindOf(const std::string& name) const {
    std::string known;
    for (const MaterialClassName& kind : materialClasses) {
      if (name == kind.name) return kind.kind;
      known += std::string(known.empty() ? "" : ", ") + kind.name;
    }
    fail("there is no class \"" + shown(name) + "\"; known are " + known);
  }

  std::string file_, place_;
};

std::string lowered(std::string text) {
  for (char& c : text)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  return text;
}

}  // namespace

std::string ownLibraryText() {
  return ownMaterialsText;
}

std::vector<Material> materialsIn(const std::string& content, const std::string& source) {
  return Reader(source).read(content);
}

std::vector<LibraryMaterial> readMaterials(const std::string& path) {
  std::vector<LibraryMaterial> library;
  if (!path.empty())
    for (Material& material : materialsIn(readInputFile(path), "--materials " + path))
      library.push_back({std::move(material), path});
  for (Material& material : Reader("the program's materials").read(ownMaterialsText)) {
    const bool replaced = std::any_of(library.begin(), library.end(), [&](const LibraryMaterial& other) {
      return lowered(other.material.name) == lowered(material.name);
    });
    if (!replaced) library.push_back({std::move(material), ""});
  }
  return library;
}

Material materialNamed(const std::vector<LibraryMaterial>& library, const std::string& name) {
  for (const bool exact : {true, false})
    for (const LibraryMaterial& entry : library)
      if (exact ? entry.material.name == name : lowered(entry.material.name) == lowered(name))
        return entry.material;
  std::string known;
  for (const LibraryMaterial& entry : library) known += ", " + shown(entry.material.name);
  throw Failure("there is no material \"" + shown(name) + "\"; known are 0, 1, 2, 10" + known);
}

}  // namespace host
