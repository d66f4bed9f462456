#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <cstddef>
#include <utility>

#include "nuvhost/error.h"
#include "nuvhost/system/child_process.h"
#include "nuvhost/system/paths.h"

namespace nuvhost {
namespace {

constexpr DWORD kPipeSize = 1 << 20;
constexpr DWORD kQuestionPipeSize = 1 << 15;
constexpr std::size_t kMaxOutput = std::size_t{256} << 20;

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

/// A started process, and the job that it is in.
struct Started {
  HANDLE process;
  HANDLE job;
};

/// The one attribute of a process to start: these handles, which must be inheritable, are all that
/// it inherits. Else it would have this process's own output too, and the pipes of its siblings.
class InheritedHandles {
 public:
  explicit InheritedHandles(std::vector<HANDLE> handles) : handles_(std::move(handles)) {
    SIZE_T size = 0;
    InitializeProcThreadAttributeList(nullptr, 1, 0, &size);
    memory_.resize(size);
    if (!InitializeProcThreadAttributeList(Get(), 1, 0, &size) ||
        !UpdateProcThreadAttribute(Get(), 0, PROC_THREAD_ATTRIBUTE_HANDLE_LIST, handles_.data(),
                                   handles_.size() * sizeof(HANDLE), nullptr, nullptr)) {
      throw UserError("cannot hand on files: error {}", GetLastError());
    }
  }
  InheritedHandles(const InheritedHandles&) = delete;
  InheritedHandles& operator=(const InheritedHandles&) = delete;
  ~InheritedHandles() { DeleteProcThreadAttributeList(Get()); }

  LPPROC_THREAD_ATTRIBUTE_LIST Get() {
    return reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(memory_.data());
  }

 private:
  std::vector<HANDLE> handles_;
  std::vector<std::byte> memory_;
};

/// An inheritable duplicate of this process's standard error, or of nothing where it has none.
HANDLE DuplicateError() {
  const HANDLE self = GetCurrentProcess();
  HANDLE error = nullptr;
  if (DuplicateHandle(self, GetStdHandle(STD_ERROR_HANDLE), self, &error, 0, TRUE,
                      DUPLICATE_SAME_ACCESS)) {
    return error;
  }
  return OpenForChild(L"NUL", GENERIC_WRITE, OPEN_EXISTING);
}

/// Starts a program with these as its standard input and output, and this process's standard error.
Started Start(const std::filesystem::path& program, const std::vector<std::string>& words,
              const Handle& input, const Handle& output) {
  const Handle error(DuplicateError());
  InheritedHandles inherited({input.Get(), output.Get(), error.Get()});
  STARTUPINFOEXW startup{};
  startup.StartupInfo.cb = sizeof startup;
  startup.StartupInfo.dwFlags = STARTF_USESTDHANDLES;
  startup.StartupInfo.hStdInput = input.Get();
  startup.StartupInfo.hStdOutput = output.Get();
  startup.StartupInfo.hStdError = error.Get();
  startup.lpAttributeList = inherited.Get();
  PROCESS_INFORMATION started{};
  std::wstring line = CommandLine(program, words);
  if (!CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, TRUE,
                      EXTENDED_STARTUPINFO_PRESENT, nullptr, nullptr, &startup.StartupInfo,
                      &started)) {
    throw UserError("cannot start {}: error {}", ToUtf8(program), GetLastError());
  }
  CloseHandle(started.hThread);
  const HANDLE job = MakeJob();
  AssignProcessToJobObject(job, started.hProcess);
  return {started.hProcess, job};
}

/// Ends a process, whatever it does.
void Kill(HANDLE process) {
  TerminateProcess(process, 1);
  WaitForSingleObject(process, INFINITE);
}

/// Appends what is in a pipe by now.
void ReadWhatIsThere(HANDLE pipe, std::string& text) {
  char block[65536];
  DWORD size = 0;
  while (text.size() <= kMaxOutput && PeekNamedPipe(pipe, nullptr, 0, nullptr, &size, nullptr) &&
         size > 0 && ReadFile(pipe, block, sizeof block, &size, nullptr)) {
    text.append(block, size);
  }
}

LONG WINAPI EndQuietly(EXCEPTION_POINTERS* exception) {
  TerminateProcess(GetCurrentProcess(), exception->ExceptionRecord->ExceptionCode);
  return EXCEPTION_EXECUTE_HANDLER;
}

/// Ends the process at what no code is meant to handle; exceptions of C++ go their way.
LONG WINAPI EndAtCrash(EXCEPTION_POINTERS* exception) {
  switch (exception->ExceptionRecord->ExceptionCode) {
    case EXCEPTION_ACCESS_VIOLATION:
    case EXCEPTION_IN_PAGE_ERROR:
    case EXCEPTION_STACK_OVERFLOW:
    case EXCEPTION_ILLEGAL_INSTRUCTION:
    case EXCEPTION_PRIV_INSTRUCTION:
    case EXCEPTION_INT_DIVIDE_BY_ZERO:
    case EXCEPTION_BREAKPOINT: return EndQuietly(exception);
    default: return EXCEPTION_CONTINUE_SEARCH;
  }
}

}  // namespace

