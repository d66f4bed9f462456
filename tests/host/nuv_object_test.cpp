#include "host/nuv_object.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

namespace {

constexpr NUV_OBJ_TYPE kAllTypes[] = {
    NUV_OBJ_EMPTY,       NUV_OBJ_BOOL,          NUV_OBJ_DOUBLE,        NUV_OBJ_STRING,
    NUV_OBJ_POINT,       NUV_OBJ_LINE,          NUV_OBJ_CIRCLE,        NUV_OBJ_RECT,
    NUV_OBJ_BOOL_VECTOR, NUV_OBJ_DOUBLE_VECTOR, NUV_OBJ_STRING_VECTOR, NUV_OBJ_POINT_VECTOR,
    NUV_OBJ_LINE_VECTOR,
};

/// A value of the type that is not its default, where the type has one.
CNuvObject Filled(NUV_OBJ_TYPE type) {
  CNuvObject value(type);
  switch (type) {
    case NUV_OBJ_BOOL: value = true; break;
    case NUV_OBJ_DOUBLE: value = 2.5; break;
    case NUV_OBJ_STRING: value = "a text too long for the small buffer"; break;
    case NUV_OBJ_POINT: value = CNuvPoint(1.0, 2.0); break;
    case NUV_OBJ_LINE: value = CNuvLine(1.0, 2.0); break;
    case NUV_OBJ_CIRCLE: value = CNuvCircle(1.0, 2.0, 3.0); break;
    case NUV_OBJ_RECT: value = CNuvRect(1.0, 2.0, 3.0, 4.0, 5.0); break;
    case NUV_OBJ_BOOL_VECTOR: static_cast<CNuvBoolVector&>(value).PushBack(true); break;
    case NUV_OBJ_DOUBLE_VECTOR: static_cast<CNuvDoubleVector&>(value).PushBack(2.5); break;
    case NUV_OBJ_STRING_VECTOR: static_cast<CNuvStringVector&>(value).PushBack("x"); break;
    case NUV_OBJ_POINT_VECTOR: static_cast<CNuvPointVector&>(value).PushBack({1.0, 2.0}); break;
    case NUV_OBJ_LINE_VECTOR:
      static_cast<CNuvLineVector&>(value).PushBack(CNuvLine(1.0, 2.0));
      break;
    case NUV_OBJ_EMPTY: break;
  }
  return value;
}

TEST(CNuvObject, EveryTypeTakesEveryOther) {
  for (const NUV_OBJ_TYPE from : kAllTypes) {
    for (const NUV_OBJ_TYPE to : kAllTypes) {
      const CNuvObject source = Filled(from);
      CNuvObject target = Filled(to);
      EXPECT_EQ(source == target, from == to) << from << " " << to;
      target = source;
      EXPECT_EQ(target.GetType(), from);
      EXPECT_TRUE(target == source);
      EXPECT_TRUE(CNuvObject(source) == target);
      if (source.Get() != nullptr) {
        EXPECT_EQ(source.Get()->GetType(), from);
      }
      target.SetType(to);
      EXPECT_TRUE(target == CNuvObject(to));
      if (from != NUV_OBJ_EMPTY) {
        EXPECT_FALSE(target == source) << from << " " << to;
      }
    }
  }
}

TEST(CNuvObject, UnrelatedTypesReadAsDefaultsUntilOneIsWritten) {
  for (const NUV_OBJ_TYPE type : kAllTypes) {
    const CNuvObject before = Filled(type);
    CNuvObject value = before;
    const CNuvObject& read = value;
    const bool is_number = type == NUV_OBJ_DOUBLE || type == NUV_OBJ_BOOL;
    const std::size_t size = type == NUV_OBJ_DOUBLE_VECTOR ? 1 : 0;
    EXPECT_TRUE(is_number || (static_cast<double>(read) == 0.0 && static_cast<int>(read) == 0 &&
                              !static_cast<bool>(read)));
    EXPECT_EQ(*static_cast<const char*>(read) == '\0', type != NUV_OBJ_STRING);
    EXPECT_EQ(static_cast<const CNuvPoint&>(read) == CNuvPoint(), type != NUV_OBJ_POINT);
    EXPECT_EQ(static_cast<const CNuvLine&>(read) == CNuvLine(), type != NUV_OBJ_LINE);
    EXPECT_EQ(static_cast<const CNuvDoubleVector&>(read).Size(), size);
    EXPECT_TRUE(value == before);
    static_cast<CNuvDoubleVector&>(value).PushBack(7.0);
    ASSERT_EQ(value.GetType(), NUV_OBJ_DOUBLE_VECTOR);
    EXPECT_EQ(static_cast<const CNuvDoubleVector&>(read).Size(), size + 1);
  }
}

TEST(CNuvObject, NumbersBooleansAndIntegersReadAsEachOther) {
  constexpr int kMin = std::numeric_limits<int>::min();
  constexpr struct {
    double number;
    int integer;
  } kRows[] = {{0.9, 0},
               {-2.7, -2},
               {2147483647.9, 2147483647},
               {2147483648.0, kMin},
               {-2147483648.9, kMin},
               {1e300, kMin},
               {-HUGE_VAL, kMin},
               {std::numeric_limits<double>::quiet_NaN(), kMin}};
  CNuvObject value;
  for (const auto& row : kRows) {
    value = row.number;
    EXPECT_EQ(static_cast<int>(value), row.integer) << row.number;
  }
  value = -7;
  EXPECT_EQ(value.GetType(), NUV_OBJ_DOUBLE);
  EXPECT_EQ(static_cast<double>(value), -7.0);
  EXPECT_TRUE(static_cast<bool>(value));
  value = true;
  EXPECT_EQ(static_cast<double>(value), 1.0);
}

TEST(CNuvObject, TakesAPartOfItself) {
  CNuvObject value = Filled(NUV_OBJ_STRING);
  value = static_cast<const char*>(value) + 2;
  EXPECT_STREQ(static_cast<const char*>(value), "text too long for the small buffer");
  value = Filled(NUV_OBJ_POINT_VECTOR);
  value = static_cast<const CNuvPointVector&>(value)[0];
  EXPECT_EQ(static_cast<const CNuvPoint&>(value), CNuvPoint(1.0, 2.0));
  value = CNuvString(std::string("\x80\xFF\0rest", 7));  // a text ends at a zero byte
  EXPECT_STREQ(static_cast<const char*>(value), "\x80\xFF");
}

}  // namespace
