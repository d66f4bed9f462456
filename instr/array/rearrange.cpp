// Copying, inserting, filling, reversing and sorting number arrays.

#include <algorithm>

#include "algorithm/kernels.h"
#include "algorithm/sort.h"
#include "plugin/instruction.h"

namespace formula {

/// A part of the range beyond the end is dropped or, with "wrap around", set from position 0 on;
/// an index beyond the end leaves the whole range to that.
struct CNArrSetRange final : Instruction<CNArrSetRange> {
  static constexpr Definition kDefinition{
      .category = "Array: Number",
      .name = "SetRange",
      .identifier = "_Nuv_Array_CNArrSetRange_",
      .help = 460258,
      .description = "Set range of elements in array to a constant value",
      .inputs = {Numbers("array", "Input array"),
                 Number("index", 0.0, "Starting index of elements to change"),
                 Number("number", 1.0, "Number of array elements to change (range)"),
                 Number("value", 0.0, "New value for 'count' array elements starting at 'index'"),
                 Boolean("wrap around", false,
                         "If true, the range can go off the end of array and wrap around to the "
                         "start of the array")},
      .results = {Numbers("array with range set")},
  };
  static Status Run(Call& call, const CNuvDoubleVector& array, Truncated index, Truncated number,
                    double value, bool wrap) {
    CNuvDoubleVector& result = call.NumbersResult(0);
    result.Resize(array.Size());
    double* out = result.GetStorage();
    const double* in = array.GetStorage();
    if (out != in) std::copy_n(in, array.Size(), out);

    const std::int64_t count = number;
    if (index < 0 || count < 1) return Status::kSuccess;
    const auto size = static_cast<std::int64_t>(array.Size());
    if (wrap && count >= size) {
      kKernels->fill(out, array.Size(), value);
      return Status::kSuccess;
    }
    const std::int64_t fitting = std::clamp(size - index, std::int64_t{0}, count);
    if (fitting > 0) kKernels->fill(out + index, static_cast<std::size_t>(fitting), value);
    if (wrap) kKernels->fill(out, static_cast<std::size_t>(count - fitting), value);
    return Status::kSuccess;
  }
};

struct CNArrReverse final : Instruction<CNArrReverse> {
  static constexpr Definition kDefinition{
      .category = "Array: Number",
      .name = "Reverse",
      .identifier = "_Nuv_Array_CNArrReverse_",
      .help = 460259,
      .description = "Reverse values in array",
      .inputs = {Numbers("input array", "Input array")},
      .results = {Numbers("reversed array")},
  };
  static Status Run(Call& call, const CNuvDoubleVector& in) {
    CNuvDoubleVector& out = call.NumbersResult(0);
    out.Resize(in.Size());
    if (&out == &in) {
      std::reverse(out.GetStorage(), out.GetStorage() + out.Size());
    } else {
      kKernels->reverse(out.GetStorage(), in.GetStorage(), out.Size());
    }
    return Status::kSuccess;
  }
};

struct CNArrSort final : Instruction<CNArrSort> {
  static constexpr Definition kDefinition{
      .category = "Array: Number",
      .name = "Sort",
      .identifier = "_Nuv_Array_CNArrSort_",
      .help = 460204,
      .description = "Sorts the number array ascending(default) or descending.",
      .inputs = {Numbers("arr", "input array"),
                 Boolean("descending", false, "Sorts descending when true")},
      .results = {Numbers("new array")},
  };
  static Status Run(Call& call, const CNuvDoubleVector& in, bool descending) {
    CNuvDoubleVector& out = call.NumbersResult(0);
    out.Resize(in.Size());
    SortNumbers(out.GetStorage(), in.GetStorage(), out.Size(), descending);
    return Status::kSuccess;
  }
};

/// Kept: the identifier has no category word; saved programs find it by this one.
struct CNArrCopyArray final : Instruction<CNArrCopyArray> {
  static constexpr Definition kDefinition{
      .category = "Array: Number",
      .name = "CopyArray",
      .identifier = "_CNArrCopyArray_",
      .help = 460276,
      .description = "Copy all or part of an input array to the output array",
      .inputs = {Numbers("array", "Input array"),
                 Number("index", 0.0, "Copy input starting at this array index"),
                 Number("number", -1.0, "Number of input array values to copy. -1 to copy all")},
      .results = {Numbers("new array", "Copy of all or part of 'array'")},
  };
  static Status Run(Call& call, const CNuvDoubleVector& in, Truncated index, Truncated number) {
    CNuvDoubleVector& out = call.NumbersResult(0);
    const std::int64_t left = static_cast<std::int64_t>(in.Size()) - index;
    if (index < 0 || left < 1) {
      out.Resize(0);
      return Status::kSuccess;
    }
    const std::int64_t count = number < 0 ? left : std::min<std::int64_t>(number, left);
    // A result that is the input shrinks only once its elements are in place.
    if (&out != &in) out.Resize(static_cast<std::size_t>(count));
    std::copy_n(in.GetStorage() + index, count, out.GetStorage());
    out.Resize(static_cast<std::size_t>(count));
    return Status::kSuccess;
  }
};

/// Kept: the identifier has no category word; saved programs find it by this one.
struct CNArrInsertArray final : Instruction<CNArrInsertArray> {
  static constexpr Definition kDefinition{
      .category = "Array: Number",
      .name = "InsertArray",
      .identifier = "_CNArrInsertArray_",
      .help = 460279,
      .description = "Insert one array into another and output the resulting array",
      .inputs = {Numbers("insert array", "Array to insert"),
                 Numbers("into array", "Input array to insert into"),
                 Number("at index", 0.0, "Start inserting values at this 'into array' index")},
      .results = {Numbers("new array", "'into array' with 'insert array' inserted into it")},
  };
  static Status Run(Call& call, const CNuvDoubleVector& insert, const CNuvDoubleVector& into,
                    Truncated at) {
    CNuvDoubleVector& out = call.NumbersResult(0);
    if (&out == &insert || &out == &into) {
      const CNuvDoubleVector copy(out);
      Insert(out, &out == &insert ? copy : insert, &out == &into ? copy : into, at);
    } else {
      Insert(out, insert, into, at);
    }
    return Status::kSuccess;
  }

 private:
  static void Insert(CNuvDoubleVector& out, const CNuvDoubleVector& insert,
                     const CNuvDoubleVector& into, std::int64_t at) {
    out.Resize(insert.Size() + into.Size());
    const double* from = into.GetStorage();
    const auto before = std::clamp(at, std::int64_t{0}, static_cast<std::int64_t>(into.Size()));
    double* to = std::copy_n(from, before, out.GetStorage());
    to = std::copy_n(insert.GetStorage(), insert.Size(), to);
    std::copy_n(from + before, static_cast<std::int64_t>(into.Size()) - before, to);
  }
};

template struct Instructions<CNArrSetRange, CNArrReverse, CNArrSort, CNArrCopyArray,
                             CNArrInsertArray>;

}  // namespace formula
