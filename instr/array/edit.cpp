// Copies of an array with elements erased or inserted, or of another size.

#include <algorithm>

#include "instr/array/traits.h"
#include "instr/array/write.h"
#include "plugin/instruction.h"

namespace formula {
namespace {

template <class I, class E>
struct Erase : Instruction<I> {
  static constexpr Definition Row(const char* name, const char* identifier, std::uint32_t help) {
    return {.category = E::kCategory,
            .name = name,
            .identifier = identifier,
            .help = help,
            .description = "Eliminates the element at idx.",
            .inputs = {E::Array("arr"), Number("idx", 0.0)},
            .results = {E::Array("new array")}};
  }
  static Status Run(Call& call) {
    const auto& array = E::Input(call, 0);
    const auto index = IndexWithin(call.Truncated(1), array.Size());
    if (!index) return Status::kFailure;
    return Write<E>(call, Head(array, *index), Tail(array, *index + 1));
  }
};

template <class I, class E>
struct EraseRange : Instruction<I> {
  static constexpr Definition Row(const char* name, const char* identifier, std::uint32_t help) {
    return {.category = E::kCategory,
            .name = name,
            .identifier = identifier,
            .help = help,
            .description = "Erases the elements starting at idxStart up to and including idxEnd.",
            .inputs = {E::Array("arr"), Number("idxStart", 0.0), Number("idxEnd", 0.0)},
            .results = {E::Array("new array")}};
  }
  static Status Run(Call& call) {
    const auto& array = E::Input(call, 0);
    const auto start = IndexWithin(call.Truncated(1), array.Size());
    const auto end = IndexWithin(call.Truncated(2), array.Size());
    if (!start || !end || *start > *end) return Status::kFailure;
    return Write<E>(call, Head(array, *start), Tail(array, *end + 1));
  }
};

template <class I, class E>
struct Resize : Instruction<I> {
  static constexpr Definition Row(const char* name, const char* identifier, std::uint32_t help) {
    return {.category = E::kCategory,
            .name = name,
            .identifier = identifier,
            .help = help,
            .description =
                "Resizes the array to the specified size, erasing/adding elements if needed.",
            .inputs = {E::Array("arr"), Number("new size", 0.0)},
            .results = {E::Array("new array")}};
  }
  static Status Run(Call& call) {
    const auto& array = E::Input(call, 0);
    const std::int32_t wanted = call.Truncated(1);
    if (wanted < 0) return Status::kFailure;
    const auto size = static_cast<std::size_t>(wanted);
    const std::size_t kept = std::min(size, array.Size());
    return Write<E>(call, Head(array, kept), Copies{size - kept, typename E::Element()});
  }
};

template <class I, class E>
struct Insert : Instruction<I> {
  static constexpr Definition Row(const char* name, const char* identifier, std::uint32_t help,
                                  const char* description) {
    return {.category = E::kCategory,
            .name = name,
            .identifier = identifier,
            .help = help,
            .description = description,
            .repeatable = true,
            .inputs = {E::Array("arr"), Number("idx", 0.0), E::kValue},
            .results = {E::Array("new array")}};
  }
  static Status Run(Call& call) {
    const auto& array = E::Input(call, 0);
    const std::int32_t index = call.Truncated(1);
    const GivenValues<E> values(call, 2);
    if (index < 0) return Status::kFailure;
    if (values.size == 0) return Write<E>(call, All(array));
    const auto position = static_cast<std::size_t>(index);
    if (position > array.Size()) return Status::kFailure;
    return Write<E>(call, Head(array, position), values, Tail(array, position));
  }
};

/// Kept: unlike "Insert" this refuses the end of the array as its position; saved programs rely
/// on the failure.
template <class I, class E>
struct InsertRep : Instruction<I> {
  static constexpr Definition Row(const char* name, const char* identifier, std::uint32_t help) {
    return {.category = E::kCategory,
            .name = name,
            .identifier = identifier,
            .help = help,
            .description = "Inserts n elements starting at idx; all will have the specified value.",
            .inputs = {E::Array("arr"), Number("idx", 0.0), Number("elem count", 0.0), E::kValue},
            .results = {E::Array("new array")}};
  }
  static Status Run(Call& call) {
    const auto& array = E::Input(call, 0);
    const auto index = IndexWithin(call.Truncated(1), array.Size());
    const std::int32_t count = call.Truncated(2);
    if (!index || count < 0) return Status::kFailure;
    return Write<E>(call, Head(array, *index),
                    Copies{static_cast<std::size_t>(count), E::Value(call, 3)},
                    Tail(array, *index));
  }
};

constexpr const char* kInsert =
    "Inserts a set of values starting at the specified index moving back all the elements after "
    "idx.";

}  // namespace

struct CNArrErase final : Erase<CNArrErase, NumberElement> {
  static constexpr Definition kDefinition = Row("Erase", "_Nuv_Array_CNArrErase_", 460037);
};
struct CBArrErase final : Erase<CBArrErase, BooleanElement> {
  static constexpr Definition kDefinition = Row("Erase", "_Nuv_Array_CBArrErase_", 460011);
};
struct CSArrErase final : Erase<CSArrErase, StringElement> {
  static constexpr Definition kDefinition = Row("Erase", "_Nuv_Array_CSArrErase_", 460064);
};
struct CPArrErase final : Erase<CPArrErase, PointElement> {
  static constexpr Definition kDefinition = Row("Erase", "_Nuv_Array_CPArrErase_", 460050);
};
struct CLArrErase final : Erase<CLArrErase, LineElement> {
  static constexpr Definition kDefinition = Row("Erase", "_Nuv_Array_CLArrErase_", 460024);
};

struct CNArrEraseRange final : EraseRange<CNArrEraseRange, NumberElement> {
  static constexpr Definition kDefinition =
      Row("EraseRange", "_Nuv_Array_CNArrEraseRange_", 460038);
};
struct CBArrEraseRange final : EraseRange<CBArrEraseRange, BooleanElement> {
  static constexpr Definition kDefinition =
      Row("EraseRange", "_Nuv_Array_CBArrEraseRange_", 460012);
};
struct CSArrEraseRange final : EraseRange<CSArrEraseRange, StringElement> {
  static constexpr Definition kDefinition =
      Row("EraseRange", "_Nuv_Array_CSArrEraseRange_", 460065);
};
struct CPArrEraseRange final : EraseRange<CPArrEraseRange, PointElement> {
  static constexpr Definition kDefinition =
      Row("EraseRange", "_Nuv_Array_CPArrEraseRange_", 460051);
};
struct CLArrEraseRange final : EraseRange<CLArrEraseRange, LineElement> {
  static constexpr Definition kDefinition =
      Row("EraseRange", "_Nuv_Array_CLArrEraseRange_", 460025);
};

struct CNArrResize final : Resize<CNArrResize, NumberElement> {
  static constexpr Definition kDefinition = Row("Resize", "_Nuv_Array_CNArrResize_", 460040);
};
struct CBArrResize final : Resize<CBArrResize, BooleanElement> {
  static constexpr Definition kDefinition = Row("Resize", "_Nuv_Array_CBArrResize_", 460014);
};
struct CSArrResize final : Resize<CSArrResize, StringElement> {
  static constexpr Definition kDefinition = Row("Resize", "_Nuv_Array_CSArrResize_", 460067);
};
struct CPArrResize final : Resize<CPArrResize, PointElement> {
  static constexpr Definition kDefinition = Row("Resize", "_Nuv_Array_CPArrResize_", 460053);
};
struct CLArrResize final : Resize<CLArrResize, LineElement> {
  static constexpr Definition kDefinition = Row("Resize", "_Nuv_Array_CLArrResize_", 460027);
};

struct CNArrInsert final : Insert<CNArrInsert, NumberElement> {
  static constexpr Definition kDefinition = Row(
      "Insert", "_Nuv_Array_CNArrInsert_", 460041,
      "Inserts values starting at the specified index (idx), moving back all elements after idx.");
};
struct CBArrInsert final : Insert<CBArrInsert, BooleanElement> {
  static constexpr Definition kDefinition =
      Row("Insert", "_Nuv_Array_CBArrInsert_", 460015, kInsert);
};
struct CSArrInsert final : Insert<CSArrInsert, StringElement> {
  static constexpr Definition kDefinition =
      Row("Insert", "_Nuv_Array_CSArrInsert_", 460068, kInsert);
};
struct CPArrInsert final : Insert<CPArrInsert, PointElement> {
  static constexpr Definition kDefinition =
      Row("Insert", "_Nuv_Array_CPArrInsert_", 460054, kInsert);
};
struct CLArrInsert final : Insert<CLArrInsert, LineElement> {
  static constexpr Definition kDefinition =
      Row("Insert", "_Nuv_Array_CLArrInsert_", 460028, kInsert);
};

struct CNArrInsertRep final : InsertRep<CNArrInsertRep, NumberElement> {
  static constexpr Definition kDefinition = Row("InsertRep", "_Nuv_Array_CNArrInsertRep_", 460042);
};
struct CBArrInsertRep final : InsertRep<CBArrInsertRep, BooleanElement> {
  static constexpr Definition kDefinition = Row("InsertRep", "_Nuv_Array_CBArrInsertRep_", 460016);
};
struct CSArrInsertRep final : InsertRep<CSArrInsertRep, StringElement> {
  static constexpr Definition kDefinition = Row("InsertRep", "_Nuv_Array_CSArrInsertRep_", 460069);
};
struct CPArrInsertRep final : InsertRep<CPArrInsertRep, PointElement> {
  static constexpr Definition kDefinition = Row("InsertRep", "_Nuv_Array_CPArrInsertRep_", 460055);
};
struct CLArrInsertRep final : InsertRep<CLArrInsertRep, LineElement> {
  static constexpr Definition kDefinition = Row("InsertRep", "_Nuv_Array_CLArrInsertRep_", 460029);
};

template IXInstrPlugin* NewInstruction<CNArrErase>() noexcept;
template IXInstrPlugin* NewInstruction<CBArrErase>() noexcept;
template IXInstrPlugin* NewInstruction<CSArrErase>() noexcept;
template IXInstrPlugin* NewInstruction<CPArrErase>() noexcept;
template IXInstrPlugin* NewInstruction<CLArrErase>() noexcept;

template IXInstrPlugin* NewInstruction<CNArrEraseRange>() noexcept;
template IXInstrPlugin* NewInstruction<CBArrEraseRange>() noexcept;
template IXInstrPlugin* NewInstruction<CSArrEraseRange>() noexcept;
template IXInstrPlugin* NewInstruction<CPArrEraseRange>() noexcept;
template IXInstrPlugin* NewInstruction<CLArrEraseRange>() noexcept;

template IXInstrPlugin* NewInstruction<CNArrResize>() noexcept;
template IXInstrPlugin* NewInstruction<CBArrResize>() noexcept;
template IXInstrPlugin* NewInstruction<CSArrResize>() noexcept;
template IXInstrPlugin* NewInstruction<CPArrResize>() noexcept;
template IXInstrPlugin* NewInstruction<CLArrResize>() noexcept;

template IXInstrPlugin* NewInstruction<CNArrInsert>() noexcept;
template IXInstrPlugin* NewInstruction<CBArrInsert>() noexcept;
template IXInstrPlugin* NewInstruction<CSArrInsert>() noexcept;
template IXInstrPlugin* NewInstruction<CPArrInsert>() noexcept;
template IXInstrPlugin* NewInstruction<CLArrInsert>() noexcept;

template IXInstrPlugin* NewInstruction<CNArrInsertRep>() noexcept;
template IXInstrPlugin* NewInstruction<CBArrInsertRep>() noexcept;
template IXInstrPlugin* NewInstruction<CSArrInsertRep>() noexcept;
template IXInstrPlugin* NewInstruction<CPArrInsertRep>() noexcept;
template IXInstrPlugin* NewInstruction<CLArrInsertRep>() noexcept;

}  // namespace formula
