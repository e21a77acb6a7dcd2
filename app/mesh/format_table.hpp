// The table of mesh formats: a new format is one reader and one row.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "mesh/mesh.hpp"
#include "mesh/read_options.hpp"

namespace host {

struct Format {
  const char* name;                          // as sentences call it
  std::vector<std::string_view> extensions;  // lower case, with the dot; those that mean this format alone
  bool hasParts;                             // keeps parts that --part may choose from
  // Whether the content, or as much of it as `head` holds, is of this format. length: of the whole, in bytes.
  bool (*recognise)(const std::string& head, std::uint64_t length);
  // content: the file's bytes; file: its name for messages. Throws Failure.
  Mesh (*read)(const std::string& content, const std::string& file, const ReadOptions& options);
};

// In the order in which a file is asked whether it is one.
const std::vector<Format>& formatTable();

// The format of a content, or null. A name does not count: files are named wrongly.
const Format* formatOf(const std::string& head, std::uint64_t length);

// The format that the name's extension means, or null.
const Format* formatNamedBy(const std::string& path);

// "Wavefront OBJ, STL, ...".
std::string formatNames();

// Whether the content has no zero byte.
bool isText(const std::string& content);

}  // namespace host
