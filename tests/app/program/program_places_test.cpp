// Where results may lie: never over what is read, never over the results of another part.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "app/mesh/sample_meshes.hpp"
#include "app/program/program.hpp"

using testing::ElementsAre;
using testing::HasSubstr;

namespace {

std::string replaced(const std::string& output, const std::string& input) {
  return "tornwalzen: " + output + " would be replaced, but it is read as " + input +
         "; choose another folder with --out\n";
}

}  // namespace

TEST(Places, AResultDoesNotReplaceThePart) {
  const ScratchFolder folder;
  const std::string part = halfPipeObj(8, 4);
  folder.write("blank.obj", part);
  for (const char* force : {"", " --force"}) {
    const Outcome outcome = tornwalzen(folder, std::string("solve blank.obj --out .") + force);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err, replaced("./blank.obj", "blank.obj"));
    EXPECT_EQ(folder.read("blank.obj"), part);
    EXPECT_THAT(folder.names(), ElementsAre("blank.obj"));
  }
}

TEST(Places, NoLinkLeadsARunOverThePart) {
  for (const char* link :
       {"ln -s ../part.obj r/blank.obj", "ln part.obj r/summary.json", "ln -s ../part.obj r/tornwalzen.log",
        "ln -s ../part.obj r/step; ln -s step r/part.vtu", "rmdir r; ln -s . r; cp -l part.obj blank.obj"}) {
    const ScratchFolder folder;
    const std::string part = halfPipeObj(8, 4);
    folder.write("part.obj", part);
    ASSERT_EQ(shell(folder, std::string("mkdir r; ") + link).status, 0);
    const Outcome outcome = tornwalzen(folder, "solve part.obj --out r --force");
    EXPECT_EQ(outcome.status, 1) << link;
    EXPECT_THAT(outcome.err, HasSubstr("would be replaced, but it is read as part.obj; ")) << link;
    EXPECT_EQ(folder.read("part.obj"), part) << link;
  }
}

TEST(Places, AResultDoesNotReplaceCurveOrHolds) {
  const ScratchFolder folder;
  folder.write("pipe.obj", halfPipeObj(8, 4));
  folder.write("summary.json", "0,200\n0.1,300\n0.3,350\n");
  folder.write("eben.t51", "1\n2\n4\n");
  EXPECT_EQ(tornwalzen(folder, "solve pipe.obj --curve summary.json --out . --force").err,
            replaced("./summary.json", "summary.json"));
  EXPECT_EQ(tornwalzen(folder, "solve pipe.obj --hold eben.t51 --eben --out . --force").err,
            replaced("./eben.t51", "eben.t51"));
  EXPECT_EQ(folder.read("eben.t51"), "1\n2\n4\n");
  EXPECT_THAT(folder.names(), ElementsAre("eben.t51", "pipe.obj", "summary.json"));
  // what is read may lie in the folder as long as no result has its name
  EXPECT_EQ(tornwalzen(folder, "solve pipe.obj --hold eben.t51 --out . --force").status, 0);
  EXPECT_EQ(folder.read("eben.t51"), "1\n2\n4\n");
}

TEST(Places, ADeckDoesNotReplaceWhatItIsMadeOf) {
  const ScratchFolder folder;
  const std::string part = halfPipeObj(8, 4);
  folder.write("part.obj", part);
  folder.write("d.part", part);  // a deck grows under such a name
  ASSERT_EQ(shell(folder, "ln -s part.obj link; ln part.obj hard").status, 0);
  for (const char* arguments : {"part.obj -o part.obj", "part.obj -o link", "link -o part.obj",
                                "hard -o ./part.obj", "d.part -o d"}) {
    const Outcome outcome = tornwalzen(folder, std::string("deck ") + arguments);
    EXPECT_EQ(outcome.status, 1) << arguments;
    EXPECT_THAT(outcome.err, HasSubstr("would be replaced, but it is read as ")) << arguments;
    EXPECT_EQ(folder.read("part.obj"), part) << arguments;
    EXPECT_EQ(folder.read("d.part"), part) << arguments;
  }
}

