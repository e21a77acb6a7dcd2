// The records of both formats, composed one by one and handed on without their line ends.
#pragma once

#include <cstddef>

#include "ground/array_view.hpp"

namespace tornwalzen {

/// Takes one record of `length` characters.
using TakeRecord = void (*)(void* taker, const char* record, std::size_t length);

/// The flat-blank file: keywords blank-padded to their lengths, counts I5, nodes I6 and three E15.6 (z is
/// 0.0), triangles five I6 with type 81. nkno, nele: in, counts; INTA: in, at least nele rows; RX: in, at
/// least 2·nkno (mm).
void flatBlankRecords(Int nkno, Int nele, Table<const Int> INTA, Vector<const double> RX, TakeRecord take,
                      void* taker);

/// A mesh deck with the section of held unknowns, blank-separated, coordinates in the shortest decimals that
/// read back to the same bits. INTA: in, nele × 3; KNG: in, nkno × 3 (mm); ARFA: in, 2·nkno flags, 0 held; of
/// length 0: all free.
void deckRecords(Int nkno, Int nele, Table<const Int> INTA, Table<const double> KNG, Vector<const Int> ARFA,
                 TakeRecord take, void* taker);

}  // namespace tornwalzen
