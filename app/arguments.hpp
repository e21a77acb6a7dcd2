// The command line.
#ifndef TORNWALZEN_APP_ARGUMENTS_HPP
#define TORNWALZEN_APP_ARGUMENTS_HPP

#include <string>

namespace host {

struct SolveOptions {
  std::string part;           // mesh file
  int material = 1;           // 0, 1, 2 flow curves; 10 geometric
  std::string hold = "auto";  // see hold.hpp
  std::string out;            // folder of the results; empty: <part without extension>_blank
  bool largest = false;       // take the largest piece of several
  bool verbose = false;       // the library's messages on the screen too
};

struct Arguments {
  bool done = false;  // help, version or a wrong argument: already answered
  int status = 0;     // exit status if done
  SolveOptions solve;
};

// Prints help and version on standard output, complaints on standard error.
Arguments readArguments(int argc, const char* const* argv);

}  // namespace host

#endif