ChildEnd RunChild(const std::filesystem::path& program, const std::vector<std::string>& words,
                  std::chrono::milliseconds limit) {
  const Handle input(OpenForChild(L"NUL", GENERIC_READ, OPEN_EXISTING));
  SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
  HANDLE read = nullptr;
  HANDLE written = nullptr;
  if (!CreatePipe(&read, &written, &inherited, kPipeSize)) {
    throw UserError("no pipe: error {}", GetLastError());
  }
  const Handle reader(read);
  const Handle writer(written);
  SetHandleInformation(read, HANDLE_FLAG_INHERIT, 0);
  const Started started = Start(program, words, input, writer);
  const Handle process(started.process);
  const Handle job(started.job);
  const ULONGLONG deadline = GetTickCount64() + static_cast<ULONGLONG>(limit.count());
  ChildEnd end{true, 0, {}};
  // What it started may hold the pipe longer than it lives, so the pipe's end says nothing.
  while (true) {
    const bool has_ended = WaitForSingleObject(process.Get(), 2) == WAIT_OBJECT_0;
    ReadWhatIsThere(read, end.output);
    if (has_ended) break;
    if (GetTickCount64() < deadline && end.output.size() <= kMaxOutput) continue;
    end.in_time = false;
    Kill(process.Get());
    break;
  }
  DWORD code = 0;
  GetExitCodeProcess(process.Get(), &code);
  end.code = static_cast<int>(code);
  return end;
}

PrivateOutput::PrivateOutput() {
  const HANDLE self = GetCurrentProcess();
  const int nowhere = _open("NUL", _O_WRONLY | _O_BINARY);
  HANDLE output = nullptr;
  if (nowhere < 0 || !DuplicateHandle(self, GetStdHandle(STD_OUTPUT_HANDLE), self, &output, 0,
                                      FALSE, DUPLICATE_SAME_ACCESS)) {
    throw UserError("no output: error {}", GetLastError());
  }
  _dup2(nowhere, 1);  // which closes what it was
  _close(nowhere);
  SetStdHandle(STD_OUTPUT_HANDLE, reinterpret_cast<HANDLE>(_get_osfhandle(1)));
  output_ = reinterpret_cast<std::intptr_t>(output);
}

PrivateOutput::~PrivateOutput() {
  CloseHandle(reinterpret_cast<HANDLE>(output_));
}

void PrivateOutput::Write(std::string_view text) {
  while (!text.empty()) {
    DWORD written = 0;
    if (!WriteFile(reinterpret_cast<HANDLE>(output_), text.data(), static_cast<DWORD>(text.size()),
                   &written, nullptr)) {
      return;
    }
    text.remove_prefix(written);
  }
}

struct Partner::Process {
  HANDLE process = nullptr;
  HANDLE job = nullptr;
  HANDLE input = nullptr;
  HANDLE output = nullptr;
};

Partner::Partner(const std::filesystem::path& program, const std::vector<std::string>& words)
    : process_(std::make_unique<Process>()) {
  SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
  HANDLE read = nullptr;
  HANDLE written = nullptr;
  if (!CreatePipe(&read, &process_->input, &inherited, kQuestionPipeSize)) {
    throw UserError("no pipe: error {}", GetLastError());
  }
  const Handle input(read);
  if (!CreatePipe(&process_->output, &written, &inherited, kPipeSize)) {
    CloseHandle(process_->input);
    throw UserError("no pipe: error {}", GetLastError());
  }
  const Handle output(written);
  SetHandleInformation(process_->input, HANDLE_FLAG_INHERIT, 0);
  SetHandleInformation(process_->output, HANDLE_FLAG_INHERIT, 0);
  try {
    const Started started = Start(program, words, input, output);
    process_->process = started.process;
    process_->job = started.job;
  } catch (...) {
    CloseHandle(process_->input);
    CloseHandle(process_->output);
    throw;
  }
}

Partner::~Partner() {
  CloseHandle(process_->input);
  CloseHandle(process_->output);
  Kill(process_->process);
  CloseHandle(process_->process);
  CloseHandle(process_->job);
}

std::size_t Partner::MostUnread() const {
  return kQuestionPipeSize;
}

void Partner::Send(std::string_view messages) {
  while (!messages.empty()) {
    DWORD sent = 0;
    if (!WriteFile(process_->input, messages.data(), static_cast<DWORD>(messages.size()), &sent,
                   nullptr)) {
      return;
    }
    messages.remove_prefix(sent);
  }
}

bool Partner::ReadMore() {
  char block[65536];
  DWORD size = 0;
  if (!ReadFile(process_->output, block, sizeof block, &size, nullptr)) return false;
  read_.append(block, size);
  return size > 0;
}

void LeaveInterruptsToParent() {
  SetConsoleCtrlHandler(nullptr, TRUE);
}

void ExpectTheWorst() {
  SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX | SEM_NOOPENFILEERRORBOX);
  SetUnhandledExceptionFilter(EndQuietly);
}

bool RefuseCrashHandlers() {
  // Handlers are asked from the latest that put itself first, so this stands before every one that
  // is there by now.
  static void* handler = nullptr;
  if (handler != nullptr) RemoveVectoredExceptionHandler(handler);
  handler = AddVectoredExceptionHandler(1, EndAtCrash);
  return handler != nullptr;
}

}  // namespace nuvhost
