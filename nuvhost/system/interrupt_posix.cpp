#include <atomic>
#include <csignal>

#include "nuvhost/system/interrupt.h"
#include "nuvhost/system/system_file.h"

namespace nuvhost {
namespace {

std::atomic<bool> has_happened;
struct sigaction action_before;

void Note(int /*signal*/) {
  has_happened = true;
  sigaction(SIGINT, &action_before, nullptr);
}

}  // namespace

InterruptWatch::InterruptWatch() {
  has_happened = false;
  RemoveOnSignals();
  sigaction(SIGINT, nullptr, &action_before);
  if (action_before.sa_handler == SIG_IGN) return;
  struct sigaction action {};
  action.sa_handler = Note;
  action.sa_flags = SA_RESTART;
  sigaction(SIGINT, &action, nullptr);
}

InterruptWatch::~InterruptWatch() {
  sigaction(SIGINT, &action_before, nullptr);
}

bool InterruptWatch::HasHappened() const {
  return has_happened;
}

}  // namespace nuvhost
