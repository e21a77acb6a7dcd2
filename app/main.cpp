// The host program `tornwalzen`: reads a part, drives the library, writes the blank and the results.
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <exception>
#include <new>

#include "command/arguments.hpp"
#include "command/check.hpp"
#include "command/collect.hpp"
#include "command/deck.hpp"
#include "command/materials.hpp"
#include "command/outcome.hpp"
#include "command/study.hpp"
#include "system/failure.hpp"
#include "system/process.hpp"

namespace {

int complain(const char* sentence, int status) {
  std::fflush(stdout);
  std::fprintf(stderr, "tornwalzen: %s\n", sentence);
  return status;
}

int runCommand(const host::Arguments& arguments) {
  try {
    switch (arguments.command) {
      case host::Command::check:
        return host::check(arguments.check);
      case host::Command::deck:
        return host::deck(arguments.deck);
      case host::Command::materials:
        return host::materials(arguments.materials);
      case host::Command::study:
        return host::study(arguments.study);
      case host::Command::collect:
        return host::collect(arguments.collect);
      case host::Command::solve:
        break;
    }
    return host::solveWithOutcome(arguments.solve);
  } catch (const host::Failure& failure) {
    return complain(failure.what(), failure.status());
  } catch (const host::StoppedBySignal& stopped) {
    host::endBySignal(stopped.signal);
  } catch (const std::bad_alloc&) {
    return complain("not enough memory", host::exitRefused);
  } catch (const std::exception& problem) {
    return complain(problem.what(), host::exitRefused);
  }
}

}  // namespace

int main(int argc, char** argv) {
  host::prepareProcess();
  const host::Arguments arguments = host::readArguments(host::programArguments(argc, argv));
  const int status = arguments.done ? arguments.status : runCommand(arguments);
  // Somebody who closed the pipe does not want the rest; a full disk behind standard output must be told.
  if (std::fflush(stdout) != 0 && errno != EPIPE) return complain(std::strerror(errno), host::exitRefused);
  return status;
}
