// The two text formats that other tools take: the mesh deck and the flat-blank file.
#ifndef TORNWALZEN_APP_DECK_WRITER_HPP
#define TORNWALZEN_APP_DECK_WRITER_HPP

#include <string>
#include <vector>

#include "mesh/mesh_check.hpp"
#include "result/result_files.hpp"
#include "run/hold.hpp"

namespace host {

// The files that writing a deck touches: where it grows and its own place. Empty without a path.
std::vector<std::string> deckPlaces(const std::string& path);

// Writes the part and its held unknowns as a mesh deck; the numbers read back to the same bits. Throws
// Failure if it cannot be written; a file of that name is as it was then.
void writeDeck(const std::string& path, const Part& part, const Hold& hold);

// Throws Failure if the part has more nodes or triangles than the flat-blank file's fields hold.
void checkFlatBlankFits(const Part& part);

// corners: three node numbers per element. positions: blank position u, v of node 1, of node 2, ... in mm, the
// unit of the format whatever the user's is
void writeFlatBlank(FileWriter& file, const std::vector<std::int32_t>& corners,
                    const std::vector<double>& positions);

}  // namespace host

#endif
