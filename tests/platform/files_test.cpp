#include "platform/files.h"

#include <gtest/gtest.h>

#include <cerrno>

#include "host/os.h"

namespace {

#if !defined(_WIN32)

TEST(FileErrors, HaveATextEach) {
  for (int error = 1; error < 134; ++error) {
    errno = error;
    const platform::ErrorCode code = platform::LastFileError("/x", "/y");
    CStdStr text;
    CNuvOsError::GetErrorMsg(code, text);
    EXPECT_NE(code, 0U) << error;
    EXPECT_NE(text.View().substr(0, 6), "Error ") << error << " as " << code;
  }
}

#endif

TEST(FileErrors, AreOneLine) {
  for (const std::uint32_t code : {2U, 3U, 5U, 80U, 123U, 183U, 206U, 4000000000U}) {
    CStdStr text;
    CNuvOsError::GetErrorMsg(code, text);
    EXPECT_NE(text.Size(), 0U) << code;
    EXPECT_EQ(text.View().find_first_of("\r\n"), std::string_view::npos) << code;
  }
  CStdStr unknown;
  CNuvOsError::GetErrorMsg(4000000000U, unknown);
  EXPECT_EQ(unknown.View(), "Error 4000000000");
}

}  // namespace
