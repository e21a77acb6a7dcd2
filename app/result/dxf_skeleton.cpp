// What a DXF file of release 2000 holds around its entities; see the header.
#include "result/dxf_skeleton.hpp"

#include <algorithm>
#include <string>

namespace host {

namespace {

// Handles of the skeleton; every object names its owner by one.
enum Handle : std::uint32_t {
  noOwner = 0,
  vportTable = 0x1,
  ltypeTable,
  layerTable,
  styleTable,
  viewTable,
  ucsTable,
  appidTable,
  dimstyleTable,
  blockTable,
  vportRecord,
  byBlockLtype,
  byLayerLtype,
  continuousLtype,
  styleRecord,
  appidRecord,
  dimstyleRecord,
  modelBlock = 0x21,
  modelEnd,
  paperSpace = 0x24,
  paperBlock,
  paperEnd,
  rootDictionary = 0x30,
  groupDictionary,
  layoutDictionary,
  plotDictionary,
  plotNormal,
  modelLayout,
  paperLayout,
  firstLayer = 0x40
};

void addClass(DxfTags& tags, const char* record, const char* name) {
  tags.tag(0, "CLASS");
  tags.tag(1, record);
  tags.tag(2, name);
  tags.tag(3, "ObjectDBX Classes");
  tags.integer(90, 0);
  tags.integer(280, 0);
  tags.integer(281, 0);
}

void beginSection(DxfTags& tags, const char* name) {
  tags.tag(0, "SECTION");
  tags.tag(2, name);
}

void beginTable(DxfTags& tags, const char* name, std::uint32_t handle, int records) {
  tags.tag(0, "TABLE");
  tags.tag(2, name);
  tags.handle(5, handle);
  tags.handle(330, noOwner);
  tags.tag(100, "AcDbSymbolTable");
  tags.integer(70, records);
}

void beginRecord(DxfTags& tags, const char* kind, std::uint32_t handle, std::uint32_t owner,
                 const char* subclass, const char* name, int handleCode = 5) {
  tags.tag(0, kind);
  tags.handle(handleCode, handle);
  tags.handle(330, owner);
  tags.tag(100, "AcDbSymbolTableRecord");
  tags.tag(100, subclass);
  tags.tag(2, name);
}

void emptyTable(DxfTags& tags, const char* name, std::uint32_t handle) {
  beginTable(tags, name, handle, 0);
  tags.tag(0, "ENDTAB");
}

void addViewport(DxfTags& tags, const DrawingBox& box) {
  const double width = std::max(1.0, box.right - box.left), height = std::max(1.0, box.top - box.bottom);
  beginTable(tags, "VPORT", vportTable, 1);
  beginRecord(tags, "VPORT", vportRecord, vportTable, "AcDbViewportTableRecord", "*Active");
  tags.integer(70, 0);
  tags.point(10, 0, 0);  // the whole screen
  tags.point(11, 1, 1);
  tags.point(12, 0.5 * (box.left + box.right), 0.5 * (box.bottom + box.top));
  tags.point(13, 0, 0);
  tags.point(14, 10, 10);
  tags.point(15, 10, 10);
  tags.point(16, 0, 0, 1);  // seen from above
  tags.point(17, 0, 0, 0);
  tags.real(40, 1.2 * std::max(height, width / 1.5));
  tags.real(41, 1.5);
  tags.real(42, 50);
  for (const int code : {43, 44, 50, 51}) tags.real(code, 0);
  tags.integer(71, 0);
  tags.integer(72, 1000);
  tags.integer(73, 1);
  tags.integer(74, 3);
  for (const int code : {75, 76, 77, 78}) tags.integer(code, 0);
  tags.tag(0, "ENDTAB");
}

void addLinetypes(DxfTags& tags) {
  beginTable(tags, "LTYPE", ltypeTable, 3);
  const struct {
    std::uint32_t handle;
    const char *name, *text;
  } types[] = {{byBlockLtype, "ByBlock", ""},
               {byLayerLtype, "ByLayer", ""},
               {continuousLtype, "Continuous", "Solid line"}};
  for (const auto& type : types) {
    beginRecord(tags, "LTYPE", type.handle, ltypeTable, "AcDbLinetypeTableRecord", type.name);
    tags.integer(70, 0);
    tags.tag(3, type.text);
    tags.integer(72, 65);
    tags.integer(73, 0);
    tags.real(40, 0);
  }
  tags.tag(0, "ENDTAB");
}

void addLayers(DxfTags& tags, const DxfLayer* layers, int count) {
  beginTable(tags, "LAYER", layerTable, count);
  for (int k = 0; k < count; ++k) {
    beginRecord(tags, "LAYER", firstLayer + static_cast<std::uint32_t>(k), layerTable, "AcDbLayerTableRecord",
                layers[k].name);
    tags.integer(70, 0);
    tags.integer(62, layers[k].color);
    tags.tag(6, "Continuous");
    tags.integer(370, -3);
    tags.handle(390, plotNormal);
  }
  tags.tag(0, "ENDTAB");
}

void addStyles(DxfTags& tags) {
  beginTable(tags, "STYLE", styleTable, 1);
  beginRecord(tags, "STYLE", styleRecord, styleTable, "AcDbTextStyleTableRecord", "Standard");
  tags.integer(70, 0);
  tags.real(40, 0);
  tags.real(41, 1);
  tags.real(50, 0);
  tags.integer(71, 0);
  tags.real(42, 2.5);
  tags.tag(3, "txt");
  tags.tag(4, "");
  tags.tag(0, "ENDTAB");
}

void addDimensionStyles(DxfTags& tags) {
  beginTable(tags, "DIMSTYLE", dimstyleTable, 1);
  tags.tag(100, "AcDbDimStyleTable");
  beginRecord(tags, "DIMSTYLE", dimstyleRecord, dimstyleTable, "AcDbDimStyleTableRecord", "Standard", 105);
  tags.integer(70, 0);
  tags.handle(340, styleRecord);
  tags.tag(0, "ENDTAB");
}

void addBlockRecord(DxfTags& tags, std::uint32_t handle, const char* name, std::uint32_t layout) {
  beginRecord(tags, "BLOCK_RECORD", handle, blockTable, "AcDbBlockTableRecord", name);
  tags.handle(340, layout);
}

void addBlock(DxfTags& tags, const char* name, std::uint32_t owner, std::uint32_t begin, std::uint32_t end,
              bool paper) {
  tags.tag(0, "BLOCK");
  tags.handle(5, begin);
  tags.handle(330, owner);
  tags.tag(100, "AcDbEntity");
  if (paper) tags.integer(67, 1);
  tags.tag(8, "0");
  tags.tag(100, "AcDbBlockBegin");
  tags.tag(2, name);
  tags.integer(70, 0);
  tags.point(10, 0, 0, 0);
  tags.tag(3, name);
  tags.tag(1, "");
  tags.tag(0, "ENDBLK");
  tags.handle(5, end);
  tags.handle(330, owner);
  tags.tag(100, "AcDbEntity");
  if (paper) tags.integer(67, 1);
  tags.tag(8, "0");
  tags.tag(100, "AcDbBlockEnd");
}

void beginDictionary(DxfTags& tags, const char* kind, std::uint32_t handle, std::uint32_t owner) {
  tags.tag(0, kind);
  tags.handle(5, handle);
  tags.handle(330, owner);
  tags.tag(100, "AcDbDictionary");
  tags.integer(281, 1);
}

void entry(DxfTags& tags, const char* name, std::uint32_t handle) {
  tags.tag(3, name);
  tags.handle(350, handle);
}

// An A3 sheet in millimetres on no plotter.
void addPlotSettings(DxfTags& tags, bool model) {
  tags.tag(100, "AcDbPlotSettings");
  tags.tag(1, "");
  tags.tag(2, "none_device");
  tags.tag(4, "");
  tags.tag(6, "");
  for (const int code : {40, 41, 42, 43}) tags.real(code, 0);
  tags.real(44, 420);
  tags.real(45, 297);
  for (const int code : {46, 47, 48, 49, 140, 141}) tags.real(code, 0);
  tags.real(142, 1);
  tags.real(143, 1);
  tags.integer(70, model ? 1024 : 0);
  tags.integer(72, 1);
  tags.integer(73, 0);
  tags.integer(74, 5);
  tags.tag(7, "");
  tags.integer(75, 16);
  tags.real(147, 1);
  tags.real(148, 0);
  tags.real(149, 0);
}

void addLayout(DxfTags& tags, std::uint32_t handle, const char* name, bool model, std::uint32_t space,
               const DrawingBox& box) {
  tags.tag(0, "LAYOUT");
  tags.handle(5, handle);
  tags.handle(330, layoutDictionary);
  addPlotSettings(tags, model);
  tags.tag(100, "AcDbLayout");
  tags.tag(1, name);
  tags.integer(70, 1);
  tags.integer(71, model ? 0 : 1);
  tags.point(10, 0, 0);
  tags.point(11, 420, 297);
  tags.point(12, 0, 0, 0);
  tags.point(14, model ? box.left : 0, model ? box.bottom : 0, 0);
  tags.point(15, model ? box.right : 420, model ? box.top : 297, 0);
  tags.real(146, 0);
  tags.point(13, 0, 0, 0);
  tags.point(16, 1, 0, 0);
  tags.point(17, 0, 1, 0);
  tags.integer(76, 0);
  tags.handle(330, space);
}

}  // namespace

void addDxfHead(DxfTags& tags, const DrawingBox& box, std::uint32_t nextHandle) {
  beginSection(tags, "HEADER");
  tags.tag(9, "$ACADVER");
  tags.tag(1, "AC1015");
  tags.tag(9, "$DWGCODEPAGE");
  tags.tag(3, "ANSI_1252");
  tags.tag(9, "$INSUNITS");
  tags.integer(70, 4);  // millimetres
  tags.tag(9, "$MEASUREMENT");
  tags.integer(70, 1);  // metric
  tags.tag(9, "$EXTMIN");
  tags.point(10, box.left, box.bottom, 0);
  tags.tag(9, "$EXTMAX");
  tags.point(10, box.right, box.top, 0);
  tags.tag(9, "$HANDSEED");
  tags.handle(5, nextHandle);
  tags.tag(0, "ENDSEC");
  beginSection(tags, "CLASSES");
  addClass(tags, "ACDBDICTIONARYWDFLT", "AcDbDictionaryWithDefault");
  addClass(tags, "ACDBPLACEHOLDER", "AcDbPlaceHolder");
  addClass(tags, "LAYOUT", "AcDbLayout");
  tags.tag(0, "ENDSEC");
}

void addDxfTables(DxfTags& tags, const DrawingBox& box, const DxfLayer* layers, int count) {
  beginSection(tags, "TABLES");
  addViewport(tags, box);
  addLinetypes(tags);
  addLayers(tags, layers, count);
  addStyles(tags);
  emptyTable(tags, "VIEW", viewTable);
  emptyTable(tags, "UCS", ucsTable);
  beginTable(tags, "APPID", appidTable, 1);
  beginRecord(tags, "APPID", appidRecord, appidTable, "AcDbRegAppTableRecord", "ACAD");
  tags.integer(70, 0);
  tags.tag(0, "ENDTAB");
  addDimensionStyles(tags);
  beginTable(tags, "BLOCK_RECORD", blockTable, 2);
  addBlockRecord(tags, dxfModelSpace, "*Model_Space", modelLayout);
  addBlockRecord(tags, paperSpace, "*Paper_Space", paperLayout);
  tags.tag(0, "ENDTAB");
  tags.tag(0, "ENDSEC");
}

void addDxfBlocks(DxfTags& tags) {
  beginSection(tags, "BLOCKS");
  addBlock(tags, "*Model_Space", dxfModelSpace, modelBlock, modelEnd, false);
  addBlock(tags, "*Paper_Space", paperSpace, paperBlock, paperEnd, true);
  tags.tag(0, "ENDSEC");
}

void addDxfObjects(DxfTags& tags, const DrawingBox& box) {
  beginSection(tags, "OBJECTS");
  beginDictionary(tags, "DICTIONARY", rootDictionary, noOwner);
  entry(tags, "ACAD_GROUP", groupDictionary);
  entry(tags, "ACAD_LAYOUT", layoutDictionary);
  entry(tags, "ACAD_PLOTSTYLENAME", plotDictionary);
  beginDictionary(tags, "DICTIONARY", groupDictionary, rootDictionary);
  beginDictionary(tags, "DICTIONARY", layoutDictionary, rootDictionary);
  entry(tags, "Model", modelLayout);
  entry(tags, "Layout1", paperLayout);
  beginDictionary(tags, "ACDBDICTIONARYWDFLT", plotDictionary, rootDictionary);
  entry(tags, "Normal", plotNormal);
  tags.tag(100, "AcDbDictionaryWithDefault");
  tags.handle(340, plotNormal);
  tags.tag(0, "ACDBPLACEHOLDER");
  tags.handle(5, plotNormal);
  tags.handle(330, plotDictionary);
  addLayout(tags, modelLayout, "Model", true, dxfModelSpace, box);
  addLayout(tags, paperLayout, "Layout1", false, paperSpace, box);
  tags.tag(0, "ENDSEC");
}

}  // namespace host
