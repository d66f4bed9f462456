#include "tests/nuvhost/faults.h"

#include <atomic>
#include <cfenv>
#include <chrono>
#include <clocale>
#include <csetjmp>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>

#include "host/services.h"
#include "host/setting.h"

#if defined(_WIN32)
#include <fcntl.h>
#include <io.h>
#include <windows.h>
#else
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace {

using Context = IXInstrContext;

CNuvObject& Input(Context* c, int i = 0) {
  return *c->InputValues()[i];
}
CNuvObject& Result(Context* c) {
  return *c->ResultValues()[0];
}
void Answer(Context* c, double number) {
  Result(c) = number;
}

volatile double sink = 0.0;
const volatile char* volatile text_sink = nullptr;

void Read(const CNuvObject* value) {
  if (value != nullptr) sink = static_cast<double>(*value);
}

void SetVariable(const char* value) {
#if defined(_WIN32)
  SetEnvironmentVariableA("NUV_LEFT_BEHIND", value);
#else
  setenv("NUV_LEFT_BEHIND", value, 1);
#endif
}

[[gnu::noinline]] double StackGarbage() {
  double numbers[64];
  double* volatile hidden = numbers;  // unknown to the compiler, which would warn
  return hidden[17];
}

double HeapGarbage() {
  auto* numbers = static_cast<double*>(std::malloc(64 * sizeof(double)));
  double* volatile hidden = numbers;
  const double found = hidden[17];
  std::free(numbers);
  return found;
}

void Linger() {
  std::thread([] { std::this_thread::sleep_for(std::chrono::hours(1)); }).detach();
}

#if defined(_WIN32)

LONG WINAPI HideCrash(EXCEPTION_POINTERS* exception) {
  if (exception->ExceptionRecord->ExceptionCode != EXCEPTION_ACCESS_VIOLATION) {
    return EXCEPTION_CONTINUE_SEARCH;
  }
  ExitProcess(0);
}
void HideCrashes() {
  AddVectoredExceptionHandler(1, HideCrash);
}
void HideOneCrash() {
  SetUnhandledExceptionFilter(HideCrash);
  Crash();
}
void KeepPages() {
  VirtualAlloc(nullptr, 65536, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE);
}
void OpenSomething() {
  CreateFileA("NUL", GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0,
              nullptr);
}
/// Writes to every pipe that this process has.
void WriteEverywhere(const std::string& text) {
  for (std::uintptr_t number = 4; number < 4096; number += 4) {
    const auto handle = reinterpret_cast<HANDLE>(number);
    DWORD written = 0;
    if (GetFileType(handle) != FILE_TYPE_PIPE) continue;
    WriteFile(handle, text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
  }
}
void CloseEverything() {
  for (std::uintptr_t number = 4; number < 4096; number += 4) {
    const auto handle = reinterpret_cast<HANDLE>(number);
    if (GetFileType(handle) == FILE_TYPE_PIPE) CloseHandle(handle);
  }
}

#else

sigjmp_buf after_crash;

void LeaveCrash(int /*number*/) {
  siglongjmp(after_crash, 1);
}
void EndCrash(int /*number*/) {
  _exit(0);
}
void HideCrashes() {
  std::signal(SIGSEGV, EndCrash);
}
/// Leaves everything as it was.
void HideOneCrash() {
  struct sigaction own {};
  struct sigaction before {};
  own.sa_handler = LeaveCrash;
  sigaction(SIGSEGV, &own, &before);
  if (sigsetjmp(after_crash, 1) == 0) Crash();
  sigaction(SIGSEGV, &before, nullptr);
}
void KeepPages() {
  static_cast<void>(
      mmap(nullptr, 65536, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
}
void OpenSomething() {
  [[maybe_unused]] const int file = open("/dev/null", O_RDONLY);
}
void WriteEverywhere(const std::string& text) {
  std::signal(SIGPIPE, SIG_IGN);
  for (int file = 3; file < 1024; ++file) {
    [[maybe_unused]] const ssize_t written = write(file, text.data(), text.size());
  }
}
void CloseEverything() {
  for (int file = 3; file < 1024; ++file) close(file);
}
void LeaveChild() {
  if (fork() == 0) _exit(0);
}

#endif

/// An exception whose class goes with this library, with a text that is not UTF-8.
struct OwnError final : std::exception {
  const char* what() const noexcept override { return "\xFF\xFE own"; }
};

struct Row {
  const char* name;
  Place place;
  void (*act)(Context* context);
};

const Row kRows[] = {
    // What ends the trial, or hides that it ended.
    {"throws in init", Place::kInit, [](Context*) { throw OwnError(); }},
    {"throws in create", Place::kCreate, [](Context*) { throw OwnError(); }},
    {"crashes on unload", Place::kUnload, [](Context*) { Crash(); }},
    {"hangs on unload", Place::kUnload,
     [](Context*) { std::this_thread::sleep_for(std::chrono::hours(1)); }},
    {"hides crashes", Place::kLoad, [](Context*) { HideCrashes(); }},
    {"hides crashes", Place::kDouble, [](Context*) { Crash(); }},
    {"hides one crash", Place::kDouble, [](Context*) { HideOneCrash(); }},
    {"exits", Place::kDouble, [](Context*) { std::exit(0); }},
    {"aborts", Place::kDouble, [](Context*) { std::abort(); }},
    {"forges the verdict", Place::kDouble,
     [](Context*) {
       WriteEverywhere("{\"over\":\"0\"}\n{\"at\":5}\n");
       std::_Exit(0);
     }},
    {"forges a line", Place::kDouble, [](Context*) { WriteEverywhere("{\"over\":\"0\"}\n"); }},
    {"closes everything", Place::kDouble, [](Context*) { CloseEverything(); }},
    {"throws odd text", Place::kDouble, [](Context*) { throw OwnError(); }},
    // What it was handed.
    {"input beyond", Place::kDouble, [](Context* c) { Read(&Input(c, c->InputCount())); }},
    {"far input", Place::kDouble, [](Context* c) { text_sink = (char*)c->InputValues()[7]; }},
    {"constant beyond", Place::kPick, [](Context* c) { Read(c->ConstantValues()[2]); }},
    {"result beyond", Place::kDouble, [](Context* c) { c->ResultValues()[1] = &Result(c); }},
    {"value beyond", Place::kDouble, [](Context* c) { Read(&Input(c) + 1); }},
    {"element beyond", Place::kPick,
     [](Context* c) {
       const CNuvObject& input = Input(c);
       const auto& array = static_cast<const CNuvDoubleVector&>(input);
       if (array.Size() > 0) sink = array[array.Size()];
     }},
    {"element before", Place::kPick,
     [](Context* c) {
       const CNuvObject& input = Input(c);
       const double* first = static_cast<const CNuvDoubleVector&>(input).GetStorage();
       if (first != nullptr) Answer(c, first[-1]);
     }},
    {"text beyond", Place::kJoin,
     [](Context* c) {
       if (c->InputCount() == 0) return;
       const auto* text = static_cast<const char*>(Input(c));
       if (std::strlen(text) > 100) sink = text[std::strlen(text) + 1];
     }},
    {"result pointer", Place::kDouble,
     [](Context* c) {
       static CNuvObject own;
       c->ResultValues()[0] = &own;
     }},
    {"input pointer", Place::kDouble, [](Context* c) { c->InputValues()[0] = &Result(c); }},
    {"keeps the context", Place::kDouble,
     [](Context* c) {
       static Context* kept = nullptr;
       if (kept != nullptr) sink = kept->InputCount();
       kept = c;
     }},
    {"keeps an input", Place::kDouble,
     [](Context* c) {
       static const CNuvObject* kept = nullptr;
       Read(kept);
       kept = &Input(c);
     }},
    {"asks beyond", Place::kPick, [](Context* c) { Read(c->ConstantValue(2)); }},
    {"asks below", Place::kDouble, [](Context* c) { Read(c->ResultValue(-1)); }},
    {"destroys the context", Place::kDouble, [](Context* c) { c->DeletingDestructor(0); }},
    {"unknown slot", Place::kDouble, [](Context* c) { c->Reserved9(); }},
    {"marks beyond", Place::kDouble, [](Context* c) { c->MarkResult(1, 65535); }},
    {"marks below", Place::kDouble, [](Context* c) { c->MarkResult(-1, 65535); }},
    {"input grows", Place::kPick,
     [](Context* c) {
       const CNuvObject& input = Input(c);
       const auto& array = static_cast<const CNuvDoubleVector&>(input);
       if (array.Size() > 0) static_cast<CNuvDoubleVector&>(Input(c)).PushBack(1.0);
     }},
    // What it answers.
    {"silent message", Place::kDouble,
     [](Context* c) {
       auto* messages = static_cast<IXMessageService*>(c->Service(NUV_SERVICE_MESSAGE));
       if (messages != nullptr) messages->Report(NUV_SEVERITY_WARNING, "Double", "");
     }},
    {"counts calls", Place::kDouble,
     [](Context* c) {
       static int calls = 0;
       Answer(c, ++calls);
     }},
    {"marks at times", Place::kDouble,
     [](Context* c) {
       static int calls = 0;
       if (++calls % 2 == 0) c->MarkResult(0, 1);
     }},
    {"stack garbage", Place::kDouble, [](Context* c) { Answer(c, StackGarbage()); }},
    {"heap garbage", Place::kDouble, [](Context* c) { Answer(c, HeapGarbage()); }},
    {"address", Place::kDouble,
     [](Context* c) { Answer(c, static_cast<double>(reinterpret_cast<std::uintptr_t>(c))); }},
    {"shared scratch", Place::kDouble,
     [](Context* c) {
       static volatile double scratch = 0.0;
       scratch = static_cast<double>(Input(c));
       for (int i = 0; i < 200; ++i) std::atomic_signal_fence(std::memory_order_seq_cst);
       std::this_thread::yield();
       Answer(c, scratch);
     }},
    {"leaks", Place::kDouble, [](Context*) { text_sink = static_cast<char*>(std::malloc(16)); }},
    {"leaks at times", Place::kDouble,
     [](Context*) {
       static int calls = 0;
       if (++calls % 10 == 0) text_sink = static_cast<char*>(std::malloc(200));
     }},
    {"keeps pages", Place::kDouble,
     [](Context*) {
       static int calls = 0;
       if (++calls % 10 == 0) KeepPages();
     }},
    // What it does to the process.
    {"locale", Place::kLoad,
     [](Context*) {
       std::setlocale(LC_NUMERIC, "");
       std::setlocale(LC_ALL, "C.UTF-8") || std::setlocale(LC_ALL, "English");
     }},
    {"rounding", Place::kDouble, [](Context*) { std::fesetround(FE_UPWARD); }},
#if defined(__x86_64__)
    {"tiny numbers", Place::kDouble,
     [](Context*) { __builtin_ia32_ldmxcsr(__builtin_ia32_stmxcsr() | 0x8040); }},
#elif defined(__aarch64__)
    {"tiny numbers", Place::kDouble,
     [](Context*) {
       __asm__ volatile("msr fpcr, %0" : : "r"(std::uint64_t{1} << 24));
     }},
#endif
    {"folder", Place::kDouble,
     [](Context*) { std::filesystem::current_path(std::filesystem::temp_directory_path()); }},
    {"environment", Place::kDouble, [](Context*) { SetVariable("here"); }},
    {"signals", Place::kDouble, [](Context*) { std::signal(SIGTERM, SIG_IGN); }},
    {"crash signals", Place::kLoad, [](Context*) { std::signal(SIGFPE, SIG_IGN); }},
    {"open file", Place::kDouble, [](Context*) { OpenSomething(); }},
    {"thread", Place::kDouble, [](Context*) { Linger(); }},
    {"thread on load", Place::kInit, [](Context*) { Linger(); }},
    {"prints", Place::kDouble, [](Context*) { std::puts("hello"); }},
    {"complains", Place::kDouble, [](Context*) { std::fputs("hello", stderr); }},
    {"settings", Place::kDouble,
     [](Context*) { CNuvSetting::Inst().SetAngleUnit(NuvAngleUnit::kDegrees); }},
#if defined(_WIN32)
    {"exception filter", Place::kLoad, [](Context*) { SetUnhandledExceptionFilter(HideCrash); }},
    {"error mode", Place::kDouble, [](Context*) { SetErrorMode(0); }},
#else
    {"child", Place::kDouble, [](Context*) { LeaveChild(); }},
    {"mask", Place::kDouble, [](Context*) { umask(0); }},
    {"alarm", Place::kDouble, [](Context*) { alarm(3600); }},
    {"termination", Place::kDouble, [](Context*) { std::set_terminate([] { std::abort(); }); }},
    {"blocked signal", Place::kDouble,
     [](Context*) {
       sigset_t set;
       sigemptyset(&set);
       sigaddset(&set, SIGUSR1);
       sigprocmask(SIG_BLOCK, &set, nullptr);
     }},
#endif
};

}  // namespace

[[gnu::noinline]] void Crash() {
  static int* volatile nowhere = nullptr;
  *nowhere = 1;
}

bool Fault(std::string_view name) {
  const char* fault = std::getenv("NUV_FAULT");
  return fault != nullptr && name == fault;
}

void Misbehave(Place place, IXInstrContext* context) {
  for (const Row& row : kRows) {
    if (row.place == place && Fault(row.name)) row.act(context);
  }
}
