#include "command/material_library.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/refusal.hpp"
#include "app/scratch_folder.hpp"
#include "command/chosen_settings.hpp"
#include "command/materials.hpp"

using namespace host;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

std::string library(const std::string& entries) {
  return R"({"format": "tornwalzen materials 1", "materials": [)" + entries + "]}";
}

const std::string full = R"({"name": "lab steel", "class": "mild steel", "limit_curve": "keeler", "values": {
  "K_MPa": {"value": 540, "source": "coil 7"}, "e0": {"value": 0.006, "source": "coil 7"},
  "n": {"value": 0.23, "source": "coil 7"}, "r0": {"value": 1.8, "source": "coil 7"},
  "r45": {"value": 1.4, "source": "coil 7"}, "r90": {"value": 2.2, "source": "coil 7"}}})";

// What the reading of such a file is refused with, behind its name.
std::string refusalOf(const std::string& text) {
  const ScratchFolder folder;
  const std::string path = folder.write("m.json", text), sentence = refusal([&] { readMaterials(path); });
  const std::string head = "--materials " + path;
  return sentence.starts_with(head) ? sentence.substr(head.size()) : sentence;
}

}  // namespace

TEST(MaterialLibrary, EveryNumberOfTheProgramsHasASource) {
  const auto own = readMaterials("");
  EXPECT_GE(own.size(), 5u);
  for (const LibraryMaterial& entry : own) {
    EXPECT_TRUE(entry.material.density) << entry.material.name;
    for (const MaterialKey& key : materialKeys)
      if (const auto& value = entry.material.*key.value) {
        EXPECT_FALSE(value->source.empty());
      }
  }
}

TEST(MaterialLibrary, Dc04HasTheMinimaOfItsStandardAndNoCurve) {
  const Material dc04 = materialNamed(readMaterials(""), "dc04");
  EXPECT_EQ(dc04.name, "DC04");
  EXPECT_EQ(dc04.n->value, 0.18);
  EXPECT_TRUE(dc04.n->minimum);
  EXPECT_EQ(dc04.r90->value, 1.6);
  EXPECT_TRUE(dc04.r90->minimum);
  EXPECT_FALSE(dc04.hasCurve());
  EXPECT_FALSE(dc04.hasMeanR());
  SolveOptions options;
  options.material = "DC04";
  const RunSettings settings = settingsOf(options, dc04);
  EXPECT_EQ(settings.material, 1);
  EXPECT_TRUE(settings.curve.strain.empty());
  EXPECT_EQ(settings.r, 1.0);
  const auto remarks = materialRemarks(options, dc04);
  ASSERT_EQ(remarks.size(), 2u);
  EXPECT_THAT(remarks[0], HasSubstr("DC04 has no flow curve with a source: built-in curve 1 stands in"));
  EXPECT_THAT(remarks[1], HasSubstr("a minimum of r90, 1.6: the run is made with r = 1"));
  SolveOptions planar = options;
  planar.press.planarR = "1.5,1.2,1.8";
  EXPECT_EQ(materialRemarks(planar, dc04).size(), 1u);  // of the curve
  options.law = "swift:K=540,e0=0.006,n=0.2";
  options.r = 1.7;
  options.rGiven = true;
  EXPECT_TRUE(materialRemarks(options, dc04).empty());
  EXPECT_EQ(settingsOf(options, dc04).r, 1.7);
  EXPECT_EQ(settingsOf(options, dc04).curve.source, "--law swift:K=540,e0=0.006,n=0.2");
}

TEST(MaterialLibrary, AUsersMaterialGivesCurveAndMeanAnisotropy) {
  const ScratchFolder folder;
  SolveOptions options;
  options.material = "Lab Steel";
  options.materials = folder.write("m.json", library(full));
  const Material material = chosenMaterial(options);
  EXPECT_EQ(material.name, "lab steel");
  const RunSettings settings = settingsOf(options, material);
  EXPECT_EQ(settings.curve.source, "--material lab steel, Swift K 540 MPa, e0 0.006, n 0.23");
  EXPECT_NEAR(settings.curve.stress.front(), 540 * std::pow(0.006, 0.23), 1e-10);
  EXPECT_NEAR(settings.r, (1.8 + 2 * 1.4 + 2.2) / 4, 1e-15);
  EXPECT_TRUE(materialRemarks(options, material).empty());
}

