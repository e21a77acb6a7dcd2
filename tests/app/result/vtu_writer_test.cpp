#include "result/vtu_writer.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <zlib.h>

#include <cstring>

#include "app/run/sample_run.hpp"
#include "app/scratch_folder.hpp"
#include "mesh/obj_reader.hpp"
#include "result/base64.hpp"
#include "result/obj_writer.hpp"
#include "result/vtu_file.hpp"

using namespace host;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

namespace {

std::string written(const std::function<void(FileWriter&)>& content) {
  const ScratchFolder folder;
  ResultFiles files(folder.path());
  files.add("file", content);
  files.putIntoPlace();
  return folder.read("file");
}

// Where the numbers begin.
std::size_t dataOf(const std::string& text) {
  const std::string mark = "<AppendedData encoding=\"raw\">\n_";
  return text.find(mark) + mark.size();
}

std::size_t lengthAt(const std::string& text, std::size_t place) {
  std::uint64_t length = 0;
  std::memcpy(&length, text.data() + place, sizeof length);
  return length;
}

std::size_t offsetOf(const std::string& text, const std::string& name) {
  const std::size_t array = text.find(" Name=\"" + name + "\" ");
  return std::stoul(text.substr(text.find("offset=\"", array) + 8));
}

template <class T>
std::vector<T> valuesOf(const std::string& text, const std::string& name) {
  EXPECT_THAT(text,
              HasSubstr("<DataArray type=\"" + std::string(vtkType<T>()) + "\" Name=\"" + name + "\" "));
  const std::size_t place = dataOf(text) + offsetOf(text, name);
  std::vector<T> values(lengthAt(text, place) / sizeof(T));
  std::memcpy(values.data(), text.data() + place + 8, values.size() * sizeof(T));
  return values;
}

}  // namespace

TEST(Base64, AgreesWithTheVectorsOfItsStandard) {
  EXPECT_EQ(base64(""), "");
  EXPECT_EQ(base64("f"), "Zg==");
  EXPECT_EQ(base64("fo"), "Zm8=");
  EXPECT_EQ(base64("foo"), "Zm9v");
  EXPECT_EQ(base64("foob"), "Zm9vYg==");
  EXPECT_EQ(base64("\xff\xfe\xfd"), "//79");
}

TEST(Vtu, HoldsAllNodesAndTheTrianglesOfTheRun) {
  const SampleRun sample;
  const std::string text =
      written([&](FileWriter& file) { writeVtu(file, sample.report(), Shape::part, false); });
  EXPECT_THAT(text, HasSubstr("NumberOfPoints=\"5\" NumberOfCells=\"2\""));
  EXPECT_THAT(valuesOf<std::int32_t>(text, "connectivity"), ElementsAre(0, 1, 3, 0, 3, 4));
  EXPECT_THAT(valuesOf<std::int64_t>(text, "offsets"), ElementsAre(3, 6));
  EXPECT_THAT(valuesOf<std::uint8_t>(text, "types"), ElementsAre(5, 5));
  EXPECT_EQ(valuesOf<double>(text, "position_mm"), sample.report().part.points);
  EXPECT_THAT(text, Not(HasSubstr("NOT CONVERGED")));
}

// Readers that look for the blocks one after the other find each where the one before it ends.
TEST(Vtu, ArraysLieBehindOneAnotherAndFillTheData) {
  const SampleRun sample;
  const std::string text =
      written([&](FileWriter& file) { writeVtu(file, sample.report(), Shape::blank, false); });
  const std::size_t begin = dataOf(text);
  std::size_t offset = 0, arrays = 0;
  for (std::size_t at = text.find("offset=\""); at < begin; at = text.find("offset=\"", at + 1)) {
    EXPECT_EQ(std::stoul(text.substr(at + 8)), offset);
    offset += 8 + lengthAt(text, begin + offset);
    ++arrays;
  }
  EXPECT_GT(arrays, 20u);
  EXPECT_EQ(text.substr(begin + offset), "\n</AppendedData>\n</VTKFile>\n");
}

