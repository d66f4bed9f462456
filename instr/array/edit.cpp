// Copies of an array with elements erased or inserted, or of another size.

#include <algorithm>

#include "instr/array/traits.h"
#include "instr/array/write.h"
#include "plugin/instruction.h"

namespace formula {

template <class I, class E, Identifier kIdentifier, std::uint32_t kHelp>
struct ArrErase : Instruction<I> {
  static constexpr Definition kDefinition{
      .category = E::kCategory,
      .name = "Erase",
      .identifier = kIdentifier.text,
      .help = kHelp,
      .description = "Eliminates the element at idx.",
      .inputs = {E::Array("arr"), Number("idx", 0.0)},
      .results = {E::Array("new array")},
  };
  static Status Run(Call& call, const typename E::Vector& array, Truncated index) {
    const auto at = IndexWithin(index, array.Size());
    if (!at) return Status::kFailure;
    return Write<E>(call, Head(array, *at), Tail(array, *at + 1));
  }
};
struct CNArrErase final : ArrErase<CNArrErase, NumberElement, "_Nuv_Array_CNArrErase_", 460037> {};
struct CBArrErase final : ArrErase<CBArrErase, BooleanElement, "_Nuv_Array_CBArrErase_", 460011> {};
struct CSArrErase final : ArrErase<CSArrErase, StringElement, "_Nuv_Array_CSArrErase_", 460064> {};
struct CPArrErase final : ArrErase<CPArrErase, PointElement, "_Nuv_Array_CPArrErase_", 460050> {};
struct CLArrErase final : ArrErase<CLArrErase, LineElement, "_Nuv_Array_CLArrErase_", 460024> {};

template <class I, class E, Identifier kIdentifier, std::uint32_t kHelp>
struct ArrEraseRange : Instruction<I> {
  static constexpr Definition kDefinition{
      .category = E::kCategory,
      .name = "EraseRange",
      .identifier = kIdentifier.text,
      .help = kHelp,
      .description = "Erases the elements starting at idxStart up to and including idxEnd.",
      .inputs = {E::Array("arr"), Number("idxStart", 0.0), Number("idxEnd", 0.0)},
      .results = {E::Array("new array")},
  };
  static Status Run(Call& call, const typename E::Vector& array, Truncated first, Truncated last) {
    const auto start = IndexWithin(first, array.Size());
    const auto end = IndexWithin(last, array.Size());
    if (!start || !end || *start > *end) return Status::kFailure;
    return Write<E>(call, Head(array, *start), Tail(array, *end + 1));
  }
};
struct CNArrEraseRange final
    : ArrEraseRange<CNArrEraseRange, NumberElement, "_Nuv_Array_CNArrEraseRange_", 460038> {};
struct CBArrEraseRange final
    : ArrEraseRange<CBArrEraseRange, BooleanElement, "_Nuv_Array_CBArrEraseRange_", 460012> {};
struct CSArrEraseRange final
    : ArrEraseRange<CSArrEraseRange, StringElement, "_Nuv_Array_CSArrEraseRange_", 460065> {};
struct CPArrEraseRange final
    : ArrEraseRange<CPArrEraseRange, PointElement, "_Nuv_Array_CPArrEraseRange_", 460051> {};
struct CLArrEraseRange final
    : ArrEraseRange<CLArrEraseRange, LineElement, "_Nuv_Array_CLArrEraseRange_", 460025> {};

template <class I, class E, Identifier kIdentifier, std::uint32_t kHelp>
struct ArrResize : Instruction<I> {
  static constexpr Definition kDefinition{
      .category = E::kCategory,
      .name = "Resize",
      .identifier = kIdentifier.text,
      .help = kHelp,
      .description = "Resizes the array to the specified size, erasing/adding elements if needed.",
      .inputs = {E::Array("arr"), Number("new size", 0.0)},
      .results = {E::Array("new array")},
  };
  static Status Run(Call& call, const typename E::Vector& array, Truncated wanted) {
    if (wanted < 0) return Status::kFailure;
    const auto size = static_cast<std::size_t>(wanted);
    const std::size_t kept = std::min(size, array.Size());
    return Write<E>(call, Head(array, kept), Copies{size - kept, typename E::Element()});
  }
};
struct CNArrResize final
    : ArrResize<CNArrResize, NumberElement, "_Nuv_Array_CNArrResize_", 460040> {};
struct CBArrResize final
    : ArrResize<CBArrResize, BooleanElement, "_Nuv_Array_CBArrResize_", 460014> {};
struct CSArrResize final
    : ArrResize<CSArrResize, StringElement, "_Nuv_Array_CSArrResize_", 460067> {};
struct CPArrResize final : ArrResize<CPArrResize, PointElement, "_Nuv_Array_CPArrResize_", 460053> {
};
struct CLArrResize final : ArrResize<CLArrResize, LineElement, "_Nuv_Array_CLArrResize_", 460027> {
};

template <class E>
constexpr const char* kInsertDescription =
    "Inserts a set of values starting at the specified index moving back all the elements after "
    "idx.";
template <>
constexpr const char* kInsertDescription<NumberElement> =
    "Inserts values starting at the specified index (idx), moving back all elements after idx.";

template <class I, class E, Identifier kIdentifier, std::uint32_t kHelp>
struct ArrInsert : Instruction<I> {
  static constexpr Definition kDefinition{
      .category = E::kCategory,
      .name = "Insert",
      .identifier = kIdentifier.text,
      .help = kHelp,
      .description = kInsertDescription<E>,
      .repeatable = true,
      .inputs = {E::Array("arr"), Number("idx", 0.0), E::kValue},
      .results = {E::Array("new array")},
  };
  static Status Run(Call& call, const typename E::Vector& array, Truncated index,
                    Repeated<typename E::Value> values) {
    if (index < 0) return Status::kFailure;
    if (values.Size() == 0) return Write<E>(call, All(array));
    const auto position = static_cast<std::size_t>(index);
    if (position > array.Size()) return Status::kFailure;
    return Write<E>(call, Head(array, position), GivenValues(values), Tail(array, position));
  }
};
struct CNArrInsert final
    : ArrInsert<CNArrInsert, NumberElement, "_Nuv_Array_CNArrInsert_", 460041> {};
struct CBArrInsert final
    : ArrInsert<CBArrInsert, BooleanElement, "_Nuv_Array_CBArrInsert_", 460015> {};
struct CSArrInsert final
    : ArrInsert<CSArrInsert, StringElement, "_Nuv_Array_CSArrInsert_", 460068> {};
struct CPArrInsert final : ArrInsert<CPArrInsert, PointElement, "_Nuv_Array_CPArrInsert_", 460054> {
};
struct CLArrInsert final : ArrInsert<CLArrInsert, LineElement, "_Nuv_Array_CLArrInsert_", 460028> {
};

/// Kept: unlike "Insert" this refuses the end of the array as its position; saved programs rely
/// on the failure.
template <class I, class E, Identifier kIdentifier, std::uint32_t kHelp>
struct ArrInsertRep : Instruction<I> {
  static constexpr Definition kDefinition{
      .category = E::kCategory,
      .name = "InsertRep",
      .identifier = kIdentifier.text,
      .help = kHelp,
      .description = "Inserts n elements starting at idx; all will have the specified value.",
      .inputs = {E::Array("arr"), Number("idx", 0.0), Number("elem count", 0.0), E::kValue},
      .results = {E::Array("new array")},
  };
  static Status Run(Call& call, const typename E::Vector& array, Truncated index, Truncated count,
                    typename E::Value value) {
    const auto at = IndexWithin(index, array.Size());
    if (!at || count < 0) return Status::kFailure;
    return Write<E>(call, Head(array, *at), Copies{static_cast<std::size_t>(count), value},
                    Tail(array, *at));
  }
};
struct CNArrInsertRep final
    : ArrInsertRep<CNArrInsertRep, NumberElement, "_Nuv_Array_CNArrInsertRep_", 460042> {};
struct CBArrInsertRep final
    : ArrInsertRep<CBArrInsertRep, BooleanElement, "_Nuv_Array_CBArrInsertRep_", 460016> {};
struct CSArrInsertRep final
    : ArrInsertRep<CSArrInsertRep, StringElement, "_Nuv_Array_CSArrInsertRep_", 460069> {};
struct CPArrInsertRep final
    : ArrInsertRep<CPArrInsertRep, PointElement, "_Nuv_Array_CPArrInsertRep_", 460055> {};
struct CLArrInsertRep final
    : ArrInsertRep<CLArrInsertRep, LineElement, "_Nuv_Array_CLArrInsertRep_", 460029> {};

template struct Instructions<
    CNArrErase, CBArrErase, CSArrErase, CPArrErase, CLArrErase, CNArrEraseRange, CBArrEraseRange,
    CSArrEraseRange, CPArrEraseRange, CLArrEraseRange, CNArrResize, CBArrResize, CSArrResize,
    CPArrResize, CLArrResize, CNArrInsert, CBArrInsert, CSArrInsert, CPArrInsert, CLArrInsert,
    CNArrInsertRep, CBArrInsertRep, CSArrInsertRep, CPArrInsertRep, CLArrInsertRep>;

}  // namespace formula
