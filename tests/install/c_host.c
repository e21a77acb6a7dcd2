/*
 * A host in plain C11, against an installed tornwalzen: the whole call protocol with every size checked.
 *
 * It meshes a shallow round dome over a square sheet, asks for the blank, judges convergence as the header says,
 * and compares the blank's area with what the shape allows. Prints one line; exit status 0 only if all held.
 */
#include <inttypes.h>
#include <math.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <tornwalzen.h>

enum { CELLS = 12 };              /* cells along each side */
static const double side = 100.0; /* of the sheet (mm) */
static const double height = 8.0; /* of the dome (mm) */

/* What the progress handler sees: enough to tell whether the run converged. */
struct watch {
  double fraction;        /* the last one */
  int timesSinceFraction; /* time texts after it */
};

static void onProgress(void* userdata, const TornwalzenProgress* record) {
  struct watch* watch = userdata;
  if (record->kind == 0) {
    watch->fraction = record->value;
    watch->timesSinceFraction = 0;
  } else if (record->text != NULL && strncmp(record->text, "TIME:", 5) == 0) {
    ++watch->timesSinceFraction;
  }
}

static void fail(const char* what) {
  fprintf(stderr, "c_host: %s\n", what);
  exit(EXIT_FAILURE);
}

/* `count` zeroed elements of `size` bytes; at least one, so that NULL always means failure. */
static void* make(size_t count, size_t size) {
  void* memory = calloc(count > 0 ? count : 1, size);
  if (memory == NULL) fail("out of memory");
  return memory;
}

/* The block at `memory` with room for `count` elements of `size` bytes; its content is kept. */
static void* grown(void* memory, int32_t count, size_t size) {
  if (count < 0) fail("a negative length was reported");
  void* larger = realloc(memory, (count > 0 ? (size_t)count : 1) * size);
  if (larger == NULL) fail("out of memory");
  return larger;
}

static int32_t nodeAt(int i, int j) {
  return (int32_t)(i * (CELLS + 1) + j + 1);
}

static void meshDome(double* knots, int32_t* inzi) {
  const double pi = acos(-1.0);
  for (int i = 0; i <= CELLS; ++i) {
    for (int j = 0; j <= CELLS; ++j) {
      double* p = knots + 3 * (nodeAt(i, j) - 1);
      p[0] = side * ((double)i / CELLS - 0.5);
      p[1] = side * ((double)j / CELLS - 0.5);
      const double r = sqrt(p[0] * p[0] + p[1] * p[1]) / (0.4 * side);
      p[2] = r < 1.0 ? 0.5 * height * (1.0 + cos(pi * r)) : 0.0;
    }
  }
  for (int i = 0; i < CELLS; ++i) {
    for (int j = 0; j < CELLS; ++j) {
      const int32_t a = nodeAt(i, j), b = nodeAt(i + 1, j), c = nodeAt(i + 1, j + 1), d = nodeAt(i, j + 1);
      const int32_t cell[6] = {a, b, c, a, c, d};
      memcpy(inzi, cell, sizeof cell);
      inzi += 6;
    }
  }
}

/* Area enclosed by the triangles in the plane of the blank (mm^2). */
static double blankArea(const int32_t* inzi, int32_t ne, const double* rx) {
  double area = 0.0;
  for (int32_t e = 0; e < ne; ++e) {
    const double* a = rx + 2 * (inzi[3 * e] - 1);
    const double* b = rx + 2 * (inzi[3 * e + 1] - 1);
    const double* c = rx + 2 * (inzi[3 * e + 2] - 1);
    area += 0.5 * ((b[0] - a[0]) * (c[1] - a[1]) - (c[0] - a[0]) * (b[1] - a[1]));
  }
  return area;
}

