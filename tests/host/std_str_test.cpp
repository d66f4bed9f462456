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

TEST(CStdStr, KeepsItsLayoutUnderRandomAssignments) {
  std::mt19937 random(1);
  std::string expected[4];
  CStdStr actual[4] = {CStdStr(nullptr)};
  for (int step = 0; step < 20000; ++step) {
    const std::size_t a = random() % 4;
    const std::size_t b = random() % 4;
    switch (random() % 5) {
      case 0:
        expected[a] = std::string(random() % 70, static_cast<char>(random()));
        actual[a] = std::string_view(expected[a]);
        break;
      case 1:
        expected[a] = std::string(expected[b]);
        actual[a] = actual[b];
        break;
      case 2:
        if (a == b) break;
        expected[a] = std::exchange(expected[b], "");
        actual[a] = std::move(actual[b]);
        break;
      case 3:  // a part of its own text
        expected[a] = expected[a].substr(random() % (expected[a].size() + 1));
        actual[a] = actual[a].View().substr(actual[a].Size() - expected[a].size());
        break;
      default: actual[a] = CStdStr(actual[b]); expected[a] = std::string(expected[b]);
    }
    for (int i = 0; i < 4; ++i) ASSERT_EQ(ReadInPlace(actual[i]), expected[i]) << "step " << step;
  }
}

}  // namespace
