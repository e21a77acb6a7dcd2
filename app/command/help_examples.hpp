// What stands below the options of each --help: examples by task.
#pragma once

namespace host {

inline constexpr const char* programExamples =
    "Examples:\n"
    "  from a CAD file to DXF and report\n"
    "      tornwalzen solve bracket.step --material DC04 --thickness 1.5\n"
    "  will it go well?\n"
    "      tornwalzen check bracket.step\n"
    "  which materials are there, and where are their numbers from?\n"
    "      tornwalzen materials\n"
    "  many runs from a table\n"
    "      tornwalzen study thickness.csv --print | sh; tornwalzen collect thickness_study\n"
    "Each command has a --help of its own.\n\n"
    "Results of solve: blank.dxf, blank.svg, blank.obj, part.vtu, blank.vtu, summary.json, report.html,\n"
    "tornwalzen.log.\n"
    "Exit status: 0 good or doubtful, 1 refused or not written, 2 not a blank, 3 the library failed.";

inline constexpr const char* solveExamples =
    "Examples:\n"
    "  the blank of a part, with a drawing to cut from\n"
    "      tornwalzen solve cup.stl --thickness 1 --square\n"
    "  a quarter of a part that ends at x = 0 and y = 0\n"
    "      tornwalzen solve quarter.obj --hold x0,y0\n"
    "  does it split? forming limits with the limit curve of the coil\n"
    "      tornwalzen solve cup.stl --material DC04 --thickness 1 --flc coil.csv\n"
    "  how much sheet does a series take?\n"
    "      tornwalzen solve bracket.step --thickness 1.5 --material DC04 --web 5\n"
    "  a press-brake part with the K-factor 0.42\n"
    "      tornwalzen solve angle.step --fibre 0.42\n"
    "  with binder and friction\n"
    "      tornwalzen solve cup.stl --material DC04 --thickness 1 --binder 80000 --mu 0.12\n"
    "  one part of a finite-element model\n"
    "      tornwalzen solve car.k --part 4711\n"
    "  for a script\n"
    "      tornwalzen solve cup.stl --quiet --json > cup.json\n"
    "Exit status: 0 good or doubtful, 1 refused or not written, 2 not a blank, 3 the library failed.";

inline constexpr const char* studyExamples =
    "Examples:\n"
    "  thicknesses.csv holds a row per run:\n"
    "      PART,material,thickness\n"
    "      cup.stl,DC04,0.8\n"
    "      cup.stl,DC04,1.0\n"
    "  one after the other, or several at once: a row takes one thread, unless a column threads says more\n"
    "      tornwalzen study thicknesses.csv --print | sh\n"
    "      tornwalzen study thicknesses.csv --print | parallel\n"
    "  on a cluster\n"
    "      tornwalzen study thicknesses.csv --print --slurm > study.sh; sbatch study.sh\n"
    "  interrupted? the same again goes on where it stopped.";

inline constexpr const char* collectExamples =
    "Examples:\n"
    "  the rows of a study\n"
    "      tornwalzen collect thicknesses_study\n"
    "  runs made by hand, into a folder of their own\n"
    "      tornwalzen collect cup_blank rail_blank --out overview";

inline constexpr const char* checkExamples =
    "Examples:\n"
    "  before a run\n"
    "      tornwalzen check cup.stl\n"
    "  where is the undercut, seen along a given direction?\n"
    "      tornwalzen check cup.stl --draw 0,0.2,1 --out findings.vtu\n"
    "  in a script\n"
    "      tornwalzen check cup.stl --quiet && tornwalzen solve cup.stl\n"
    "Exit status: 0 solve takes the part, 1 not read or not written, 2 solve would refuse it.";

inline constexpr const char* deckExamples =
    "Examples:\n"
    "  a part as a mesh deck\n"
    "      tornwalzen deck cup.obj --hold x0,y0 -o cup.t51\n"
    "  what does a deck hold?\n"
    "      tornwalzen deck cup.t51";

inline constexpr const char* materialsExamples =
    "Examples:\n"
    "  a library of one's own\n"
    "      tornwalzen materials --json > ours.json\n"
    "      tornwalzen solve cup.stl --materials ours.json --material 'coil 4711'\n"
    "  is it taken?\n"
    "      tornwalzen materials --materials ours.json --quiet";

}  // namespace host