int main(void) {
  /* 1. The mesh, and the arrays whose sizes follow from it alone. */
  const int32_t nn = (CELLS + 1) * (CELLS + 1), ne = 2 * CELLS * CELLS, neq = 2 * nn;
  double* knots = make(3 * (size_t)nn, sizeof *knots);
  int32_t* inzi = make(3 * (size_t)ne, sizeof *inzi);
  meshDome(knots, inzi);
  int32_t mnsysm = 4 * (nn + 3 * ne) - nn, niwor = 0, nrk = 0, istat = -1;
  int32_t* inta = make(3 * (size_t)ne, sizeof *inta);
  int32_t* cols = make((size_t)neq + 1, sizeof *cols);
  int32_t* rowi = make((size_t)mnsysm, sizeof *rowi);
  double* kng = make(3 * (size_t)nn, sizeof *kng);

  /* 2. Structure set-up; WORK and RWORK follow the reported lengths. */
  int32_t* work = NULL;
  double* rwork = NULL;
  for (int32_t mode = 1; mode <= 3; ++mode) {
    OSINIT(&mode, &nn, &ne, &neq, &mnsysm, &niwor, &nrk, knots, inzi, inta, NULL, cols, rowi, work, rwork,
           NULL, NULL, NULL, NULL, kng, NULL, NULL, NULL, NULL, NULL, NULL, &istat);
    if (istat != 0) fail("OSINIT refused the mesh");
    if (mode == 1) rowi = grown(rowi, mnsysm, sizeof *rowi);
    work = grown(work, niwor, sizeof *work);
    if (mode >= 2) rwork = grown(rwork, nrk, sizeof *rwork);
  }

  /* 3. Hold the rigid motion: u and v of the middle node, and v of the one at the end of its row in x. */
  int32_t* arfa = make((size_t)neq, sizeof *arfa);
  for (int32_t q = 0; q < neq; ++q) arfa[q] = 1;
  const int32_t middle = nodeAt(CELLS / 2, CELLS / 2), end = nodeAt(CELLS, CELLS / 2);
  arfa[2 * middle - 2] = arfa[2 * middle - 1] = arfa[2 * end - 1] = 0;

  /* 4. The analysis, with flow curve 1. */
  struct watch watch = {0.0, 0};
  PlivaneSetProgressHdlr(onProgress, &watch);
  double *rr = make((size_t)neq, sizeof *rr), *rb = make((size_t)neq, sizeof *rb);
  double *rx = make((size_t)neq, sizeof *rx), *temp = make((size_t)neq, sizeof *temp);
  double *rxa = make((size_t)neq, sizeof *rxa), *wrhs = make((size_t)neq, sizeof *wrhs);
  double *knz = make(3 * (size_t)nn, sizeof *knz), *kna = make(3 * (size_t)nn, sizeof *kna);
  double *elg = make(5 * (size_t)ne, sizeof *elg), *eval = make(5 * (size_t)ne, sizeof *eval);
  double* sysm = make((size_t)mnsysm, sizeof *sysm);
  const int32_t ictrl = 1;
  OSMAIN(inta, arfa, cols, rowi, work, rwork, rr, rb, rx, temp, kng, knz, kna, elg, sysm, rxa, wrhs, &ictrl,
         eval, &istat);
  PlivaneSetProgressHdlr(NULL, NULL);

  /* 5. Did it converge, and is it a blank of this part? */
  if (istat == -1) fail("OSMAIN failed");
  if (watch.fraction != 1.0 || watch.timesSinceFraction != 2) fail("the run did not converge");
  double part = 0.0;
  for (int32_t e = 0; e < ne; ++e) part += eval[5 * e + 4];
  const double blank = blankArea(inzi, ne, rx);
  /* The dome's area exceeds its shadow by under 2 per cent, and a blank is neither larger than the part by more
     than the elastic room of the method nor smaller than the shadow. */
  if (!(part > side * side && part < 1.02 * side * side)) fail("the areas of the part are wrong");
  if (!(blank > 0.98 * side * side && blank < 1.02 * part)) fail("the blank's area is wrong");
  printf("c_host: converged, part %.3f mm^2, blank %.3f mm^2\n", part, blank);

  void* owned[] = {knots, inzi, inta, cols, rowi, kng, work, rwork, arfa, rr,
                   rb,    rx,   temp, rxa,  wrhs, knz, kna,  elg,   eval, sysm};
  for (size_t k = 0; k < sizeof owned / sizeof *owned; ++k) free(owned[k]);
  return EXIT_SUCCESS;
}
