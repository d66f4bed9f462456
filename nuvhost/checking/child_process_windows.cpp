#include <windows.h>

#include "nuvhost/checking/child_process.h"
#include "nuvhost/error.h"
#include "nuvhost/system/paths.h"

namespace nuvhost::check {
namespace {

/// A handle that is closed at the end.
class Handle {
 public:
  explicit Handle(HANDLE handle) : handle_(handle) {}
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;
  ~Handle() { CloseHandle(handle_); }

  HANDLE Get() const { return handle_; }

 private:
  HANDLE handle_;
};

HANDLE OpenForChild(const wchar_t* path, DWORD access, DWORD disposition) {
  SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
  return CreateFileW(path, access, FILE_SHARE_READ | FILE_SHARE_WRITE, &inherited, disposition,
                     FILE_ATTRIBUTE_NORMAL, nullptr);
}

/// A word so quoted that the child's runtime reads it back as it was: a quotation mark, and the
/// backslashes before one, get a backslash each.
std::wstring QuotedWord(const std::wstring& word) {
  std::wstring quoted = L"\"";
  std::size_t backslashes = 0;
  for (const wchar_t c : word) {
    if (c == L'"') quoted.append(backslashes + 1, L'\\');
    backslashes = c == L'\\' ? backslashes + 1 : 0;
    quoted += c;
  }
  quoted.append(backslashes, L'\\');
  return quoted + L'"';
}

std::wstring CommandLine(const std::filesystem::path& program,
                         const std::vector<std::string>& words) {
  std::wstring line = QuotedWord(program.wstring());
  for (const std::string& word : words) line += L" " + QuotedWord(PathFromUtf8(word).wstring());
  return line;
}

/// Processes in a job end with the last handle to it, that is with their parent.
HANDLE MakeJob() {
  const HANDLE job = CreateJobObjectW(nullptr, nullptr);
  JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
  limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
  SetInformationJobObject(job, JobObjectExtendedLimitInformation, &limits, sizeof limits);
  return job;
}

LONG WINAPI EndQuietly(EXCEPTION_POINTERS* exception) {
  TerminateProcess(GetCurrentProcess(), exception->ExceptionRecord->ExceptionCode);
  return EXCEPTION_EXECUTE_HANDLER;
}

}  // namespace

ChildEnd RunChild(const std::filesystem::path& program, const std::vector<std::string>& words,
                  std::chrono::milliseconds limit, const std::filesystem::path& output) {
  const Handle input(OpenForChild(L"NUL", GENERIC_READ, OPEN_EXISTING));
  const Handle written(output.empty() ? OpenForChild(L"NUL", GENERIC_WRITE, OPEN_EXISTING)
                                      : OpenForChild(output.c_str(), GENERIC_WRITE, CREATE_ALWAYS));
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  startup.dwFlags = STARTF_USESTDHANDLES;
  startup.hStdInput = input.Get();
  startup.hStdOutput = written.Get();
  startup.hStdError = GetStdHandle(STD_ERROR_HANDLE);
  SetHandleInformation(startup.hStdError, HANDLE_FLAG_INHERIT, HANDLE_FLAG_INHERIT);
  PROCESS_INFORMATION started{};
  std::wstring line = CommandLine(program, words);
  if (!CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr,
                      &startup, &started)) {
    throw UserError("cannot start {}: error {}", ToUtf8(program), GetLastError());
  }
  const Handle process(started.hProcess);
  const Handle thread(started.hThread);
  const Handle job(MakeJob());
  AssignProcessToJobObject(job.Get(), process.Get());
  const bool in_time =
      WaitForSingleObject(process.Get(), static_cast<DWORD>(limit.count())) == WAIT_OBJECT_0;
  if (!in_time) {
    TerminateProcess(process.Get(), 1);
    WaitForSingleObject(process.Get(), INFINITE);
  }
  DWORD code = 0;
  GetExitCodeProcess(process.Get(), &code);
  return {in_time, static_cast<int>(code)};
}

void ExpectTheWorst() {
  SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX | SEM_NOOPENFILEERRORBOX);
  SetUnhandledExceptionFilter(EndQuietly);
}

}  // namespace nuvhost::check
