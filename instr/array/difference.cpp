// The elements of one array that are not in another.

#include <algorithm>
#include <memory>
#include <span>
#include <string_view>
#include <type_traits>
#include <vector>

#include "algorithm/element_set.h"
#include "instr/array/traits.h"
#include "instr/array/write.h"
#include "plugin/instruction.h"

namespace formula {

/// The hash of what an element is compared by.
struct KeyHash {
  std::uint64_t operator()(double number) const { return Hash(number); }
  std::uint64_t operator()(std::string_view text) const { return Hash(text); }
  std::uint64_t operator()(const CNuvPoint& point) const { return Hash(point.x, point.y); }
  std::uint64_t operator()(const CNuvLine& line) const { return Hash(line.a, line.d); }
};

namespace {

/// Up to this many elements are compared one by one.
constexpr std::size_t kFew = 12;

/// What an element is compared by: itself, but for a text, which is asked of the host once.
template <class Element>
const Element& KeyOf(const Element& element) {
  return element;
}
std::string_view KeyOf(const CNuvString& text) {
  return static_cast<const char*>(text);
}

template <class Vector>
std::span<const typename Vector::value_type> KeysOf(const Vector& array) {
  return {array.GetStorage(), array.Size()};
}
std::vector<std::string_view> KeysOf(const CNuvStringVector& array) {
  return {array.GetStorage(), array.GetStorage() + array.Size()};
}

/// Writes the elements of the array that the other one does not contain.
template <class E, class Contains>
Status WriteOthers(Call& call, const typename E::Vector& array, Contains contains) {
  const auto kept = std::make_unique_for_overwrite<std::size_t[]>(array.Size());
  std::size_t count = 0;
  for (std::size_t i = 0; i < array.Size(); ++i) {
    kept[count] = i;
    count += contains(array[i]) ? 0 : 1;
  }
  return Write<E>(call, Picked<typename E::Vector>{array, kept.get(), count});
}

}  // namespace

template <class I, class E, Identifier kIdentifier, std::uint32_t kHelp>
struct ArrDiff : Instruction<I> {
  static constexpr Definition kDefinition{
      .category = E::kCategory,
      .name = "Difference ",
      .identifier = kIdentifier.text,
      .help = kHelp,
      .description = "Outputs the difference between the first and second arrays as another array",
      .inputs = {E::Array("first"), E::Array("second")},
      .results = {E::Array("diff")},
  };
  static Status Run(Call& call, const typename E::Vector& first, const typename E::Vector& second) {
    if (second.Size() == 0) return Write<E>(call, All(first));
    const auto keys = KeysOf(second);
    using Key = std::remove_cvref_t<decltype(keys[0])>;
    if (keys.size() <= kFew) {
      return WriteOthers<E>(call, first, [&keys](const auto& element) {
        return std::find(keys.begin(), keys.end(), KeyOf(element)) != keys.end();
      });
    }
    const ElementSet<Key, KeyHash> set(keys.data(), keys.size());
    return WriteOthers<E>(call, first,
                          [&set](const auto& element) { return set.Contains(KeyOf(element)); });
  }
};
struct CNArrDiff final : ArrDiff<CNArrDiff, NumberElement, "_Nuv_Array_CNArrDiff_", 460224> {};
struct CSArrDiff final : ArrDiff<CSArrDiff, StringElement, "_Nuv_Array_CSArrDiff_", 460226> {};
struct CPArrDiff final : ArrDiff<CPArrDiff, PointElement, "_Nuv_Array_CPArrDiff_", 460227> {};
struct CLArrDiff final : ArrDiff<CLArrDiff, LineElement, "_Nuv_Array_CLArrDiff_", 460225> {};

template struct Instructions<CNArrDiff, CSArrDiff, CPArrDiff, CLArrDiff>;

}  // namespace formula
