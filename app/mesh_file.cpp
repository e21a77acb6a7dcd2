// Recognises the format of a mesh file by its content and reads it; see the header.
#include "mesh_file.hpp"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <string_view>

#include "deck_reader.hpp"
#include "failure.hpp"
#include "input_file.hpp"
#include "obj_reader.hpp"
#include "stl_reader.hpp"
#include "text.hpp"

namespace host {

namespace {

// Whether the text has a line of vertex coordinates. A zero byte means binary content.
bool looksLikeObj(const std::string& content) {
  if (content.find('\0') != std::string::npos) return false;
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

}  // namespace

Mesh readMeshFile(const std::string& path) {
  const std::string content = readInputFile(path);
  if (content.empty()) throw Failure(path + ": the file is empty");
  // Some writers begin the title of a binary file with "solid": the exact length decides first.
  if (looksLikeStlBinary(content)) return readStlBinary(content, path);
  if (looksLikeDeck(content)) return readDeck(content, path);
  if (looksLikeStlText(content)) return readStlText(content, path);
  if (looksLikeObj(content)) return readObj(content, path);
  if (isNamedStl(path)) return readStlBinary(content, path);  // says what is wrong with the length
  throw Failure(path + ": neither a Wavefront OBJ nor an STL file nor a mesh deck");
}

}  // namespace host
