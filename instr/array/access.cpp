// One element of an array read, or replaced in a copy; the size of an array.

#include "instr/array/traits.h"
#include "instr/array/write.h"
#include "plugin/instruction.h"

namespace formula {
namespace {

template <class I, class E>
struct GetAt : Instruction<I> {
  static constexpr Definition Row(const char* name, const char* identifier, std::uint32_t help) {
    return {.category = E::kCategory,
            .name = name,
            .identifier = identifier,
            .help = help,
            .description = "Get the value of the element at index idx.",
            .inputs = {E::Array("arr"), Number("idx", 0.0)},
            .results = {E::kValue}};
  }
  static Status Run(Call& call) {
    const auto& array = E::Input(call, 0);
    const auto index = IndexWithin(call.Truncated(1), array.Size());
    if (!index) return Status::kFailure;
    return call.Set(0, array[*index]);
  }
};

/// Kept: this one takes its index as the host converts a number; the others truncate.
template <class I, class E>
struct SetAt : Instruction<I> {
  static constexpr Definition Row(const char* name, const char* identifier, std::uint32_t help) {
    return {.category = E::kCategory,
            .name = name,
            .identifier = identifier,
            .help = help,
            .description = "Set the elem at idx to the specified value.",
            .inputs = {E::Array("arr"), Number("idx", 0.0), E::kValue},
            .results = {E::Array("new array")}};
  }
  static Status Run(Call& call) {
    const auto& array = E::Input(call, 0);
    const auto index = IndexWithin(call.Integer(1), array.Size());
    if (!index) return Status::kFailure;
    return Write<E>(call, Head(array, *index), Copies{1, E::Value(call, 2)},
                    Tail(array, *index + 1));
  }
};

template <class I, class E>
struct Size : Instruction<I> {
  static constexpr Definition Row(const char* name, const char* identifier, std::uint32_t help) {
    return {.category = E::kCategory,
            .name = name,
            .identifier = identifier,
            .help = help,
            .description = "Returns the size of the array.",
            .inputs = {E::Array("arr")},
            .results = {Number("size")}};
  }
  static Status Run(Call& call) {
    return call.Set(0, static_cast<double>(E::Input(call, 0).Size()));
  }
};

}  // namespace

struct CNArrGetAt final : GetAt<CNArrGetAt, NumberElement> {
  static constexpr Definition kDefinition = Row("GetAt", "_Nuv_Array_CNArrGetAt_", 460035);
};
struct CBArrGetAt final : GetAt<CBArrGetAt, BooleanElement> {
  static constexpr Definition kDefinition = Row("GetAt", "_Nuv_Array_CBArrGetAt_", 460009);
};
struct CSArrGetAt final : GetAt<CSArrGetAt, StringElement> {
  static constexpr Definition kDefinition = Row("GetAt", "_Nuv_Array_CSArrGetAt_", 460062);
};
struct CPArrGetAt final : GetAt<CPArrGetAt, PointElement> {
  static constexpr Definition kDefinition = Row("GetAt", "_Nuv_Array_CPArrGetAt_", 460048);
};
struct CLArrGetAt final : GetAt<CLArrGetAt, LineElement> {
  static constexpr Definition kDefinition = Row("GetAt", "_Nuv_Array_CLArrGetAt_", 460022);
};

struct CNArrSetAt final : SetAt<CNArrSetAt, NumberElement> {
  static constexpr Definition kDefinition = Row("SetAt", "_Nuv_Array_CNArrSetAt_", 460036);
};
struct CBArrSetAt final : SetAt<CBArrSetAt, BooleanElement> {
  static constexpr Definition kDefinition = Row("SetAt", "_Nuv_Array_CBArrSetAt_", 460010);
};
struct CSArrSetAt final : SetAt<CSArrSetAt, StringElement> {
  static constexpr Definition kDefinition = Row("SetAt", "_Nuv_Array_CSArrSetAt_", 460063);
};
struct CPArrSetAt final : SetAt<CPArrSetAt, PointElement> {
  static constexpr Definition kDefinition = Row("SetAt", "_Nuv_Array_CPArrSetAt_", 460049);
};
struct CLArrSetAt final : SetAt<CLArrSetAt, LineElement> {
  static constexpr Definition kDefinition = Row("SetAt", "_Nuv_Array_CLArrSetAt_", 460023);
};

/// Kept, here and in the next four: the identifier says System; saved programs bear it.
struct CNArrSize final : Size<CNArrSize, NumberElement> {
  static constexpr Definition kDefinition = Row("Size", "_Nuv_System_CNArrSize_", 460039);
};
struct CBArrSize final : Size<CBArrSize, BooleanElement> {
  static constexpr Definition kDefinition = Row("Size", "_Nuv_System_CBArrSize_", 460013);
};
struct CSArrSize final : Size<CSArrSize, StringElement> {
  static constexpr Definition kDefinition = Row("Size", "_Nuv_System_CSArrSize_", 460066);
};
struct CPArrSize final : Size<CPArrSize, PointElement> {
  static constexpr Definition kDefinition = Row("Size", "_Nuv_System_CPArrSize_", 460052);
};
struct CLArrSize final : Size<CLArrSize, LineElement> {
  static constexpr Definition kDefinition = Row("Size", "_Nuv_System_CLArrSize_", 460026);
};

template IXInstrPlugin* NewInstruction<CNArrGetAt>() noexcept;
template IXInstrPlugin* NewInstruction<CBArrGetAt>() noexcept;
template IXInstrPlugin* NewInstruction<CSArrGetAt>() noexcept;
template IXInstrPlugin* NewInstruction<CPArrGetAt>() noexcept;
template IXInstrPlugin* NewInstruction<CLArrGetAt>() noexcept;

template IXInstrPlugin* NewInstruction<CNArrSetAt>() noexcept;
template IXInstrPlugin* NewInstruction<CBArrSetAt>() noexcept;
template IXInstrPlugin* NewInstruction<CSArrSetAt>() noexcept;
template IXInstrPlugin* NewInstruction<CPArrSetAt>() noexcept;
template IXInstrPlugin* NewInstruction<CLArrSetAt>() noexcept;

template IXInstrPlugin* NewInstruction<CNArrSize>() noexcept;
template IXInstrPlugin* NewInstruction<CBArrSize>() noexcept;
template IXInstrPlugin* NewInstruction<CSArrSize>() noexcept;
template IXInstrPlugin* NewInstruction<CPArrSize>() noexcept;
template IXInstrPlugin* NewInstruction<CLArrSize>() noexcept;

}  // namespace formula