TEST(Vtu, APartThatWasNotDevelopedHasNoStrains) {
  SampleRun sample;
  sample.run.report.reason = TORNWALZEN_NOT_DEVELOPED;
  sample.compute();
  const std::string text =
      written([&](FileWriter& file) { writeVtu(file, sample.report(), Shape::blank, false); });
  for (const char* name : {"strain_major_log", "strain_minor_log", "strain_equivalent", "flow_stress_MPa",
                           "thickness_strain_ln_Ablank_by_Apart", "thickness_ratio_Ablank_by_Apart"})
    EXPECT_THAT(valuesOf<double>(text, name), ElementsAre(testing::IsNan(), testing::IsNan())) << name;
}

TEST(Vtu, CompressedBlocksHoldTheSameBytes) {
  std::vector<double> values;
  for (int k = 0; k < 40000; ++k) values.push_back(k % 100);  // 320,000 bytes: two whole blocks and a part
  const std::vector<double> none;
  VtuFile grid("", true);
  grid.array("values", values);
  grid.array("none", none);
  const std::string text = written([&](FileWriter& file) { grid.write(file); });
  EXPECT_THAT(text, HasSubstr("compressor=\"vtkZLibDataCompressor\""));
  const std::size_t begin = dataOf(text);
  ASSERT_EQ(lengthAt(text, begin), 3u);
  const std::size_t block = lengthAt(text, begin + 8), last = lengthAt(text, begin + 16);
  EXPECT_EQ(2 * block + last, 320000u);
  std::string bytes;
  std::size_t at = begin + 48;
  for (std::size_t k = 0; k < 3; ++k) {
    std::string plain(k < 2 ? block : last, '\0');
    uLongf length = plain.size();
    const std::size_t packed = lengthAt(text, begin + 24 + 8 * k);
    ASSERT_EQ(uncompress(reinterpret_cast<Bytef*>(plain.data()), &length,
                         reinterpret_cast<const Bytef*>(text.data() + at), packed),
              Z_OK);
    EXPECT_EQ(length, plain.size());
    bytes += plain;
    at += packed;
  }
  EXPECT_EQ(std::memcmp(bytes.data(), values.data(), bytes.size()), 0);
  EXPECT_LT(at - begin, 100000u);
  EXPECT_EQ(offsetOf(text, "none"), at - begin);
  EXPECT_EQ(lengthAt(text, at), 0u);  // no block
}

TEST(Vtu, AnUnconvergedRunIsMarked) {
  SampleRun sample;
  sample.verdict = {false, "the reason", exitUnconverged, Worth::notABlank, {"not converged"}};
  EXPECT_THAT(written([&](FileWriter& file) { writeVtu(file, sample.report(), Shape::blank, false); }),
              HasSubstr("<!-- NOT CONVERGED: the reason -->"));
}

TEST(BlankObj, ReadsBackToTheSameBitsAndOrder) {
  SampleRun sample;
  sample.run.RX[0] = 0.1 + 0.2;
  sample.run.RX[5] = -1.0 / 3.0;
  sample.compute();
  const std::string text = written([&](FileWriter& file) { writeBlankObj(file, sample.report()); });
  const Mesh mesh = readObj(text, "blank.obj");
  EXPECT_EQ(mesh.points, sample.results.blankPoints);
  EXPECT_THAT(mesh.corners, ElementsAre(1, 2, 4, 1, 4, 5));
  EXPECT_THAT(text, Not(HasSubstr("NOT CONVERGED")));
}

TEST(BlankObj, AnUnconvergedRunIsMarkedAndAFileNameStaysOnItsLine) {
  SampleRun sample;
  sample.verdict = {false, "the reason", exitUnconverged, Worth::notABlank, {"not converged"}};
  sample.part.file = "a\nv 1 2 3";
  sample.compute();
  const std::string text = written([&](FileWriter& file) { writeBlankObj(file, sample.report()); });
  EXPECT_THAT(text, testing::StartsWith("# flat blank of a?v 1 2 3\n"));
  EXPECT_THAT(text, HasSubstr("# NOT CONVERGED: the reason\n"));
}
