// Writes the drawing of the blank as DXF, the exchange format of cutting machines and CAD programs (Autodesk, DXF
// Reference, releases 2000 and 12).
#pragma once

#include <string>

#include "result/drawing.hpp"

namespace host {

enum class DxfRelease {
  r2000,  // AC1015: closed LWPOLYLINEs, all tables, $INSUNITS 4
  r12     // AC1009: closed POLYLINEs; knows no unit and ASCII alone
};

// The whole file in millimetres. Layers OUTER, INNER, BEND (off while it is empty) and TEXT, which stands below the
// blank; the warnings stand as comments at the head of the file too. Text of any bytes is safe: what is no UTF-8 or
// no character becomes '?', the rest is written in the format's own escapes. Coordinates have 6 digits after the
// point, bulges 12. Throws Failure if a coordinate is not finite.
std::string dxfText(const Drawing& drawing, DxfRelease release);

// `text` as a DXF string holds it.
std::string dxfString(const std::string& text, DxfRelease release);

}  // namespace host
