// Reads the triangles of a Wavefront OBJ file; see the header.
#include "mesh/obj_reader.hpp"

#include <tiny_obj_loader.h>

#include <istream>
#include <limits>
#include <streambuf>

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

// Every node number of a face line must be one that tinyobjloader's 32 bits hold.
void checkFaceLine(const Mesh& mesh, std::string_view line, std::size_t lineNumber, std::size_t element) {
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
  if (corners != 3)
    refuse(mesh.file, lineNumber,
           "element " + std::to_string(element) + " has " +
               counted(static_cast<std::int64_t>(corners), "corner") + "; only triangles are taken");
}

// Returns the number of elements.
std::size_t readVerticesAndCheckFaces(Mesh& mesh, std::string_view content) {
  std::size_t position = 0, lineNumber = 0, element = 0;
  std::string_view line;
  while (nextLine(content, position, line)) {
    ++lineNumber;
    line.remove_prefix(std::min(line.find_first_not_of(" \t"), line.size()));
    if (line.size() < 2 || (line[1] != ' ' && line[1] != '\t')) continue;
    if (line[0] == 'v') readVertexLine(mesh, line, lineNumber);
    if (line[0] == 'f') checkFaceLine(mesh, line, lineNumber, ++element);
  }
  return element;
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
  std::vector<std::int64_t>& corners;
  std::int64_t verticesSoFar = 0;
  bool triangles = true;  // every face so far had three corners

  static void vertex(void* self, tinyobj::real_t, tinyobj::real_t, tinyobj::real_t, tinyobj::real_t) {
    ++static_cast<FaceCollector*>(self)->verticesSoFar;
  }
  static void face(void* self, tinyobj::index_t* indices, int count) {
    auto& collector = *static_cast<FaceCollector*>(self);
    collector.triangles = collector.triangles && count == 3;
    for (int corner = 0; corner < count; ++corner) {
      const std::int64_t number = indices[corner].vertex_index;
      collector.corners.push_back(number < 0 ? collector.verticesSoFar + 1 + number : number);
    }
  }
};

}  // namespace

Mesh readObj(const std::string& content, const std::string& file) {
  Mesh mesh;
  mesh.file = file;
  const std::size_t elements = readVerticesAndCheckFaces(mesh, content);

  FaceCollector collector{mesh.corners};
  tinyobj::callback_t callbacks;
  callbacks.vertex_cb = FaceCollector::vertex;
  callbacks.index_cb = FaceCollector::face;
  ContentBuffer buffer(content);
  std::istream stream(&buffer);
  std::string problem;
  if (!tinyobj::LoadObjWithCallback(stream, callbacks, &collector, nullptr, nullptr, &problem))
    throw Failure(file + ": " + problem);
  // A carriage return alone ends a line for the loader, but not for the check above.
  if (!collector.triangles || mesh.elements() != elements)
    throw Failure(file + ": a face hides behind a carriage return; end the lines with a line feed");
  if (mesh.elements() == 0) throw Failure(file + ": no face (f line) in the file");
  return mesh;
}

}  // namespace host
