// What the program prints, and where: --quiet, --json, --help.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "app/mesh/sample_meshes.hpp"
#include "app/program/program.hpp"

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

TEST(ProgramOutput, JsonOfARunIsTheSummaryAndNothingElse) {
  const ScratchFolder folder;
  folder.write("pipe.obj", halfPipeObj(20, 8));
  for (const char* more : {"", " --verbose"}) {
    const Outcome outcome = tornwalzen(folder, std::string("solve pipe.obj --out r --json") + more);
    ASSERT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(outcome.out, folder.read("r/summary.json"));
    EXPECT_EQ(nlohmann::json::parse(outcome.out)["verdict"], "good");
    EXPECT_THAT(outcome.err, HasSubstr("100 % of the part"));
  }
  EXPECT_THAT(tornwalzen(folder, "solve pipe.obj --out r --json --verbose").err, HasSubstr("beginn loeini"));
}

TEST(ProgramOutput, AVerboseRunTellsWhereItsTimeWent) {
  const ScratchFolder folder;
  folder.write("pipe.obj", halfPipeObj(20, 8));
  EXPECT_THAT(
      tornwalzen(folder, "solve pipe.obj --out r --verbose").err,
      testing::ContainsRegex("\nwall time: reading and checking [0-9.]+ s, the run [0-9.]+ s, its results "
                             "[0-9.]+ s, writing [0-9.]+ s\n$"));
  EXPECT_THAT(tornwalzen(folder, "solve pipe.obj --out r").err, Not(HasSubstr("wall time")));
}

TEST(ProgramOutput, AQuietRunPrintsNothingButRefusals) {
  const ScratchFolder folder;
  folder.write("pipe.obj", halfPipeObj(20, 8));
  folder.write("turned.obj", "v 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\nf 1 2 3\nf 1 4 3\n");  // remark and warning
  EXPECT_THAT(tornwalzen(folder, "solve turned.obj").err, HasSubstr("warning: "));
  for (const char* part : {"pipe.obj", "turned.obj"}) {
    const Outcome outcome = tornwalzen(folder, std::string("solve --quiet --out q_") + part + " " + part);
    EXPECT_THAT(outcome.out, IsEmpty()) << part;
    EXPECT_THAT(outcome.err, IsEmpty()) << part;
  }
  EXPECT_THAT(folder.read("q_pipe.obj/summary.json"), Not(IsEmpty()));
  const Outcome both = tornwalzen(folder, "solve --quiet --json --out q_pipe.obj pipe.obj");
  EXPECT_EQ(both.out, folder.read("q_pipe.obj/summary.json"));
  EXPECT_THAT(both.err, IsEmpty());
  const Outcome refused = tornwalzen(folder, "solve --quiet --json nothing.obj");
  EXPECT_EQ(refused.status, 1);
  EXPECT_THAT(refused.out, IsEmpty());
  EXPECT_THAT(refused.err, HasSubstr("nothing.obj"));
  EXPECT_EQ(tornwalzen(folder, "solve --quiet --verbose pipe.obj").status, 1);
}

TEST(ProgramOutput, ACheckAndALibraryCanBeQuiet) {
  const ScratchFolder folder;
  folder.write("pipe.obj", halfPipeObj(20, 8));
  folder.write("two.obj", "v 0 0 0\nv 1 0 0\nv 1 1 0\nv 9 0 0\nv 9 1 0\nv 8 1 0\nf 1 2 3\nf 4 5 6\n");
  folder.write("wrong.json", "{}");
  for (const auto& [command, status] :
       {std::pair{"check --quiet pipe.obj", 0}, {"check --quiet two.obj", 2}, {"materials --quiet", 0}}) {
    const Outcome outcome = tornwalzen(folder, command);
    EXPECT_EQ(outcome.status, status) << command;
    EXPECT_EQ(outcome.out + outcome.err, "") << command;
  }
  const Outcome wrong = tornwalzen(folder, "materials --quiet --json --materials wrong.json");
  EXPECT_EQ(wrong.status, 1);
  EXPECT_THAT(wrong.out, IsEmpty());
  EXPECT_THAT(wrong.err, HasSubstr("wrong.json"));
  EXPECT_NO_THROW(nlohmann::json::parse(tornwalzen(folder, "materials --json").out));
}

TEST(ProgramOutput, EveryHelpHasExamplesThatTheProgramKnows) {
  const ScratchFolder folder;
  for (const char* command : {"", "solve", "check", "deck", "materials", "study", "collect"}) {
    const Outcome outcome = tornwalzen(folder, std::string(command) + " --help");
    EXPECT_EQ(outcome.status, 0) << command;
    const std::size_t examples = outcome.out.find("Examples:\n");
    ASSERT_NE(examples, std::string::npos) << command;
    std::istringstream lines(outcome.out.substr(examples));
    int seen = 0;
    for (std::string line; std::getline(lines, line);) {
      const std::size_t start = line.find("tornwalzen ");
      if (start != 6) continue;
      ++seen;
      std::istringstream words(line.substr(start));
      std::string program, name, word;
      words >> program >> name;
      const Outcome known = tornwalzen(folder, name + " --help");
      EXPECT_EQ(known.status, 0) << line;
      const std::string help = known.out;
      while (words >> word && word != "|" && !word.ends_with(";") && word != "&&" && word != ">")
        if (word.starts_with("--")) {
          EXPECT_THAT(help, HasSubstr(word)) << line;
        }
    }
    EXPECT_GE(seen, 2) << command;
  }
}
