#include <fcntl.h>
#include <fenv.h>
#include <fmt/format.h>
#include <malloc.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <clocale>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <new>

#include "nuvhost/checking/process_state.h"

namespace nuvhost::check {
namespace {

std::string Hex(std::uintptr_t number) {
  return fmt::format("{:#x}", number);
}

/// The rounding mode, which exceptions trap, and whether tiny numbers are zero.
std::string FloatingPointControl() {
#if defined(__x86_64__)
  constexpr unsigned kControl = 0xFFC0;  // without the flags of what happened
  unsigned short x87 = 0;
  __asm__ volatile("fnstcw %0" : "=m"(x87));
  return Hex(__builtin_ia32_stmxcsr() & kControl) + ", " + Hex(x87);
#elif defined(__aarch64__)
  std::uint64_t control = 0;
  __asm__ volatile("mrs %0, fpcr" : "=r"(control));
  return Hex(control);
#else
  return Hex(static_cast<unsigned>(fegetround()));
#endif
}

void AddSignals(ProcessFacts& facts) {
  for (int number = 1; number < NSIG; ++number) {
    struct sigaction action {};
    if (sigaction(number, nullptr, &action) != 0) continue;
    facts[fmt::format("the handler of signal {}", number)] =
        action.sa_handler == SIG_DFL   ? "the default"
        : action.sa_handler == SIG_IGN ? "to ignore it"
                                       : "a function";
  }
  sigset_t blocked;
  sigprocmask(SIG_BLOCK, nullptr, &blocked);
  std::string numbers;
  for (int number = 1; number < NSIG; ++number) {
    if (sigismember(&blocked, number) == 1) numbers += " " + std::to_string(number);
  }
  facts["the list of blocked signals"] = numbers.empty() ? "empty" : numbers;
}

void AddOpenFiles(ProcessFacts& facts) {
  constexpr int kMaxFile = 1024;
  for (int file = 0; file < kMaxFile; ++file) {
    if (fcntl(file, F_GETFD) < 0) continue;
    std::error_code unknown;
    const auto name = std::filesystem::read_symlink(fmt::format("/proc/self/fd/{}", file), unknown);
    facts[fmt::format("open file {}", file)] = unknown ? "a file" : name.string();
  }
}

std::string Threads() {
  std::error_code ignored;
  std::size_t count = 0;
  for (std::filesystem::directory_iterator task("/proc/self/task", ignored), end; task != end;
       task.increment(ignored)) {
    ++count;
  }
  return std::to_string(count);
}

std::string Children() {
  siginfo_t child{};
  return waitid(P_ALL, 0, &child, WEXITED | WNOHANG | WNOWAIT) == 0 ? "there" : "not there";
}

std::string Timer() {
  itimerval timer{};
  getitimer(ITIMER_REAL, &timer);
  return timer.it_value.tv_sec == 0 && timer.it_value.tv_usec == 0 ? "off" : "set";
}

}  // namespace

ProcessFacts TakeProcessFacts() {
  ProcessFacts facts;
  facts["the locale"] = std::setlocale(LC_ALL, nullptr);
  facts["the control of floating-point numbers"] = FloatingPointControl();
  std::error_code unknown;
  facts["the current folder"] = std::filesystem::current_path(unknown).string();
  for (char** variable = environ; variable != nullptr && *variable != nullptr; ++variable) {
    const std::string text = *variable;
    const std::size_t name = std::min(text.find('='), text.size());
    facts["environment variable " + text.substr(0, name)] =
        "\"" + text.substr(std::min(name + 1, text.size())) + "\"";
  }
  AddSignals(facts);
  AddOpenFiles(facts);
  facts["the number of threads"] = Threads();
  facts["a child process"] = Children();
  facts["the alarm"] = Timer();
  const mode_t mask = umask(0);
  umask(mask);
  facts["the mask of new files"] = std::to_string(mask);
  facts["the priority"] = std::to_string(getpriority(PRIO_PROCESS, 0));
  facts["the handler of termination"] = Hex(reinterpret_cast<std::uintptr_t>(std::get_terminate()));
  facts["the handler of missing memory"] =
      Hex(reinterpret_cast<std::uintptr_t>(std::get_new_handler()));
  AddSettings(facts);
  return facts;
}

MemoryInUse MeasureMemory() {
  const struct mallinfo2 heap = mallinfo2();
  std::size_t pages = 0;
  std::ifstream("/proc/self/statm") >> pages;
  return {heap.uordblks + heap.hblkhd, pages * static_cast<std::size_t>(sysconf(_SC_PAGESIZE))};
}

void FillFreshHeap(unsigned char byte) {
  mallopt(M_PERTURB, byte);
}

CaughtOutput::CaughtOutput() {
  std::fflush(nullptr);
  int ends[2] = {-1, -1};
  if (pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0) throw std::bad_alloc();
  for (int i = 0; i < 2; ++i) {
    before_[i] = fcntl(i + 1, F_DUPFD_CLOEXEC, 3);
    dup2(ends[1], i + 1);
  }
  close(ends[1]);
  reader_ = ends[0];
}

CaughtOutput::~CaughtOutput() {
  std::fflush(nullptr);
  for (int i = 0; i < 2; ++i) {
    dup2(before_[i], i + 1);
    close(before_[i]);
  }
  close(static_cast<int>(reader_));
}

std::string CaughtOutput::Take() {
  std::fflush(nullptr);
  char text[200];
  const ssize_t size = read(static_cast<int>(reader_), text, sizeof text);
  return size > 0 ? std::string(text, static_cast<std::size_t>(size)) : "";
}

}  // namespace nuvhost::check
