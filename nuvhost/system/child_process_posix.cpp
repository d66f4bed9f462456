#include <fcntl.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <iterator>
#include <random>

#include "nuvhost/error.h"
#include "nuvhost/system/child_process.h"
#include "nuvhost/system/paths.h"

namespace nuvhost {
namespace {

constexpr int kPipeSize = 1 << 20;
constexpr const char kNoPipe[] = "no pipe to another process: {}; fewer --jobs need fewer";
constexpr std::size_t kMaxOutput = std::size_t{256} << 20;

/// Which files a child starts with.
class FileActions {
 public:
  explicit FileActions(int output) {
    posix_spawn_file_actions_init(&actions_);
    posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&actions_, output, STDOUT_FILENO);
  }
  FileActions(const FileActions&) = delete;
  FileActions& operator=(const FileActions&) = delete;
  ~FileActions() { posix_spawn_file_actions_destroy(&actions_); }

  const posix_spawn_file_actions_t* Get() const { return &actions_; }

 private:
  posix_spawn_file_actions_t actions_;
};

pid_t Start(const std::filesystem::path& program, std::vector<std::string> words, int output) {
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

/// A pipe that a child writes into.
class Pipe {
 public:
  Pipe() {
    if (pipe2(ends_, O_CLOEXEC) != 0) throw UserError("no pipe: {}", std::strerror(errno));
    fcntl(ends_[1], F_SETPIPE_SZ, kPipeSize);  // a larger one lets it go on meanwhile
    fcntl(ends_[0], F_SETFL, O_NONBLOCK);
  }
  Pipe(const Pipe&) = delete;
  Pipe& operator=(const Pipe&) = delete;
  ~Pipe() {
    close(ends_[0]);
    close(ends_[1]);
  }

  int Reader() const { return ends_[0]; }
  int Writer() const { return ends_[1]; }
  /// Appends what is there by now.
  void Read(std::string& text) const {
    char block[65536];
    while (text.size() <= kMaxOutput) {
      const ssize_t size = read(ends_[0], block, sizeof block);
      if (size > 0) text.append(block, static_cast<std::size_t>(size));
      if (size == 0 || (size < 0 && errno != EINTR)) return;
    }
  }

 private:
  int ends_[2];
};

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
                  std::chrono::milliseconds limit) {
  using Clock = std::chrono::steady_clock;
  const Pipe pipe;
  const pid_t child = Start(program, words, pipe.Writer());
  const Clock::time_point deadline = Clock::now() + limit;
  ChildEnd end{true, 0, {}};
  int status = 0;
  // What it started may hold the pipe longer than it lives, so the pipe's end says nothing.
  while (true) {
    const bool has_ended = HasEnded(child, WNOHANG, status);
    pipe.Read(end.output);
    if (has_ended) break;
    if (Clock::now() < deadline && end.output.size() <= kMaxOutput) {
      pollfd readable{pipe.Reader(), POLLIN, 0};
      poll(&readable, 1, 2);
      continue;
    }
    end.in_time = false;
    status = Kill(child);
    break;
  }
  end.code = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  return end;
}

PrivateOutput::PrivateOutput() {
  // Where nobody looks: neither the next free number, nor one that two processes have in common;
  // and among those that a process may have.
  std::random_device random;
  rlimit files{};
  getrlimit(RLIMIT_NOFILE, &files);
  const auto most = static_cast<unsigned>(std::min<rlim_t>(files.rlim_cur, 1024));
  const int lowest = static_cast<int>(most / 8 + random() % (most / 2 + 1));
  const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
  const int output = fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, lowest);
  if (nowhere < 0 || output < 0 || dup2(nowhere, STDOUT_FILENO) < 0) {
    throw UserError("no output: {}", std::strerror(errno));
  }
  close(nowhere);
  output_ = output;
}

PrivateOutput::~PrivateOutput() {
  close(static_cast<int>(output_));
}

void PrivateOutput::Write(std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = write(static_cast<int>(output_), text.data(), text.size());
    if (written < 0 && errno != EINTR) return;
    if (written > 0) text.remove_prefix(static_cast<std::size_t>(written));
  }
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
  if (pipe2(input, O_CLOEXEC) != 0) throw UserError(kNoPipe, std::strerror(errno));
  if (pipe2(output, O_CLOEXEC) != 0) {
    close(input[0]);
    close(input[1]);
    throw UserError(kNoPipe, std::strerror(errno));
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

std::size_t Partner::MostUnread() const {
  // Messages that are sent apart fill a half of each page at least.
  return static_cast<std::size_t>(std::max(fcntl(process_->input, F_GETPIPE_SZ), 4096)) / 2;
}

void Partner::Send(std::string_view messages) {
  struct sigaction ignored {};
  struct sigaction before {};
  ignored.sa_handler = SIG_IGN;
  sigaction(SIGPIPE, &ignored, &before);
  while (!messages.empty()) {
    const ssize_t sent = write(process_->input, messages.data(), messages.size());
    if (sent < 0 && errno != EINTR) break;
    if (sent > 0) messages.remove_prefix(static_cast<std::size_t>(sent));
  }
  sigaction(SIGPIPE, &before, nullptr);
}

bool Partner::ReadMore() {
  // A process that is woken by each answer takes the time of those that give them. A moment later
  // there are several.
  constexpr timespec kMoment{0, 200'000};
  pollfd readable{process_->output, POLLIN, 0};
  if (poll(&readable, 1, 0) == 0) nanosleep(&kMoment, nullptr);
  char block[65536];
  ssize_t size = 0;
  do {
    size = read(process_->output, block, sizeof block);
  } while (size < 0 && errno == EINTR);
  if (size > 0) read_.append(block, static_cast<std::size_t>(size));
  return size > 0;
}

void LeaveInterruptsToParent() {
  signal(SIGINT, SIG_IGN);
}

void ExpectTheWorst() {
  const rlimit no_core{0, 0};
  setrlimit(RLIMIT_CORE, &no_core);
  prctl(PR_SET_PDEATHSIG, SIGKILL);
}

bool RefuseCrashHandlers() {
  // The system answers as if the handler were set; whoever asks what is set gets to know.
  constexpr std::uint32_t kNumber = offsetof(seccomp_data, nr);
  constexpr std::uint32_t kSignal = offsetof(seccomp_data, args[0]);
  constexpr std::uint32_t kAction = offsetof(seccomp_data, args[1]);
  sock_filter steps[] = {
      BPF_STMT(BPF_LD | BPF_W | BPF_ABS, kNumber),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_rt_sigaction, 0, 12),
      BPF_STMT(BPF_LD | BPF_W | BPF_ABS, kAction),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, 0, 0, 2),
      BPF_STMT(BPF_LD | BPF_W | BPF_ABS, kAction + 4),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, 0, 8, 0),
      BPF_STMT(BPF_LD | BPF_W | BPF_ABS, kSignal),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SIGSEGV, 5, 0),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SIGBUS, 4, 0),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SIGFPE, 3, 0),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SIGILL, 2, 0),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SIGABRT, 1, 0),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SIGTRAP, 0, 1),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
  };
  const sock_fprog filter{static_cast<unsigned short>(std::size(steps)), steps};
  return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
         prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter) == 0;
}

}  // namespace nuvhost
