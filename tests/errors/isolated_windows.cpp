// Where no process can be copied, the test program starts itself anew for the one test, and the new process runs the
// body. Which body of the test it is, and where its output goes, it learns from its environment.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <io.h>
#include <sys/stat.h>
#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>

#include "errors/isolated.hpp"

namespace hostile {

namespace {

constexpr const char* bodyVariable = "TORNWALZEN_BODY";    // number within its test, from 1
constexpr const char* stemVariable = "TORNWALZEN_CAUGHT";  // of the two files

std::string stem;
const testing::TestInfo* lastTest = nullptr;
int bodies = 0;  // of that test, until now
bool inside = false;

std::string contents(const std::string& path) {
  std::ifstream stream(path, std::ios::binary);
  std::string text{std::istreambuf_iterator<char>(stream), {}};
  std::erase(text, '\r');  // of the text mode
  return text;
}

std::string printedTail() {
  constexpr std::size_t shown = 3000;
  const std::string text = printedOut() + printedError();
  return text.size() > shown ? text.substr(text.size() - shown) : text;
}

int failures() {
  const testing::TestResult& result = *testing::UnitTest::GetInstance()->current_test_info()->result();
  int count = 0;
  for (int i = 0; i < result.total_part_count(); ++i) count += result.GetTestPartResult(i).failed();
  return count;
}

void send(int stream, const std::string& path) {
  const int file = _open(path.c_str(), _O_WRONLY | _O_CREAT | _O_TRUNC, _S_IREAD | _S_IWRITE);
  _dup2(file, stream);
  _close(file);
}

[[noreturn]] void runBody(const std::function<void()>& body) {
  std::fflush(nullptr);
  stem = std::getenv(stemVariable);
  send(1, stem + "out");
  send(2, stem + "err");
  inside = true;
  body();
  std::fflush(nullptr);
  _exit(failures() > 0 ? EXIT_FAILURE : EXIT_SUCCESS);
}

void startAnew(unsigned seconds) {
  const testing::TestInfo& test = *testing::UnitTest::GetInstance()->current_test_info();
  stem = testing::TempDir() + "tornwalzen_" + std::to_string(GetCurrentProcessId()) + "_";
  SetEnvironmentVariableA(bodyVariable, std::to_string(bodies).c_str());
  SetEnvironmentVariableA(stemVariable, stem.c_str());
  std::string line =
      testing::internal::GetArgvs()[0] + " --gtest_filter=" + test.test_suite_name() + "." + test.name();
  SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
  const HANDLE nowhere = CreateFileA("NUL", GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                     &inherited, OPEN_EXISTING, 0, nullptr);
  STARTUPINFOA start{};
  start.cb = sizeof start;
  start.dwFlags = STARTF_USESTDHANDLES;
  start.hStdInput = start.hStdOutput = start.hStdError = nowhere;
  PROCESS_INFORMATION made{};
  bool started = false;
  for (int tries = 0; !started && tries < 3; ++tries)  // an emulator fails to start one in some hundred
    started =
        CreateProcessA(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &start, &made) != 0;
  ASSERT_TRUE(started) << line;
  const bool overdue = WaitForSingleObject(made.hProcess, seconds * 1000) == WAIT_TIMEOUT;
  if (overdue) TerminateProcess(made.hProcess, 1);
  WaitForSingleObject(made.hProcess, INFINITE);
  DWORD status = 0;
  GetExitCodeProcess(made.hProcess, &status);
  for (const HANDLE handle : {made.hProcess, made.hThread, nowhere}) CloseHandle(handle);
  if (overdue)
    ADD_FAILURE() << "longer than " << seconds << " s\n" << printedTail();
  else if (status != 0)
    ADD_FAILURE() << "exit status 0x" << std::hex << status << "\n" << printedTail();
  for (const char* file : {"out", "err"}) std::remove((stem + file).c_str());
}

}  // namespace

void isolated(const std::function<void()>& body, unsigned seconds) {
  constexpr unsigned slowness = 12;  // of a start on an emulator
  if (inside) {                      // a body within a body: hundreds of starts would take too long
    body();
    return;
  }
  const testing::TestInfo* const test = testing::UnitTest::GetInstance()->current_test_info();
  bodies = test == lastTest ? bodies + 1 : 1;
  lastTest = test;
  const char* const number = std::getenv(bodyVariable);  // of this process's start: not what startAnew sets
  if (number == nullptr)
    startAnew(seconds * slowness);
  else if (std::atoi(number) == bodies)
    runBody(body);
}

std::string printedOut() {
  return contents(stem + "out");
}
std::string printedError() {
  return contents(stem + "err");
}

}  // namespace hostile
