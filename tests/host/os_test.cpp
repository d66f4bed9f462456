#include "host/os.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace {

namespace fs = std::filesystem;

class CNuvOsFiles : public testing::Test {
 protected:
  void SetUp() override {
    fs::remove_all(folder_);
    fs::create_directories(folder_);
  }
  void TearDown() override { fs::remove_all(folder_); }

  std::string Path(const char* name) const { return (folder_ / name).string(); }
  void Write(const char* name, const std::string& content) const {
    std::ofstream(folder_ / name, std::ios::binary) << content;
  }
  std::string Read(const char* name) const {
    std::ifstream file(folder_ / name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  bool Copy(const char* from, const char* to, bool fail_if_exists) const {
    return CNuvOs::FileCopy(Path(from).c_str(), Path(to).c_str(), fail_if_exists);
  }
  bool Move(const char* from, const char* to) const {
    return CNuvOs::FileMove(Path(from).c_str(), Path(to).c_str());
  }

 private:
  fs::path folder_ =
      fs::temp_directory_path() /
      (std::string("nuv_os_test_") + testing::UnitTest::GetInstance()->current_test_info()->name());
};

TEST_F(CNuvOsFiles, CopyAndMoveLoseNothing) {
  const std::string content(100000, 'x');
  Write("a", content);
  Write("b", "b");
  EXPECT_FALSE(Copy("a", "b", true));
  EXPECT_EQ(Read("b"), "b");
  EXPECT_FALSE(Copy("a", "a", false));
  EXPECT_EQ(Read("a"), content);
  EXPECT_FALSE(Move("a", "b"));
  EXPECT_EQ(Read("b"), "b");
  EXPECT_TRUE(Copy("a", "b", false));
  EXPECT_EQ(Read("b"), content);
  EXPECT_TRUE(Move("a", "c"));
  EXPECT_EQ(Read("c"), content);
  EXPECT_FALSE(CNuvOs::FileExists(Path("a").c_str()));
}

TEST_F(CNuvOsFiles, FoldersAndMissingNamesAreNoFiles) {
  EXPECT_FALSE(CNuvOs::FileExists(Path(".").c_str()));
  EXPECT_FALSE(CNuvOs::FileExists(""));
  EXPECT_FALSE(Copy(".", "copy", false));
  EXPECT_FALSE(Copy("missing", "copy", false));
  EXPECT_FALSE(Move("missing", "moved"));
  EXPECT_FALSE(CNuvOs::FileExists(Path("copy").c_str()));
}

}  // namespace
