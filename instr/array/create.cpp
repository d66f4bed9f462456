// Arrays made from nothing but values, and values put at the end of an array.

#include <algorithm>

#include "instr/array/traits.h"
#include "instr/array/write.h"
#include "plugin/instruction.h"

namespace formula {
namespace {

template <class I, class E>
struct Append : Instruction<I> {
  static constexpr Definition Row(const char* name, const char* identifier, std::uint32_t help) {
    return {.category = E::kCategory,
            .name = name,
            .identifier = identifier,
            .help = help,
            .description = "Appends the specified elements to the end of the array.",
            .repeatable = true,
            .inputs = {E::Array("arr"), E::kValue},
            .results = {E::Array("new array")}};
  }
  static Status Run(Call& call) {
    return Write<E>(call, All(E::Input(call, 0)), GivenValues<E>(call, 1));
  }
};

/// Kept: a negative count appends nothing, while "InsertRep" and "CreateRep" fail.
template <class I, class E>
struct AppendRep : Instruction<I> {
  static constexpr Definition Row(const char* name, const char* identifier, std::uint32_t help) {
    return {.category = E::kCategory,
            .name = name,
            .identifier = identifier,
            .help = help,
            .description = "Appends n times the specified value at the end of the array.",
            .inputs = {E::Array("arr"), Number("elem count", 0.0), E::kValue},
            .results = {E::Array("new array")}};
  }
  static Status Run(Call& call) {
    const auto count = static_cast<std::size_t>(std::max(call.Truncated(1), 0));
    return Write<E>(call, All(E::Input(call, 0)), Copies{count, E::Value(call, 2)});
  }
};

/// Kept: elements that the result already holds keep their values; only added ones are default.
template <class I, class E>
struct Create : Instruction<I> {
  static constexpr Definition Row(const char* name, const char* identifier, std::uint32_t help,
                                  const char* description) {
    return {.category = E::kCategory,
            .name = name,
            .identifier = identifier,
            .help = help,
            .description = description,
            .inputs = {Number("elem count", 0.0)},
            .results = {E::Array("new array")}};
  }
  static Status Run(Call& call) {
    const std::int32_t count = call.Truncated(0);
    if (count < 0) return Status::kFailure;
    call.ArrayResult<typename E::Vector>(0).Resize(static_cast<std::size_t>(count));
    return Status::kSuccess;
  }
};

template <class I, class E>
struct CreateInf : Instruction<I> {
  static constexpr Definition Row(const char* name, const char* identifier, std::uint32_t help) {
    return {.category = E::kCategory,
            .name = name,
            .identifier = identifier,
            .help = help,
            .description = "Creates a new array from the values passed in.",
            .repeatable = true,
            .inputs = {E::kValue},
            .results = {E::Array("new array")}};
  }
  static Status Run(Call& call) { return Write<E>(call, GivenValues<E>(call, 0)); }
};

template <class I, class E>
struct CreateRep : Instruction<I> {
  static constexpr Definition Row(const char* name, const char* identifier, std::uint32_t help) {
    return {.category = E::kCategory,
            .name = name,
            .identifier = identifier,
            .help = help,
            .description =
                "Creates a new array of n elements, all initialized  to the specified value.",
            .inputs = {Number("elem count", 0.0), E::kValue},
            .results = {E::Array("new array")}};
  }
  static Status Run(Call& call) {
    const std::int32_t count = call.Truncated(0);
    const Copies copies{static_cast<std::size_t>(std::max(count, 0)), E::Value(call, 1)};
    EmptiedResult<E> result(call);
    if (count < 0) return Status::kFailure;
    return result.Write(copies);
  }
};

}  // namespace

struct CNArrAppend final : Append<CNArrAppend, NumberElement> {
  static constexpr Definition kDefinition = Row("Append", "_Nuv_Array_CNArrAppend_", 460043);
};
struct CBArrAppend final : Append<CBArrAppend, BooleanElement> {
  static constexpr Definition kDefinition = Row("Append", "_Nuv_Array_CBArrAppend_", 460017);
};
struct CSArrAppend final : Append<CSArrAppend, StringElement> {
  static constexpr Definition kDefinition = Row("Append", "_Nuv_Array_CSArrAppend_", 460070);
};
struct CPArrAppend final : Append<CPArrAppend, PointElement> {
  static constexpr Definition kDefinition = Row("Append", "_Nuv_Array_CPArrAppend_", 460056);
};
struct CLArrAppend final : Append<CLArrAppend, LineElement> {
  static constexpr Definition kDefinition = Row("Append", "_Nuv_Array_CLArrAppend_", 460030);
};

struct CNArrAppendRep final : AppendRep<CNArrAppendRep, NumberElement> {
  static constexpr Definition kDefinition = Row("AppendRep", "_Nuv_Array_CNArrAppendRep_", 460044);
};
struct CBArrAppendRep final : AppendRep<CBArrAppendRep, BooleanElement> {
  static constexpr Definition kDefinition = Row("AppendRep", "_Nuv_Array_CBArrAppendRep_", 460018);
};
struct CSArrAppendRep final : AppendRep<CSArrAppendRep, StringElement> {
  static constexpr Definition kDefinition = Row("AppendRep", "_Nuv_Array_CSArrAppendRep_", 460071);
};
struct CPArrAppendRep final : AppendRep<CPArrAppendRep, PointElement> {
  static constexpr Definition kDefinition = Row("AppendRep", "_Nuv_Array_CPArrAppendRep_", 460057);
};
struct CLArrAppendRep final : AppendRep<CLArrAppendRep, LineElement> {
  static constexpr Definition kDefinition = Row("AppendRep", "_Nuv_Array_CLArrAppendRep_", 460031);
};

struct CNArrCreate final : Create<CNArrCreate, NumberElement> {
  static constexpr Definition kDefinition =
      Row("Create", "_Nuv_Array_CNArrCreate_", 460045,
          "Makes a new array with n elements initialized to zero.");
};
struct CBArrCreate final : Create<CBArrCreate, BooleanElement> {
  static constexpr Definition kDefinition =
      Row("Create", "_Nuv_Array_CBArrCreate_", 460019,
          "Makes a new array with n elements initialized to false.");
};
struct CSArrCreate final : Create<CSArrCreate, StringElement> {
  static constexpr Definition kDefinition =
      Row("Create", "_Nuv_Array_CSArrCreate_", 460072,
          "Makes a new array with n elements initialized to empty string.");
};
struct CPArrCreate final : Create<CPArrCreate, PointElement> {
  static constexpr Definition kDefinition =
      Row("Create", "_Nuv_Array_CPArrCreate_", 460058,
          "Makes a new array with n elements initialized to the default point(0, 0).");
};
struct CLArrCreate final : Create<CLArrCreate, LineElement> {
  static constexpr Definition kDefinition =
      Row("Create", "_Nuv_Array_CLArrCreate_", 460032,
          "Makes a new array with n elements initialized to the default line(0, 0).");
};

struct CNArrCreateInf final : CreateInf<CNArrCreateInf, NumberElement> {
  static constexpr Definition kDefinition = Row("CreateInf", "_Nuv_Array_CNArrCreateInf_", 460046);
};
struct CBArrCreateInf final : CreateInf<CBArrCreateInf, BooleanElement> {
  static constexpr Definition kDefinition = Row("CreateInf", "_Nuv_Array_CBArrCreateInf_", 460020);
};
struct CSArrCreateInf final : CreateInf<CSArrCreateInf, StringElement> {
  static constexpr Definition kDefinition = Row("CreateInf", "_Nuv_Array_CSArrCreateInf_", 460073);
};
struct CPArrCreateInf final : CreateInf<CPArrCreateInf, PointElement> {
  static constexpr Definition kDefinition = Row("CreateInf", "_Nuv_Array_CPArrCreateInf_", 460059);
};
struct CLArrCreateInf final : CreateInf<CLArrCreateInf, LineElement> {
  static constexpr Definition kDefinition = Row("CreateInf", "_Nuv_Array_CLArrCreateInf_", 460033);
};

struct CNArrCreateRep final : CreateRep<CNArrCreateRep, NumberElement> {
  static constexpr Definition kDefinition = Row("CreateRep", "_Nuv_Array_CNArrCreateRep_", 460047);
};
struct CBArrCreateRep final : CreateRep<CBArrCreateRep, BooleanElement> {
  static constexpr Definition kDefinition = Row("CreateRep", "_Nuv_Array_CBArrCreateRep_", 460021);
};
struct CSArrCreateRep final : CreateRep<CSArrCreateRep, StringElement> {
  static constexpr Definition kDefinition = Row("CreateRep", "_Nuv_Array_CSArrCreateRep_", 460074);
};
struct CPArrCreateRep final : CreateRep<CPArrCreateRep, PointElement> {
  static constexpr Definition kDefinition = Row("CreateRep", "_Nuv_Array_CPArrCreateRep_", 460060);
};
struct CLArrCreateRep final : CreateRep<CLArrCreateRep, LineElement> {
  static constexpr Definition kDefinition = Row("CreateRep", "_Nuv_Array_CLArrCreateRep_", 460034);
};

template IXInstrPlugin* NewInstruction<CNArrAppend>() noexcept;
template IXInstrPlugin* NewInstruction<CBArrAppend>() noexcept;
template IXInstrPlugin* NewInstruction<CSArrAppend>() noexcept;
template IXInstrPlugin* NewInstruction<CPArrAppend>() noexcept;
template IXInstrPlugin* NewInstruction<CLArrAppend>() noexcept;

template IXInstrPlugin* NewInstruction<CNArrAppendRep>() noexcept;
template IXInstrPlugin* NewInstruction<CBArrAppendRep>() noexcept;
template IXInstrPlugin* NewInstruction<CSArrAppendRep>() noexcept;
template IXInstrPlugin* NewInstruction<CPArrAppendRep>() noexcept;
template IXInstrPlugin* NewInstruction<CLArrAppendRep>() noexcept;

template IXInstrPlugin* NewInstruction<CNArrCreate>() noexcept;
template IXInstrPlugin* NewInstruction<CBArrCreate>() noexcept;
template IXInstrPlugin* NewInstruction<CSArrCreate>() noexcept;
template IXInstrPlugin* NewInstruction<CPArrCreate>() noexcept;
template IXInstrPlugin* NewInstruction<CLArrCreate>() noexcept;

template IXInstrPlugin* NewInstruction<CNArrCreateInf>() noexcept;
template IXInstrPlugin* NewInstruction<CBArrCreateInf>() noexcept;
template IXInstrPlugin* NewInstruction<CSArrCreateInf>() noexcept;
template IXInstrPlugin* NewInstruction<CPArrCreateInf>() noexcept;
template IXInstrPlugin* NewInstruction<CLArrCreateInf>() noexcept;

template IXInstrPlugin* NewInstruction<CNArrCreateRep>() noexcept;
template IXInstrPlugin* NewInstruction<CBArrCreateRep>() noexcept;
template IXInstrPlugin* NewInstruction<CSArrCreateRep>() noexcept;
template IXInstrPlugin* NewInstruction<CPArrCreateRep>() noexcept;
template IXInstrPlugin* NewInstruction<CLArrCreateRep>() noexcept;

}  // namespace formula
