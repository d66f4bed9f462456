// One element of an array read, or replaced in a copy; the size of an array.

#include "instr/array/traits.h"
#include "instr/array/write.h"
#include "plugin/instruction.h"

namespace formula {

template <class I, class E, Identifier kIdentifier, std::uint32_t kHelp>
struct ArrGetAt : Instruction<I> {
  static constexpr Definition kDefinition{
      .category = E::kCategory,
      .name = "GetAt",
      .identifier = kIdentifier.text,
      .help = kHelp,
      .description = "Get the value of the element at index idx.",
      .inputs = {E::Array("arr"), Number("idx", 0.0)},
      .results = {E::kValue},
  };
  static Status Run(Call& call, const typename E::Vector& array, Truncated index) {
    const auto at = IndexWithin(index, array.Size());
    if (!at) return Status::kFailure;
    return call.Set(0, array[*at]);
  }
};
struct CNArrGetAt final : ArrGetAt<CNArrGetAt, NumberElement, "_Nuv_Array_CNArrGetAt_", 460035> {};
struct CBArrGetAt final : ArrGetAt<CBArrGetAt, BooleanElement, "_Nuv_Array_CBArrGetAt_", 460009> {};
struct CSArrGetAt final : ArrGetAt<CSArrGetAt, StringElement, "_Nuv_Array_CSArrGetAt_", 460062> {};
struct CPArrGetAt final : ArrGetAt<CPArrGetAt, PointElement, "_Nuv_Array_CPArrGetAt_", 460048> {};
struct CLArrGetAt final : ArrGetAt<CLArrGetAt, LineElement, "_Nuv_Array_CLArrGetAt_", 460022> {};

/// Kept: this one takes its index as the host converts a number; the others truncate.
template <class I, class E, Identifier kIdentifier, std::uint32_t kHelp>
struct ArrSetAt : Instruction<I> {
  static constexpr Definition kDefinition{
      .category = E::kCategory,
      .name = "SetAt",
      .identifier = kIdentifier.text,
      .help = kHelp,
      .description = "Set the elem at idx to the specified value.",
      .inputs = {E::Array("arr"), Number("idx", 0.0), E::kValue},
      .results = {E::Array("new array")},
  };
  static Status Run(Call& call, const typename E::Vector& array, HostInteger index,
                    typename E::Value value) {
    const auto at = IndexWithin(index, array.Size());
    if (!at) return Status::kFailure;
    return Write<E>(call, Head(array, *at), Copies{1, value}, Tail(array, *at + 1));
  }
};
struct CNArrSetAt final : ArrSetAt<CNArrSetAt, NumberElement, "_Nuv_Array_CNArrSetAt_", 460036> {};
struct CBArrSetAt final : ArrSetAt<CBArrSetAt, BooleanElement, "_Nuv_Array_CBArrSetAt_", 460010> {};
struct CSArrSetAt final : ArrSetAt<CSArrSetAt, StringElement, "_Nuv_Array_CSArrSetAt_", 460063> {};
struct CPArrSetAt final : ArrSetAt<CPArrSetAt, PointElement, "_Nuv_Array_CPArrSetAt_", 460049> {};
struct CLArrSetAt final : ArrSetAt<CLArrSetAt, LineElement, "_Nuv_Array_CLArrSetAt_", 460023> {};

template <class I, class E, Identifier kIdentifier, std::uint32_t kHelp>
struct ArrSize : Instruction<I> {
  static constexpr Definition kDefinition{
      .category = E::kCategory,
      .name = "Size",
      .identifier = kIdentifier.text,
      .help = kHelp,
      .description = "Returns the size of the array.",
      .inputs = {E::Array("arr")},
      .results = {Number("size")},
  };
  static Status Run(Call& call, const typename E::Vector& array) {
    return call.Set(0, static_cast<double>(array.Size()));
  }
};
/// Kept, here and in the next four: the identifier says System; saved programs bear it.
struct CNArrSize final : ArrSize<CNArrSize, NumberElement, "_Nuv_System_CNArrSize_", 460039> {};
struct CBArrSize final : ArrSize<CBArrSize, BooleanElement, "_Nuv_System_CBArrSize_", 460013> {};
struct CSArrSize final : ArrSize<CSArrSize, StringElement, "_Nuv_System_CSArrSize_", 460066> {};
struct CPArrSize final : ArrSize<CPArrSize, PointElement, "_Nuv_System_CPArrSize_", 460052> {};
struct CLArrSize final : ArrSize<CLArrSize, LineElement, "_Nuv_System_CLArrSize_", 460026> {};

template struct Instructions<CNArrGetAt, CBArrGetAt, CSArrGetAt, CPArrGetAt, CLArrGetAt, CNArrSetAt,
                             CBArrSetAt, CSArrSetAt, CPArrSetAt, CLArrSetAt, CNArrSize, CBArrSize,
                             CSArrSize, CPArrSize, CLArrSize>;

}  // namespace formula