TEST(MaterialLibrary, WithoutE0TheLawIsHollomons) {
  SolveOptions options;
  options.material = "low-carbon steel";
  const Material steel = chosenMaterial(options);
  EXPECT_TRUE(steel.hasCurve());
  const RunSettings settings = settingsOf(options, steel);
  EXPECT_EQ(settings.curve.source, "--material low-carbon steel, Hollomon K 530 MPa, n 0.26");
  EXPECT_NEAR(settings.curve.stress.back(), 530.0 * std::pow(settings.curve.strain.back(), 0.26), 1e-10);
}

TEST(MaterialLibrary, ABoundOfE0MakesNoCurve) {
  const ScratchFolder folder;
  std::string bounded = full;
  bounded.replace(bounded.find("\"value\": 0.006"), 14, "\"bound\": \"minimum\", \"value\": 0.006");
  EXPECT_FALSE(
      materialNamed(readMaterials(folder.write("m.json", library(bounded))), "lab steel").hasCurve());
}

TEST(MaterialLibrary, AUsersFileReplacesAMaterialOfTheSameName) {
  const ScratchFolder folder;
  const std::string path =
      folder.write("m.json", library(R"({"name": "dc04", "class": "mild steel", "values": {}})"));
  const auto all = readMaterials(path), own = readMaterials("");
  EXPECT_EQ(all.size(), own.size());
  EXPECT_EQ(all[0].origin, path);
  EXPECT_FALSE(materialNamed(all, "DC04").n);
}

TEST(MaterialLibrary, TheProgramsOwnFileIsAFileOfTheUser) {
  const ScratchFolder folder;
  EXPECT_EQ(readMaterials(folder.write("m.json", ownLibraryText())).size(), readMaterials("").size());
}

TEST(MaterialLibrary, TheListTellsBoundsAndSources) {
  const std::string list = materialsList(readMaterials(""));
  EXPECT_THAT(list, HasSubstr("DC04                mild steel, 1.0338, EN 10130:2006\n"));
  EXPECT_THAT(list, HasSubstr("  r90                 at least 1.6    EN 10130:2006"));
  EXPECT_THAT(list, HasSubstr("  E_MPa               200000          EN 1993-1-4:2006, 2.1.3\n"));
}

TEST(MaterialLibrary, AnUnknownNameNamesThoseThereAre) {
  EXPECT_THAT(refusal([] { materialNamed(readMaterials(""), "DC09\n"); }),
              StartsWith("there is no material \"DC09?\"; known are 0, 1, 2, 10, DC01, DC03, DC04"));
}

