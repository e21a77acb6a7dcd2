// Recognises the format of a mesh file by its content and reads it; see the header.
#include "mesh/mesh_file.hpp"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <string_view>

#include "mesh/deck_reader.hpp"
#include "mesh/foreign_format.hpp"
#include "mesh/obj_reader.hpp"
#include "mesh/stl_reader.hpp"
#include "system/failure.hpp"
#include "system/file_identity.hpp"
#include "system/input_file.hpp"
#include "system/text.hpp"

namespace host {

namespace {

bool isText(const std::string& content) {
  return content.find('\0') == std::string::npos;
}

// Whether the text has a line of vertex coordinates.
bool looksLikeObj(const std::string& content) {
  if (!isText(content)) return false;
  std::size_t position = 0;
  std::string_view line;
  while (nextLine(content, position, line)) {
    std::size_t inLine = 0;
    if (nextWord(line, inLine) == "v") return true;
  }
  return false;
}

bool isNamedStl(const std::string& path) {
  std::string extension = std::filesystem::path(path).extension().string();
  std::transform(extension.begin(), extension.end(), extension.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return extension == ".stl";
}

// A file that is none of the formats.
[[noreturn]] void refuse(const std::string& path, const std::string& head, std::uint64_t length) {
  if (isNamedStl(path)) checkStlLength(head, length, path);  // says what is wrong with the length
  throw Failure(path + ": neither a Wavefront OBJ nor an STL file nor a mesh deck");
}

[[noreturn]] void refuseForeign(const std::string& path, ForeignFormat format) {
  throw Failure(path + ": this is an " +
                (format == ForeignFormat::abaqus ? "Abaqus input file" : "LS-DYNA keyword file") +
                ", which is not read; write its shell elements, as triangles, into an OBJ or STL file");
}

// What is no text can only be an STL file, of the length that its head announces: gigabytes of something else
// need not be read. length: -1 if it is not known.
void checkHead(const std::string& path, const std::string& head, std::int64_t length) {
  if (length < 0 || isText(head) || looksLikeDeck(head) || looksLikeStlText(head)) return;
  if (!hasStlLength(head, static_cast<std::uint64_t>(length)))
    refuse(path, head, static_cast<std::uint64_t>(length));
}

Mesh readContent(const std::string& content, const std::string& path) {
  if (content.empty()) throw Failure(path + ": the file is empty");
  // Some writers begin the title of a binary file with "solid": the exact length decides first.
  if (looksLikeStlBinary(content)) return readStlBinary(content, path);
  const ForeignFormat foreign = foreignFormat(content);  // their fourth lines may pass for that of a deck
  if (foreign != ForeignFormat::none) refuseForeign(path, foreign);
  if (looksLikeDeck(content)) return readDeck(content, path);
  if (looksLikeStlText(content)) return readStlText(content, path);
  if (looksLikeObj(content)) return readObj(content, path);
  refuse(path, content, content.size());
}

}  // namespace

Mesh readMeshFile(const std::string& path) {
  const std::string content = readInputFile(
      path, [&](const std::string& head, std::int64_t length) { checkHead(path, head, length); });
  Mesh mesh = readContent(content, path);
  mesh.identity = identityOf(path, content);
  return mesh;
}

}  // namespace host
