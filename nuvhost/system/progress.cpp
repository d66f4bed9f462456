#include "nuvhost/system/progress.h"

#include <cstdio>

#include "nuvhost/system/console.h"

#if defined(_WIN32)
#include <io.h>
#else
#include <unistd.h>
#endif

namespace nuvhost {
namespace {

constexpr std::chrono::milliseconds kShortWork{500};
constexpr std::chrono::milliseconds kInterval{100};

}  // namespace

bool ErrorsGoToTerminal() {
#if defined(_WIN32)
  return _isatty(_fileno(stderr)) != 0;
#else
  return isatty(fileno(stderr)) != 0;
#endif
}

Progress::Progress() : is_on_(ErrorsGoToTerminal()), next_(Clock::now() + kShortWork) {}

void Progress::Show(const std::string& text) {
  if (!IsDue()) return;
  Clear();
  std::fprintf(stderr, "%s", text.c_str());
  std::fflush(stderr);
  shown_ = text.size();
  next_ = Clock::now() + kInterval;
}

void Progress::Clear() {
  if (shown_ == 0) return;
  std::fprintf(stderr, "\r%s\r", std::string(shown_, ' ').c_str());
  std::fflush(stderr);
  shown_ = 0;
}

void Progress::Complain(const std::string& text) {
  Clear();
  nuvhost::Complain(text + '\n');
}

}  // namespace nuvhost
