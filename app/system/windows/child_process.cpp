// Runs another program on Windows; see the header. A job holds it with all that it starts.
#include "system/child_process.hpp"

#include <windows.h>

#include <cerrno>
#include <cstring>
#include <filesystem>

#include "system/failure.hpp"
#include "system/path.hpp"
#include "system/windows/wide_text.hpp"

namespace host {

namespace {

struct Handle {
  HANDLE value = nullptr;
  ~Handle() {
    if (value != nullptr && value != INVALID_HANDLE_VALUE) CloseHandle(value);
  }
};

[[noreturn]] void refuse(const std::string& program) {
  throw Failure("cannot run " + program + ": " + std::strerror(lastErrorAsErrno()));
}

// As one word of a command line, the way that CommandLineToArgvW takes it apart: backslashes are doubled before a quote.
std::string quoted(const std::string& word) {
  std::string line = "\"";
  std::size_t backslashes = 0;
  for (const char c : word) {
    if (c == '"') line.append(backslashes + 1, '\\');
    backslashes = c == '\\' ? backslashes + 1 : 0;
    line += c;
  }
  return line.append(backslashes, '\\') + '"';
}

HANDLE openForChild(const std::string& path, DWORD access, DWORD way) {
  SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
  return CreateFileW(wide(path).c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                     &inherited, way, FILE_ATTRIBUTE_NORMAL, nullptr);
}

// All in the job are ended with its last handle, and so with this process, whatever ends that.
HANDLE makeJob() {
  const HANDLE job = CreateJobObjectW(nullptr, nullptr);
  JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
  limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
  SetInformationJobObject(job, JobObjectExtendedLimitInformation, &limits, sizeof limits);
  return job;
}

}  // namespace

ChildEnd runChild(const std::vector<std::string>& words, const std::string& output, double seconds) {
  std::string line;
  for (const std::string& word : words) line += (line.empty() ? "" : " ") + quoted(word);
  const Handle in{openForChild("NUL", GENERIC_READ, OPEN_EXISTING)};
  const Handle out{openForChild(output, GENERIC_WRITE, CREATE_ALWAYS)};
  if (in.value == INVALID_HANDLE_VALUE || out.value == INVALID_HANDLE_VALUE) refuse(words[0]);
  const Handle job{makeJob()};
  STARTUPINFOW start{};
  start.cb = sizeof start;
  start.dwFlags = STARTF_USESTDHANDLES;
  start.hStdInput = in.value;
  start.hStdOutput = start.hStdError = out.value;
  PROCESS_INFORMATION made{};
  std::wstring lineForSystem = wide(line);  // which may write into it
  if (!CreateProcessW(wide(words[0]).c_str(), lineForSystem.data(), nullptr, nullptr, TRUE,
                      CREATE_SUSPENDED | CREATE_NO_WINDOW, nullptr, nullptr, &start, &made))
    refuse(words[0]);
  const Handle process{made.hProcess}, thread{made.hThread};
  if (!AssignProcessToJobObject(job.value, process.value)) {  // before it starts another
    TerminateProcess(process.value, 1);
    refuse(words[0]);
  }
  ResumeThread(thread.value);

  ChildEnd end;
  end.overdue = WaitForSingleObject(process.value, static_cast<DWORD>(seconds * 1000.0)) == WAIT_TIMEOUT;
  TerminateJobObject(job.value, 1);  // or what it left behind
  WaitForSingleObject(process.value, INFINITE);
  DWORD status = 0;
  GetExitCodeProcess(process.value, &status);
  end.status = static_cast<int>(status);
  return end;
}

std::string programFolder() {
  std::wstring path(32768, 0);  // longer is no path
  path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
  return pathText(std::filesystem::path(path).parent_path());
}

}  // namespace host
