/*
 * tornwalzen_deck - the two text formats of tornwalzen: the mesh deck (a mesh and its held unknowns, read and
 * written) and the flat-blank file "eben.t51" (the blank as a mesh, written). A static library of its own;
 * the shared library exports none of this and a run needs none of it. docs/formats.md describes both formats.
 *
 * FOR HOSTS: read in two steps, so that no count is believed before the file holds what it announces.
 *
 *   TornwalzenDeckError error;
 *   TornwalzenDeckSizes sizes;
 *   if (tornwalzenDeckCounts(path, &sizes, &error)) fail(&error);   // reads the whole deck, keeps nothing
 *   sizes.maxkno = sizes.nkno;
 *   sizes.maxele = sizes.nele;
 *   sizes.maxsys = sizes.neq;
 *   double* kng = calloc(3 * (size_t)sizes.nkno, sizeof *kng);      // columns: all x, all y, all z
 *   int32_t* inta = calloc(3 * (size_t)sizes.nele, sizeof *inta);
 *   int32_t* arfa = calloc((size_t)sizes.neq, sizeof *arfa);
 *   if (tornwalzenDeckRead(path, &sizes, inta, arfa, kng, &error)) fail(&error);
 *
 * None of the functions named tornwalzen... ends the process or, but for tornwalzenDeckAskName, prints.
 * readInputDeck and writeFlatBlankFile do both: they are the console forms of the same.
 *
 * Arrays are column-major, their contents count from 1. Unknown 2n-1 is x of node n, 2n its y.
 */
#ifndef TORNWALZEN_DECK_H
#define TORNWALZEN_DECK_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Declared capacities and what a deck holds. */
typedef struct TornwalzenDeckSizes {
  int32_t maxkno; /* in: rows of KNG */
  int32_t maxele; /* in: rows of INTA */
  int32_t maxsys; /* in: length of ARFA */
  int32_t nkno;   /* nodes */
  int32_t nele;   /* triangles */
  int32_t neq;    /* unknowns, 2*nkno */
} TornwalzenDeckSizes;

enum TornwalzenDeckErrorKind {
  TORNWALZEN_DECK_OK = 0,
  TORNWALZEN_DECK_UNREADABLE = 1, /* the file is missing, no plain file, or cannot be read */
  TORNWALZEN_DECK_ENDED = 2,      /* the deck ends before all that it announces */
  TORNWALZEN_DECK_MALFORMED = 3,  /* an item is not what the deck's layout has there */
  TORNWALZEN_DECK_MAXKNO = 4,     /* more nodes than maxkno */
  TORNWALZEN_DECK_MAXSYS = 5,     /* more unknowns than maxsys */
  TORNWALZEN_DECK_MAXELE = 6,     /* more triangles than maxele */
  TORNWALZEN_DECK_SUBSCRIPT = 7,  /* a held unknown that is not in 1..neq */
  TORNWALZEN_DECK_UNWRITABLE = 8, /* the file cannot be written */
  TORNWALZEN_DECK_TOO_WIDE = 9,   /* a number does not fit the fixed fields of the flat-blank file */
  TORNWALZEN_DECK_NO_MEMORY = 10
};

/* What went wrong, and where. Texts are zero-terminated and cut to their room. */
typedef struct TornwalzenDeckError {
  int32_t kind;      /* TORNWALZEN_DECK_... */
  int64_t line;      /* from 1; 0 where no place in the file is meant */
  int64_t column;    /* from 1, in bytes */
  int64_t value;     /* of MAXKNO, MAXSYS, MAXELE: what the deck needs; of SUBSCRIPT and TOO_WIDE: the number */
  char file[256];    /* the name as it was given */
  char expected[96]; /* of ENDED, MALFORMED, SUBSCRIPT, TOO_WIDE: "an integer: the number of nodes" */
  char found[64];    /* the item found, other than printing characters as '?'; or the system's reason */
} TornwalzenDeckError;

/* The error as one line without a line end, cut to `size` characters with the zero: for example
   deck.t51:12:7: expected a real number: y of node 3, found "abc"
   and the reader's own " maxkno zu klein ", " maxsys zu klein ", " maxele zu klein " for exceeded capacities.
 */
void tornwalzenDeckErrorText(const TornwalzenDeckError* error, char* out, size_t size);

/* 1 if the file's beginning is that of a mesh deck, else 0 (also if it cannot be read): its first record
   starts with the word GEOMETRIE, or its fourth record holds a count. The second form looks at `length`
   characters in memory. */
int32_t tornwalzenDeckRecognise(const char* path);
int32_t tornwalzenDeckRecogniseText(const char* text, size_t length);

/* Reads the whole deck and keeps only nkno, nele and neq. Capacities are not looked at, no memory is taken
   but for the file's own bytes. Returns 0, or an error's kind with `error` filled. The second form reads
   `length` characters in memory; `path` is their name in the error. */
int32_t tornwalzenDeckCounts(const char* path, TornwalzenDeckSizes* sizes, TornwalzenDeckError* error);
int32_t tornwalzenDeckCountsText(const char* path, const char* text, size_t length, TornwalzenDeckSizes* sizes,
                                 TornwalzenDeckError* error);

