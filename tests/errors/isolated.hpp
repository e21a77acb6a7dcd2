// Runs the body of a case in a process of its own: fresh library state, a time limit, and a crash that fails
// the case instead of ending the suite.
#pragma once

#include <functional>
#include <string>

namespace hostile {

constexpr unsigned caseSeconds =
    10;  // some hundred times what a case takes; more under a sanitizer or valgrind

/// Runs `body` in a forked process, its standard output and error caught. The case fails where an expectation
/// of the body fails, where the process dies, and where it takes longer than the limit; then it shows what
/// was printed.
void isolated(const std::function<void()>& body, unsigned seconds = caseSeconds);

/// Inside `body`: what standard output and standard error have received so far.
std::string printedOut();
std::string printedError();

}  // namespace hostile
