// Missing arguments.
#include "ground/host_pointers.hpp"

#include <cstdio>

#include "ground/messages.hpp"

namespace tornwalzen {

bool argumentsGiven(Analysis& run, std::initializer_list<HostArgument> arguments) {
  for (const HostArgument& argument : arguments) {
    if (argument.pointer != nullptr || argument.length <= 0) continue;
    char text[messageLength];
    std::snprintf(text, sizeof text, " FATALER FEHLER : Argument %s fehlt @", argument.name);
    failSolver(run, text);
    return false;
  }
  return true;
}

}  // namespace tornwalzen
