// The table of mesh formats; see the header.
#include "mesh/format_table.hpp"

#include <algorithm>
#include <cctype>

#include "mesh/abaqus_reader.hpp"
#include "mesh/deck_reader.hpp"
#include "mesh/dyna_reader.hpp"
#include "mesh/import.hpp"
#include "mesh/nastran_reader.hpp"
#include "mesh/obj_reader.hpp"
#include "mesh/stl_reader.hpp"
#include "system/path.hpp"
#include "system/text.hpp"

namespace host {

namespace {

bool beginsWith(std::string_view text, std::string_view head) {
  return text.substr(0, head.size()) == head;
}

// Whether the text has a line of vertex coordinates.
bool looksLikeObj(const std::string& content) {
  std::size_t position = 0;
  std::string_view line;
  while (nextLine(content, position, line)) {
    std::size_t inLine = 0;
    if (nextWord(line, inLine) == "v") return true;
  }
  return false;
}

// The first lines of an IGES file have 80 columns, the 73rd of which names the section: S, the start.
bool looksLikeIges(const std::string& content) {
  return content.size() > 80 && content[72] == 'S' && (content[80] == '\n' || content[80] == '\r');
}

bool looksLikeBrep(const std::string& content) {
  std::size_t first = content.find_first_not_of(" \t\r\n");
  first = std::min(first, content.size());
  const std::string_view text = std::string_view(content).substr(first);
  return beginsWith(text, "DBRep_DrawableShape") || beginsWith(text, "CASCADE Topology");
}

bool looksLikeOff(const std::string& content) {
  std::size_t position = 0;
  std::string_view line;
  if (!nextLine(content, position, line)) return false;
  std::size_t inLine = 0;
  return nextWord(line, inLine) == "OFF";
}

template <bool (*Looks)(const std::string&)>
bool byContent(const std::string& head, std::uint64_t) {
  return Looks(head);
}

template <bool (*Looks)(const std::string&)>
bool byText(const std::string& head, std::uint64_t) {
  return Looks(head) && isText(head);
}

template <Mesh (*Read)(const std::string&, const std::string&)>
Mesh plainly(const std::string& content, const std::string& file, const ReadOptions&) {
  return Read(content, file);
}

Mesh obj(const std::string& content, const std::string& file, const ReadOptions& options) {
  return readObj(content, file, options.threads);
}

template <Mesh (*Read)(const std::string&, const std::string&, const std::vector<std::string>&)>
Mesh byParts(const std::string& content, const std::string& file, const ReadOptions& options) {
  return Read(content, file, options.parts);
}

constexpr char stepHead[] = "ISO-10303-21", plyHead[] = "ply", vtkHead[] = "# vtk DataFile",
               mshHead[] = "$MeshFormat", medHead[] = "\x89HDF\r\n\x1a\n";

template <const char* Head>
bool byHead(const std::string& head, std::uint64_t) {
  return beginsWith(head, Head);
}

constexpr char step[] = "step", iges[] = "iges", brep[] = "brep", ply[] = "ply", off[] = "off", vtu[] = "vtu",
               vtk[] = "vtk", msh[] = "msh", med[] = "med";

template <const char* Extension>
Mesh cad(const std::string& content, const std::string& file, const ReadOptions& options) {
  return importCad(content, file, Extension, options);
}

template <const char* Extension>
Mesh mesh(const std::string& content, const std::string& file, const ReadOptions& options) {
  return importMesh(content, file, Extension, options);
}

bool isVtu(const std::string& head, std::uint64_t) {
  const std::string_view text = std::string_view(head).substr(0, 4096);
  return text.find("<VTKFile") != std::string_view::npos &&
         text.find("UnstructuredGrid") != std::string_view::npos;
}

}  // namespace

const std::vector<Format>& formatTable() {
  static const std::vector<Format> table{
      // Some writers begin the title of a binary STL with "solid": its exact length decides first.
      {"binary STL", {}, false, hasStlLength, plainly<readStlBinary>},
      {"STL", {".stl"}, false, byContent<looksLikeStlText>, plainly<readStlText>},
      {"STEP", {".step", ".stp"}, false, byHead<stepHead>, cad<step>},
      {"IGES", {".iges", ".igs"}, false, byContent<looksLikeIges>, cad<iges>},
      {"BREP", {".brep"}, false, byContent<looksLikeBrep>, cad<brep>},
      {"PLY", {".ply"}, false, byHead<plyHead>, mesh<ply>},
      {"OFF", {".off"}, false, byContent<looksLikeOff>, mesh<off>},
      {"VTU", {".vtu"}, false, isVtu, mesh<vtu>},
      {"VTK", {".vtk"}, false, byHead<vtkHead>, mesh<vtk>},
      {"Gmsh MSH", {".msh"}, false, byHead<mshHead>, mesh<msh>},
      {"MED", {".med"}, false, byHead<medHead>, mesh<med>},
      {"LS-DYNA keyword", {".k", ".key", ".dyn"}, true, byText<looksLikeDyna>, byParts<readDyna>},
      {"Abaqus input", {".inp"}, true, byText<looksLikeAbaqus>, byParts<readAbaqus>},
      {"Nastran bulk data", {".bdf", ".nas"}, true, byText<looksLikeNastran>, byParts<readNastran>},
      // A deck's keywords are free: all that tells it is a count in its fourth line.
      {"mesh deck", {".t51"}, false, byContent<looksLikeDeck>, plainly<readDeck>},
      {"Wavefront OBJ", {".obj"}, false, byText<looksLikeObj>, obj},
  };
  return table;
}

const Format* formatOf(const std::string& head, std::uint64_t length) {
  for (const Format& format : formatTable())
    if (format.recognise(head, length)) return &format;
  return nullptr;
}

const Format* formatNamedBy(const std::string& path) {
  std::string extension = pathText(pathOf(path).extension());
  std::transform(extension.begin(), extension.end(), extension.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  for (const Format& format : formatTable())
    if (std::find(format.extensions.begin(), format.extensions.end(), extension) != format.extensions.end())
      return &format;
  return nullptr;
}

std::string formatNames() {
  std::string names;
  for (const Format& format : formatTable())
    if (!format.extensions.empty()) names += (names.empty() ? "" : ", ") + std::string(format.name);
  return names;
}

bool isText(const std::string& content) {
  return content.find('\0') == std::string::npos;
}

}  // namespace host
