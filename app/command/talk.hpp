// What a command says beside its result, and where: sentences go to standard error, the result to standard output.
#pragma once

#include <cstdio>
#include <string>

#include "system/file.hpp"

namespace host {

struct Talk {
  bool quiet = false;    // nothing but refusals and failures
  bool json = false;     // standard output has one JSON object and nothing else
  bool verbose = false;  // the library's messages too

  // One sentence for the user.
  void say(const std::string& sentence) const {
    if (!quiet) std::fprintf(stderr, "%s\n", sentence.c_str());
  }
  // The result: the table or page, or the object.
  void result(const std::string& page, const std::string& object) const {
    if (json || !quiet) std::fputs((json ? object : page).c_str(), stdout);
  }
  // The descriptor for the library's messages, negative: none.
  int screen() const { return !verbose ? -1 : json ? standardError : standardOutput; }
};

}  // namespace host
