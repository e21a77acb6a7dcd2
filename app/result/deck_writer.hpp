// The two text formats that other tools take: the mesh deck and the flat-blank file.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "result/result_files.hpp"

namespace host {

// The files that writing a deck touches: where it grows and its own place. Empty without a path.
std::vector<std::string> deckPlaces(const std::string& path);

// Writes a part and its held unknowns as a mesh deck; the numbers read back to the same bits. Throws
// Failure if it cannot be written; a file of that name is as it was then.
//   points   x, y, z of node 1, of node 2, ...; any unit
//   corners  three node numbers per element, from 1
//   ARFA     per unknown 1 free, 0 held
void writeDeck(const std::string& path, const std::vector<double>& points,
               const std::vector<std::int32_t>& corners, const std::vector<std::int32_t>& ARFA);

// Throws Failure if a part has more nodes or triangles than the flat-blank file's fields hold. part: its file's name.
void checkFlatBlankFits(const std::string& part, std::int64_t nodes, std::int64_t elements);

// corners: three node numbers per element. positions: blank position u, v of node 1, of node 2, ... in mm, the
// unit of the format whatever the user's is
void writeFlatBlank(FileWriter& file, const std::vector<std::int32_t>& corners,
                    const std::vector<double>& positions);

}  // namespace host
