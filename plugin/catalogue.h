// The catalogue: every instruction class, in the order that the host shows and stores.
//
// The position in this list is the instruction's index in GetPlugins(). Naming a class here
// declares it; its source defines it and instantiates NewInstruction for it. A class that is
// defined and not listed, or listed and not defined, does not build.
#pragma once

#include <cstddef>
#include <type_traits>

#include "plugin/instr_plugin.h"

namespace formula {

template <class... Instructions>
struct InstructionList {
  static constexpr std::size_t kSize = sizeof...(Instructions);
  template <class I>
  static constexpr bool kContains = (std::is_same_v<I, Instructions> || ...);
};

using Catalogue = InstructionList<
    // Numeric
    struct CNumericSet, struct CAdd, struct CIncrement, struct CSubtract, struct CDecrement,
    struct CMultiply, struct CDivide, struct CMax2, struct CMin2, struct CPow,
    struct CIntegerDivide, struct CRemainder, struct CAbs, struct CNegate, struct CCopy,
    struct CRound, struct CSquare, struct CSqrt, struct CTruncate, struct CFractional,
    struct CGreater, struct CGreaterOrEqual, struct CLess, struct CLessOrEqual, struct CEqual,
    struct CNotEqual,
    // Statistics
    struct CMin, struct CMax, struct CMean, struct CVariance, struct CCp, struct CCpk,
    struct CSumArr, struct CMinArr, struct CMaxArr, struct CMeanArr, struct CVarianceArr,
    struct CCpArr, struct CCpkArr,
    // Boolean
    struct CBooleanSet, struct CNot, struct CAnd, struct COr, struct CXor,
    // Trigonometric
    struct CSin, struct CCos, struct CTan, struct CArcSin, struct CArcCos, struct CArcTan,
    struct CDeg2Rad, struct CRad2Deg, struct CGetPi, struct CGetPiDiv2, struct CGetPiDiv4,
    // String
    struct CStringSet, struct CPrintfNum, struct CPrintfNumInf, struct CChar2Num, struct CNum2Char,
    struct CAddStr, struct CCreateStrInf, struct CCompStr, struct CCopyStr, struct CLeftStr,
    struct CRightStr, struct CMidStr, struct CTrimStr, struct CPackStr, struct CFindStr,
    struct CFindStrReverse, struct CFindStrNth, struct CReplaceStr, struct CGetAt, struct CSetAtStr,
    struct CLenStr, struct CInsertAtStr, struct CNumberToString, struct CStringToNumber,
    struct CWordLengthStr>;

static_assert(Catalogue::kSize == 80);

/// A new object of an instruction class; null when memory is short. Each source instantiates it
/// for the classes it defines.
template <class I>
IXInstrPlugin* NewInstruction() noexcept;

}  // namespace formula
