#include <windows.h>

#include <atomic>

#include "nuvhost/system/interrupt.h"

namespace nuvhost {
namespace {

std::atomic<bool> has_happened;

BOOL WINAPI Note(DWORD event) {
  const bool is_wish = event == CTRL_C_EVENT || event == CTRL_BREAK_EVENT;
  return is_wish && !has_happened.exchange(true) ? TRUE : FALSE;
}

}  // namespace

InterruptWatch::InterruptWatch() {
  has_happened = false;
  SetConsoleCtrlHandler(Note, TRUE);
}

InterruptWatch::~InterruptWatch() {
  SetConsoleCtrlHandler(Note, FALSE);
}

bool InterruptWatch::HasHappened() const {
  return has_happened;
}

}  // namespace nuvhost
