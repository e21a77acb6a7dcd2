// The arrays of a VTK unstructured grid of triangles; see the header.
#include "result/vtu_array.hpp"

#include <bit>

namespace host {

namespace {
constexpr std::uint8_t vtkTriangle = 5;
}

std::string base64(std::string_view bytes) {
  constexpr char digits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text;
  text.reserve((bytes.size() + 2) / 3 * 4);
  for (std::size_t k = 0; k < bytes.size(); k += 3) {
    std::uint32_t group = 0;
    for (std::size_t b = 0; b < 3; ++b)
      group = group << 8 | (k + b < bytes.size() ? static_cast<unsigned char>(bytes[k + b]) : 0u);
    for (int digit = 0; digit < 4; ++digit)
      text +=
          k + static_cast<std::size_t>(digit) <= bytes.size() ? digits[group >> (18 - 6 * digit) & 63] : '=';
  }
  return text;
}

std::string vtuOpening() {
  const char* order = std::endian::native == std::endian::little ? "LittleEndian" : "BigEndian";
  return "<VTKFile type=\"UnstructuredGrid\" version=\"1.0\" byte_order=\"" + std::string(order) +
         "\" header_type=\"UInt64\">\n<UnstructuredGrid>\n";
}

void writeTriangles(FileWriter& file, const std::vector<std::int32_t>& corners) {
  std::vector<std::int32_t> connectivity(corners);
  for (std::int32_t& node : connectivity) --node;  // counted from 0 there
  std::vector<std::int64_t> offsets;
  for (std::size_t end = 3; end <= connectivity.size(); end += 3)
    offsets.push_back(static_cast<std::int64_t>(end));
  file.write("<Cells>\n");
  writeArray(file, "connectivity", connectivity);
  writeArray(file, "offsets", offsets);
  writeArray(file, "types", std::vector<std::uint8_t>(offsets.size(), vtkTriangle));
  file.write("</Cells>\n");
}

}  // namespace host
