// What a DXF file of release 2000 holds around its entities: header, classes, all tables, blocks, objects.
#pragma once

#include <cstdint>

#include "result/drawing.hpp"
#include "result/dxf_tags.hpp"

namespace host {

struct DxfLayer {
  const char* name;
  int color;  // of the format's index; negative: the layer is off
};

inline constexpr std::uint32_t dxfModelSpace = 0x20;    // handle of the owner of all entities
inline constexpr std::uint32_t dxfFirstEntity = 0x100;  // handles below belong to the skeleton

// nextHandle: the one behind that of the last entity. layers: 64 at most. box: mm, around what is drawn.
void addDxfHead(DxfTags& tags, const DrawingBox& box, std::uint32_t nextHandle);
void addDxfTables(DxfTags& tags, const DrawingBox& box, const DxfLayer* layers, int count);
void addDxfBlocks(DxfTags& tags);
void addDxfObjects(DxfTags& tags, const DrawingBox& box);

}  // namespace host
