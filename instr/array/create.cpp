// Arrays made from nothing but values, and values put at the end of an array.

#include <algorithm>

#include "instr/array/traits.h"
#include "instr/array/write.h"
#include "plugin/instruction.h"

namespace formula {

template <class I, class E, Identifier kIdentifier, std::uint32_t kHelp>
struct ArrAppend : Instruction<I> {
  static constexpr Definition kDefinition{
      .category = E::kCategory,
      .name = "Append",
      .identifier = kIdentifier.text,
      .help = kHelp,
      .description = "Appends the specified elements to the end of the array.",
      .repeatable = true,
      .inputs = {E::Array("arr"), E::kValue},
      .results = {E::Array("new array")},
  };
  static Status Run(Call& call, const typename E::Vector& array,
                    Repeated<typename E::Value> values) {
    return Write<E>(call, All(array), GivenValues(values));
  }
};
struct CNArrAppend final
    : ArrAppend<CNArrAppend, NumberElement, "_Nuv_Array_CNArrAppend_", 460043> {};
struct CBArrAppend final
    : ArrAppend<CBArrAppend, BooleanElement, "_Nuv_Array_CBArrAppend_", 460017> {};
struct CSArrAppend final
    : ArrAppend<CSArrAppend, StringElement, "_Nuv_Array_CSArrAppend_", 460070> {};
struct CPArrAppend final : ArrAppend<CPArrAppend, PointElement, "_Nuv_Array_CPArrAppend_", 460056> {
};
struct CLArrAppend final : ArrAppend<CLArrAppend, LineElement, "_Nuv_Array_CLArrAppend_", 460030> {
};

/// Kept: a negative count appends nothing, while "InsertRep" and "CreateRep" fail.
template <class I, class E, Identifier kIdentifier, std::uint32_t kHelp>
struct ArrAppendRep : Instruction<I> {
  static constexpr Definition kDefinition{
      .category = E::kCategory,
      .name = "AppendRep",
      .identifier = kIdentifier.text,
      .help = kHelp,
      .description = "Appends n times the specified value at the end of the array.",
      .inputs = {E::Array("arr"), Number("elem count", 0.0), E::kValue},
      .results = {E::Array("new array")},
  };
  static Status Run(Call& call, const typename E::Vector& array, Truncated count,
                    typename E::Value value) {
    const auto added = static_cast<std::size_t>(std::max<std::int32_t>(count, 0));
    return Write<E>(call, All(array), Copies{added, value});
  }
};
struct CNArrAppendRep final
    : ArrAppendRep<CNArrAppendRep, NumberElement, "_Nuv_Array_CNArrAppendRep_", 460044> {};
struct CBArrAppendRep final
    : ArrAppendRep<CBArrAppendRep, BooleanElement, "_Nuv_Array_CBArrAppendRep_", 460018> {};
struct CSArrAppendRep final
    : ArrAppendRep<CSArrAppendRep, StringElement, "_Nuv_Array_CSArrAppendRep_", 460071> {};
struct CPArrAppendRep final
    : ArrAppendRep<CPArrAppendRep, PointElement, "_Nuv_Array_CPArrAppendRep_", 460057> {};
struct CLArrAppendRep final
    : ArrAppendRep<CLArrAppendRep, LineElement, "_Nuv_Array_CLArrAppendRep_", 460031> {};

/// Kept: elements that the result already holds keep their values; only added ones are default.
template <class I, class E, Identifier kIdentifier, std::uint32_t kHelp>
struct ArrCreate : Instruction<I> {
  static constexpr Definition kDefinition{
      .category = E::kCategory,
      .name = "Create",
      .identifier = kIdentifier.text,
      .help = kHelp,
      .description = E::kCreateDescription,
      .inputs = {Number("elem count", 0.0)},
      .results = {E::Array("new array")},
  };
  static Status Run(Call& call, Truncated count) {
    if (count < 0) return Status::kFailure;
    call.ArrayResult<typename E::Vector>(0).Resize(static_cast<std::size_t>(count));
    return Status::kSuccess;
  }
};
struct CNArrCreate final
    : ArrCreate<CNArrCreate, NumberElement, "_Nuv_Array_CNArrCreate_", 460045> {};
struct CBArrCreate final
    : ArrCreate<CBArrCreate, BooleanElement, "_Nuv_Array_CBArrCreate_", 460019> {};
struct CSArrCreate final
    : ArrCreate<CSArrCreate, StringElement, "_Nuv_Array_CSArrCreate_", 460072> {};
struct CPArrCreate final : ArrCreate<CPArrCreate, PointElement, "_Nuv_Array_CPArrCreate_", 460058> {
};
struct CLArrCreate final : ArrCreate<CLArrCreate, LineElement, "_Nuv_Array_CLArrCreate_", 460032> {
};

template <class I, class E, Identifier kIdentifier, std::uint32_t kHelp>
struct ArrCreateInf : Instruction<I> {
  static constexpr Definition kDefinition{
      .category = E::kCategory,
      .name = "CreateInf",
      .identifier = kIdentifier.text,
      .help = kHelp,
      .description = "Creates a new array from the values passed in.",
      .repeatable = true,
      .inputs = {E::kValue},
      .results = {E::Array("new array")},
  };
  static Status Run(Call& call, Repeated<typename E::Value> values) {
    return Write<E>(call, GivenValues(values));
  }
};
struct CNArrCreateInf final
    : ArrCreateInf<CNArrCreateInf, NumberElement, "_Nuv_Array_CNArrCreateInf_", 460046> {};
struct CBArrCreateInf final
    : ArrCreateInf<CBArrCreateInf, BooleanElement, "_Nuv_Array_CBArrCreateInf_", 460020> {};
struct CSArrCreateInf final
    : ArrCreateInf<CSArrCreateInf, StringElement, "_Nuv_Array_CSArrCreateInf_", 460073> {};
struct CPArrCreateInf final
    : ArrCreateInf<CPArrCreateInf, PointElement, "_Nuv_Array_CPArrCreateInf_", 460059> {};
struct CLArrCreateInf final
    : ArrCreateInf<CLArrCreateInf, LineElement, "_Nuv_Array_CLArrCreateInf_", 460033> {};

template <class I, class E, Identifier kIdentifier, std::uint32_t kHelp>
struct ArrCreateRep : Instruction<I> {
  static constexpr Definition kDefinition{
      .category = E::kCategory,
      .name = "CreateRep",
      .identifier = kIdentifier.text,
      .help = kHelp,
      .description = "Creates a new array of n elements, all initialized  to the specified value.",
      .inputs = {Number("elem count", 0.0), E::kValue},
      .results = {E::Array("new array")},
  };
  static Status Run(Call& call, Truncated count, typename E::Value value) {
    EmptiedResult<E> result(call);
    if (count < 0) return Status::kFailure;
    return result.Write(Copies{static_cast<std::size_t>(count), value});
  }
};
struct CNArrCreateRep final
    : ArrCreateRep<CNArrCreateRep, NumberElement, "_Nuv_Array_CNArrCreateRep_", 460047> {};
struct CBArrCreateRep final
    : ArrCreateRep<CBArrCreateRep, BooleanElement, "_Nuv_Array_CBArrCreateRep_", 460021> {};
struct CSArrCreateRep final
    : ArrCreateRep<CSArrCreateRep, StringElement, "_Nuv_Array_CSArrCreateRep_", 460074> {};
struct CPArrCreateRep final
    : ArrCreateRep<CPArrCreateRep, PointElement, "_Nuv_Array_CPArrCreateRep_", 460060> {};
struct CLArrCreateRep final
    : ArrCreateRep<CLArrCreateRep, LineElement, "_Nuv_Array_CLArrCreateRep_", 460034> {};

template struct Instructions<
    CNArrAppend, CBArrAppend, CSArrAppend, CPArrAppend, CLArrAppend, CNArrAppendRep, CBArrAppendRep,
    CSArrAppendRep, CPArrAppendRep, CLArrAppendRep, CNArrCreate, CBArrCreate, CSArrCreate,
    CPArrCreate, CLArrCreate, CNArrCreateInf, CBArrCreateInf, CSArrCreateInf, CPArrCreateInf,
    CLArrCreateInf, CNArrCreateRep, CBArrCreateRep, CSArrCreateRep, CPArrCreateRep, CLArrCreateRep>;

}  // namespace formula
