// The command line.
#pragma once

#include <string>
#include <vector>

#include "command/shop_options.hpp"
#include "command/study_arguments.hpp"
#include "mesh/read_options.hpp"

namespace host {

// The press model, as the user wrote it; empty: not given.
struct PressOptionTexts {
  std::string model;               // press or fixed
  std::string thickness, young;    // mm, MPa
  std::string planarR, rolling;    // R0,R45,R90; degrees
  std::string mu, binder, flange;  // MU or PUNCH,DIE; N; auto or FILE
  std::string bending, edge;       // auto|off|released|kept; auto|on|off
  std::string meshSide, punch;     // middle|punch|die; below|above
  std::vector<std::string> beads;  // FILE:N/mm
};

struct SolveOptions {
  PressOptionTexts press;
  std::string part;             // mesh file
  std::string material = "1";   // 0, 1, 2 flow curves; 10 geometric; else a name in the library
  std::string materials;        // library of the user: file; empty: none
  std::string curve, law;       // own flow curve in place of that one: file, or hardening law; empty: none
  double r = 1.0;               // mean normal anisotropy
  bool rGiven = false;          // by the user, not the default
  std::string energy = "part";  // what the energy is weighed with: part or blank
  std::string path = "sure";    // the way to the blank: sure or fixed
  std::string tolerance;        // FINAL[,PATH]; empty: the default, with repeats where it does not converge
  int threads = 0;              // to work on; 0: as many as the machine has cores
  std::string unit = "mm";      // of the part and of the results: mm, cm, m, inch
  std::string hold;             // see hold.hpp
  std::string out;              // folder of the results; empty: <part without extension>_blank
  std::string outcome;          // file that tells how the run ended; empty: none
  std::vector<std::string> words;  // the arguments as they were given
  ShopOptions shop;                // files for the workshop
  bool force = false;              // replace the results of another part
  ReadOptions reading;             // of the part; its unit is that above
  bool largest = false;            // take the largest piece of several
  bool verbose = false;            // the library's messages on the screen too
  bool quiet = false;              // nothing but refusals and failures
  bool json = false;               // the summary as one JSON object in place of the table
  bool report = true;              // write the page report.html
  bool compress = false;           // part.vtu and blank.vtu
  bool eben = false;               // write the blank as eben.t51 too
  bool ebenStart = false;          // write the starting blank as eben_start.t51 too
};

struct DeckOptions {
  std::string part;      // mesh file; empty: ask for a deck
  std::string out;       // deck to write; empty: none
  std::string hold;      // see hold.hpp
  ReadOptions reading;   // of the part
  bool largest = false;  // take the largest piece of several
};

struct CheckOptions {
  std::string part;           // mesh file
  std::string draw = "auto";  // auto, or a direction as x,y,z
  std::string out;            // grid of the findings to write; empty: none
  ReadOptions reading;        // of the part
  bool largest = false;       // take the largest piece of several
  bool quiet = false;         // the exit status alone
  bool json = false;          // one JSON object in place of the page
};

struct MaterialsOptions {
  std::string file;    // library of the user; empty: none
  bool quiet = false;  // the exit status alone
  bool json = false;   // print the program's own library as a file
};

enum class Command { solve, check, deck, materials, study, collect };

struct Arguments {
  bool done = false;  // help, version or a wrong argument: already answered
  int status = 0;     // exit status if done
  Command command = Command::solve;
  SolveOptions solve;
  CheckOptions check;
  DeckOptions deck;
  MaterialsOptions materials;
  StudyOptions study;
  CollectOptions collect;
};

// words: the command line, the program's own name first. Prints help and version on standard output, complaints on
// standard error.
Arguments readArguments(const std::vector<std::string>& words);

}  // namespace host
