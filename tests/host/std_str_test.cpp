#include "host/std_str.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <string>
#include <utility>

namespace {

/// The layout, read as the host reads it.
std::string_view ReadInPlace(const CStdStr& text) {
  std::uint64_t words[5];
  std::memcpy(words, &text, sizeof words);
  const bool is_inline = words[4] <= 15;
  const char* start = is_inline ? reinterpret_cast<const char*>(&text) + 8
                                : reinterpret_cast<const char*>(words[1]);
  EXPECT_EQ(words[0], 0u);
  EXPECT_LE(words[3], words[4]);
  EXPECT_EQ(start[words[3]], '\0');
  return {start, words[3]};
}

TEST(CStdStr, KeepsTheLayoutOfEveryLengthAndByte) {
  for (std::size_t length = 0; length < 70; ++length) {
    std::string text(length, '\0');
    for (std::size_t i = 0; i < length; ++i) text[i] = static_cast<char>(i * 37 + length);
    EXPECT_EQ(ReadInPlace(CStdStr(std::string_view(text))), text);
  }
  EXPECT_EQ(ReadInPlace(CStdStr(nullptr)), "");
}

TEST(CStdStr, BehavesLikeAStringUnderRandomAssignments) {
  std::mt19937 random(1);
  std::string expected[4];
  CStdStr actual[4];
  for (int step = 0; step < 20000; ++step) {
    const std::size_t a = random() % 4;
    const std::size_t b = random() % 4;
    switch (random() % 5) {
      case 0: {
        const std::string text(random() % 40, static_cast<char>('a' + random() % 26));
        expected[a] = text;
        actual[a] = std::string_view(text);
        break;
      }
      case 1:
        expected[a] = std::string(expected[b]);
        actual[a] = actual[b];
        break;
      case 2:
        if (a == b) break;
        expected[a] = std::exchange(expected[b], "");
        actual[a] = std::move(actual[b]);
        break;
      case 3: {  // a part of its own text
        const std::size_t start = expected[a].empty() ? 0 : random() % expected[a].size();
        actual[a] = actual[a].View().substr(start);
        expected[a] = expected[a].substr(start);
        break;
      }
      default: actual[a] = CStdStr(actual[b]); expected[a] = std::string(expected[b]);
    }
    for (int i = 0; i < 4; ++i) ASSERT_EQ(ReadInPlace(actual[i]), expected[i]) << "step " << step;
  }
}

}  // namespace
