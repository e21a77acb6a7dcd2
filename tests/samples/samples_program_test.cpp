// The program that writes the sample parts, as a user runs it.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "shapes.hpp"

namespace {

namespace fs = std::filesystem;

std::string contents(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

class SamplesProgram : public testing::Test {
 protected:
  fs::path folder;
  std::string out, err;

  void SetUp() override {
    std::string name = (fs::temp_directory_path() / "tornwalzen_samples_XXXXXX").string();
    ASSERT_NE(mkdtemp(name.data()), nullptr);
    folder = name;
  }
  void TearDown() override { fs::remove_all(folder); }

  int run(const std::string& arguments) {
    const std::string command =
        "cd '" + folder.string() + "' && '" SAMPLES_PROGRAM "' " + arguments + " >out 2>err";
    const int status = std::system(command.c_str());
    out = contents(folder / "out");
    err = contents(folder / "err");
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }
};

TEST_F(SamplesProgram, ListsEveryShapeWithALine) {
  ASSERT_EQ(run("--list"), 0);
  for (const auto& info : shapes::catalogue()) {
    EXPECT_NE(("\n" + out).find("\n" + info.name + " "), std::string::npos) << info.name;
    EXPECT_NE(out.find(info.summary), std::string::npos) << info.name;
  }
  EXPECT_EQ(std::count(out.begin(), out.end(), '\n'), static_cast<long>(shapes::catalogue().size()));
}

TEST_F(SamplesProgram, NamesTheDimensionsOfAShape) {
  ASSERT_EQ(run("half_pipe --dimensions"), 0);
  EXPECT_NE(out.find("  radius                 30  radius (mm)\n"), std::string::npos) << out;
}

TEST_F(SamplesProgram, WritesTheMeshThatTheLibraryMakes) {
  ASSERT_EQ(
      run("half_pipe --size 5 --set radius=40 --set length=50 --seed 9 --blank flat.obj -o 'my part.obj'"), 0)
      << err;
  const shapes::Sheet s = shapes::makeShape("half_pipe", {5.0, 0, 9}, {{"radius", 40.0}, {"length", 50.0}});
  std::ifstream part(folder / "my part.obj"), flat(folder / "flat.obj");
  std::vector<double> knots, blank;
  std::vector<std::int32_t> inzi;
  std::string kind, line;
  double x, y, z;
  std::int32_t a, b, c;
  while (std::getline(part, line)) {
    std::istringstream in(line);
    in >> kind;
    if (kind == "v" && in >> x >> y >> z) knots.insert(knots.end(), {x, y, z});
    if (kind == "f" && in >> a >> b >> c) inzi.insert(inzi.end(), {a, b, c});
  }
  while (std::getline(flat, line)) {
    std::istringstream in(line);
    in >> kind;
    if (kind != "v" || !(in >> x >> y >> z)) continue;
    blank.insert(blank.end(), {x, y});
    EXPECT_EQ(z, 0.0);
  }
  EXPECT_EQ(knots, s.knots);  // the same bits
  EXPECT_EQ(inzi, s.inzi);
  EXPECT_EQ(blank, s.blank);
  std::ostringstream told;
  told << "my part.obj: " << s.nodes() << " nodes, " << s.triangles() << " triangles\n";
  EXPECT_EQ(out, told.str());
}

TEST_F(SamplesProgram, ReadyCupIsWhatTheProgramMakes) {
  ASSERT_EQ(run("square_cup -o cup.obj"), 0) << err;
  // Sines and cosines may differ in the last bit between machines, so the texts are compared number by
  // number.
  std::ifstream made(folder / "cup.obj"), ready(fs::path(SAMPLES_FOLDER) / "square_cup.obj");
  ASSERT_TRUE(ready.is_open());
  std::string a, b;
  while (made >> a) {
    ASSERT_TRUE(ready >> b);
    char *endA = nullptr, *endB = nullptr;
    const double x = std::strtod(a.c_str(), &endA), y = std::strtod(b.c_str(), &endB);
    if (*endA != '\0') {
      ASSERT_EQ(a, b);
    } else {
      ASSERT_NEAR(x, y, 1e-12 * 64.4);
    }
  }
  EXPECT_FALSE(ready >> b);
}

TEST_F(SamplesProgram, SmallNumbersOfTrianglesAreMetOrRefusedWithTheLeast) {
  EXPECT_NE(run("s_rail --triangles 60 -o x.obj"), 0);
  EXPECT_EQ(err, "tornwalzen_samples: s_rail takes at least 1104 triangles\n");
  EXPECT_FALSE(fs::exists(folder / "x.obj"));
  ASSERT_EQ(run("s_rail --triangles 1104 -o x.obj"), 0) << err;
  EXPECT_EQ(out, "x.obj: 630 nodes, 1104 triangles\n");
  ASSERT_EQ(run("half_pipe --triangles 60 -o x.obj"), 0) << err;
  EXPECT_EQ(out, "x.obj: 44 nodes, 60 triangles\n");
  EXPECT_NE(run("plate --triangles 1 -o x.obj"), 0);
  EXPECT_EQ(err, "tornwalzen_samples: plate takes at least 2 triangles\n");
}

TEST_F(SamplesProgram, RefusesWithACause) {
  const auto refusal = [this](const std::string& arguments) {
    EXPECT_NE(run(arguments), 0) << arguments;
    EXPECT_FALSE(fs::exists(folder / "x.obj")) << arguments;
    return err;
  };
  EXPECT_EQ(refusal(""), "tornwalzen_samples: no shape named; --list names them all\n");
  EXPECT_EQ(refusal("plate"), "tornwalzen_samples: no output file; give one with -o FILE\n");
  EXPECT_EQ(refusal("teapot -o x.obj"), "tornwalzen_samples: there is no shape \"teapot\"\n");
  EXPECT_EQ(refusal("teapot --dimensions"),
            "tornwalzen_samples: there is no shape \"teapot\"; --list names them all\n");
  EXPECT_EQ(refusal("plate --set width -o x.obj"),
            "tornwalzen_samples: --set wants DIMENSION=VALUE, not \"width\"\n");
  EXPECT_EQ(refusal("plate --set width=3mm -o x.obj"),
            "tornwalzen_samples: --set wants DIMENSION=VALUE, not \"width=3mm\"\n");
  EXPECT_EQ(refusal("box --blank x.obj -o y.obj"),
            "tornwalzen_samples: the exact blank of this shape is not known\n");
  EXPECT_EQ(refusal("plate -o nowhere/x.obj"),
            "tornwalzen_samples: cannot write nowhere/x.obj: No such file or directory\n");
  EXPECT_NE(refusal("plate --size 2 --triangles 100 -o x.obj").find("excludes"), std::string::npos);
}

}  // namespace
