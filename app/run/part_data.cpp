// The part as the writers of results take it; see the header.
#include "run/part_data.hpp"

namespace host {

PartData partData(const Part& part) {
  PartData data;
  data.file = part.file;
  data.identity = part.identity;
  data.points = part.points;
  data.fileElement = part.fileElement;
  data.ids = {part.ids.node, part.ids.element, part.ids.part};
  data.thickness = part.thickness;
  data.inTriangle = part.inTriangle;
  data.filePieces = part.filePieces;
  data.fileElements = part.fileElements;
  data.turned = part.turned;
  return data;
}

}  // namespace host
