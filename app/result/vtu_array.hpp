// The arrays of a VTK unstructured grid of triangles (XML, extension .vtu).
//
// Numbers stand in the file as base64 of a 64-bit byte count followed by the values, in the byte order of
// this machine, which the file names.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "result/result_files.hpp"

namespace host {

// Base64 of `bytes` (RFC 4648, with padding).
std::string base64(std::string_view bytes);

template <class T>
constexpr const char* vtkType() {
  if constexpr (std::is_same_v<T, double>)
    return "Float64";
  else if constexpr (std::is_same_v<T, std::int32_t>)
    return "Int32";
  else if constexpr (std::is_same_v<T, std::int64_t>)
    return "Int64";
  else if constexpr (std::is_same_v<T, std::int8_t>)
    return "Int8";
  else
    return "UInt8";
}

// One array; `extra` holds further attributes. Blocks of a multiple of three bytes join to one base64 text.
template <class T>
void writeArray(FileWriter& file, const std::string& name, const std::vector<T>& values,
                const std::string& extra = "") {
  file.write("<DataArray type=\"" + std::string(vtkType<T>()) + "\" Name=\"" + name + "\" " + extra +
             "format=\"binary\">\n");
  constexpr std::size_t block = std::size_t{3} << 14;
  const std::uint64_t length = values.size() * sizeof(T);
  std::string pending(sizeof length, '\0');
  std::memcpy(pending.data(), &length, sizeof length);
  const char* bytes = reinterpret_cast<const char*>(values.data());
  for (std::size_t done = 0; done < length;) {
    const std::size_t count = std::min<std::size_t>(length - done, block - pending.size());
    pending.append(bytes + done, count);
    done += count;
    if (pending.size() < block) break;
    file.write(base64(pending));
    pending.clear();
  }
  file.write(base64(pending));
  file.write("\n</DataArray>\n");
}

// The head of the file up to the beginning of its grid.
std::string vtuOpening();

// The cells of a grid. corners: three node numbers from 1 per triangle.
void writeTriangles(FileWriter& file, const std::vector<std::int32_t>& corners);

}  // namespace host
