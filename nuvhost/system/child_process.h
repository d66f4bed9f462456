// Child processes, on every platform: with a time limit, or as partners in a dialogue.
#pragma once

#include <chrono>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace nuvhost {

struct ChildEnd {
  bool in_time;  ///< else it was killed
  int code;      ///< the exit code; says nothing reliable of a process that crashed
};

/// Runs a program and waits for its end, or kills it at the time limit. It reads nothing, writes
/// its standard output to a file, or nowhere where that is empty, and shares this process's
/// standard error. Words are UTF-8. Throws UserError where the program cannot be started.
ChildEnd RunChild(const std::filesystem::path& program, const std::vector<std::string>& words,
                  std::chrono::milliseconds limit, const std::filesystem::path& output = {});

/// A process that is asked and answers, line by line, over its standard input and output. It shares
/// this process's standard error, and Ctrl-C does not reach it.
class Partner {
 public:
  /// Throws UserError where the program cannot be started. Words are UTF-8.
  Partner(const std::filesystem::path& program, const std::vector<std::string>& words);
  Partner(const Partner&) = delete;
  Partner& operator=(const Partner&) = delete;
  /// Ends the process, whatever it does.
  ~Partner();

  /// Asks, with a line that ends in '\n'. Lines that it has not read yet may come to 4 KiB; more
  /// may wait for it. One that is not there any more is told by ReadLine.
  void Send(std::string_view line);
  /// The next line of its answers, without the end; nothing once it is not there any more.
  std::optional<std::string> ReadLine();

 private:
  struct Process;

  std::unique_ptr<Process> process_;
  std::string read_;
  std::size_t searched_ = 0;  ///< of what was read, without a line end
};

/// What such a partner does first: Ctrl-C is its parent's alone.
void LeaveInterruptsToParent();

/// What a child that may crash or hang does first: it shows no dialog, leaves no core file and
/// does not outlive its parent.
void ExpectTheWorst();

}  // namespace nuvhost
