// Recognises the format of a mesh file by its content and reads it; see the header.
#include "mesh/mesh_file.hpp"

#include <future>
#include <string_view>

#include "mesh/format_table.hpp"
#include "mesh/stl_reader.hpp"
#include "system/background.hpp"
#include "system/failure.hpp"
#include "system/file_identity.hpp"
#include "system/input_file.hpp"

namespace host {

namespace {

// A file that is none of the formats.
[[noreturn]] void refuse(const std::string& path, const std::string& head, std::uint64_t length) {
  const Format* named = formatNamedBy(path);
  if (named != nullptr && named->name == std::string_view("STL"))
    checkStlLength(head, length, path);  // says what is wrong with the length
  throw Failure(path + ": the content is of no format that is read (" + formatNames() + ")");
}

// What is no text shows its format in its head: gigabytes of something else need not be read. length: -1 if
// it is not known.
void checkHead(const std::string& path, const std::string& head, std::int64_t length) {
  if (length < 0 || isText(head)) return;
  if (formatOf(head, static_cast<std::uint64_t>(length)) == nullptr)
    refuse(path, head, static_cast<std::uint64_t>(length));
}

std::string plainName(const Format& format) {
  return format.name == std::string_view("binary STL") ? "STL" : format.name;
}

}  // namespace

Mesh readMeshFile(const std::string& path, const ReadOptions& options) {
  const std::string content = readInputFile(
      path, [&](const std::string& head, std::int64_t length) { checkHead(path, head, length); });
  if (content.empty()) throw Failure(path + ": the file is empty");
  const Format* format = formatOf(content, content.size());
  if (format == nullptr) refuse(path, content, content.size());
  if (!options.parts.empty() && !format->hasParts)
    throw Failure(path + ": --part: a file of format " + plainName(*format) + " has no parts");
  std::future<FileIdentity> identity = inBackground([&] { return identityOf(path, content); });
  Mesh mesh = format->read(content, path, options);
  mesh.identity = identity.get();
  mesh.unit = options.unit;
  const Format* named = formatNamedBy(path);
  if (named != nullptr && plainName(*named) != plainName(*format))
    mesh.remarks.insert(mesh.remarks.begin(), "the name means " + plainName(*named) +
                                                  ", but the content is " + plainName(*format) +
                                                  " and was read as that");
  return mesh;
}

}  // namespace host