TEST(Places, AnotherPartOfTheSameNameIsNotReplaced) {
  const ScratchFolder folder;
  ASSERT_EQ(shell(folder, "mkdir a b").status, 0);
  folder.write("a/part.obj", halfPipeObj(8, 4));
  folder.write("b/part.obj", halfPipeObj(10, 4));
  ASSERT_EQ(tornwalzen(folder, "solve a/part.obj").status, 0);
  const std::string first = folder.read("part_blank/summary.json"),
                    log = folder.read("part_blank/tornwalzen.log");
  const Outcome outcome = tornwalzen(folder, "solve b/part.obj");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.err, "tornwalzen: the folder part_blank holds the results of another part, " +
                             std::filesystem::canonical(folder.file("a/part.obj")).string() +
                             "; choose another folder with --out, or replace them with --force\n");
  EXPECT_EQ(folder.read("part_blank/summary.json"), first);
  EXPECT_EQ(folder.read("part_blank/tornwalzen.log"), log);
  EXPECT_EQ(tornwalzen(folder, "solve b/part.obj --force").status, 0);
  EXPECT_EQ(nlohmann::json::parse(folder.read("part_blank/summary.json"))["part"], "b/part.obj");
}

TEST(Places, TheSamePartMayRunAgainAlsoEditedMovedOrThroughAPipe) {
  const ScratchFolder folder;
  folder.write("part.obj", halfPipeObj(8, 4));
  ASSERT_EQ(tornwalzen(folder, "solve part.obj --out r").status, 0);
  EXPECT_EQ(tornwalzen(folder, "solve part.obj --material 0 --out r").status, 0);
  folder.write("part.obj", halfPipeObj(10, 4));
  EXPECT_EQ(tornwalzen(folder, "solve part.obj --out r").status, 0);
  EXPECT_EQ(shell(folder, "mv part.obj moved.obj; \"$TORNWALZEN\" solve moved.obj --out r").status, 0);
  EXPECT_EQ(shell(folder, "cat moved.obj | \"$TORNWALZEN\" solve /dev/stdin --out r").status, 0);
  // two pipes have one name, but not one content
  folder.write("other.obj", halfPipeObj(8, 4));
  const Outcome outcome = shell(folder, "cat other.obj | \"$TORNWALZEN\" solve /dev/stdin --out r");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_THAT(outcome.err, HasSubstr("holds the results of another part, /dev/stdin; "));
}

TEST(Places, FilesOfSomebodyElseAreNotReplaced) {
  for (const char* summary : {"", "{}", "[1]", "no json", R"({"part_path": 7, "part_hash": null})"}) {
    const ScratchFolder folder;
    folder.write("part.obj", halfPipeObj(8, 4));
    ASSERT_EQ(shell(folder, "mkdir r; echo mine > r/part.vtu").status, 0);
    if (*summary != '\0') folder.write("r/summary.json", summary);
    const Outcome outcome = tornwalzen(folder, "solve part.obj --out r");
    EXPECT_EQ(outcome.status, 1) << summary;
    EXPECT_EQ(
        outcome.err,
        "tornwalzen: the folder r holds part.vtu, and no summary.json there tells that it is a result of "
        "this program; choose another folder with --out, or replace them with --force\n");
    EXPECT_EQ(folder.read("r/part.vtu"), "mine\n");
    EXPECT_EQ(tornwalzen(folder, "solve part.obj --out r --force").status, 0);
  }
}

TEST(Places, AFolderWithOtherFilesOrAnUnfinishedRunIsTaken) {
  const ScratchFolder folder;
  folder.write("part.obj", halfPipeObj(8, 4));
  ASSERT_EQ(shell(folder, "mkdir r; echo mine > r/notes; echo old > r/tornwalzen.log").status, 0);
  EXPECT_EQ(tornwalzen(folder, "solve part.obj --out r").status, 0);
  EXPECT_EQ(folder.read("r/notes"), "mine\n");
}
