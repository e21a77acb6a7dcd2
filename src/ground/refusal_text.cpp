// The texts of the codes, in German and English. "#" stands for the refused index, "%" for the refused value.
#include "ground/refusal_text.hpp"

#include <cstddef>
#include <cstdio>

#include "tornwalzen_ext.h"

namespace tornwalzen {

namespace {

struct Text {
  Int code;
  const char* german;
  const char* english;
};

constexpr Text texts[] = {
    {TORNWALZEN_OK, "kein Fehler", "no error"},
    {TORNWALZEN_NULL_POINTER, "Argument # ist ein Nullzeiger", "argument # is a null pointer"},
    {TORNWALZEN_BUSY, "waehrend OSMAIN laeuft, kann nichts gesetzt werden",
     "nothing can be set while OSMAIN runs"},
    {TORNWALZEN_BAD_SELECTOR, "die Fliesskurve % gibt es nicht oder sie kann nicht ersetzt werden",
     "there is no flow curve %, or it cannot be replaced"},
    {TORNWALZEN_BAD_POINT_COUNT, "eine Fliesskurve braucht 3 bis 49 Punkte, nicht %",
     "a flow curve takes 3 to 49 points, not %"},
    {TORNWALZEN_POINT_NOT_FINITE, "Punkt # der Fliesskurve ist keine endliche Zahl: %",
     "point # of the flow curve is not a finite number: %"},
    {TORNWALZEN_FIRST_STRAIN_NOT_ZERO, "die erste Dehnung der Fliesskurve muss genau 0 sein, nicht %",
     "the first strain of the flow curve must be exactly 0, not %"},
    {TORNWALZEN_STRAIN_NOT_INCREASING, "Dehnung # der Fliesskurve ist %, nicht groesser als die davor",
     "strain # of the flow curve is %, not larger than the one before it"},
    {TORNWALZEN_STRAIN_TOO_LARGE, "Dehnung # der Fliesskurve ist %, sie muss kleiner als 5 sein",
     "strain # of the flow curve is %, it must be below 5"},
    {TORNWALZEN_STRESS_NOT_POSITIVE, "Spannung # der Fliesskurve ist % MPa, nicht positiv",
     "stress # of the flow curve is % MPa, not positive"},
    {TORNWALZEN_CURVE_NOT_POSITIVE,
     "die Fliesskurve faellt hinter Punkt # bis auf % MPa, sie muss positiv bleiben",
     "the flow curve falls to % MPa behind point #, it must stay positive"},
    {TORNWALZEN_BAD_LAW, "Parameter # des Verfestigungsgesetzes ist %, ausserhalb seines Bereichs",
     "parameter # of the hardening law is %, outside its range"},
    {TORNWALZEN_BAD_ANISOTROPY, "die senkrechte Anisotropie r ist %, sie muss positiv und endlich sein",
     "the normal anisotropy r is %, it must be positive and finite"},
    {TORNWALZEN_BAD_REFERENCE, "der Energiebezug ist %, erlaubt sind 0 (Platine) und 1 (Teil)",
     "the energy reference is %, allowed are 0 (blank) and 1 (part)"},
    {TORNWALZEN_BAD_TOLERANCE, "Toleranzfaktor # ist %, er muss groesser als 0 und hoechstens 1 sein",
     "tolerance factor # is %, it must be above 0 and at most 1"},
    {TORNWALZEN_BAD_PATH, "der Weg ist %, erlaubt sind 0 (fest) und 1 (sicher)",
     "the path is %, allowed are 0 (fixed) and 1 (sure)"},
    {TORNWALZEN_BAD_START, "der Start ist %, erlaubt sind 0 (mittlere Normale) und 1 (flache Stelle)",
     "the start is %, allowed are 0 (mean normal) and 1 (flat patch)"},
    {TORNWALZEN_BAD_THREADS, "die Zahl der Faeden ist %, erlaubt sind 1 bis 64",
     "the number of threads is %, allowed are 1 to 64"},
    {TORNWALZEN_NO_THREAD, "% Faeden liessen sich nicht starten, es bleibt bei der Zahl davor",
     "% threads could not be started, the number before stays"},
    {TORNWALZEN_SHORT_REPORT, "die Berichtsstruktur ist mit % Bytes zu kurz (Feld size)",
     "the report structure is too short with % bytes (field size)"},
    {TORNWALZEN_BAD_COUNT, "Argument #, eine Anzahl, ist %", "argument #, a count, is %"},
    {TORNWALZEN_BAD_NODE, "Eintrag # der Inzidenzen ist %, das ist keine Knotennummer",
     "entry # of the incidences is %, which is no node number"},
    {TORNWALZEN_CLOSED_SURFACE,
     "das Teil ist eine geschlossene Flaeche aus % Dreiecken: ohne Rand keine Platine",
     "the part is a closed surface of % triangles: without a boundary there is no blank"},
    {TORNWALZEN_SEVERAL_PIECES,
     "das Teil besteht aus % getrennten Stuecken, Dreieck # liegt nicht im groessten",
     "the part consists of % separate pieces, triangle # is not in the largest one"},
    {TORNWALZEN_HANDLE, "das Teil hat Henkel (%): es laesst sich nicht in die Ebene legen",
     "the part has handles (%): it cannot be laid into the plane"},
    {TORNWALZEN_PINCHED_NODE, "in Knoten # haengt das Blech nur an einem Punkt zusammen (solche Knoten: %)",
     "at node # the sheet hangs together by a point alone (nodes like this: %)"},
    {TORNWALZEN_EDGE_OF_THREE, "die Kante zwischen den Knoten # und % gehoert zu mehr als zwei Dreiecken",
     "the edge between nodes # and % belongs to more than two triangles"},
    {TORNWALZEN_MIXED_ORIENTATION,
     "die beiden Dreiecke an der Kante zwischen den Knoten # und % sind verschieden herum orientiert",
     "the two triangles at the edge between nodes # and % are turned opposite ways"},
    {TORNWALZEN_REPEATED_NODE, "Dreieck # nennt den Knoten % zweimal", "triangle # names node % twice"},
    {TORNWALZEN_STRESS_TOO_LARGE,
     "Spannung # der Fliesskurve ist % MPa, kein Blech traegt so viel: sind es Pa?",
     "stress # of the flow curve is % MPa, which no sheet bears: is it Pa?"},
    {TORNWALZEN_COORDINATE_NOT_FINITE, "Koordinate # der Punkte ist keine endliche Zahl: %",
     "coordinate # of the points is not a finite number: %"},
    {TORNWALZEN_BAD_FIRST_INDEX, "der erste Index ist %, erlaubt sind 0 und 1",
     "the first index is %, allowed are 0 and 1"},
    {TORNWALZEN_BAD_HOLD,
     "Kennzeichen # der gehaltenen Unbekannten ist %, erlaubt sind 0 (frei) und 1 (gehalten)",
     "flag # of the held unknowns is %, allowed are 0 (free) and 1 (held)"},
    {TORNWALZEN_NO_MESH, "es ist kein Netz gesetzt", "no mesh is set"},
    {TORNWALZEN_NO_MEMORY, "der Speicher reicht nicht", "there is not enough memory"},
    {TORNWALZEN_SETUP_FAILED, "die Vorbereitung des Gleichungssystems ist gescheitert, siehe fatal_text",
     "the equations could not be set up, see fatal_text"},
    {TORNWALZEN_NO_RESULTS, "es gibt keine Ergebnisse, noch ist nichts gelaufen",
     "there are no results, nothing has run yet"},
    {TORNWALZEN_BAD_MODEL, "das Modell ist %, erlaubt sind 0 (fest) und 1 (Presse)",
     "the model is %, allowed are 0 (fixed) and 1 (press)"},
    {TORNWALZEN_SHORT_PRESS, "die Struktur der Presse ist mit % Bytes zu kurz (Feld size)",
     "the structure of the press is too short with % bytes (field size)"},
    {TORNWALZEN_BAD_THICKNESS, "die Blechdicke fehlt oder ist nicht positiv: % mm",
     "the thickness of the sheet is missing or not positive: % mm"},
    {TORNWALZEN_BAD_YOUNG, "der Elastizitaetsmodul ist % MPa, er muss positiv und hoechstens 1e6 sein",
     "Young's modulus is % MPa, it must be positive and at most 1e6"},
    {TORNWALZEN_BAD_THICKNESS_POINTS, "ueber die Dicke sind % Punkte verlangt, erlaubt sind 3 und 5",
     "% points through the thickness are asked for, allowed are 3 and 5"},
    {TORNWALZEN_BAD_PLANAR_ANISOTROPY,
     "die Anisotropie r# ist %, sie muss positiv und endlich sein; r0, r45, r90 gehoeren zusammen",
     "the anisotropy r# is %, it must be positive and finite; r0, r45 and r90 are given together"},
    {TORNWALZEN_BAD_ROLLING, "die Walzrichtung ist % Grad, sie muss endlich sein",
     "the rolling direction is % degrees, it must be finite"},
    {TORNWALZEN_BAD_FRICTION, "die Reibzahl # (1 Stempel, 2 Matrize) ist %, erlaubt ist 0 bis 1",
     "friction coefficient # (1 punch, 2 die) is %, allowed is 0 to 1"},
    {TORNWALZEN_BAD_BINDER, "die Niederhalterkraft ist % N, sie muss endlich und darf nicht negativ sein",
     "the binder force is % N, it must be finite and not negative"},
    {TORNWALZEN_NO_FLANGE,
     "der Niederhalter mit % N hat keinen Flansch: Elemente markieren oder den Rand waehlen",
     "the binder of % N has no flange: mark elements or choose the rim"},
    {TORNWALZEN_BAD_FLANGE, "Flanschmarke # ist %, erlaubt sind 0 und 1",
     "flange mark # is %, allowed are 0 and 1"},
    {TORNWALZEN_BAD_PRESS_CHOICE, "Auswahl # der Presse ist %, die gibt es nicht",
     "choice # of the press is %, which there is not"},
    {TORNWALZEN_BAD_BEAD_NODE, "Knoten # der Ziehsicken ist %, den gibt es im Netz nicht",
     "node # of the draw beads is %, which the mesh does not have"},
    {TORNWALZEN_BEAD_OFF_MESH,
     "Knoten # der Ziehsicken, %, hat mit dem davor keine Kante: die Sicke liegt nicht im Netz",
     "node # of the draw beads, %, shares no edge with the one before: the bead is off the mesh"},
    {TORNWALZEN_BAD_BEAD_FORCE,
     "die Rueckhaltekraft der Ziehsicke # ist % N/mm, sie muss positiv und endlich sein",
     "the restraining force of draw bead # is % N/mm, it must be positive and finite"},
    {TORNWALZEN_BAD_BEAD_LENGTH, "Ziehsicke # hat % Knoten, es muessen mindestens zwei sein",
     "draw bead # has % nodes, it takes two at least"},
    {TORNWALZEN_PRESS_WITHOUT_CURVE, "das Pressenmodell braucht eine Fliesskurve in MPa, nicht Auswahl %",
     "the press model needs a flow curve in MPa, not selector %"},
    {TORNWALZEN_BAD_SELECTOR_OF_LAW, "das Verfestigungsgesetz % gibt es nicht",
     "there is no hardening law %"},
};

constexpr Text unknownText = {1, "unbekannter Fehlercode %", "unknown error code %"};

/// Index and value of the last refusal where it has this code; otherwise the places hold "n" and "x".
void compose(char (&composed)[refusalTextLength], const char* text, bool withDetails, Int index,
             double value) {
  std::size_t used = 0;
  const auto put = [&](const char* piece) {
    while (*piece != '\0' && used + 1 < sizeof composed) composed[used++] = *piece++;
  };
  for (; *text != '\0'; ++text) {
    char piece[32] = {*text, '\0'};
    if (*text == '#' && withDetails)
      std::snprintf(piece, sizeof piece, "%d", index);
    else if (*text == '#')
      std::snprintf(piece, sizeof piece, "n");
    else if (*text == '%' && withDetails)
      std::snprintf(piece, sizeof piece, "%.9g", value);
    else if (*text == '%')
      std::snprintf(piece, sizeof piece, "x");
    put(piece);
  }
  composed[used] = '\0';
}

}  // namespace

const char* refusalText(Analysis& run, Int code, Int language) {
  const Refusal& refusal = run.refusal;
  for (const Text& text : texts) {
    if (text.code != code) continue;
    compose(run.refusalText, language == 0 ? text.german : text.english, refusal.code == code, refusal.index,
            refusal.value);
    return run.refusalText;
  }
  compose(run.refusalText, language == 0 ? unknownText.german : unknownText.english, true, 0, code);
  return run.refusalText;
}

}  // namespace tornwalzen
