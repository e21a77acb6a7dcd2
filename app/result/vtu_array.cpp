// The arrays of a VTK unstructured grid of triangles; see the header.
#include "result/vtu_array.hpp"

#include <bit>

namespace host {

namespace {
constexpr std::uint8_t vtkTriangle = 5;
}

std::string base64(std::string_view bytes) {
  constexpr char digits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  const std::size_t whole = bytes.size() / 3 * 3, left = bytes.size() - whole;
  std::string text((bytes.size() + 2) / 3 * 4, '=');
  const auto put = [&](std::size_t first, std::size_t count) {
    std::uint32_t group = 0;
    for (std::size_t b = 0; b < 3; ++b)
      group = group << 8 | (b < count ? static_cast<unsigned char>(bytes[first + b]) : 0u);
    char* const to = text.data() + first / 3 * 4;
    for (std::size_t digit = 0; digit <= count; ++digit) to[digit] = digits[group >> (18 - 6 * digit) & 63];
  };
  for (std::size_t k = 0; k < whole; k += 3) put(k, 3);
  if (left > 0) put(whole, left);
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