TEST(MaterialLibrary, RefusalsNameMaterialAndKey) {
  EXPECT_EQ(refusalOf("{\n\"format\": }"), ": no JSON, near line 2");
  EXPECT_EQ(refusalOf("[]"), ": wanted an object with \"format\" and \"materials\"");
  EXPECT_EQ(refusalOf("{}"), ": \"format\" is missing");
  EXPECT_EQ(refusalOf(R"({"format": "tornwalzen materials 2", "materials": []})"),
            ": \"format\" is not \"tornwalzen materials 1\"");
  EXPECT_EQ(refusalOf(R"({"format": "tornwalzen materials 1"})"), ": there is no list \"materials\"");
  EXPECT_EQ(refusalOf(library("3")), ", material 1: wanted an object");
  EXPECT_EQ(refusalOf(library(R"({"name": 3})")), ", material 1: \"name\" is no text");
  EXPECT_EQ(refusalOf(library(R"({"name": "10", "class": "other", "values": {}})")),
            ", material 1 (\"10\"): a whole number cannot be a name: it stands for a built-in flow curve");
  EXPECT_EQ(refusalOf(library(full + "," + full)), ", material 2 (\"lab steel\"): the name occurs twice");
  EXPECT_EQ(refusalOf(library(R"({"name": "a", "class": "wood", "values": {}})")),
            ", material 1 (\"a\"): there is no class \"wood\"; known are mild steel, steel, stainless steel, "
            "aluminium, other");
  EXPECT_EQ(refusalOf(library(R"({"name": "a", "class": "steel", "limit_curve": "keeler", "values": {}})")),
            ", material 1 (\"a\"): the limit curve \"keeler\" holds for mild steel only");
  const auto withValue = [](const std::string& key, const std::string& value) {
    return refusalOf(
        library(R"({"name": "a", "class": "steel", "values": {")" + key + "\": " + value + "}}"));
  };
  EXPECT_EQ(withValue("n", R"({"value": 0.2})"),
            ", material 1 (\"a\"): \"n\" has no \"source\": where does the number come from?");
  EXPECT_EQ(withValue("n", R"({"value": -0.2, "source": "x"})"),
            ", material 1 (\"a\"): \"n\" is -0.2, not between 0.001 and 1");
  EXPECT_EQ(withValue("n", R"({"value": 1e999, "source": "x"})"), ": a number is too large");
  EXPECT_EQ(withValue("n", R"({"value": "0.2", "source": "x"})"),
            ", material 1 (\"a\"): \"n\" has no number \"value\"");
  EXPECT_EQ(withValue("n", R"({"value": 0.2, "source": "x", "bound": "maximum"})"),
            ", material 1 (\"a\"): \"bound\" of \"n\" may only be \"minimum\"");
  EXPECT_EQ(withValue("K", R"({"value": 500, "source": "x"})"),
            ", material 1 (\"a\"): there is no key \"K\" here");
  EXPECT_EQ(withValue("n", "0.2"), ", material 1 (\"a\"): \"n\" wants {\"value\": ..., \"source\": ...}");
  EXPECT_EQ(refusalOf(library(R"({"name": "a"})")), ", material 1 (\"a\"): \"class\" is missing");
  EXPECT_EQ(refusalOf(library(R"({"name": "a", "class": "steel"})")),
            ", material 1 (\"a\"): there is no object \"values\"");
  EXPECT_EQ(refusalOf(library(R"({"name": "a", "class": "steel", "limit_curve": "fld", "values": {}})")),
            ", material 1 (\"a\"): \"limit_curve\" may be \"keeler\" or \"none\"");
  EXPECT_EQ(refusalOf(std::string(200000, '[')), ": no JSON, near line 1");
  EXPECT_EQ(refusalOf(R"({"format": "tornwalzen materials 1", "format": "", "materials": []})"),
            ": the key \"format\" occurs twice in one object");
  EXPECT_EQ(
      refusalOf(library(R"({"name": "a", "class": "steel", "values": {"n": {"value": 0.2, "source": "x"}, )"
                        R"("n": {"value": 0.3, "source": "x"}}})")),
      ": the key \"n\" occurs twice in one object");
  EXPECT_EQ(refusalOf(library(R"({"name": "a", "class": "steel", "values": {"n": {"value": nan}}})")),
            ": no JSON, near line 1");
  EXPECT_EQ(refusalOf(library(R"({"name": "a", "class": "steel", "values": {"n": {"value": 1e999}}})")),
            ": a number is too large");
  EXPECT_THAT(refusalOf(library(R"({"name": "", "class": "steel", "values": {}})")), HasSubstr("is empty"));
  EXPECT_THAT(refusalOf(library(R"({"name": "a\u0007", "class": "steel", "values": {}})")),
              HasSubstr("control characters"));
}

TEST(MaterialLibrary, BoundsMakeNoCurve) {
  const ScratchFolder folder;
  std::string bounded = full;
  bounded.replace(bounded.find("\"value\": 540"), 12, "\"bound\": \"minimum\", \"value\": 540");
  const Material material =
      materialNamed(readMaterials(folder.write("m.json", library(bounded))), "lab steel");
  EXPECT_FALSE(material.hasCurve());
  EXPECT_TRUE(material.hasMeanR());
}
