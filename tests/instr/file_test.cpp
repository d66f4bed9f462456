// Files and folders: what the instructions do, and every warning as it comes from the system.

#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>

#include "host/os.h"
#include "nuvhost/system/paths.h"
#include "nuvhost/text/utf8.h"
#include "tests/instr/table.h"

#if defined(__linux__)
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>
#endif

namespace {

namespace fs = std::filesystem;
using nuvhost::Json;

/// The shell of Windows takes no other.
const std::string kSlash(1, static_cast<char>(fs::path::preferred_separator));

/// The host's text for an error code.
std::string Reason(std::uint32_t code) {
  CStdStr text;
  CNuvOsError::GetErrorMsg(code, text);
  return text.c_str();
}

class Files : public testing::Test {
 protected:
  void SetUp() override {
    fs::remove_all(folder_);
    fs::create_directories(folder_);
  }
  void TearDown() override { fs::remove_all(folder_); }

  std::string Path(const std::string& name) const { return (folder_ / name).string(); }
  void Write(const std::string& name, const std::string& content) const {
    std::ofstream(folder_ / name, std::ios::binary) << content;
  }
  std::string Read(const std::string& name) const {
    std::ifstream file(folder_ / name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  bool Exists(const std::string& name) const { return fs::exists(folder_ / name); }

  /// What an instruction answers: "true" or "false", and a warning as "source|text".
  std::string Do(const std::string& name, const std::vector<std::string>& texts) {
    Json inputs = Json::array();
    for (const std::string& text : texts) inputs.push_back(nuvhost::Utf8FromBytes(text));
    if (texts.size() == 3) inputs[2] = texts[2] == "true";
    const Json request{{"instr", "_Nuv_System_C" + name + "_"}, {"in", inputs}};
    const Json answer = Json::parse(session_.Answer(request.dump()));
    EXPECT_EQ(answer["status"], 0) << answer.dump();
    std::string shown = answer["out"][0].dump();
    for (const Json& message : answer.value("messages", Json::array())) {
      EXPECT_EQ(message["severity"], 1);
      shown += message["source"].get<std::string>() + "|" + message["text"].get<std::string>();
    }
    return shown;
  }
  /// The answer of an instruction that warns.
  static std::string Warning(const char* source, const std::string& text) {
    return std::string("false") + source + "|" + nuvhost::Utf8FromBytes(text);
  }

  fs::path folder_ =
      fs::temp_directory_path() / (std::string("nuv_file_test_") +
                                   testing::UnitTest::GetInstance()->current_test_info()->name());
  nuvhost::ExecSession session_{BuiltCatalogue()};
};

/// Names with bytes above 127, and with what a format would stumble over.
TEST_F(Files, AreCopiedMovedAndDeleted) {
  const std::string content = std::string(100000, 'x') + "end";
  Write("a", content);
  Write("b", "other");
  for (const char* name : {"plain",
                           "Gr\xFC\xDF"
                           "e \x80",
                           "100%s%n %d"}) {
    const std::string folder = Path("deep") + kSlash + name + kSlash + "x" + kSlash;
    const std::string copy = folder + name;
    EXPECT_EQ(Do("FolderCreate", {folder}), "true");
    EXPECT_EQ(Do("FileCopy", {Path("a"), copy, "true"}), "true");
    EXPECT_EQ(Do("FileExists", {copy}), "true");
    EXPECT_EQ(Do("FileCopy", {copy, Path("c"), "false"}), "true");
    EXPECT_EQ(Read("c"), content);
    EXPECT_EQ(Do("FileCopy", {Path("b"), copy, "false"}), "true");
    EXPECT_EQ(Do("FileMove", {copy, copy + "2"}), "true");
    EXPECT_EQ(Do("FileExists", {copy}), "false");
    EXPECT_EQ(Do("FileMove", {copy + "2", copy + "2"}), "true");
    EXPECT_EQ(Do("FileCopy", {copy + "2", Path("c"), "false"}), "true");
    EXPECT_EQ(Read("c"), "other");
    EXPECT_EQ(Do("FileDelete", {copy + "2"}), "true");
    EXPECT_EQ(Do("FileExists", {copy + "2"}), "false");
    EXPECT_EQ(Do("FileDelete", {copy + "2"}), "true");
  }
  Write("deep/plain/x/left", "");
  EXPECT_EQ(Do("FolderDelete", {Path("deep")}), "true");
  EXPECT_FALSE(Exists("deep"));
}

TEST_F(Files, WarnOfEveryFailure) {
  Write("a", "a");
  Write("b", "b");
  fs::create_directory(folder_ / "folder");
  const std::string a = Path("a");
  const std::string b = Path("b");
  const std::string folder = Path("folder");
  const std::string missing = Path("missing");
  const std::string lost = Path("none") + "/x%s%n";
  const std::string quoted = missing + " \"100%d\" %s";

  const auto deletion = [](const std::string& name, std::uint32_t code) {
    return Warning("FileDelete", "Failed to delete \"" + name + "\". " + Reason(code));
  };
  EXPECT_EQ(Do("FileDelete", {lost}), deletion(lost, 3));
  EXPECT_EQ(Do("FileDelete", {a + "/x"}), deletion(a + "/x", 3));
  EXPECT_EQ(Do("FileDelete", {""}), deletion("", 3));
  EXPECT_EQ(Do("FileDelete", {folder}), deletion(folder, 5));

  struct {
    std::string from;
    std::string to;
    const char* fail_if_exists;  // null for a move
    std::uint32_t code;
  } const transfers[] = {
      {missing, b, "false", 2}, {missing, lost, "false", 2}, {lost, b, "false", 3},
      {a, lost, "true", 3},     {a, b, "true", 80},          {a, a, "true", 80},
      {a, a, "false", 32},      {folder, lost, "true", 5},   {a, folder, "false", 5},
      {"", b, "false", 3},      {a, "", "false", 3},         {missing, b + "2", "", 2},
      {missing, lost, "", 2},   {lost, b + "2", "", 3},      {a, lost, "", 3},
      {a, b, "", 183},          {a, folder, "", 183},        {"", b + "2", "", 3},
      {a, "", "", 3},
  };
  for (const auto& row : transfers) {
    const bool copies = *row.fail_if_exists != '\0';
    const std::string names = "\"" + row.from + "\" to \"" + row.to + "\". " + Reason(row.code);
    EXPECT_EQ(copies ? Do("FileCopy", {row.from, row.to, row.fail_if_exists})
                     : Do("FileMove", {row.from, row.to}),
              Warning(copies ? "FileCopy" : "FileMove",
                      (copies ? "Failed to copy " : "Failed to move ") + names));
  }
  EXPECT_EQ(Read("a") + Read("b"), "ab");

  const auto creation = [](const std::string& name, const std::string& reason) {
    return Warning("FolderCreate", "Failed to create folder \"" + name + "\". " + reason);
  };
  EXPECT_EQ(Do("FolderCreate", {folder}), creation(folder, "The directory exists."));
  EXPECT_EQ(Do("FolderCreate", {a}), creation(a, "The directory exists."));
  EXPECT_EQ(Do("FolderCreate", {a + "/x"}),
            creation(a + "/x",
                     "The system cannot find the path pointed to by pszPath. The path "
                     "may contain an invalid entry."));
#if defined(_WIN32)
  EXPECT_EQ(Do("FolderCreate", {Path("<>")}), creation(Path("<>"), "System error code 123"));
#else
  const std::string endless = Path(std::string(300, 'x'));
  EXPECT_EQ(Do("FolderCreate", {endless}),
            creation(endless, "The path pointed to by pszPath is too long."));
  fs::create_symlink("loop", folder_ / "loop");
  EXPECT_EQ(Do("FolderCreate", {Path("loop/x")}),
            creation(Path("loop/x"), "System error code 1921"));
  EXPECT_EQ(Do("FolderCreate", {"/"}), creation("/", "The directory exists."));
  Write(" \"100%d\" %s", "");
  EXPECT_EQ(Do("FileDelete", {Path(" \"100%d\" %s")}), "true");
#endif

  const auto refusal = [](const std::string& name) {
    return Warning("FolderDelete", "Failed to delete folder \"" + name + "\"");
  };
  const fs::path elsewhere = fs::current_path();
  fs::current_path(folder_);  // which is what a shell might take an odd name for
  for (const std::string& name : {missing, quoted, std::string(), std::string(220, 'x'),
                                  std::string(258, 'x'), Path(std::string(100, 'x'))}) {
    EXPECT_EQ(Do("FolderDelete", {name}), refusal(name));
  }
  for (const std::size_t length : {259, 300}) {
    const std::string name(length, 'x');
    EXPECT_EQ(Do("FolderDelete", {name}), Warning("FolderDelete", "Filename too long: " + name));
  }
  fs::current_path(elsewhere);
  EXPECT_EQ(Read("a") + Read("b"), "ab");
}

#if defined(__linux__)

TEST_F(Files, FolderDeletionNeverFollowsALink) {
  fs::create_directories(folder_ / "outside/inner");
  Write("outside/inner/kept", "kept");
  for (const char* name : {"tree", "tree/sub", "tree/.hidden"})
    fs::create_directory(folder_ / name);
  Write("tree/sub/file", "");
  for (const char* link : {"tree/link", "tree/sub/up"}) {
    fs::create_directory_symlink(folder_ / "outside", folder_ / link);
  }
  fs::create_symlink("nowhere", folder_ / "tree/broken");
  fs::create_directory_symlink(folder_ / "outside", folder_ / "link");
  EXPECT_EQ(Do("FolderDelete", {Path("tree//")}), "true");
  EXPECT_FALSE(Exists("tree"));
  EXPECT_EQ(Do("FolderDelete", {Path("link") + "/"}), "true");  // the link alone
  EXPECT_FALSE(fs::is_symlink(folder_ / "link"));
  EXPECT_EQ(Read("outside/inner/kept"), "kept");
}

TEST_F(Files, FolderDeletionNeedsNoDescriptorsForDepth) {
  constexpr int kDepth = 300;
  const fs::path elsewhere = fs::current_path();
  fs::create_directory(folder_ / "tree");
  fs::current_path(folder_ / "tree");
  for (int i = 0; i < kDepth; ++i) {
    ASSERT_EQ(mkdir("d", 0700), 0);
    ASSERT_EQ(mkdir("beside", 0400), 0);  // which nobody may enter
    ASSERT_EQ(chdir("d"), 0);
  }
  fs::current_path(elsewhere);
  rlimit before{};
  ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &before), 0);
  const rlimit few{.rlim_cur = 64, .rlim_max = before.rlim_max};
  ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &few), 0);
  const std::string answer = Do("FolderDelete", {Path("tree")});
  setrlimit(RLIMIT_NOFILE, &before);
  EXPECT_EQ(answer, "true");
  EXPECT_FALSE(Exists("tree"));
}

