#include "host/vectors.h"

#include <gtest/gtest.h>

#include <random>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

#include "host/setting.h"

namespace {

template <class Vector>
class Vectors : public testing::Test {
 protected:
  static typename Vector::value_type Make(std::uint_fast32_t n) {
    using Element = typename Vector::value_type;
    if constexpr (std::is_same_v<Element, bool>) {
      return n % 2 != 0;
    } else if constexpr (std::is_same_v<Element, CNuvString>) {
      return Element(std::string(n % 40, 'x'));
    } else if constexpr (std::is_same_v<Element, double>) {
      return static_cast<double>(n) / 7.0;
    } else {
      return Element(static_cast<double>(n) / 3.0, 1.0);
    }
  }
};
using AllVectors = testing::Types<CNuvBoolVector, CNuvDoubleVector, CNuvStringVector,
                                  CNuvPointVector, CNuvLineVector>;
TYPED_TEST_SUITE(Vectors, AllVectors);

TYPED_TEST(Vectors, BehaveLikeAListUnderRandomOperations) {
  using Element = typename TypeParam::value_type;
  std::mt19937 random(3);
  TypeParam actual;
  std::vector<Element> expected;
  for (int step = 0; step < 3000; ++step) {
    const Element value = this->Make(random() % 1000);
    switch (random() % 5) {
      case 0:
      case 1:
        actual.PushBack(value);
        expected.push_back(value);
        break;
      case 2:
        expected.resize(random() % 50);
        actual.Resize(expected.size());
        break;
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
  TypeParam array;
  array.PushBack(this->Make(5));
  const TypeParam before = array;
  const auto value = this->Make(1);
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
