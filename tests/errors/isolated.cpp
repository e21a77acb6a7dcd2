#include "errors/isolated.hpp"

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace hostile {

namespace {

int caughtOut = -1, caughtError = -1;  // files in memory

std::string contents(int file) {
  std::string text;
  char part[4096];
  for (;;) {
    const ssize_t count = pread(file, part, sizeof part, static_cast<off_t>(text.size()));
    if (count <= 0) return text;
    text.append(part, static_cast<std::size_t>(count));
  }
}

// Checked builds run several times slower.
unsigned allowed(unsigned seconds) {
  const char* const factor = std::getenv("TORNWALZEN_SLOWNESS");
  return seconds * (factor != nullptr ? static_cast<unsigned>(std::atoi(factor)) : 6);
}

[[noreturn]] void runBody(const std::function<void()>& body, unsigned seconds) {
  dup2(caughtOut, STDOUT_FILENO);
  dup2(caughtError, STDERR_FILENO);
  alarm(allowed(seconds));
  body();
  std::fflush(nullptr);
  std::exit(testing::Test::HasFailure() ? EXIT_FAILURE : EXIT_SUCCESS);
}

}  // namespace

void isolated(const std::function<void()>& body, unsigned seconds) {
  caughtOut = memfd_create("stdout", MFD_CLOEXEC);
  caughtError = memfd_create("stderr", MFD_CLOEXEC);
  ASSERT_GE(caughtOut, 0);
  ASSERT_GE(caughtError, 0);
  std::fflush(nullptr);
  const pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) runBody(body, seconds);
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  if (WIFSIGNALED(status))
    ADD_FAILURE() << "ended by signal " << WTERMSIG(status) << " (" << strsignal(WTERMSIG(status)) << ")\n"
                  << printedOut() << printedError();
  else if (WEXITSTATUS(status) != 0)
    ADD_FAILURE() << "exit status " << WEXITSTATUS(status) << "\n" << printedOut() << printedError();
  close(caughtOut);
  close(caughtError);
}

std::string printedOut() {
  return contents(caughtOut);
}
std::string printedError() {
  return contents(caughtError);
}

}  // namespace hostile
