#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <thread>

#include "nuvhost/checking/child_process.h"
#include "nuvhost/error.h"
#include "nuvhost/system/paths.h"

namespace nuvhost::check {
namespace {

/// Which files a child starts with.
class FileActions {
 public:
  explicit FileActions(const std::filesystem::path& output) {
    posix_spawn_file_actions_init(&actions_);
    posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions_, STDOUT_FILENO,
                                     output.empty() ? "/dev/null" : output.c_str(),
                                     O_WRONLY | O_CREAT | O_TRUNC, 0600);
  }
  FileActions(const FileActions&) = delete;
  FileActions& operator=(const FileActions&) = delete;
  ~FileActions() { posix_spawn_file_actions_destroy(&actions_); }

  const posix_spawn_file_actions_t* Get() const { return &actions_; }

 private:
  posix_spawn_file_actions_t actions_;
};

pid_t Start(const std::filesystem::path& program, std::vector<std::string> words,
            const std::filesystem::path& output) {
  words.insert(words.begin(), program.string());
  std::vector<char*> arguments;
  for (std::string& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  pid_t child = 0;
  const int error = posix_spawn(&child, program.c_str(), FileActions(output).Get(), nullptr,
                                arguments.data(), environ);
  if (error != 0) {
    throw UserError("cannot start {}: {}", ToUtf8(program), std::strerror(error));
  }
  return child;
}

/// Waits for a child, without blocking where `options` say so; whether it has ended.
bool HasEnded(pid_t child, int options, int& status) {
  pid_t ended = 0;
  do {
    ended = waitpid(child, &status, options);
  } while (ended < 0 && errno == EINTR);
  return ended == child;
}

}  // namespace

ChildEnd RunChild(const std::filesystem::path& program, const std::vector<std::string>& words,
                  std::chrono::milliseconds limit, const std::filesystem::path& output) {
  using Clock = std::chrono::steady_clock;
  const pid_t child = Start(program, words, output);
  const Clock::time_point deadline = Clock::now() + limit;
  int status = 0;
  bool in_time = true;
  std::chrono::milliseconds pause(1);
  while (!HasEnded(child, WNOHANG, status)) {
    if (Clock::now() >= deadline) {
      in_time = false;
      kill(child, SIGKILL);
      HasEnded(child, 0, status);
      break;
    }
    std::this_thread::sleep_for(pause);
    pause = std::min(2 * pause, std::chrono::milliseconds(20));
  }
  return {in_time, WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status)};
}

void ExpectTheWorst() {
  const rlimit no_core{0, 0};
  setrlimit(RLIMIT_CORE, &no_core);
  prctl(PR_SET_PDEATHSIG, SIGKILL);
}

}  // namespace nuvhost::check
