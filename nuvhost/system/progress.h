// Progress: how far long work has come, on a terminal, and nothing where nobody watches.
#pragma once

#include <chrono>
#include <string>

namespace nuvhost {

/// Whether somebody watches: standard error is a terminal.
bool ErrorsGoToTerminal();

/// One line on standard error that is written over as work goes on.
class Progress {
 public:
  /// On where standard error is a terminal.
  Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  ~Progress() { Clear(); }

  /// Whether Show would show anything now.
  bool IsDue() const { return is_on_ && Clock::now() >= next_; }
  /// Shows the text, but for short work and not too often.
  void Show(const std::string& text);
  /// Takes the line away, so that something else can be written.
  void Clear();
  /// Writes a line that stays.
  void Complain(const std::string& text);

 private:
  using Clock = std::chrono::steady_clock;

  bool is_on_;
  Clock::time_point next_;
  std::size_t shown_ = 0;
};

}  // namespace nuvhost
