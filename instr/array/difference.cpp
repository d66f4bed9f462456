// The elements of one array that are not in another.

#include <algorithm>
#include <memory>

#include "algorithm/element_set.h"
#include "instr/array/traits.h"
#include "instr/array/write.h"
#include "plugin/instruction.h"

namespace formula {

/// The hash of an element of any type.
struct ElementHash {
  std::uint64_t operator()(double number) const { return Hash(number); }
  std::uint64_t operator()(const CNuvString& text) const { return Hash(std::string_view(text)); }
  std::uint64_t operator()(const CNuvPoint& point) const { return Hash(point.x, point.y); }
  std::uint64_t operator()(const CNuvLine& line) const { return Hash(line.a, line.d); }
};

namespace {

/// Up to this many elements are compared one by one.
constexpr std::size_t kFew = 12;

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
    using Element = typename E::Element;
    const Element* begin = second.GetStorage();
    const Element* end = begin + second.Size();
    if (begin == end) return Write<E>(call, All(first));
    if (second.Size() <= kFew) {
      return WriteOthers<E>(call, first, [begin, end](const Element& value) {
        return std::find(begin, end, value) != end;
      });
    }
    const ElementSet<Element, ElementHash> set(begin, second.Size());
    return WriteOthers<E>(call, first,
                          [&set](const Element& value) { return set.Contains(value); });
  }
};
struct CNArrDiff final : ArrDiff<CNArrDiff, NumberElement, "_Nuv_Array_CNArrDiff_", 460224> {};
struct CSArrDiff final : ArrDiff<CSArrDiff, StringElement, "_Nuv_Array_CSArrDiff_", 460226> {};
struct CPArrDiff final : ArrDiff<CPArrDiff, PointElement, "_Nuv_Array_CPArrDiff_", 460227> {};
struct CLArrDiff final : ArrDiff<CLArrDiff, LineElement, "_Nuv_Array_CLArrDiff_", 460225> {};

template struct Instructions<CNArrDiff, CSArrDiff, CPArrDiff, CLArrDiff>;

}  // namespace formula
