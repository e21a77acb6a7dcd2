// Reads the triangles of a Wavefront OBJ file; see the header.
#include "mesh/obj_reader.hpp"

#include <algorithm>
#include <array>
#include <future>
#include <utility>

#include "mesh/shell_mesh.hpp"
#include "system/background.hpp"
#include "system/failure.hpp"
#include "system/text.hpp"

namespace host {

namespace {

constexpr std::size_t largeContent = std::size_t{1} << 20;  // bytes, from which on a thread pays

[[noreturn]] void refuse(const std::string& file, std::size_t lineNumber, const std::string& what) {
  throw Failure(file + ", line " + std::to_string(lineNumber) + ": " + what);
}

void readVertexLine(Mesh& mesh, std::string_view line, std::size_t lineNumber) {
  const std::size_t node = mesh.nodes() + 1;
  std::size_t position = 1;  // behind the "v"
  for (int axis = 0; axis < 3; ++axis) {
    const std::string_view word = nextWord(line, position);
    double coordinate = 0.0;
    if (word.empty())
      refuse(mesh.file, lineNumber, "node " + std::to_string(node) + " has fewer than three coordinates");
    if (!readReal(word, coordinate))
      refuse(mesh.file, lineNumber,
             "node " + std::to_string(node) + ": \"" + shown(word) + "\" is not a number");
    mesh.points.push_back(coordinate);
  }
}

// A corner is a node number, and behind slashes the numbers of texture point and normal, which are not used:
// 1, 1/2, 1/2/3 or 1//3. number: out, of the node. False: none of these.
bool readCorner(std::string_view word, std::int64_t& number) {
  for (int part = 0; part < 3; ++part) {
    const std::size_t slash = word.find('/');
    const std::string_view digits = word.substr(0, slash);
    std::int64_t unused = 0;
    const bool skipped = part == 1 && digits.empty() && slash != std::string_view::npos;
    if (!skipped && !readInteger(digits, part == 0 ? number : unused)) return false;
    if (slash == std::string_view::npos) return true;
    word.remove_prefix(slash + 1);
  }
  return false;
}

// The nodes of all faces, one after the other, and how many each has.
struct Faces {
  std::vector<std::int64_t> nodes;
  std::vector<std::uint8_t> count;
  bool relative = false;  // whether a node was counted back
};

// A negative number counts back from the nodes read so far.
void readFaceLine(const Mesh& mesh, std::string_view line, std::size_t lineNumber, Faces& faces) {
  const auto refuseFace = [&](const std::string& what) {
    refuse(mesh.file, lineNumber, "element " + std::to_string(faces.count.size() + 1) + what);
  };
  const auto nodesSoFar = static_cast<std::int64_t>(mesh.nodes());
  std::size_t position = 1, corners = 0;  // behind the "f"
  for (std::string_view word = nextWord(line, position); !word.empty(); word = nextWord(line, position)) {
    std::int64_t number = 0;
    if (!readCorner(word, number)) refuseFace(": \"" + shown(word) + "\" is not a node number");
    faces.relative = faces.relative || number < 0;
    faces.nodes.push_back(number < 0 ? nodesSoFar + 1 + number : number);
    ++corners;
  }
  if (corners != 3 && corners != 4)
    refuseFace(" has " + counted(static_cast<std::int64_t>(corners), "corner") +
               "; only triangles and quads are taken");
  faces.count.push_back(static_cast<std::uint8_t>(corners));
}

// As nextLine, but a carriage return ends a line too, with a line feed behind it or without.
bool nextObjLine(std::string_view content, std::size_t& position, std::string_view& line) {
  const std::size_t begin = position;
  if (!nextLine(content, position, line)) return false;
  const std::size_t end = line.find('\r');
  if (end == std::string_view::npos) return true;
  if (end + 1 < line.size()) position = begin + end + 1;
  line = line.substr(0, end);
  return true;
}

Faces readLines(std::string_view content, Mesh& mesh) {
  Faces faces;
  mesh.points.reserve(content.size() / 24);  // as many as such a file mostly has: what was read need not move
  faces.nodes.reserve(content.size() / 14);
  faces.count.reserve(content.size() / 42);
  std::size_t position = 0, lineNumber = 0;
  std::string_view line;
  while (nextObjLine(content, position, line)) {
    ++lineNumber;
    while (!line.empty() && (line[0] == ' ' || line[0] == '\t')) line.remove_prefix(1);
    if (line.size() < 2 || (line[1] != ' ' && line[1] != '\t')) continue;
    if (line[0] == 'v') readVertexLine(mesh, line, lineNumber);
    if (line[0] == 'f') readFaceLine(mesh, line, lineNumber, faces);
  }
  return faces;
}

// The two halves of the lines at once. False where that does not do: where the second half has to know of the first, to
// count nodes back or to name a line.
bool readHalves(std::string_view content, Mesh& mesh, Faces& faces) {
  const std::size_t middle = content.find('\n', content.size() / 2);
  if (middle == std::string_view::npos) return false;
  Mesh rest;
  std::future<Faces> second = inBackground([&] { return readLines(content.substr(middle + 1), rest); });
  try {
    faces = readLines(content.substr(0, middle + 1), mesh);
    const Faces others = second.get();
    if (others.relative) return false;
    faces.nodes.insert(faces.nodes.end(), others.nodes.begin(), others.nodes.end());
    faces.count.insert(faces.count.end(), others.count.begin(), others.count.end());
  } catch (const Failure&) {
    return false;
  }
  mesh.points.insert(mesh.points.end(), rest.points.begin(), rest.points.end());
  return true;
}

// Whether the quad with these nodes is split from its first corner; nodes that are not there the check of the mesh
// names.
bool splitQuadFromFirst(const Mesh& mesh, const std::int64_t* nodes) {
  std::array<std::array<double, 3>, 4> points{};
  for (std::size_t k = 0; k < 4; ++k) {
    if (nodes[k] < 1 || static_cast<std::size_t>(nodes[k]) > mesh.nodes()) return true;
    for (std::size_t axis = 0; axis < 3; ++axis)
      points[k][axis] = mesh.points[3 * static_cast<std::size_t>(nodes[k]) - 3 + axis];
  }
  return splitFromFirst(points);
}

// The triangles of the faces. Where quads were split, the elements bear the numbers of their faces.
void addTriangles(Faces& faces, Mesh& mesh) {
  const std::int64_t quads = std::count(faces.count.begin(), faces.count.end(), 4);
  if (quads == 0) {
    mesh.corners = std::move(faces.nodes);
    return;
  }
  std::int64_t face = 0;
  const std::int64_t* node = faces.nodes.data();
  std::vector<std::int64_t> numbers;
  for (const std::uint8_t corners : faces.count) {
    numbers.push_back(++face);
    if (corners == 3) {
      mesh.corners.insert(mesh.corners.end(), node, node + 3);
    } else {
      numbers.push_back(face);
      const bool first = splitQuadFromFirst(mesh, node);
      mesh.corners.insert(mesh.corners.end(), {node[0], node[1], first ? node[2] : node[3]});
      mesh.corners.insert(mesh.corners.end(), {first ? node[0] : node[1], node[2], node[3]});
    }
    node += corners;
  }
  mesh.ids.element = numbers;
  mesh.remarks.push_back("split " + counted(quads, "quad") + " over the shorter diagonal");
}

}  // namespace

Mesh readObj(const std::string& content, const std::string& file, bool threads) {
  Mesh mesh;
  mesh.file = file;
  Faces faces;
  if (!threads || content.size() < largeContent || !readHalves(content, mesh, faces)) {
    mesh.points.clear();
    faces = readLines(content, mesh);
  }
  if (faces.count.empty()) throw Failure(file + ": no face (f line) in the file");
  addTriangles(faces, mesh);
  return mesh;
}

}  // namespace host