/// From here on the process dies before it deletes anything.
bool ForbidDeletion() {
  sock_filter program[] = {
      BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
#ifdef SYS_unlink  // 64-bit ARM has none
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_unlink, 2, 0),
#endif
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_unlinkat, 1, 0),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_KILL_PROCESS),
  };
  const sock_fprog filter{std::size(program), program};
  return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
         prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter) == 0;
}

TEST_F(Files, FolderDeletionRefusesTheRootHoweverItIsSpelled) {
  const auto exit_with_refusal = [&](const std::string& name) {
    if (!ForbidDeletion()) _exit(2);
    const std::string refusal = "Failed to delete folder \"" + name + "\"";
    _exit(Do("FolderDelete", {name}) == Warning("FolderDelete", refusal) ? 0 : 1);
  };
  for (const char* root :
       {"/", "//", "///", "/.", "/./", "/..", "/tmp/..", "/tmp/../", ".", ".."}) {
    EXPECT_EXIT(exit_with_refusal(root), testing::ExitedWithCode(0), "") << root;
  }
  // A deletion would be noticed.
  EXPECT_EXIT(exit_with_refusal(Path("folder")), testing::KilledBySignal(SIGSYS), "");
}

/// What a folder holds: its names, a link's with what it leads to, and what the files contain.
std::string Listing(const fs::path& folder) {
  std::map<std::string, std::string> entries;
  for (const auto& entry : fs::directory_iterator(folder)) {
    std::ifstream file(entry.path(), std::ios::binary);
    const std::string content{std::istreambuf_iterator<char>(file), {}};
    const std::string target =
        entry.is_symlink() ? "->" + fs::read_symlink(entry.path()).string() : "";
    entries[entry.path().filename().string() + target] = content.substr(0, 8);
  }
  std::string listing;
  for (const auto& [name, content] : entries) listing += name + "=" + content + " ";
  return listing;
}

