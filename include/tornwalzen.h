/*
 * tornwalzen - inverse analysis of sheet-metal forming.
 *
 * From the triangle mesh of a finished stamped part the library finds the flat blank that the part was formed
 * from, and how much every element was strained. Readable from C and C++; every argument is passed by reference.
 *
 * THE CALL PROTOCOL, for one mesh
 *
 *   1. OSINIT mode 1   takes the mesh, builds the pattern of the global matrix   -> MNSYSM, NIWOR
 *   2. OSINIT mode 2   orders the equations                                      -> NIWOR, NRK
 *   3. OSINIT mode 3   lays out the factor                                       -> NIWOR, NRK
 *   4. OSMAIN          develops the part, then iterates the blank to equilibrium -> RX, EVAL
 *
 * The host owns every array and (re)allocates WORK and RWORK between the calls to the lengths reported; what
 * stands in WORK is kept (grow it with realloc). The library keeps no pointer: arrays may move between calls. The
 * library remembers the lengths it reported and takes the host to have supplied them. One mesh at a time, one
 * thread at a time. A new mesh starts again at mode 1. PlivaneSetProgressHdlr may be called at any time.
 *
 * WORKED EXAMPLE (NN nodes, NE triangles; NEQ = 2*NN; error handling reduced to the status)
 *
 *   int32_t mode = 1, neq = 2 * nn, istat, niwor, nrk = 0;
 *   int32_t mnsysm = 4 * (nn + 3 * ne) - nn;        // never too small: at most 3 node pairs per triangle
 *   int32_t *inta = malloc(3 * ne * sizeof *inta), *cols = malloc((neq + 1) * sizeof *cols);
 *   int32_t *rowi = malloc(mnsysm * sizeof *rowi), *work = NULL;
 *   double  *kng  = malloc(3 * nn * sizeof *kng), *rwork = NULL;
 *   // arguments 14..26 are OSMAIN's 5..17; what a mode does not use may be NULL
 *   OSINIT(&mode, &nn, &ne, &neq, &mnsysm, &niwor, &nrk, knots, inzi, inta, NULL, cols, rowi,
 *          NULL, NULL, NULL, NULL, NULL, NULL, kng, NULL, NULL, NULL, NULL, NULL, NULL, &istat);
 *   if (istat) fail();
 *   rowi = realloc(rowi, mnsysm * sizeof *rowi);    // mnsysm is now the number of entries used
 *   work = malloc(niwor * sizeof *work);
 *   mode = 2;
 *   OSINIT(&mode, &nn, &ne, &neq, &mnsysm, &niwor, &nrk, knots, inzi, inta, NULL, cols, rowi,
 *          work, NULL, NULL, NULL, NULL, NULL, kng, NULL, NULL, NULL, NULL, NULL, NULL, &istat);
 *   if (istat) fail();
 *   work  = realloc(work, niwor * sizeof *work);    // may shrink: the front is what counts
 *   rwork = malloc(nrk * sizeof *rwork);
 *   mode = 3;
 *   OSINIT(&mode, ..., work, rwork, ..., &istat);   // as above, with rwork in place 15
 *   if (istat) fail();
 *   work  = realloc(work, niwor * sizeof *work);
 *   rwork = realloc(rwork, nrk * sizeof *rwork);
 *   double *rr = calloc(neq, sizeof *rr), *rb = ..., *rx = ..., *temp = ..., *rxa = ..., *wrhs = ...;  // neq each
 *   double *knz = ..., *kna = ...;                  // 3 * nn each
 *   double *elg = ..., *eval = ...;                 // 5 * ne each
 *   double *sysm = malloc(mnsysm * sizeof *sysm);
 *   int32_t *arfa = ...;                            // neq: 1 free, 0 held; hold what removes the rigid motion
 *   int32_t ictrl = 1;
 *   OSMAIN(inta, arfa, cols, rowi, work, rwork, rr, rb, rx, temp, kng, knz, kna, elg, sysm, rxa, wrhs,
 *          &ictrl, eval, &istat);
 *
 * DID IT CONVERGE? The status alone does not tell. A run converged if and only if the last progress fraction was
 * 1.0, two time texts follow it, and ISTAT is not -1. A run that stops because its step became too small reports
 * ISTAT 1 or 0 all the same, sets the element error word and says so in the message text. That word stays set as
 * long as the library is loaded, so every later OSMAIN ends right after its development.
 *
 * MEMORY AND INDEX CHECKS. Every index that comes from the host (INZI, INTA, COLS, ROWI) is checked once per call
 * before it is used. One that is out of range is named on standard error in a line
 * "fort: (2|3): Subscript #k of the array NAME has value ...", and the call returns -1. A WORK that was changed
 * between the calls is recognised by a checksum and refused.
 */
