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

#include "nuvhost/error.h"
#include "nuvhost/system/child_process.h"
#include "nuvhost/system/paths.h"

namespace nuvhost {
namespace {

constexpr int kPipeSize = 1 << 20;

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

/// Ends a child, whatever it does; how it ended.
int Kill(pid_t child) {
  int status = 0;
  kill(child, SIGKILL);
  HasEnded(child, 0, status);
  return status;
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
      status = Kill(child);
      break;
    }
    std::this_thread::sleep_for(pause);
    pause = std::min(2 * pause, std::chrono::milliseconds(20));
  }
  return {in_time, WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status)};
}

struct Partner::Process {
  pid_t child = 0;
  int input = -1;
  int output = -1;
};

Partner::Partner(const std::filesystem::path& program, const std::vector<std::string>& words)
    : process_(std::make_unique<Process>()) {
  int input[2];
  int output[2];
  if (pipe2(input, O_CLOEXEC) != 0) throw UserError("no pipe: {}", std::strerror(errno));
  if (pipe2(output, O_CLOEXEC) != 0) {
    close(input[0]);
    close(input[1]);
    throw UserError("no pipe: {}", std::strerror(errno));
  }
  fcntl(output[1], F_SETPIPE_SZ, kPipeSize);  // a larger one lets it go on meanwhile
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, input[0], STDIN_FILENO);
  posix_spawn_file_actions_adddup2(&actions, output[1], STDOUT_FILENO);
  posix_spawnattr_t attributes;
  posix_spawnattr_init(&attributes);
  posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP);  // a terminal's signals pass by
  std::vector<std::string> all{program.string()};
  all.insert(all.end(), words.begin(), words.end());
  std::vector<char*> arguments;
  for (std::string& word : all) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  const int error = posix_spawn(&process_->child, program.c_str(), &actions, &attributes,
                                arguments.data(), environ);
  posix_spawnattr_destroy(&attributes);
  posix_spawn_file_actions_destroy(&actions);
  close(input[0]);
  close(output[1]);
  process_->input = input[1];
  process_->output = output[0];
  if (error == 0) return;
  close(process_->input);
  close(process_->output);
  throw UserError("cannot start {}: {}", ToUtf8(program), std::strerror(error));
}

Partner::~Partner() {
  close(process_->input);
  close(process_->output);
  Kill(process_->child);
}

void Partner::Send(std::string_view line) {
  struct sigaction ignored {};
  struct sigaction before {};
  ignored.sa_handler = SIG_IGN;
  sigaction(SIGPIPE, &ignored, &before);
  while (!line.empty()) {
    const ssize_t sent = write(process_->input, line.data(), line.size());
    if (sent < 0 && errno != EINTR) break;
    if (sent > 0) line.remove_prefix(static_cast<std::size_t>(sent));
  }
  sigaction(SIGPIPE, &before, nullptr);
}

std::optional<std::string> Partner::ReadLine() {
  while (true) {
    const std::size_t end = read_.find('\n', searched_);
    if (end != std::string::npos) {
      std::string line = read_.substr(0, end);
      read_.erase(0, end + 1);
      searched_ = 0;
      return line;
    }
    searched_ = read_.size();
    char block[65536];
    const ssize_t size = read(process_->output, block, sizeof block);
    if (size > 0) {
      read_.append(block, static_cast<std::size_t>(size));
    } else if (size == 0 || errno != EINTR) {
      return std::nullopt;
    }
  }
}

void LeaveInterruptsToParent() {
  signal(SIGINT, SIG_IGN);
}

void ExpectTheWorst() {
  const rlimit no_core{0, 0};
  setrlimit(RLIMIT_CORE, &no_core);
  prctl(PR_SET_PDEATHSIG, SIGKILL);
}

}  // namespace nuvhost
