#include "result/vtu_writer.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/run/sample_run.hpp"
#include "app/scratch_folder.hpp"
#include "mesh/obj_reader.hpp"
#include "result/obj_writer.hpp"
#include "result/vtu_array.hpp"

using namespace host;
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
  const std::string text = written([&](FileWriter& file) { writeVtu(file, sample.report(), Shape::part); });
  EXPECT_THAT(text, HasSubstr("NumberOfPoints=\"5\" NumberOfCells=\"2\""));
  // 24 bytes of node numbers from 0: (0 1 3 0 3 4), as 32 bits
  EXPECT_THAT(text, HasSubstr("Name=\"connectivity\" format=\"binary\">\n"
                              "GAAAAAAAAAAAAAAAAQAAAAMAAAAAAAAAAwAAAAQAAAA=\n"));
  EXPECT_THAT(text, Not(HasSubstr("NOT CONVERGED")));
}

TEST(Vtu, APartThatWasNotDevelopedHasNoStrains) {
  SampleRun sample;
  sample.run.report.reason = TORNWALZEN_NOT_DEVELOPED;
  sample.compute();
  const std::string text = written([&](FileWriter& file) { writeVtu(file, sample.report(), Shape::blank); });
  // 16 bytes: two numbers that are none
  for (const char* name : {"strain_major_log", "strain_minor_log", "strain_equivalent", "flow_stress_MPa",
                           "thickness_strain_ln_Ablank_by_Apart", "thickness_ratio_Ablank_by_Apart"})
    EXPECT_THAT(text, HasSubstr("Name=\"" + std::string(name) +
                                "\" format=\"binary\">\nEAAAAAAAAAAAAAAAAAD4fwAAAAAAAPh/\n"))
        << name;
}

TEST(Vtu, AnUnconvergedRunIsMarked) {
  SampleRun sample;
  sample.verdict = {false, "the reason", exitUnconverged, Worth::notABlank, {"not converged"}};
  EXPECT_THAT(written([&](FileWriter& file) { writeVtu(file, sample.report(), Shape::blank); }),
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
  EXPECT_THAT(mesh.corners, testing::ElementsAre(1, 2, 4, 1, 4, 5));
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