#ifndef TORNWALZEN_H
#define TORNWALZEN_H

#include <stdint.h>

/* Windows: a host of the DLL imports; define TORNWALZEN_STATIC to link the static library. */
#if defined(_WIN32)
#if defined(TORNWALZEN_BUILD)
#define TORNWALZEN_API __declspec(dllexport)
#elif defined(TORNWALZEN_STATIC)
#define TORNWALZEN_API
#else
#define TORNWALZEN_API __declspec(dllimport)
#endif
#elif defined(__GNUC__)
#define TORNWALZEN_API __attribute__((visibility("default")))
#else
#define TORNWALZEN_API
#endif

#ifdef __cplusplus
extern "C" {
#endif

/*
 * Structure set-up, in three modes. Index base of all contents: 1. Lengths in elements.
 *
 *  #  name    direction, shape                meaning; modes that use it
 *  1  MODE    in, int32                       1, 2 or 3; anything else does nothing and leaves ISTAT 0
 *  2  NKNO    in, int32, >= 0                 NN, number of nodes (1)
 *  3  NELE    in, int32, >= 0                 NE, number of triangles (1)
 *  4  NEQ     in, int32, = 2*NKNO             number of unknowns (1)
 *  5  MNSYSM  inout, int32                    in: length of ROWI; out: entries used (1); untouched on failure
 *  6  NIWOR   out, int32                      length of WORK that the next step needs (1, 2, 3)
 *  7  NRK     out, int32                      length of RWORK that the next step needs (2, 3)
 *  8  KNOTS   in, double[3*NN], mm            x, y, z of node 1, of node 2, ... (1)
 *  9  INZI    in, int32[3*NE], 1..NN          the three nodes of triangle 1, of triangle 2, ... (1)
 * 10  INTA    out, int32[NE,3]                incidences by columns: all first corners, all second, all third (1)
 * 11  -       reserved, not read              may be NULL
 * 12  COLS    out, int32[NEQ+1]               column pointers of the lower triangle (out in 1, in in 2 and 3)
 * 13  ROWI    out, int32[MNSYSM]              row indices, diagonal first in each column (out in 1, in in 2 and 3)
 * 14  WORK    inout, int32[NIWOR]             the solver's integer array (2, 3); kept by the host up to OSMAIN
 * 15  RWORK   inout, double[NRK]              the solver's real array (3); kept by the host up to OSMAIN
 * 16-19 RR RB RX TEMP                         not read here; may be NULL
 * 20  KNG     out, double[NN,3], mm           node coordinates by columns: all x, all y, all z (1)
 * 21-26 KNZ KNA ELG SYSM RXA WRHS             not read here; may be NULL
 * 27  ISTAT   out, int32                      0 success, -1 failure
 *
 * On failure the outputs of the mode are not written (INTA, KNG, COLS and ROWI may be, within their bounds).
 */
TORNWALZEN_API void OSINIT(const int32_t* MODE, const int32_t* NKNO, const int32_t* NELE, const int32_t* NEQ,
                           int32_t* MNSYSM, int32_t* NIWOR, int32_t* NRK, const double* KNOTS, const int32_t* INZI,
                           int32_t* INTA, int32_t* reserved, int32_t* COLS, int32_t* ROWI, int32_t* WORK, double* RWORK,
                           double* RR, double* RB, double* RX, double* TEMP, double* KNG, double* KNZ, double* KNA,
                           double* ELG, double* SYSM, double* RXA, double* WRHS, int32_t* ISTAT);

/*
 * The inverse analysis. NN, NE, NEQ, MNSYSM, NIWOR, NRK: as OSINIT last took or reported them.
 *
 *  #  name    direction, shape                meaning
 *  1  INTA    inout, int32[NE,3]              incidences of OSINIT; columns 2 and 3 are exchanged if the part is
 *                                             meshed clockwise seen from +z
 *  2  ARFA    in, int32[NEQ]                  1 free, 0 held; unknown 2n-1 is u of node n, 2n is v
 *  3  COLS    in, int32[NEQ+1]                of OSINIT
 *  4  ROWI    in, int32[MNSYSM]               of OSINIT
 *  5  WORK    inout, int32[NIWOR]             of OSINIT
 *  6  RWORK   inout, double[NRK]              of OSINIT; holds the last factor afterwards
 *  7  RR      out, double[NEQ]                residual: the negative gradient of the potential
 *  8  RB      out, double[NEQ], mm            last correction
 *  9  RX      out, double[NEQ], mm            THE BLANK: u of node n at 2n-1, v at 2n
 * 10  TEMP    out, double[NEQ]                scratch, all zero afterwards
 * 11  KNG     in, double[NN,3], mm            the part, of OSINIT
 * 12  KNZ     out, double[NN,3], mm           target geometry of the last increment (the part, if converged)
 * 13  KNA     out, double[NN,3], mm           starting blank in columns 1 and 2; column 3 is not touched
 * 14  ELG     out, double[NE,5]               element table by columns, see EVAL
 * 15  SYSM    out, double[MNSYSM]             values of the tangent matrix
 * 16  RXA     out, double[NEQ], mm            RX at the start of the last increment
 * 17  WRHS    out, double[NEQ]                scratch of the solver
 * 18  ICTRL   in, int32                       flow curve: 0, 1, 2 (plastic work, gradient tolerance 0.1) or
 *                                             10 (geometric density, tolerance 0.01); anything else keeps the
 *                                             curve loaded before and runs as 10
 * 19  EVAL    out, double[5,NE]               per element, of the last converged increment: -(E11+E22)
 *                                             (dimensionless), density (dimensionless), smallest corner angle of
 *                                             the part (degrees; NaN where the square of an edge's length is 0
 *                                             in double precision, and perhaps where the corners lie on a line),
 *                                             unfolding penalty (dimensionless), area of the part's triangle
 *                                             (mm^2)
 * 20  ISTAT   out, int32                      -1 failure of structure or solver, else the run status: 1 for
 *                                             ICTRL 0, 1, 2 and 0 for all others. Not a sign of convergence.
 */
TORNWALZEN_API void OSMAIN(int32_t* INTA, const int32_t* ARFA, const int32_t* COLS, const int32_t* ROWI, int32_t* WORK,
                           double* RWORK, double* RR, double* RB, double* RX, double* TEMP, const double* KNG,
                           double* KNZ, double* KNA, double* ELG, double* SYSM, double* RXA, double* WRHS,
                           const int32_t* ICTRL, double* EVAL, int32_t* ISTAT);

/* What the progress handler is given; valid only during the call. */
typedef struct TornwalzenProgress {
  double value;     /* kind 0: fraction 0..1; kind 1: 0.0 */
  int32_t kind;     /* 0 fraction, 1 text */
  const char* text; /* kind 1: information line or time text, zero-terminated; kind 0: NULL */
} TornwalzenProgress;

typedef void (*TornwalzenProgressHandler)(void* userdata, const TornwalzenProgress* record);

/* Registers the progress handler and the datum it is called with, both by value. A null handler switches the
   progress channel off. The handler runs on the calling thread; it may call prttxt, but no analysis. */
TORNWALZEN_API void PlivaneSetProgressHdlr(TornwalzenProgressHandler handler, void* userdata);

/* Prints `text` up to its first zero byte, at most 80 characters, and a newline on standard output, and flushes
   it. `length` is not used. */
TORNWALZEN_API void prttxt(const char* text, int32_t length);

/* Opens a progress scale that ends at *end. */
TORNWALZEN_API void inipgr(const double* end);

/* Reports progress *x on that scale: 0.0 the first time after inipgr, then 1 - (end - x)/(end - first x). */
TORNWALZEN_API void progre(const double* x);

/* Hands an information line to the handler: `text` up to its zero byte, at most 127 characters. `length` is not
   used. */
TORNWALZEN_API void proinf(const char* text, int32_t length);

/* Hands the processor time to the handler: "TIME: 59sec", "TIME: 1min 1s". */
TORNWALZEN_API void procpu(void);

/* Called after a fatal text was composed; does nothing. */
TORNWALZEN_API void prterr(void);

#ifdef __cplusplus
}
#endif

#endif /* TORNWALZEN_H */
