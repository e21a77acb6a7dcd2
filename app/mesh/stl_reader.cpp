// Reads STL files, text and binary, and merges equal points; see the header.
#include "mesh/stl_reader.hpp"

#include <array>
#include <bit>
#include <cctype>
#include <unordered_map>

#include "system/failure.hpp"
#include "system/text.hpp"

namespace host {

namespace {

// Binary layout: 80 bytes of title, the number of triangles (32 bits, little-endian), then per triangle
// normal and three points as single-precision numbers and two bytes of attributes.
constexpr std::size_t titleLength = 80, headLength = 84, facetLength = 50, normalLength = 12;

struct Point {
  std::array<double, 3> xyz;
  bool operator==(const Point&) const = default;  // numeric: -0 equals 0
};

struct PointHash {
  std::size_t operator()(const Point& point) const {
    std::uint64_t hash = 0;
    for (const double coordinate : point.xyz) {
      hash ^= std::bit_cast<std::uint64_t>(coordinate + 0.0);  // + 0.0 turns -0 into 0
      hash *= 0x9E3779B97F4A7C15u;                             // 2^64 / golden ratio: spreads the bits
      hash ^= hash >> 32;
    }
    return static_cast<std::size_t>(hash);
  }
};

// Numbers the points by first appearance and appends the corners to the mesh.
class PointMerger {
 public:
  explicit PointMerger(Mesh& mesh) : mesh_(mesh) {}
  void corner(const Point& point) {
    const auto number = static_cast<std::int64_t>(mesh_.nodes()) + 1;
    const auto [entry, isNew] = numbers_.try_emplace(point, number);
    if (isNew) mesh_.points.insert(mesh_.points.end(), point.xyz.begin(), point.xyz.end());
    mesh_.corners.push_back(entry->second);
  }

 private:
  Mesh& mesh_;
  std::unordered_map<Point, std::int64_t, PointHash> numbers_;
};

std::uint32_t littleEndian32(const char* bytes) {
  std::uint32_t value = 0;
  for (int k = 3; k >= 0; --k) value = value << 8 | static_cast<unsigned char>(bytes[k]);
  return value;
}

// In lower case; of a word that is too long for a keyword, only so much that it is none.
std::string keyword(std::string_view word) {
  constexpr std::size_t longest = 8;  // endsolid, endfacet
  std::string lower(word.substr(0, longest + 1));
  for (char& c : lower) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return lower;
}

std::int64_t announcedTriangles(const std::string& head) {
  return littleEndian32(head.data() + titleLength);
}

std::uint64_t announcedLength(const std::string& head) {
  return headLength + facetLength * static_cast<std::uint64_t>(announcedTriangles(head));
}

std::string quoted(std::string_view word) {
  return word.empty() ? "the end of the file" : "\"" + shown(word) + "\"";
}

// The words of a text STL one after the other, with the line they stand in.
class WordReader {
 public:
  WordReader(std::string_view content, const std::string& file) : content_(content), file_(file) {}

  // Empty at the end of the file.
  std::string_view next() {
    std::string_view word = nextWord(line_, inLine_);
    while (word.empty() && nextLine(content_, inContent_, line_)) {
      ++lineNumber_;
      inLine_ = 0;
      word = nextWord(line_, inLine_);
    }
    return word;
  }
  void skipLine() { inLine_ = line_.size(); }
  void expect(std::string_view wanted) {
    const std::string_view word = next();
    if (keyword(word) != wanted) refuse("\"" + std::string(wanted) + "\" expected, found " + quoted(word));
  }
  double real() {
    const std::string_view word = next();
    double value = 0.0;
    if (!readReal(word, value)) refuse("a coordinate expected, found " + quoted(word));
    return value;
  }
  [[noreturn]] void refuse(const std::string& what) const {
    throw Failure(file_ + ", line " + std::to_string(lineNumber_) + ": " + what);
  }

 private:
  std::string_view content_, line_;
  std::string file_;
  std::size_t inContent_ = 0, inLine_ = 0, lineNumber_ = 0;
};

// From behind the word "facet" to "endfacet".
void readFacet(WordReader& words, PointMerger& merger, std::size_t element) {
  words.skipLine();  // "normal" and its three numbers
  words.expect("outer");
  words.expect("loop");
  for (int corner = 0; corner < 3; ++corner) {
    words.expect("vertex");
    Point point{};
    for (double& coordinate : point.xyz) coordinate = words.real();
    merger.corner(point);
  }
  const std::string_view word = words.next();
  if (keyword(word) == "vertex")
    words.refuse("element " + std::to_string(element) +
                 " has more than three corners; only triangles are taken");
  if (keyword(word) != "endloop") words.refuse("\"endloop\" expected, found " + quoted(word));
  words.expect("endfacet");
}

}  // namespace

bool looksLikeStlText(const std::string& content) {
  WordReader words(content, "");
  if (keyword(words.next()) != "solid") return false;
  words.skipLine();
  const std::string second = keyword(words.next());
  return second == "facet" || second == "endsolid";
}

bool hasStlLength(const std::string& head, std::uint64_t length) {
  return head.size() >= headLength && length == announcedLength(head);
}

void checkStlLength(const std::string& head, std::uint64_t length, const std::string& file) {
  if (head.size() < headLength) throw Failure(file + ": too short for an STL file");
  if (!hasStlLength(head, length))
    throw Failure(file + ": announces " + counted(announcedTriangles(head), "triangle") + ", that is " +
                  std::to_string(announcedLength(head)) + " bytes, but has " + std::to_string(length));
}

bool looksLikeStlBinary(const std::string& content) {
  return hasStlLength(content, content.size());
}

Mesh readStlText(const std::string& content, const std::string& file) {
  Mesh mesh;
  mesh.file = file;
  PointMerger merger(mesh);
  WordReader words(content, file);
  std::string word = keyword(words.next());
  while (word == "solid") {  // a file may hold several; together they are the mesh
    words.skipLine();        // the rest of the line is a name
    word = keyword(words.next());
    while (word == "facet") {
      readFacet(words, merger, mesh.elements() + 1);
      word = keyword(words.next());
    }
    // A cut-off file must not pass for a smaller part.
    if (word != "endsolid") words.refuse("\"facet\" or \"endsolid\" expected, found " + quoted(word));
    words.skipLine();
    word = keyword(words.next());
  }
  if (!word.empty()) words.refuse("\"solid\" or the end of the file expected, found " + quoted(word));
  if (mesh.elements() == 0) throw Failure(file + ": no triangle in the file");
  return mesh;
}

Mesh readStlBinary(const std::string& content, const std::string& file) {
  checkStlLength(content, content.size(), file);
  const auto elements = static_cast<std::size_t>(announcedTriangles(content));
  if (elements == 0) throw Failure(file + ": no triangle in the file");

  Mesh mesh;
  mesh.file = file;
  PointMerger merger(mesh);
  for (std::size_t e = 0; e < elements; ++e) {
    const char* number = content.data() + headLength + facetLength * e + normalLength;
    for (int corner = 0; corner < 3; ++corner) {
      Point point{};
      for (double& coordinate : point.xyz) {
        coordinate = std::bit_cast<float>(littleEndian32(number));
        number += 4;
      }
      merger.corner(point);
    }
  }
  return mesh;
}

}  // namespace host
