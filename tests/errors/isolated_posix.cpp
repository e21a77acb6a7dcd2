#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "errors/isolated.hpp"

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

int failures() {
  const testing::TestResult& result = *testing::UnitTest::GetInstance()->current_test_info()->result();
  int count = 0;
  for (int i = 0; i < result.total_part_count(); ++i) count += result.GetTestPartResult(i).failed();
  return count;
}

// What a failed case printed: its end tells most.
std::string printedTail() {
  constexpr std::size_t shown = 3000;
  const std::string text = printedOut() + printedError();
  return text.size() > shown ? text.substr(text.size() - shown) : text;
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
  const int before = failures();  // those of the process that this one is a copy of
  body();
  std::fflush(nullptr);
  std::exit(failures() > before ? EXIT_FAILURE : EXIT_SUCCESS);
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
                  << printedTail();
  else if (WEXITSTATUS(status) != 0)
    ADD_FAILURE() << "exit status " << WEXITSTATUS(status) << "\n" << printedTail();
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
