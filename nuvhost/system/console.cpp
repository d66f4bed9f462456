#include "nuvhost/system/console.h"

#include <cerrno>
#include <cstdio>
#include <system_error>
#include <utility>

#include "nuvhost/error.h"
#include "nuvhost/text/utf8.h"

#if !defined(_WIN32)
#include <fcntl.h>
#include <unistd.h>
#endif

namespace nuvhost {
namespace {

/// Why the first text that did not arrive did not; 0 if all did, and kTold once that was told.
int output_error = 0;
constexpr int kTold = -1;

}  // namespace

void Print(std::string_view text) {
  const std::string shown = ValidUtf8(text);
  errno = 0;
  if (std::fwrite(shown.data(), 1, shown.size(), stdout) != shown.size() && output_error == 0) {
    output_error = errno == 0 ? EIO : errno;
  }
}

void Complain(std::string_view text) {
  const std::string shown = ValidUtf8(text);
  std::fwrite(shown.data(), 1, shown.size(), stderr);
  std::fflush(stderr);
}

void FlushOutput() {
  errno = 0;
  const bool failed = std::fflush(stdout) != 0 || std::ferror(stdout) != 0;
  if (failed && output_error == 0) output_error = errno == 0 ? EIO : errno;
  if (output_error == 0 || output_error == kTold) return;
  throw UserError("cannot write to standard output: " +
                  std::generic_category().message(std::exchange(output_error, kTold)));
}

void HoldStandardStreams() {
#if !defined(_WIN32)
  // The lowest number that is free is given to what is opened next. What is written there fails.
  while (true) {
    const int opened = open("/dev/null", O_RDONLY);
    if (opened > STDERR_FILENO) close(opened);
    if (opened < 0 || opened > STDERR_FILENO) return;
  }
#endif
}

}  // namespace nuvhost
