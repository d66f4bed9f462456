#include "plugin/descriptor_builder.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace formula {
namespace {

/// A definition with a parameter of every kind, which no single instruction has.
constexpr Definition kEverything{
    .category = "Category",
    .name = "Name ",
    .identifier = "_Identifier_",
    .help = 460999,
    .description = nullptr,
    .repeatable = true,
    .constants =
        {{.type = NUV_PARAM_BOOLEAN, .name = "flag", .default_value = 1},
         {.type = NUV_PARAM_INTEGER,
          .group = "Group",
          .default_value = 8,
          .has_range = true,
          .minimum = -5,
          .maximum = 1000},
         {.type = NUV_PARAM_CHOICE,
          .default_value = 64,
          .choices = {{64, "Information"}, {48, "Warning"}, {-1, "A label of some length"}}}},
    .inputs = {{.type = NUV_PARAM_BOOLEAN, .name = "b", .first = 1.0},
               {.type = NUV_PARAM_NUMBER, .name = "n", .first = -0.5},
               {.type = NUV_PARAM_STRING, .name = "t", .text = "text"},
               {.type = NUV_PARAM_POINT, .name = "p", .first = 100.0, .second = 200.0},
               {.type = NUV_PARAM_LINE, .name = "l", .first = 1.0, .second = 2.0},
               {.type = NUV_PARAM_STRING_ARRAY, .name = "ts"},
               {.type = NUV_PARAM_LINE_ARRAY, .name = "ls"}},
    .results = {Number("first"), Number("second", "described")},
};

TEST(DescriptorBuilder, FillsARecordOfEveryKind) {
  DescriptorRecord record;
  for (int build = 0; build < 2; ++build) {
    BuildDescriptor(record, kEverything);
    EXPECT_EQ(record.format, 17u);
    EXPECT_EQ(record.repeatable, 1u);
    EXPECT_EQ(record.description, nullptr);

    ASSERT_EQ(record.constants.Size(), 3u);
    EXPECT_EQ(record.constants[0].default_value.GetType(), NUV_OBJ_BOOL);
    EXPECT_EQ(record.constants[0].minimum.GetType(), NUV_OBJ_EMPTY);
    EXPECT_EQ(record.constants[1].name, nullptr);
    EXPECT_EQ(static_cast<int>(record.constants[1].default_value), 8);
    EXPECT_EQ(static_cast<int>(record.constants[1].minimum), -5);
    EXPECT_EQ(static_cast<int>(record.constants[1].maximum), 1000);
    const CChoiceMap& choices = record.constants[2].choices;
    std::vector<std::int32_t> keys;
    for (auto* node = choices.First(); node != nullptr; node = CChoiceMap::Next(node)) {
      keys.push_back(node->key);
    }
    EXPECT_EQ(keys, (std::vector<std::int32_t>{-1, 48, 64}));
    EXPECT_EQ(choices.First()->label.View(), "A label of some length");
    EXPECT_EQ(record.constants[2].index, 2u);

    ASSERT_EQ(record.inputs.Size(), 7u);
    EXPECT_EQ(record.inputs[0].default_value.GetType(), NUV_OBJ_BOOL);
    EXPECT_EQ(static_cast<double>(record.inputs[1].default_value), -0.5);
    EXPECT_STREQ(static_cast<const char*>(record.inputs[2].default_value), "text");
    EXPECT_EQ(static_cast<const CNuvPoint&>(record.inputs[3].default_value),
              CNuvPoint(100.0, 200.0));
    EXPECT_EQ(static_cast<const CNuvLine&>(record.inputs[4].default_value), CNuvLine(1.0, 2.0));
    EXPECT_EQ(record.inputs[5].default_value.GetType(), NUV_OBJ_STRING_VECTOR);
    EXPECT_EQ(record.inputs[6].default_value.GetType(), NUV_OBJ_LINE_VECTOR);
    EXPECT_EQ(record.inputs[6].index, 6u);

    ASSERT_EQ(record.results.Size(), 2u);
    EXPECT_EQ(record.results[0].description, nullptr);
    EXPECT_STREQ(record.results[1].description, "described");
  }

  ClearDescriptor(record);
  EXPECT_EQ(record.constants.Capacity() + record.inputs.Capacity() + record.results.Capacity(), 0u);
  EXPECT_STREQ(record.name, "Name ");
  EXPECT_EQ(record.help, 460999u);
}

}  // namespace
}  // namespace formula
