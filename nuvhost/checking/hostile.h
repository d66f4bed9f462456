// Hostile calls: the ways in which an instruction is called to see whether it keeps its head.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "reference_host/services/call_context.h"

namespace nuvhost::check {

/// One call: in words, "NaN in every number", and what it does to a context that holds defaults.
struct Case {
  std::string how;
  std::function<void(CallContext&)> prepare;
};
using Cases = std::vector<Case>;

/// An ordinary value of the type, other than its empty one.
CNuvObject Sample(NUV_OBJ_TYPE type);

// The calls of each kind that suit a descriptor; none where it has no value of the kind.
Cases DefaultCases(const DescriptorRecord& descriptor);
/// Every hostile number in the numbers, points and lines, in all at once and in one at a time.
Cases NumberCases(const DescriptorRecord& descriptor);
Cases TextCases(const DescriptorRecord& descriptor);
/// Arrays that are empty, short, long, of unequal lengths, and full of hostile elements.
Cases ArrayCases(const DescriptorRecord& descriptor);
/// Values of every type but the declared one, in all inputs and in one at a time.
Cases WrongTypeCases(const DescriptorRecord& descriptor);
/// Results that hold a value of every type but the declared one beforehand.
Cases ResultCases(const DescriptorRecord& descriptor);
/// No repeated input, and very many.
Cases CountCases(const DescriptorRecord& descriptor);
/// Every choice, both ends of a range, both booleans.
Cases ConstantCases(const DescriptorRecord& descriptor);

}  // namespace nuvhost::check