/*
 * Reads a deck into the host's arrays.
 *
 *  path   in                          name of an existing plain file; second form: the name in the error
 *  sizes  inout                       in: the three capacities; out: the three counts
 *  INTA   out, int32[maxele,3]        node numbers of each triangle; not compared with nkno
 *  ARFA   out, int32[maxsys]          1 free, 0 held, for the first neq unknowns
 *  KNG    out, double[maxkno,3], mm   node coordinates; may hold infinities and NaN where the deck does
 *  error  out                         filled on failure; may not be NULL
 *
 * A null value between commas leaves its element of KNG or INTA as it was. Returns 0, or the error's kind;
 * the arrays may be filled in part then, within their bounds.
 */
int32_t tornwalzenDeckRead(const char* path, TornwalzenDeckSizes* sizes, int32_t* INTA, int32_t* ARFA, double* KNG,
                           TornwalzenDeckError* error);
int32_t tornwalzenDeckReadText(const char* path, const char* text, size_t length, TornwalzenDeckSizes* sizes,
                               int32_t* INTA, int32_t* ARFA, double* KNG, TornwalzenDeckError* error);

/*
 * Writes a deck with the section of held unknowns; a file of that name is replaced once the new one is
 * complete.
 *
 *  nkno, nele  in                     counts, >= 0
 *  INTA        in, int32[nele,3]      node numbers
 *  ARFA        in, int32[2*nkno]      0 held, anything else free; NULL: all free
 *  KNG         in, double[nkno,3]     mm; written in the shortest decimals that read back to the same bits
 *
 * Returns 0, or the error's kind; then nothing of that name was changed.
 */
int32_t tornwalzenDeckWrite(const char* path, int32_t nkno, int32_t nele, const int32_t* INTA, const int32_t* ARFA,
                            const double* KNG, TornwalzenDeckError* error);

/* The largest node or element number that stays apart from its neighbours in the flat-blank file's fields. */
enum { TORNWALZEN_FLAT_BLANK_LIMIT = 99999 };

/* 1 if a mesh of these counts fits the flat-blank file's fields, else 0: for hosts to ask before a run. */
int32_t tornwalzenFlatBlankFits(int32_t nkno, int32_t nele);

/* Takes one record of a file, `length` characters without a line end. */
typedef void (*TornwalzenTakeRecord)(void* taker, const char* record, size_t length);

/*
 * Writes the blank in the layout of "eben.t51" under any name; a file of that name is replaced once the new
 * one is complete (it grows as NAME.part beside it, as a deck does).
 *
 *  nkno, nele  in, 0..99999           counts
 *  INTA        in, int32[nele,3]      node numbers, 1..nkno
 *  RX          in, double[2*nkno]     x, y of node 1, of node 2, ... (mm); six digits are kept
 *
 * Refuses what does not fit with TORNWALZEN_DECK_TOO_WIDE before it opens the file. Returns 0 or the error's
 * kind. The second form hands the records to the host, which writes them itself.
 */
int32_t tornwalzenFlatBlankWrite(const char* path, int32_t nkno, int32_t nele, const int32_t* INTA, const double* RX,
                                 TornwalzenDeckError* error);
int32_t tornwalzenFlatBlankRecords(int32_t nkno, int32_t nele, const int32_t* INTA, const double* RX,
                                   TornwalzenTakeRecord take, void* taker, TornwalzenDeckError* error);

/* The longest deck name that the console takes. */
enum { TORNWALZEN_DECK_NAME_LENGTH = 20 };

/* Writes " EINGABEDATEI " and a newline on standard output and reads one line of standard input: its first 20
   characters without the blanks at their end go to `name`, zero-terminated. Returns 0, or
   TORNWALZEN_DECK_ENDED if standard input is at its end. */
int32_t tornwalzenDeckAskName(char name[TORNWALZEN_DECK_NAME_LENGTH + 1], TornwalzenDeckError* error);

/*
 * The console form of the reader: asks for the deck's name as tornwalzenDeckAskName does, then reads it as
 * tornwalzenDeckRead does. On failure it ENDS THE PROCESS with status 1, after " maxkno zu klein ",
 * " maxsys zu klein " or " maxele zu klein " on standard output, or the cause on standard error.
 */
void readInputDeck(int32_t* INTA, int32_t* ARFA, double* KNG, TornwalzenDeckSizes* sizes);

/*
 * Writes "eben.t51" in the current folder and replaces it if it exists. Takes OSMAIN's first seventeen
 * arguments and reads two of them: INTA (int32[maxele,3]) and RX (double[neq], mm); the others may be NULL.
 * Of `sizes` it reads nkno, nele, maxele and neq. Numbers that do not fit become asterisks:
 * tornwalzenFlatBlankWrite refuses them instead. If the file cannot be written it ENDS THE PROCESS with
 * status 1 and the cause on standard error.
 */
void writeFlatBlankFile(const int32_t* INTA, const int32_t* ARFA, const int32_t* COLS, const int32_t* ROWI,
                        const int32_t* WORK, const double* RWORK, const double* RR, const double* RB, const double* RX,
                        const double* TEMP, const double* KNG, const double* KNZ, const double* KNA, const double* ELG,
                        const double* SYSM, const double* RXA, const double* WRHS, const TornwalzenDeckSizes* sizes);

#ifdef __cplusplus
}
#endif

#endif /* TORNWALZEN_DECK_H */
