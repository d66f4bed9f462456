#include "host/choice_map.h"

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <string>

namespace {

TEST(CChoiceMap, IsWalkedInKeyOrderWhateverTheOrderOfInsertion) {
  std::mt19937 random(2);
  for (int round = 0; round < 300; ++round) {
    CChoiceMap map;
    std::map<std::int32_t, std::string> expected;
    for (auto i = random() % 30; i > 0; --i) {
      const auto key = static_cast<std::int32_t>(random() % 40) - 20;
      const std::string label = "choice number " + std::to_string(i);
      map.Insert(key, label.c_str());
      expected.emplace(key, label);  // the first label stays, too
    }

    ASSERT_EQ(map.Size(), expected.size());
    auto next = expected.begin();
    for (auto* node = map.First(); node != nullptr; node = CChoiceMap::Next(node), ++next) {
      ASSERT_NE(next, expected.end());
      EXPECT_EQ(node->key, next->first);
      EXPECT_EQ(node->label.View(), next->second);
    }
    EXPECT_EQ(next, expected.end());

    CChoiceMap moved;
    moved.Insert(1, "replaced");
    moved = std::move(map);
    EXPECT_EQ(moved.Size(), expected.size());
  }
}

}  // namespace
