// nuvhost: the reference host on the command line.

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <new>
#include <string>
#include <vector>

#include "nuvhost/commands/command_line.h"
#include "nuvhost/error.h"
#include "nuvhost/system/console.h"
#include "nuvhost/system/paths.h"

#if defined(_WIN32)
#include <fcntl.h>
#include <io.h>
#include <windows.h>
#else
#include <csignal>
#endif

namespace nuvhost {
namespace {

constexpr const char* kNoMemory = "nuvhost: memory has run out\n";

/// What libraries throw where they may not, as when JSON is cleared away, cannot be caught: memory
/// for that was short.
[[noreturn]] void EndWithoutMemory() {
  std::fputs(kNoMemory, stderr);
  std::_Exit(kExitWrongCall);
}

/// Carries out what a command has left to do; exit code 2, and the reason told, where that fails.
template <class Rest>
int Guarded(Rest rest) {
  try {
    try {
      return rest();
    } catch (const std::bad_alloc&) {
      throw;
    } catch (const std::exception& error) {
      Complain(std::string("nuvhost: ") + error.what() + '\n');
    }
  } catch (const std::bad_alloc&) {  // thrown by the complaint itself, too
    std::fputs(kNoMemory, stderr);
  }
  return kExitWrongCall;
}

/// `words` gives those of the command line in UTF-8.
template <class Words>
int Main(Words words) {
  std::set_terminate(EndWithoutMemory);
  HoldStandardStreams();
  const int code = Guarded([&] { return RunCommandLine(words()); });
  return Guarded([&] {
    FlushOutput();
    return code;
  });
}

}  // namespace
}  // namespace nuvhost

#if defined(_WIN32)

int wmain(int count, wchar_t** words) {
  // Nothing that is loaded from here on, by whomever, comes from the current folder.
  SetDefaultDllDirectories(LOAD_LIBRARY_SEARCH_DEFAULT_DIRS);
  _setmode(_fileno(stdin), _O_BINARY);
  _setmode(_fileno(stdout), _O_BINARY);
  _setmode(_fileno(stderr), _O_BINARY);
  return nuvhost::Main([&] {
    std::vector<std::string> utf8;
    for (int i = 1; i < count; ++i) {
      utf8.push_back(nuvhost::ToUtf8(std::filesystem::path(words[i])));
    }
    return utf8;
  });
}

#else

int main(int count, char** words) {
  std::signal(SIGXFSZ, SIG_IGN);  // what is written beyond a limit on files fails, and is told
  return nuvhost::Main([&] { return std::vector<std::string>(words + 1, words + count); });
}

#endif
