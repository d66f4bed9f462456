// Two arrays put together, and a part of one.

#include <algorithm>

#include "instr/array/traits.h"
#include "instr/array/write.h"
#include "plugin/instruction.h"

namespace formula {

template <class I, class E, Identifier kIdentifier, std::uint32_t kHelp>
struct ArrConcatArr : Instruction<I> {
  static constexpr Definition kDefinition{
      .category = E::kCategory,
      .name = "Concatenate ",
      .identifier = kIdentifier.text,
      .help = kHelp,
      .description = "Appends the second array argument at the end of the first array argument",
      .inputs = {E::Array("first arr"), E::Array("second arr")},
      .results = {E::Array("new array")},
  };
  static Status Run(Call& call, const typename E::Vector& first, const typename E::Vector& second) {
    return EmptiedResult<E>(call).Write(All(first), All(second));
  }
};
struct CNArrConcatArr final
    : ArrConcatArr<CNArrConcatArr, NumberElement, "_Nuv_Array_CNArrConcatArr_", 460210> {};
struct CBArrConcatArr final
    : ArrConcatArr<CBArrConcatArr, BooleanElement, "_Nuv_Array_CBArrConcatArr_", 460208> {};
struct CSArrConcatArr final
    : ArrConcatArr<CSArrConcatArr, StringElement, "_Nuv_Array_CSArrConcatArr_", 460212> {};
/// Kept: the identifier lacks the letter of the element type; saved programs bear it.
struct CPArrConcatArr final
    : ArrConcatArr<CPArrConcatArr, PointElement, "_Nuv_Array_CArrConcatArr_", 460211> {};
struct CLArrConcatArr final
    : ArrConcatArr<CLArrConcatArr, LineElement, "_Nuv_Array_CLArrConcatArr_", 460209> {};

template <class E>
constexpr const char* kGetRangeDescription =
    "Outputs a subset of the first array starting at index and having count elements as another "
    "array. If too many elements are requested then only the available number is returned without "
    "signalling an error. The element at index is included.";
template <>
constexpr const char* kGetRangeDescription<NumberElement> =
    "Outputs a subset of the first array starting at index and having count elements as another "
    "array. If too many elements are requested then only the available number is returned without "
    "signaling an error. The element at index is included.";

// Kept: the array of lines is named another way.
template <class E>
constexpr const char* kGetRangeArray = "array";
template <>
constexpr const char* kGetRangeArray<LineElement> = "first";

template <class I, class E, Identifier kIdentifier, std::uint32_t kHelp>
struct ArrGetRange : Instruction<I> {
  static constexpr Definition kDefinition{
      .category = E::kCategory,
      .name = "GetRange ",
      .identifier = kIdentifier.text,
      .help = kHelp,
      .description = kGetRangeDescription<E>,
      .inputs = {E::Array(kGetRangeArray<E>), Number("index", 0.0, "starting index"),
                 Number("count", 1.0, "element count")},
      .results = {E::Array("range")},
  };
  static Status Run(Call& call, const typename E::Vector& array, typename E::RangeIndex index,
                    Truncated count) {
    EmptiedResult<E> result(call);
    const auto start = E::RangeStart(index, array.Size());
    if (!start || count < 0) return Status::kFailure;
    const std::size_t size = std::min<std::size_t>(count, array.Size() - *start);
    return result.Write(Slice<typename E::Vector>{array, *start, size});
  }
};
struct CNArrGetRange final
    : ArrGetRange<CNArrGetRange, NumberElement, "_Nuv_Array_CNArrGetRange_", 460237> {};
struct CBArrGetRange final
    : ArrGetRange<CBArrGetRange, BooleanElement, "_Nuv_Array_CBArrGetRange_", 460238> {};
struct CSArrGetRange final
    : ArrGetRange<CSArrGetRange, StringElement, "_Nuv_Array_CSArrGetRange_", 460239> {};
struct CPArrGetRange final
    : ArrGetRange<CPArrGetRange, PointElement, "_Nuv_Array_CPArrGetRange_", 460240> {};
struct CLArrGetRange final
    : ArrGetRange<CLArrGetRange, LineElement, "_Nuv_Array_CLArrGetRange_", 460241> {};

template struct Instructions<CNArrConcatArr, CBArrConcatArr, CSArrConcatArr, CPArrConcatArr,
                             CLArrConcatArr, CNArrGetRange, CBArrGetRange, CSArrGetRange,
                             CPArrGetRange, CLArrGetRange>;

}  // namespace formula
