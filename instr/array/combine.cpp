// Two arrays put together, and a part of one.

#include <algorithm>

#include "instr/array/traits.h"
#include "instr/array/write.h"
#include "plugin/instruction.h"

namespace formula {
namespace {

template <class I, class E>
struct Concatenate : Instruction<I> {
  static constexpr Definition Row(const char* name, const char* identifier, std::uint32_t help) {
    return {
        .category = E::kCategory,
        .name = name,
        .identifier = identifier,
        .help = help,
        .description = "Appends the second array argument at the end of the first array argument",
        .inputs = {E::Array("first arr"), E::Array("second arr")},
        .results = {E::Array("new array")}};
  }
  static Status Run(Call& call) {
    return EmptiedResult<E>(call).Write(All(E::Input(call, 0)), All(E::Input(call, 1)));
  }
};

template <class I, class E>
struct GetRange : Instruction<I> {
  static constexpr Definition Row(const char* name, const char* identifier, std::uint32_t help,
                                  const char* array, const char* description) {
    return {.category = E::kCategory,
            .name = name,
            .identifier = identifier,
            .help = help,
            .description = description,
            .inputs = {E::Array(array), Number("index", 0.0, "starting index"),
                       Number("count", 1.0, "element count")},
            .results = {E::Array("range")}};
  }
  static Status Run(Call& call) {
    const double index = call.Number(1);
    const std::int32_t count = call.Truncated(2);
    EmptiedResult<E> result(call);
    const auto& array = E::Input(call, 0);
    const auto start = E::RangeStart(index, array.Size());
    if (!start || count < 0) return Status::kFailure;
    const std::size_t size = std::min<std::size_t>(count, array.Size() - *start);
    return result.Write(Slice<typename E::Vector>{array, *start, size});
  }
};

// Kept: the text for numbers is spelled another way.
constexpr const char* kGetRange =
    "Outputs a subset of the first array starting at index and having count elements as another "
    "array. If too many elements are requested then only the available number is returned without "
    "signalling an error. The element at index is included.";

}  // namespace

struct CNArrConcatArr final : Concatenate<CNArrConcatArr, NumberElement> {
  static constexpr Definition kDefinition =
      Row("Concatenate ", "_Nuv_Array_CNArrConcatArr_", 460210);
};
struct CBArrConcatArr final : Concatenate<CBArrConcatArr, BooleanElement> {
  static constexpr Definition kDefinition =
      Row("Concatenate ", "_Nuv_Array_CBArrConcatArr_", 460208);
};
struct CSArrConcatArr final : Concatenate<CSArrConcatArr, StringElement> {
  static constexpr Definition kDefinition =
      Row("Concatenate ", "_Nuv_Array_CSArrConcatArr_", 460212);
};
/// Kept: the identifier lacks the letter of the element type; saved programs bear it.
struct CPArrConcatArr final : Concatenate<CPArrConcatArr, PointElement> {
  static constexpr Definition kDefinition =
      Row("Concatenate ", "_Nuv_Array_CArrConcatArr_", 460211);
};
struct CLArrConcatArr final : Concatenate<CLArrConcatArr, LineElement> {
  static constexpr Definition kDefinition =
      Row("Concatenate ", "_Nuv_Array_CLArrConcatArr_", 460209);
};

struct CNArrGetRange final : GetRange<CNArrGetRange, NumberElement> {
  static constexpr Definition kDefinition =
      Row("GetRange ", "_Nuv_Array_CNArrGetRange_", 460237, "array",
          "Outputs a subset of the first array starting at index and having count elements as "
          "another array. If too many elements are requested then only the available number is "
          "returned without signaling an error. The element at index is included.");
};
struct CBArrGetRange final : GetRange<CBArrGetRange, BooleanElement> {
  static constexpr Definition kDefinition =
      Row("GetRange ", "_Nuv_Array_CBArrGetRange_", 460238, "array", kGetRange);
};
struct CSArrGetRange final : GetRange<CSArrGetRange, StringElement> {
  static constexpr Definition kDefinition =
      Row("GetRange ", "_Nuv_Array_CSArrGetRange_", 460239, "array", kGetRange);
};
struct CPArrGetRange final : GetRange<CPArrGetRange, PointElement> {
  static constexpr Definition kDefinition =
      Row("GetRange ", "_Nuv_Array_CPArrGetRange_", 460240, "array", kGetRange);
};
struct CLArrGetRange final : GetRange<CLArrGetRange, LineElement> {
  static constexpr Definition kDefinition =
      Row("GetRange ", "_Nuv_Array_CLArrGetRange_", 460241, "first", kGetRange);
};

template IXInstrPlugin* NewInstruction<CNArrConcatArr>() noexcept;
template IXInstrPlugin* NewInstruction<CBArrConcatArr>() noexcept;
template IXInstrPlugin* NewInstruction<CSArrConcatArr>() noexcept;
template IXInstrPlugin* NewInstruction<CPArrConcatArr>() noexcept;
template IXInstrPlugin* NewInstruction<CLArrConcatArr>() noexcept;

template IXInstrPlugin* NewInstruction<CNArrGetRange>() noexcept;
template IXInstrPlugin* NewInstruction<CBArrGetRange>() noexcept;
template IXInstrPlugin* NewInstruction<CSArrGetRange>() noexcept;
template IXInstrPlugin* NewInstruction<CPArrGetRange>() noexcept;
template IXInstrPlugin* NewInstruction<CLArrGetRange>() noexcept;

}  // namespace formula
