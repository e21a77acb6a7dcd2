/*
 * A host in plain C11 of tornwalzen_analysis.h, against an installed tornwalzen.
 *
 *   cc handle_host.c $(pkg-config --cflags --libs tornwalzen) -lm -o handle_host && ./handle_host
 *
 * It shows a whole analysis by its handle: the mesh of a shallow round dome over a square sheet counted from 0, what is
 * held, a hardening law, progress and messages; how a host ends a run and runs again; and what tells that a blank is
 * one. Prints one line; exit status 0 only if all held.
 */
#include <math.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <tornwalzen_analysis.h>

enum { CELLS = 12 };              /* cells along each side */
static const double side = 100.0; /* of the sheet (mm) */
static const double height = 8.0; /* of the dome (mm) */

/* What the handlers see. */
struct watch {
  int phase;     /* the last one */
  int backwards; /* phases or fractions of the increments that went back */
  double fraction;
  int endAt; /* phase at which to ask for the end; 0: none */
  int lines; /* of messages */
};

static int32_t onStep(void* userdata, const TornwalzenStep* step) {
  struct watch* watch = userdata;
  if (step->phase < watch->phase || (step->phase == watch->phase && step->fraction < watch->fraction))
    ++watch->backwards;
  watch->phase = step->phase;
  watch->fraction = step->fraction;
  return step->phase == watch->endAt; /* anything but 0: an orderly end */
}

static void onMessage(void* userdata, const char* line) {
  struct watch* watch = userdata;
  if (strlen(line) <= 80) ++watch->lines;
}

static void fail(const char* what) {
  fprintf(stderr, "handle_host: %s\n", what);
  exit(EXIT_FAILURE);
}

/* Every call returns TORNWALZEN_OK or a code that the library puts into words. */
static void expect(TornwalzenAnalysis* analysis, int32_t code) {
  if (code != TORNWALZEN_OK) fail(tornwalzen_analysis_error_text(analysis, code, 1));
}

/* counted from 0 */
static int32_t nodeAt(int i, int j) {
  return (int32_t)(i * (CELLS + 1) + j);
}

static void meshDome(double* points, int32_t* triangles) {
  const double pi = acos(-1.0);
  for (int i = 0; i <= CELLS; ++i) {
    for (int j = 0; j <= CELLS; ++j) {
      double* p = points + 3 * nodeAt(i, j);
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
      memcpy(triangles, cell, sizeof cell);
      triangles += 6;
    }
  }
}

static double blankArea(const int32_t* triangles, int32_t ne, const double* blank) { /* mm^2 */
  double area = 0.0;
  for (int32_t e = 0; e < ne; ++e) {
    const double* a = blank + 2 * triangles[3 * e];
    const double* b = blank + 2 * triangles[3 * e + 1];
    const double* c = blank + 2 * triangles[3 * e + 2];
    area += 0.5 * ((b[0] - a[0]) * (c[1] - a[1]) - (c[0] - a[0]) * (b[1] - a[1]));
  }
  return area;
}

static TornwalzenReport reportOf(TornwalzenAnalysis* analysis) {
  TornwalzenReport report;
  report.size = sizeof report;
  expect(analysis, tornwalzen_analysis_report(analysis, &report));
  return report;
}

int main(void) {
  enum { NN = (CELLS + 1) * (CELLS + 1), NE = 2 * CELLS * CELLS };
  static double points[3 * NN];
  static int32_t triangles[3 * NE], held[2 * NN];
  meshDome(points, triangles);

  /* 1. The analysis and its mesh. What is set is copied: the arrays may go afterwards. */
  TornwalzenAnalysis* analysis = tornwalzen_analysis_create();
  if (analysis == NULL) fail("out of memory");
  expect(analysis, tornwalzen_analysis_set_mesh(analysis, NN, NE, points, triangles, 0));

  /* 2. Hold the rigid motion: u and v of the middle node, and v of the one at the end of its row in x. */
  const int32_t middle = nodeAt(CELLS / 2, CELLS / 2), end = nodeAt(CELLS, CELLS / 2);
  held[2 * middle] = held[2 * middle + 1] = held[2 * end + 1] = 1;
  expect(analysis, tornwalzen_analysis_set_holds(analysis, held));

  /* 3. The material: a deep-drawing steel after Swift (MPa), and its anisotropy; tight at the end of the run. */
  const double swift[3] = {549.03, 0.007, 0.22};
  expect(analysis, tornwalzen_analysis_set_law(analysis, TORNWALZEN_SWIFT, swift, 1.0));
  expect(analysis, tornwalzen_analysis_set_normal_anisotropy(analysis, 1.6));
  expect(analysis, tornwalzen_analysis_set_energy_reference(analysis, 1));
  expect(analysis, tornwalzen_analysis_set_tolerance_factors(analysis, 0.001, 1.0));

  /* 4. A run that its host ends. That is no error of the call: the report tells. */
  struct watch watch = {0, 0, 0.0, TORNWALZEN_PHASE_INCREMENTS, 0};
  expect(analysis, tornwalzen_analysis_on_step(analysis, onStep, &watch));
  expect(analysis, tornwalzen_analysis_on_message(analysis, onMessage, &watch));
  expect(analysis, tornwalzen_analysis_run(analysis));
  if (reportOf(analysis).reason != TORNWALZEN_STOPPED_BY_HOST) fail("the run did not end when asked");

  /* 5. The whole run, on the structure that stands by now. */
  watch = (struct watch){0, 0, 0.0, 0, 0};
  expect(analysis, tornwalzen_analysis_run(analysis));
  const TornwalzenReport report = reportOf(analysis);
  if (!report.converged) fail(report.fatal_text[0] != '\0' ? report.fatal_text : "the run did not converge");
  if (watch.phase != TORNWALZEN_PHASE_INCREMENTS || watch.backwards != 0) fail("the progress is wrong");
  if (watch.lines == 0) fail("no message came");

  /* 6. Is it a blank of this part? The dome's area exceeds its shadow by under 2 per cent, and a blank is neither larger
     than the part by more than the elastic room of the method nor smaller than the shadow. Its held nodes did not move. */
  const double* blank = tornwalzen_analysis_blank(analysis);
  const double* table = tornwalzen_analysis_element_table(analysis);
  double part = 0.0;
  for (int e = 0; e < NE; ++e) part += table[5 * e + 4];
  const double area = blankArea(tornwalzen_analysis_oriented_triangles(analysis), NE, blank);
  if (!(part > side * side && part < 1.02 * side * side)) fail("the area of the part is wrong");
  if (!(area > 0.98 * side * side && area < 1.02 * part)) fail("the blank's area is wrong");
  if (blank[2 * middle] != 0.0 || blank[2 * middle + 1] != 0.0) fail("a held node has moved");

  /* 7. Strains per triangle. */
  static TornwalzenElementStrain strains[NE];
  expect(analysis, tornwalzen_analysis_strains(analysis, strains));
  double largest = 0.0;
  for (int e = 0; e < NE; ++e)
    if (strains[e].equivalent > largest) largest = strains[e].equivalent;
  if (fabs(largest - report.largest_strain) > 1e-12) fail("strains and report differ");

  printf("handle_host: converged, part %.3f mm^2, blank %.3f mm^2, largest strain %.4f\n", part, area,
         largest);
  expect(NULL, tornwalzen_analysis_destroy(analysis));
  return EXIT_SUCCESS;
}
