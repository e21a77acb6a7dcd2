// A VTK unstructured grid of triangles in one file; see the header.
#include "result/vtu_file.hpp"

#include <bit>
#include <cstring>

#include "result/deflater.hpp"

namespace host {

namespace {

constexpr std::uint8_t vtkTriangle = 5;
constexpr std::size_t blockLength = std::size_t{1} << 17;  // bytes that are compressed together

// A head of whole numbers, as the file's header_type says.
std::string headOf(const std::vector<std::uint64_t>& numbers) {
  std::string head(numbers.size() * sizeof(std::uint64_t), '\0');
  std::memcpy(head.data(), numbers.data(), head.size());
  return head;
}

// Number of blocks, length of a whole one and of the last if it is shorter (else 0), compressed length of each; then
// the blocks.
std::string compressedBlocks(std::string_view values) {
  std::vector<std::uint64_t> head{(values.size() + blockLength - 1) / blockLength, blockLength,
                                  values.size() % blockLength};
  std::string blocks;
  for (std::size_t begin = 0; begin < values.size(); begin += blockLength) {
    const std::string_view block = values.substr(begin, blockLength);
    Deflater deflater(1);  // level 6 takes twice the time and saves two percent more
    deflater.add(block);
    const std::string deflated = deflater.finish();
    head.push_back(deflated.size());
    blocks += deflated;
  }
  return headOf(head) + blocks;
}

}  // namespace

VtuFile::VtuFile(const std::string& remark, bool compressed) : compressed_(compressed) {
  const char* order = std::endian::native == std::endian::little ? "LittleEndian" : "BigEndian";
  xml_ = "<?xml version=\"1.0\"?>\n" + (remark.empty() ? "" : "<!-- " + remark + " -->\n") +
         "<VTKFile type=\"UnstructuredGrid\" version=\"1.0\" byte_order=\"" + order +
         "\" header_type=\"UInt64\"" + (compressed ? " compressor=\"vtkZLibDataCompressor\"" : "") +
         ">\n<UnstructuredGrid>\n";
}

void VtuFile::addArray(const char* type, const std::string& name, std::string_view values,
                       const std::string& extra) {
  xml_ += "<DataArray type=\"" + std::string(type) + "\" Name=\"" + name + "\" " + extra +
          "format=\"appended\" offset=\"" + std::to_string(offset_) + "\"/>\n";
  if (compressed_)
    blocks_.push_back({compressedBlocks(values), {}});
  else
    blocks_.push_back({headOf({values.size()}), values});
  offset_ += blocks_.back().head.size() + blocks_.back().values.size();
}

void VtuFile::triangles(const std::vector<std::int32_t>& corners) {
  std::vector<std::int32_t> connectivity(corners);
  for (std::int32_t& node : connectivity) --node;  // counted from 0 there
  std::vector<std::int64_t> offsets;
  for (std::size_t end = 3; end <= connectivity.size(); end += 3)
    offsets.push_back(static_cast<std::int64_t>(end));
  std::vector<std::uint8_t> types(offsets.size(), vtkTriangle);
  add("<Cells>\n");
  keepArray("connectivity", std::move(connectivity));
  keepArray("offsets", std::move(offsets));
  keepArray("types", std::move(types));
  add("</Cells>\n");
}

void VtuFile::write(FileWriter& file) const {
  file.write(xml_ + "</UnstructuredGrid>\n<AppendedData encoding=\"raw\">\n_");
  for (const Block& block : blocks_) {
    file.write(block.head);
    file.write(block.values);
  }
  file.write("\n</AppendedData>\n</VTKFile>\n");
}

}  // namespace host
