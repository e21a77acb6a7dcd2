// Writes the drawing of the blank as DXF; see the header.
#include "result/dxf_writer.hpp"

#include <cstdint>

#include "result/dxf_skeleton.hpp"
#include "result/dxf_tags.hpp"
#include "result/utf8.hpp"

namespace host {

namespace {

constexpr std::size_t longestString = 250;  // bytes, dots that end it apart; the format's limit is 255
constexpr int layers = 5;
constexpr int red = 1, ofLayer = 256;

struct Layers {
  DxfLayer table[layers];
};

Layers layersOf(const Drawing& drawing) {
  return {{{"0", 7}, {"OUTER", 7}, {"INNER", 1}, {"BEND", drawing.bends.empty() ? -3 : 3}, {"TEXT", 8}}};
}

// Begins entities and counts their handles.
class Entities {
 public:
  Entities(DxfTags& tags, DxfRelease release) : tags_(tags), release_(release) {}

  void begin(const char* kind, const char* subclass, const char* layer, int color = ofLayer) {
    tags_.tag(0, kind);
    if (release_ == DxfRelease::r2000) {
      tags_.handle(5, next_++);
      tags_.handle(330, dxfModelSpace);
      tags_.tag(100, "AcDbEntity");
    }
    tags_.tag(8, layer);
    if (color != ofLayer) tags_.integer(62, color);
    if (release_ == DxfRelease::r2000) tags_.tag(100, subclass);
  }

 private:
  DxfTags& tags_;
  DxfRelease release_;
  std::uint32_t next_ = dxfFirstEntity;
};

void addVertex(DxfTags& tags, const CurveVertex& vertex) {
  tags.point(10, vertex.x, vertex.y);
  if (vertex.bulge != 0.0) tags.real(42, vertex.bulge, 12);
}

void addCurve(DxfTags& tags, Entities& entities, const DrawnCurve& curve, DxfRelease release) {
  const char* layer = curve.outer ? "OUTER" : "INNER";
  if (release == DxfRelease::r2000) {
    entities.begin("LWPOLYLINE", "AcDbPolyline", layer);
    tags.integer(90, static_cast<std::int64_t>(curve.vertices.size()));
    tags.integer(70, 1);  // closed
    for (const CurveVertex& vertex : curve.vertices) addVertex(tags, vertex);
    return;
  }
  entities.begin("POLYLINE", "", layer);
  tags.integer(66, 1);
  tags.point(10, 0, 0, 0);
  tags.integer(70, 1);
  for (const CurveVertex& vertex : curve.vertices) {
    entities.begin("VERTEX", "", layer);
    addVertex(tags, vertex);
  }
  entities.begin("SEQEND", "", layer);
}

void addText(DxfTags& tags, Entities& entities, const std::string& text, double x, double y, double height,
             bool warns, DxfRelease release) {
  entities.begin("TEXT", "AcDbText", "TEXT", warns ? red : ofLayer);
  tags.point(10, x, y, 0);
  tags.real(40, height);
  tags.tag(1, dxfString(text, release));
  if (release == DxfRelease::r2000) tags.tag(100, "AcDbText");
}

// Entities go into a text of their own: the header in front of them names the handle behind the last.
DxfTags entitiesOf(const Drawing& drawing, const DrawingBox& box, DxfRelease release) {
  DxfTags tags;
  Entities entities(tags, release);
  tags.tag(0, "SECTION");
  tags.tag(2, "ENTITIES");
  for (const DrawnCurve& curve : drawing.curves) addCurve(tags, entities, curve, release);
  for (const auto& [from, to] : drawing.bends) {
    entities.begin("LINE", "AcDbLine", "BEND");
    tags.point(10, from[0], from[1], 0);
    tags.point(11, to[0], to[1], 0);
  }
  const double height = letterHeight(box);
  double y = box.bottom;
  for (std::size_t k = 0; k < drawing.notes.size(); ++k)
    addText(tags, entities, drawing.notes[k], box.left, y -= 2.0 * height, height,
            k < drawing.warnings.size(), release);
  tags.tag(0, "ENDSEC");
  return tags;
}

std::uint32_t handleBehind(const Drawing& drawing) {
  return dxfFirstEntity +
         static_cast<std::uint32_t>(drawing.curves.size() + drawing.bends.size() + drawing.notes.size());
}

void addR12Frame(DxfTags& tags, const DrawingBox& box, const Layers& layerTable) {
  tags.tag(0, "SECTION");
  tags.tag(2, "HEADER");
  tags.tag(9, "$ACADVER");
  tags.tag(1, "AC1009");
  tags.tag(9, "$EXTMIN");
  tags.point(10, box.left, box.bottom, 0);
  tags.tag(9, "$EXTMAX");
  tags.point(10, box.right, box.top, 0);
  tags.tag(0, "ENDSEC");
  tags.tag(0, "SECTION");
  tags.tag(2, "TABLES");
  tags.tag(0, "TABLE");
  tags.tag(2, "LTYPE");
  tags.integer(70, 1);
  tags.tag(0, "LTYPE");
  tags.tag(2, "CONTINUOUS");
  tags.integer(70, 0);
  tags.tag(3, "Solid line");
  tags.integer(72, 65);
  tags.integer(73, 0);
  tags.real(40, 0);
  tags.tag(0, "ENDTAB");
  tags.tag(0, "TABLE");
  tags.tag(2, "LAYER");
  tags.integer(70, layers);
  for (const DxfLayer& layer : layerTable.table) {
    tags.tag(0, "LAYER");
    tags.tag(2, layer.name);
    tags.integer(70, 0);
    tags.integer(62, layer.color);
    tags.tag(6, "CONTINUOUS");
  }
  tags.tag(0, "ENDTAB");
  tags.tag(0, "ENDSEC");
}

}  // namespace

std::string dxfString(const std::string& text, DxfRelease release) {
  std::string result;
  for (const char32_t character : decodeUtf8(text)) {
    if (result.size() + 7 > longestString) {  // as long as an escaped character is
      result += "...";
      break;
    }
    if (character < U' ' || character == 0x7F || character > 0xFFFF)
      result += '?';  // a line end would end the value, control characters are no text
    else if (character < 0x7F && character != U'%' && character != U'^' && character != U'\\')
      result += static_cast<char>(character);
    else if (release == DxfRelease::r12)
      result += character == U'%' || character == U'^' || character == U'\\' ? '_' : '?';
    else {
      constexpr char digits[] = "0123456789ABCDEF";
      result += "\\U+";
      for (int shift = 12; shift >= 0; shift -= 4) result += digits[character >> shift & 15];
    }
  }
  return result;
}

std::string dxfText(const Drawing& drawing, DxfRelease release) {
  const DrawingBox box = boxAround(drawing.curves);
  const Layers layerTable = layersOf(drawing);
  const DxfTags entities = entitiesOf(drawing, box, release);
  DxfTags tags;
  for (const std::string& warning : drawing.warnings) tags.tag(999, dxfString(warning, DxfRelease::r12));
  if (release == DxfRelease::r12) {
    addR12Frame(tags, box, layerTable);
    return tags.text() + entities.text() + "  0\nEOF\n";
  }
  addDxfHead(tags, box, handleBehind(drawing));
  addDxfTables(tags, box, layerTable.table, layers);
  addDxfBlocks(tags);
  DxfTags objects;
  addDxfObjects(objects, box);
  return tags.text() + entities.text() + objects.text() + "  0\nEOF\n";
}

}  // namespace host
