// Reads the triangles of a Wavefront OBJ file; see the header.
#include "obj_reader.hpp"

#include <tiny_obj_loader.h>

#include <istream>
#include <limits>
#include <streambuf>

#include "failure.hpp"
#include "text.hpp"

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

// Every corner of a face line must begin with an integer that tinyobjloader's 32 bits hold.
void checkFaceLine(const Mesh& mesh, std::string_view line, std::size_t lineNumber, std::size_t element) {
  std::size_t position = 1, corners = 0;  // behind the "f"
  for (std::string_view word = nextWord(line, position); !word.empty(); word = nextWord(line, position)) {
    std::int64_t number = 0;
    if (!readInteger(word.substr(0, word.find('/')), number))
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

void readVerticesAndCheckFaces(Mesh& mesh, std::string_view content) {
  std::size_t position = 0, lineNumber = 0, element = 0;
  std::string_view line;
  while (nextLine(content, position, line)) {
    ++lineNumber;
    line.remove_prefix(std::min(line.find_first_not_of(" \t"), line.size()));
    if (line.size() < 2 || (line[1] != ' ' && line[1] != '\t')) continue;
    if (line[0] == 'v') readVertexLine(mesh, line, lineNumber);
    if (line[0] == 'f') checkFaceLine(mesh, line, lineNumber, ++element);
  }
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

  static void vertex(void* self, tinyobj::real_t, tinyobj::real_t, tinyobj::real_t, tinyobj::real_t) {
    ++static_cast<FaceCollector*>(self)->verticesSoFar;
  }
  static void face(void* self, tinyobj::index_t* indices, int count) {
    auto& collector = *static_cast<FaceCollector*>(self);
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
  readVerticesAndCheckFaces(mesh, content);

  FaceCollector collector{mesh.corners};
  tinyobj::callback_t callbacks;
  callbacks.vertex_cb = FaceCollector::vertex;
  callbacks.index_cb = FaceCollector::face;
  ContentBuffer buffer(content);
  std::istream stream(&buffer);
  std::string problem;
  if (!tinyobj::LoadObjWithCallback(stream, callbacks, &collector, nullptr, nullptr, &problem))
    throw Failure(file + ": " + problem);
  if (mesh.elements() == 0) throw Failure(file + ": no face (f line) in the file");
  return mesh;
}

}  // namespace host
