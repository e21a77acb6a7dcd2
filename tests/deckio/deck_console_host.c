/*
 * A C host of the deck library alone.
 *
 *   deck_console_host read MAXKNO MAXELE MAXSYS   asks for a deck and prints its counts, incidences, flags
 * and nodes deck_console_host write NAN_OR_NUMBER         writes "eben.t51" of a triangle with that
 * coordinate
 */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "tornwalzen_deck.h"

static int readDeck(char** counts) {
  TornwalzenDeckSizes sizes = {atoi(counts[0]), atoi(counts[1]), atoi(counts[2]), 0, 0, 0};
  double* kng = calloc(3 * (size_t)sizes.maxkno + 1, sizeof *kng);
  int32_t* inta = calloc(3 * (size_t)sizes.maxele + 1, sizeof *inta);
  int32_t* arfa = calloc((size_t)sizes.maxsys + 1, sizeof *arfa);
  int32_t i, c;
  readInputDeck(inta, arfa, kng, &sizes);
  printf("%d %d %d\n", sizes.nkno, sizes.nele, sizes.neq);
  for (i = 0; i < sizes.nele; ++i)
    for (c = 0; c < 3; ++c) printf("%d%c", inta[c * sizes.maxele + i], c < 2 ? ' ' : '\n');
  for (i = 0; i < sizes.neq; ++i) printf("%d", arfa[i]);
  printf("\n");
  for (i = 0; i < sizes.nkno; ++i)
    for (c = 0; c < 3; ++c) printf("%g%c", kng[c * sizes.maxkno + i], c < 2 ? ' ' : '\n');
  free(kng);
  free(inta);
  free(arfa);
  return 0;
}

static int writeBlank(const char* number) {
  /* Declared for two triangles, one in use: the columns of INTA are two apart. */
  const TornwalzenDeckSizes sizes = {3, 2, 6, 3, 1, 6};
  const int32_t inta[6] = {1, 0, 2, 0, 3, 0};
  const double rx[6] = {atof(number), 0.0, 1.0, 0.0, 0.0, 1.0};
  writeFlatBlankFile(inta, NULL, NULL, NULL, NULL, NULL, NULL, NULL, rx, NULL, NULL, NULL, NULL, NULL, NULL,
                     NULL, NULL, &sizes);
  return 0;
}

int main(int count, char** words) {
  if (count == 5 && strcmp(words[1], "read") == 0) return readDeck(words + 2);
  if (count == 3 && strcmp(words[1], "write") == 0) return writeBlank(words[2]);
  return 2;
}
