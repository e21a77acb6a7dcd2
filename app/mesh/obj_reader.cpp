// Reads the triangles of a Wavefront OBJ file; see the header.
#include "mesh/obj_reader.hpp"

#include <tiny_obj_loader.h>

#include <array>
#include <istream>
#include <limits>
#include <streambuf>

#include "mesh/shell_mesh.hpp"
#include "system/failure.hpp"
#include "system/text.hpp"

namespace host {

namespace {

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
// 1, 1/2, 1/2/3 or 1//3. What tinyobjloader reads of anything else it takes for several corners. out: number,
// of the node. False: none of these.
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

// Every node number of a face line must be one that tinyobjloader's 32 bits hold. Returns the number of corners.
std::size_t checkFaceLine(const Mesh& mesh, std::string_view line, std::size_t lineNumber,
                          std::size_t element) {
  std::size_t position = 1, corners = 0;  // behind the "f"
  for (std::string_view word = nextWord(line, position); !word.empty(); word = nextWord(line, position)) {
    std::int64_t number = 0;
    if (!readCorner(word, number))
      refuse(mesh.file, lineNumber,
             "element " + std::to_string(element) + ": \"" + shown(word) + "\" is not a node number");
    if (number < -std::numeric_limits<std::int32_t>::max() ||
        number > std::numeric_limits<std::int32_t>::max())
      refuse(mesh.file, lineNumber,
             "element " + std::to_string(element) + ": node number " + std::to_string(number) +
                 " is out of range");
    ++corners;
  }
  if (corners != 3 && corners != 4)
    refuse(mesh.file, lineNumber,
           "element " + std::to_string(element) + " has " +
               counted(static_cast<std::int64_t>(corners), "corner") +
               "; only triangles and quads are taken");
  return corners;
}

struct FaceCounts {
  std::size_t faces = 0, corners = 0;
  bool operator==(const FaceCounts&) const = default;
};

FaceCounts readVerticesAndCheckFaces(Mesh& mesh, std::string_view content) {
  std::size_t position = 0, lineNumber = 0;
  FaceCounts counts;
  std::string_view line;
  while (nextLine(content, position, line)) {
    ++lineNumber;
    line.remove_prefix(std::min(line.find_first_not_of(" \t"), line.size()));
    if (line.size() < 2 || (line[1] != ' ' && line[1] != '\t')) continue;
    if (line[0] == 'v') readVertexLine(mesh, line, lineNumber);
    if (line[0] == 'f') counts.corners += checkFaceLine(mesh, line, lineNumber, ++counts.faces);
  }
  return counts;
}

// Lets a stream read the bytes where they stand; a string stream would copy them.
class ContentBuffer : public std::streambuf {
 public:
  explicit ContentBuffer(const std::string& content) {
    char* first = const_cast<char*>(content.data());  // the interface of streambuf; nothing writes through it
    setg(first, first, first + content.size());
  }
};

// What the callbacks of the loader are given: a relative number counts back from the vertices read so far.
struct FaceCollector {
  std::vector<std::int64_t> corners;  // of all faces
  std::vector<std::size_t> cornersOfFace;
  std::int64_t verticesSoFar = 0;

  static void vertex(void* self, tinyobj::real_t, tinyobj::real_t, tinyobj::real_t, tinyobj::real_t) {
    ++static_cast<FaceCollector*>(self)->verticesSoFar;
  }
  static void face(void* self, tinyobj::index_t* indices, int count) {
    auto& collector = *static_cast<FaceCollector*>(self);
    for (int corner = 0; corner < count; ++corner) {
      const std::int64_t number = indices[corner].vertex_index;
      collector.corners.push_back(number < 0 ? collector.verticesSoFar + 1 + number : number);
    }
    collector.cornersOfFace.push_back(static_cast<std::size_t>(count));
  }
};

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
void addTriangles(const FaceCollector& faces, Mesh& mesh) {
  std::int64_t quads = 0, face = 0;
  const std::int64_t* node = faces.corners.data();
  std::vector<std::int64_t> numbers;
  for (const std::size_t corners : faces.cornersOfFace) {
    numbers.push_back(++face);
    if (corners == 3) {
      mesh.corners.insert(mesh.corners.end(), node, node + 3);
    } else {
      ++quads;
      numbers.push_back(face);
      const bool first = splitQuadFromFirst(mesh, node);
      mesh.corners.insert(mesh.corners.end(), {node[0], node[1], first ? node[2] : node[3]});
      mesh.corners.insert(mesh.corners.end(), {first ? node[0] : node[1], node[2], node[3]});
    }
    node += corners;
  }
  if (quads == 0) return;
  mesh.ids.element = numbers;
  mesh.remarks.push_back("split " + counted(quads, "quad") + " over the shorter diagonal");
}

}  // namespace

Mesh readObj(const std::string& content, const std::string& file) {
  Mesh mesh;
  mesh.file = file;
  const FaceCounts counts = readVerticesAndCheckFaces(mesh, content);

  FaceCollector collector;
  tinyobj::callback_t callbacks;
  callbacks.vertex_cb = FaceCollector::vertex;
  callbacks.index_cb = FaceCollector::face;
  ContentBuffer buffer(content);
  std::istream stream(&buffer);
  std::string problem;
  if (!tinyobj::LoadObjWithCallback(stream, callbacks, &collector, nullptr, nullptr, &problem))
    throw Failure(file + ": " + problem);
  // A carriage return alone ends a line for the loader, but not for the check above.
  if (counts != FaceCounts{collector.cornersOfFace.size(), collector.corners.size()})
    throw Failure(file + ": a face hides behind a carriage return; end the lines with a line feed");
  if (counts.faces == 0) throw Failure(file + ": no face (f line) in the file");
  addTriangles(collector, mesh);
  return mesh;
}

}  // namespace host
