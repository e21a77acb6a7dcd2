// A VTK unstructured grid of triangles in one file (XML, extension .vtu).
//
// The numbers of all arrays stand behind the XML as they lie in memory, in the byte order of this machine, which the
// file names ("appended raw"): nothing is turned into text, and a reader takes only the arrays that it wants. On demand
// they are compressed. Source: The VTK User's Guide, 11th edition, chapter "VTK File Formats", "XML file formats".
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "result/result_files.hpp"

namespace host {

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

// The XML grows with what is added; the numbers wait for the end.
class VtuFile {
 public:
  // remark: a comment at the head, without "--"; empty: none. compressed: by zlib, about half the size.
  VtuFile(const std::string& remark, bool compressed);

  // What stands between the arrays, to the letter.
  void add(std::string_view xml) { xml_ += xml; }

  // One array. values: they stay as they are until write. extra: further attributes, each with a blank behind it.
  // Throws Failure where memory for the compressed bytes runs out.
  template <class T>
  void array(const std::string& name, const std::vector<T>& values, const std::string& extra = "") {
    addArray(vtkType<T>(), name, {reinterpret_cast<const char*>(values.data()), values.size() * sizeof(T)},
             extra);
  }

  template <class T>
  void array(const std::string& name, std::vector<T>&& values, const std::string& extra = "") = delete;

  // The same for values that nobody else keeps.
  template <class T>
  void keepArray(const std::string& name, std::vector<T> values, const std::string& extra = "") {
    const auto kept = std::make_shared<const std::vector<T>>(std::move(values));
    kept_.push_back(kept);
    array(name, *kept, extra);
  }

  // The cells of a piece. corners: three node numbers from 1 per triangle.
  void triangles(const std::vector<std::int32_t>& corners);

  // The whole file. Throws Failure where it cannot be written.
  void write(FileWriter& file) const;

 private:
  // What an array has in the file: its head, and values as they lie in memory or, compressed, in the head.
  struct Block {
    std::string head;
    std::string_view values;
  };
  void addArray(const char* type, const std::string& name, std::string_view values, const std::string& extra);

  bool compressed_;
  std::string xml_;
  std::size_t offset_ = 0;  // of the next block
  std::vector<Block> blocks_;
  std::vector<std::shared_ptr<const void>> kept_;
};

}  // namespace host
