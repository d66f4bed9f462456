#include <windows.h>
// After it: they need its types.
#include <fcntl.h>
#include <fmt/format.h>
#include <io.h>
#include <tlhelp32.h>

#include <clocale>
#include <csignal>
#include <cstdio>
#include <filesystem>

#include "nuvhost/checking/process_state.h"
#include "nuvhost/system/paths.h"

namespace nuvhost::check {
namespace {

/// The rounding mode, which exceptions trap, and whether tiny numbers are zero.
std::string FloatingPointControl() {
  constexpr unsigned kControl = 0xFFC0;  // without the flags of what happened
  unsigned short x87 = 0;
  __asm__ volatile("fnstcw %0" : "=m"(x87));
  return fmt::format("{:#x}, {:#x}", __builtin_ia32_stmxcsr() & kControl, x87);
}

void AddEnvironment(ProcessFacts& facts) {
  wchar_t* const variables = GetEnvironmentStringsW();
  for (const wchar_t* variable = variables; *variable != 0; variable += wcslen(variable) + 1) {
    const std::string text = ToUtf8(std::filesystem::path(variable));
    const std::size_t name = std::min(text.find('=', 1), text.size());
    facts["environment variable " + text.substr(0, name)] =
        "\"" + text.substr(std::min(name + 1, text.size())) + "\"";
  }
  FreeEnvironmentStringsW(variables);
}

void AddSignals(ProcessFacts& facts) {
  for (const int number : {SIGINT, SIGILL, SIGFPE, SIGSEGV, SIGTERM, SIGBREAK, SIGABRT}) {
    const auto handler = std::signal(number, SIG_DFL);
    if (handler == SIG_ERR) continue;
    std::signal(number, handler);
    facts[fmt::format("the handler of signal {}", number)] = handler == SIG_DFL   ? "the default"
                                                             : handler == SIG_IGN ? "to ignore it"
                                                                                  : "a function";
  }
  const auto filter = SetUnhandledExceptionFilter(nullptr);
  SetUnhandledExceptionFilter(filter);
  facts["the filter of exceptions"] =
      fmt::format("{:#x}", reinterpret_cast<std::uintptr_t>(filter));
}

/// Files, pipes and consoles; what the system opens for itself comes and goes.
void AddOpenFiles(ProcessFacts& facts) {
  constexpr std::size_t kGap = 128;  // the lowest number that is free is given to what is opened
  std::size_t count = 0;
  std::size_t others = 0;
  for (std::uintptr_t number = 4; others < kGap; number += 4) {
    const bool is_file = GetFileType(reinterpret_cast<HANDLE>(number)) != FILE_TYPE_UNKNOWN;
    others = is_file ? 0 : others + 1;
    count += is_file;
  }
  facts["the number of open files"] = std::to_string(count);
}

/// The bytes of memory that is this process's own.
std::size_t PrivateMemory() {
  std::size_t bytes = 0;
  MEMORY_BASIC_INFORMATION stretch{};
  for (const char* at = nullptr; VirtualQuery(at, &stretch, sizeof stretch) != 0;
       at = static_cast<const char*>(stretch.BaseAddress) + stretch.RegionSize) {
    if (stretch.State == MEM_COMMIT && stretch.Type == MEM_PRIVATE) bytes += stretch.RegionSize;
  }
  return bytes;
}

std::string Threads() {
  const HANDLE threads = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
  THREADENTRY32 thread{};
  thread.dwSize = sizeof thread;
  std::size_t count = 0;
  for (BOOL more = Thread32First(threads, &thread); more; more = Thread32Next(threads, &thread)) {
    if (thread.th32OwnerProcessID == GetCurrentProcessId()) ++count;
  }
  CloseHandle(threads);
  return std::to_string(count);
}

}  // namespace

ProcessFacts TakeProcessFacts() {
  ProcessFacts facts;
  facts["the locale"] = std::setlocale(LC_ALL, nullptr);
  facts["the control of floating-point numbers"] = FloatingPointControl();
  std::error_code unknown;
  facts["the current folder"] = ToUtf8(std::filesystem::current_path(unknown));
  AddEnvironment(facts);
  AddSignals(facts);
  AddOpenFiles(facts);
  facts["the number of threads"] = Threads();
  facts["the mode of errors"] = std::to_string(GetErrorMode());
  facts["the priority"] = std::to_string(GetPriorityClass(GetCurrentProcess()));
  AddSettings(facts);
  return facts;
}

MemoryInUse MeasureMemory() {
  MemoryInUse memory{0, 0};
  HANDLE heaps[64];
  const DWORD count = GetProcessHeaps(static_cast<DWORD>(std::size(heaps)), heaps);
  for (DWORD i = 0; i < count && i < std::size(heaps); ++i) {
    PROCESS_HEAP_ENTRY entry{};
    HeapLock(heaps[i]);
    while (HeapWalk(heaps[i], &entry)) {
      if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0) memory.heap += entry.cbData;
    }
    HeapUnlock(heaps[i]);
  }
  memory.pages = PrivateMemory();
  return memory;
}

void FillFreshHeap(unsigned char /*byte*/) {}

CaughtOutput::CaughtOutput() {
  constexpr DWORD kSize = 1 << 20;
  std::fflush(nullptr);
  HANDLE read = nullptr;
  HANDLE write = nullptr;
  if (!CreatePipe(&read, &write, nullptr, kSize)) throw std::bad_alloc();
  const int writer = _open_osfhandle(reinterpret_cast<std::intptr_t>(write), _O_BINARY);
  for (int i = 0; i < 2; ++i) {
    before_[i] = _dup(i + 1);
    _dup2(writer, i + 1);
  }
  _close(writer);
  SetStdHandle(STD_OUTPUT_HANDLE, reinterpret_cast<HANDLE>(_get_osfhandle(1)));
  SetStdHandle(STD_ERROR_HANDLE, reinterpret_cast<HANDLE>(_get_osfhandle(2)));
  reader_ = reinterpret_cast<std::intptr_t>(read);
}

CaughtOutput::~CaughtOutput() {
  std::fflush(nullptr);
  for (int i = 0; i < 2; ++i) {
    if (before_[i] < 0) continue;
    _dup2(before_[i], i + 1);
    _close(before_[i]);
  }
  SetStdHandle(STD_OUTPUT_HANDLE, reinterpret_cast<HANDLE>(_get_osfhandle(1)));
  SetStdHandle(STD_ERROR_HANDLE, reinterpret_cast<HANDLE>(_get_osfhandle(2)));
  CloseHandle(reinterpret_cast<HANDLE>(reader_));
}

std::string CaughtOutput::Take() {
  std::fflush(nullptr);
  char text[200];
  DWORD size = 0;
  const auto reader = reinterpret_cast<HANDLE>(reader_);
  if (!PeekNamedPipe(reader, nullptr, 0, nullptr, &size, nullptr) || size == 0) return "";
  return ReadFile(reader, text, sizeof text, &size, nullptr) ? std::string(text, size) : "";
}

}  // namespace nuvhost::check
