#include "host/vectors.h"

#include <gtest/gtest.h>

#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "host/setting.h"

namespace {

template <class Vector>
struct Elements;
template <>
struct Elements<CNuvBoolVector> {
  static bool Make(std::uint_fast32_t n) { return n % 2 != 0; }
};
template <>
struct Elements<CNuvDoubleVector> {
  static double Make(std::uint_fast32_t n) { return static_cast<double>(n) / 7.0; }
};
template <>
struct Elements<CNuvStringVector> {
  static CNuvString Make(std::uint_fast32_t n) { return CNuvString(std::string(n % 40, 'x')); }
};
template <>
struct Elements<CNuvPointVector> {
  static CNuvPoint Make(std::uint_fast32_t n) { return {static_cast<double>(n) / 3.0, -1.0}; }
};
template <>
struct Elements<CNuvLineVector> {
  static CNuvLine Make(std::uint_fast32_t n) { return CNuvLine(static_cast<double>(n) / 3.0, 1.0); }
};

template <class Vector>
class Vectors : public testing::Test {};
using AllVectors = testing::Types<CNuvBoolVector, CNuvDoubleVector, CNuvStringVector,
                                  CNuvPointVector, CNuvLineVector>;
TYPED_TEST_SUITE(Vectors, AllVectors);

TYPED_TEST(Vectors, BehaveLikeAListUnderRandomOperations) {
  using Element = typename TypeParam::value_type;
  std::mt19937 random(3);
  TypeParam actual;
  std::vector<Element> expected;
  for (int step = 0; step < 3000; ++step) {
    const Element value = Elements<TypeParam>::Make(random() % 1000);
    switch (random() % 5) {
      case 0:
      case 1:
        actual.PushBack(value);
        expected.push_back(value);
        break;
      case 2: {
        const std::size_t size = random() % 50;
        actual.Resize(size);
        expected.resize(size);
        break;
      }
      case 3: {
        const std::size_t position = random() % (expected.size() + 1);
        const std::size_t count = random() % 6;
        // The value may be an element that the insertion moves.
        const bool own = !expected.empty() && random() % 2 == 0;
        const Element copy = own ? expected.back() : value;
        actual.Insert(position, count, own ? actual[actual.Size() - 1] : value);
        expected.insert(expected.begin() + static_cast<std::ptrdiff_t>(position), count, copy);
        break;
      }
      default: {
        TypeParam other;
        other.Resize(random() % 30);
        other = actual;
        actual.Resize(random() % 30);
        actual = other;
      }
    }
    ASSERT_EQ(actual.Size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) ASSERT_EQ(actual[i], Element(expected[i]));
  }
}

TYPED_TEST(Vectors, RefuseImpossibleSizesAndStayAsTheyWere) {
  using Element = typename TypeParam::value_type;
  TypeParam array;
  array.PushBack(Elements<TypeParam>::Make(5));
  const TypeParam before = array;
  const Element value = Elements<TypeParam>::Make(1);
  for (const std::size_t size : {std::size_t{1} << 31, std::size_t{1} << 60, ~std::size_t{0}}) {
    EXPECT_THROW(array.Resize(size), std::length_error);
    EXPECT_THROW(array.Insert(0, size, value), std::length_error);
  }
  EXPECT_THROW(array.Insert(2, 1, value), std::out_of_range);

  CNuvSetting::Inst().SetVectorLimit(3);
  EXPECT_NO_THROW(array.Insert(0, 2, value));
  EXPECT_THROW(array.PushBack(value), std::length_error);
  EXPECT_THROW(array.Resize(4), std::length_error);
  CNuvSetting::Inst().SetVectorLimit(0);
  array.Resize(3);
  EXPECT_EQ(array[2], before[0]);
}

}  // namespace
