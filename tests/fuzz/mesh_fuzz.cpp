// Any bytes as a mesh file of the host program: each reader and the check behind it end with a mesh or with a
// failure in words; a part that was accepted is one that the library can be given.
#include <string>

#include "fuzz/fuzz_target.hpp"
#include "fuzz/usable_part.hpp"
#include "mesh/obj_reader.hpp"
#include "mesh/stl_reader.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string content(reinterpret_cast<const char*>(data), size);
  host::looksLikeStlBinary(content);
  host::looksLikeStlText(content);
  fuzz::readAndCheck([&] { return host::readObj(content, "fuzz"); });
  fuzz::readAndCheck([&] { return host::readStlText(content, "fuzz"); });
  fuzz::readAndCheck([&] { return host::readStlBinary(content, "fuzz"); });
  return 0;
}
