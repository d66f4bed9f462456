// Child processes with a time limit, on every platform.
#pragma once

#include <chrono>
#include <filesystem>
#include <string>
#include <vector>

namespace nuvhost::check {

struct ChildEnd {
  bool in_time;  ///< else it was killed
  int code;      ///< the exit code; says nothing reliable of a process that crashed
};

/// Runs a program and waits for its end, or kills it at the time limit. It reads nothing, writes
/// its standard output to a file, or nowhere where that is empty, and shares this process's
/// standard error. Words are UTF-8. Throws UserError where the program cannot be started.
ChildEnd RunChild(const std::filesystem::path& program, const std::vector<std::string>& words,
                  std::chrono::milliseconds limit, const std::filesystem::path& output = {});

/// What a child that may crash or hang does first: it shows no dialog, leaves no core file and
/// does not outlive its parent.
void ExpectTheWorst();

}  // namespace nuvhost::check
