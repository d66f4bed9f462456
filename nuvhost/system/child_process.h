// Child processes, on every platform: with a time limit, or as partners in a dialogue.
#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace nuvhost {

struct ChildEnd {
  bool in_time;        ///< else it was killed
  int code;            ///< the exit code; says nothing reliable of a process that crashed
  std::string output;  ///< what it wrote to its standard output
};

/// Runs a program and waits for its end, or kills it at the time limit, or once it has written
/// 256 MiB. It reads nothing, writes its standard output into a pipe, and shares this process's
/// standard error. Words are UTF-8. Throws UserError where the program cannot be started.
ChildEnd RunChild(const std::filesystem::path& program, const std::vector<std::string>& words,
                  std::chrono::milliseconds limit);

/// This process's standard output, taken over: it has no name and no number that could be guessed
/// any more, and what is written to the standard output from then on goes nowhere.
class PrivateOutput {
 public:
  /// Throws UserError where it cannot be had.
  PrivateOutput();
  PrivateOutput(const PrivateOutput&) = delete;
  PrivateOutput& operator=(const PrivateOutput&) = delete;
  ~PrivateOutput();

  void Write(std::string_view text);

 private:
  std::intptr_t output_;
};

/// A message as processes hand it to each other: its size stands before it.
std::string Framed(std::string_view message);

/// A process that is asked and answers over its standard input and output. It shares this process's
/// standard error, and Ctrl-C does not reach it.
class Partner {
 public:
  /// Throws UserError where the program cannot be started. Words are UTF-8.
  Partner(const std::filesystem::path& program, const std::vector<std::string>& words);
  Partner(const Partner&) = delete;
  Partner& operator=(const Partner&) = delete;
  /// Ends the process, whatever it does.
  ~Partner();

  /// How many bytes it may have been sent and not have read yet; more may wait for it.
  std::size_t MostUnread() const;
  /// Sends framed messages. A process that is not there any more is told by Read.
  void Send(std::string_view messages);
  /// The next of its messages; nothing once it is not there any more. Valid until the next call.
  std::optional<std::string_view> Read();

 private:
  struct Process;

  /// Waits for more of what it writes; false at its end.
  bool ReadMore();

  std::unique_ptr<Process> process_;
  std::string read_;
  std::size_t taken_ = 0;  ///< of what was read
};

/// What such a partner does first: Ctrl-C is its parent's alone.
void LeaveInterruptsToParent();
/// The next message that it is sent; nothing at the end.
std::optional<std::string> ReadMessage();

/// What a child that may crash or hang does first: it shows no dialog, leaves no core file and
/// does not outlive its parent.
void ExpectTheWorst();

/// A crash ends this process from now on, whatever handlers for it are set up. False where the
/// system does not allow that.
bool RefuseCrashHandlers();

}  // namespace nuvhost
