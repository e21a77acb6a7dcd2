// Meshes through the helper program; see the header.
#include "mesh/import.hpp"

#include <cerrno>
#include <cstring>
#include <fstream>
#include <nlohmann/json.hpp>

#include "mesh/fibre.hpp"
#include "mesh/obj_reader.hpp"
#include "mesh/submesh.hpp"
#include "system/child_process.hpp"
#include "system/failure.hpp"
#include "system/file.hpp"
#include "system/input_file.hpp"
#include "system/path.hpp"
#include "system/process.hpp"
#include "system/text.hpp"
#include "system/work_folder.hpp"

namespace host {

namespace {

using Json = nlohmann::json;

constexpr const char* helperName = "tornwalzen-import";
constexpr const char* helperVariable =
    "TORNWALZEN_IMPORT";  // names another helper than that beside the program
constexpr const char* packages = "python3-gmsh, python3-meshio and python3-numpy";

std::string helperPath(const std::string& file) {
  const std::string named = environmentValue(helperVariable);
  const std::string path = named.empty() ? programFolder() + "/" + helperName : named;
  if (!isProgram(path))
    throw Failure(file + ": this format is read by the program " + helperName + ", which is not there (" +
                  path + "); it comes with tornwalzen and needs the Debian packages " + packages);
  return path;
}

void writeFile(const std::string& path, const std::string& content) {
  const int file = replaceFile(path);
  bool written = file >= 0 && writeBytes(file, content);
  if (file >= 0) written = closeFile(file) && written;
  if (!written) throw Failure("cannot write " + path + ": " + std::strerror(errno));
}

// The helper's last words, for a failure that it did not foresee.
std::string lastLine(const std::string& path) {
  std::ifstream stream(pathOf(path));
  std::string line, last;
  while (std::getline(stream, line))
    if (!line.empty()) last = line;
  std::string printable;
  for (const char c : last.substr(0, 200)) printable += c >= ' ' && c <= '~' ? c : '?';
  return printable.empty() ? "it said nothing" : "its last words: " + printable;
}

// What the helper hands over.
struct Import {
  Mesh mesh;
  Json report;
};

void checkEnd(const ChildEnd& end, const std::string& file, const std::string& output, double limit) {
  const std::string who = file + ": " + helperName;
  if (end.overdue)
    throw Failure(who + " was ended after " + decimal(limit) +
                  " s; --import-limit gives it more time, a larger "
                  "--mesh less to do");
  if (end.signal != 0)
    throw Failure(who + " was ended by signal " + std::to_string(end.signal) + " on this file; " +
                  lastLine(output));
}

Json readReport(const std::string& path, const std::string& file, const std::string& output) {
  if (FileStatus status; !statusOf(path, status))
    throw Failure(file + ": " + helperName + " failed on this file; " + lastLine(output));
  Json report = Json::parse(readInputFile(path), nullptr, false);
  if (!report.is_object()) throw Failure(file + ": " + helperName + " left no usable report");
  return report;
}

// An entry of the report; empty or 0 where it is not there.
template <class Value>
Value reported(const Json& report, const char* name, const std::string& file) {
  try {
    return report.value(name, Value{});
  } catch (const Json::exception&) {
    throw Failure(file + ": " + helperName + " left no usable report");
  }
}

// words: what the helper is to do, with its options.
Import runHelper(const std::string& content, const std::string& file, const std::string& extension,
                 std::vector<std::string> words, const ReadOptions& options) {
  WorkFolder folder;
  const std::string part = folder.file("part." + extension), output = folder.file("output");
  const std::string meshFile = folder.file("mesh.obj"), reportFile = folder.file("report.json");
  words.insert(words.begin(), helperPath(file));
  words.push_back(part);
  words.push_back(folder.path());
  writeFile(part, content);
  const ChildEnd end = runChild(words, output, options.importLimit);
  checkEnd(end, file, output, options.importLimit);
  Import import;
  import.report = readReport(reportFile, file, output);
  if (import.report.contains("refused") && import.report["refused"].is_string())
    throw Failure(file + ": " + import.report["refused"].get<std::string>());
  if (end.status != 0) throw Failure(file + ": " + helperName + " failed on this file; " + lastLine(output));
  import.mesh = readObj(readInputFile(meshFile), file);
  if (!isSound(import.mesh)) throw Failure(file + ": " + helperName + " left no usable mesh");
  import.mesh.remarks = reported<std::vector<std::string>>(import.report, "remarks", file);
  return import;
}

}  // namespace

Mesh importCad(const std::string& content, const std::string& file, const std::string& extension,
               const ReadOptions& options) {
  Import import = runHelper(
      content, file, extension,
      {"cad", "--unit", options.unit, "--skin", options.skin, "--mesh", decimal(options.meshSize)}, options);
  import.mesh.thickness = reported<double>(import.report, "thickness", file);
  if (import.mesh.thickness > 0.0) {
    const auto normals = reported<std::vector<double>>(import.report, "normals", file);
    if (normals.size() != import.mesh.points.size())
      throw Failure(file + ": " + helperName + " left no usable report");
    moveToFibre(normals, options.fibre, true, import.mesh);
  }
  return import.mesh;
}

Mesh importMesh(const std::string& content, const std::string& file, const std::string& extension,
                const ReadOptions& options) {
  return runHelper(content, file, extension, {"mesh"}, options).mesh;
}

Mesh importAnew(const Mesh& mesh, const ReadOptions& options) {
  std::string content;
  for (std::size_t k = 0; k < mesh.points.size(); k += 3)
    content += "v " + decimal(mesh.points[k]) + " " + decimal(mesh.points[k + 1]) + " " +
               decimal(mesh.points[k + 2]) + "\n";
  for (std::size_t k = 0; k < mesh.corners.size(); k += 3)
    content += "f " + std::to_string(mesh.corners[k]) + " " + std::to_string(mesh.corners[k + 1]) + " " +
               std::to_string(mesh.corners[k + 2]) + "\n";
  Mesh anew =
      runHelper(content, mesh.file, "obj", {"remesh", "--mesh", decimal(options.remesh)}, options).mesh;
  anew.identity = mesh.identity;
  anew.unit = mesh.unit;
  anew.thickness = mesh.thickness;
  return anew;
}

}  // namespace host