/// Files may not grow over a limit, as on a full disk.
void LimitFileSize(rlim_t bytes) {
  std::signal(SIGXFSZ, SIG_IGN);
  rlimit limit;
  getrlimit(RLIMIT_FSIZE, &limit);
  limit.rlim_cur = std::min(bytes, limit.rlim_max);
  setrlimit(RLIMIT_FSIZE, &limit);
}

TEST_F(Files, ACopyThatFailsLosesNothing) {
  fs::create_directory(folder_ / "f");
  Write("a", std::string(200000, 'a'));
  Write("f/good", "good");
  fs::permissions(folder_ / "f/good", fs::perms(0640));
  fs::create_symlink("good", folder_ / "f/link");
  fs::create_symlink("new", folder_ / "f/dangling");
  const std::string before = Listing(folder_ / "f");
  for (const char* to : {"f/good", "f/link", "f/dangling", "f/none"}) {
    LimitFileSize(100000);
    EXPECT_EQ(Do("FileCopy", {Path("a"), Path(to), "false"}),
              Warning("FileCopy", "Failed to copy \"" + Path("a") + "\" to \"" + Path(to) + "\". " +
                                      Reason(223)));
    LimitFileSize(RLIM_INFINITY);
    EXPECT_EQ(Listing(folder_ / "f"), before);
  }
  Write("a", "whole");
  for (const char* to : {"f/link", "f/dangling"}) {
    EXPECT_EQ(Do("FileCopy", {Path("a"), Path(to), "false"}), "true");
  }
  EXPECT_EQ(Listing(folder_ / "f"), "dangling->new=whole good=whole link->good=whole new=whole ");
  EXPECT_EQ(fs::status(folder_ / "f/good").permissions(), fs::perms(0640));
}

TEST_F(Files, OnlyPlainFilesAreCopied) {
  Write("a", "a");
  EXPECT_EQ(Do("FileCopy", {"/dev/zero", Path("zero"), "false"}),
            Warning("FileCopy",
                    "Failed to copy \"/dev/zero\" to \"" + Path("zero") + "\". " + Reason(5)));
  EXPECT_EQ(
      Do("FileCopy", {Path("a"), "/dev/null", "false"}),
      Warning("FileCopy", "Failed to copy \"" + Path("a") + "\" to \"/dev/null\". " + Reason(5)));
  EXPECT_TRUE(fs::exists("/dev/null"));
  EXPECT_EQ(Do("FileCopy", {"/proc/self/status", Path("status"), "false"}), "true");
  EXPECT_NE(Read("status"), "");  // its size is said to be 0
}

#endif

}  // namespace
