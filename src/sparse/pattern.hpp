// Structure builder: the pattern of the global matrix from the incidences.
#pragma once

#include "ground/analysis.hpp"

namespace tornwalzen {

/// True if the host's counts can be worked with: nkno, nele, mnsysm ≥ 0, neq = 2·nkno, and neither 2·nkno nor
/// 3·nele nor the entry count's worst intermediate leaves 31 bits. If not: keeps a fatal text in the solver's
/// MSGSTR, sets `ierrso` to -1 and returns false.
bool meshCountsUsable(Analysis& run, Int nkno, Int nele, Int neq, Int mnsysm);

/// Builds the lower triangle by columns: every node couples with itself and with every node that it shares a
/// triangle with, two equations per node, diagonal first, rows increasing.
///
/// INTA: in, NE × 3, node numbers (checked here against 1..nkno).
/// COLS: out, neq + 1 pointers, one-based. ROWI: out, row indices; its length is the host's capacity `mnsysm`,
/// and nothing is written past it even when it is too small.
/// Run state: in nkno, nele, solver.mnsysm; out solver.neq, solver.nsysm = entries used.
///
/// Fails (`ierrso` -1) on a node number out of range (subscript message), when the entry count passes 2³¹ - 1,
/// when the scratch cannot be had, and with " FATALER FEHLER : mnsysm zu klein @" when the entries exceed
/// mnsysm; ROWI then holds the entries that fit and COLS is complete.
void buildPattern(Analysis& run, Table<const Int> INTA, Vector<Int> COLS, Vector<Int> ROWI);

}  // namespace tornwalzen
