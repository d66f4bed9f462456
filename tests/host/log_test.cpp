#include "host/log.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "host/setting.h"

namespace {

namespace fs = std::filesystem;

class CNuvLogFile : public testing::Test {
 protected:
  void SetUp() override { fs::remove(path_); }
  void TearDown() override {
    CNuvSetting::Inst().SetLogFile("");
    CNuvLog::Instance().SetSink(nullptr, nullptr);
    fs::remove(path_);
  }
  void UseFile(const fs::path& path) const {
    const std::u8string name = path.u8string();
    CNuvSetting::Inst().SetLogFile({name.begin(), name.end()});
  }
  std::string Content() const {
    std::ifstream file(path_, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  fs::path path_ =
      fs::temp_directory_path() /
      (u8"nuv_log_test_\u00E4_" +
       fs::path(testing::UnitTest::GetInstance()->current_test_info()->name()).u8string());
};

TEST_F(CNuvLogFile, HasALineForEachEntry) {
  UseFile(path_);
  CNuvLog& log = CNuvLog::Instance();
  log.Log(LEVEL_INFORMATION, "100%s \xE4");
  log.Log(LEVEL_DEBUG, "two\r\nlines");
  log.Log(static_cast<LEVEL>(7), nullptr);
  EXPECT_EQ(Content(), "information: 100%s \xE4\ndebug: two\\r\\nlines\nlog: \n");

  std::string sunk;
  log.SetSink(
      [](void* owner, LEVEL, const char* text) { *static_cast<std::string*>(owner) = text; },
      &sunk);
  log.Log(LEVEL_DEBUG, "a\nb");
  EXPECT_EQ(sunk, "a\nb");
  EXPECT_TRUE(Content().ends_with("debug: a\\nb\n"));
}

TEST_F(CNuvLogFile, GivesWayToStandardError) {
  testing::internal::CaptureStderr();
  CNuvLog::Instance().Log(LEVEL_INFORMATION, "none \xE9");
  UseFile(path_ / "no folder");
  CNuvLog::Instance().Log(LEVEL_DEBUG, "unwritable");
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "information: none \xC3\xA9\ndebug: unwritable\n");
}

}  // namespace
