// The catalogue: every instruction class, in the order that the host shows and stores.
//
// The position in this list is the instruction's index in GetPlugins(). Naming a class here
// declares it; its source defines it and lists it in an instantiation of Instructions. A class that
// is defined and not listed, or listed and not defined, does not build.
#pragma once

#include <cstddef>
#include <type_traits>

#include "host/instr_plugin.h"

namespace formula {

template <class... Instructions>
struct InstructionList {
  static constexpr std::size_t kSize = sizeof...(Instructions);
  template <class I>
  static constexpr bool kContains = [] {
    for (const bool same : {std::is_same_v<I, Instructions>...}) {
      if (same) return true;
    }
    return false;
  }();
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
    // Geometric
    struct CPointSet, struct CLineSet, struct CPt2PtDist, struct CPtToPtsDist, struct CPtsToPtsDist,
    struct CPt2PtDistPitch, struct CPt2BestCircle, struct CPt2BestCircleInf, struct CPt2BestAngle,
    struct CPt2BestLn, struct CPt2BestLnInf, struct CPt2BestLnMaxOut, struct CPt2LnDist,
    struct CPts2LnDist, struct CPts2LnDistInf, struct CPtRotate, struct CAngleBis, struct CLnBis,
    struct CLn2LnDist, struct CLnPerp, struct CLnPara, struct CLnInters, struct CLnToLnAngle,
    struct CCircleLineIntersect, struct C2PtsToLn, struct CLnNorm, struct CNormAngle,
    struct CCircInTriangle, struct CCircBndBox, struct CPtToXY, struct CXYToPt, struct CLnToAD,
    struct CADToLn, struct CMakeAnchor, struct CMiddlePt, struct CPtAvg, struct CPtAvgInf,
    struct CRakePt2BestLn, struct CPtsToGrid,
    // String
    struct CStringSet, struct CPrintfNum, struct CPrintfNumInf, struct CChar2Num, struct CNum2Char,
    struct CAddStr, struct CCreateStrInf, struct CCompStr, struct CCopyStr, struct CLeftStr,
    struct CRightStr, struct CMidStr, struct CTrimStr, struct CPackStr, struct CFindStr,
    struct CFindStrReverse, struct CFindStrNth, struct CReplaceStr, struct CGetAt, struct CSetAtStr,
    struct CLenStr, struct CInsertAtStr, struct CNumberToString, struct CStringToNumber,
    struct CWordLengthStr,
    // System
    struct CGetMiliSecCount, struct CGetTimeDiff, struct CGetDate, struct CGetTime,
    struct CGetDateFormat, struct CGetTimeFormat, struct CSleep, struct CGetEnvVars,
    struct CGetEnvNames, struct CGetEnv, struct CSetEnv, struct CFileExists, struct CSystemBeep,
    struct CSystemRandom, struct CSystemRandomSeed, struct CSystemMsgBox, struct CSystemMsgBeep,
    struct CSystemGenerateProgramEvent, struct CSystemStopwatchStart, struct CSystemStopwatchStop,
    struct CFileDelete, struct CFolderCreate, struct CFolderDelete, struct CFileCopy,
    struct CFileMove, struct CDiskSpace, struct CLog,
    // Number arrays
    struct CNArrGetAt, struct CNArrSetAt, struct CNArrErase, struct CNArrEraseRange,
    struct CNArrSize, struct CNArrResize, struct CNArrCopyArray, struct CNArrInsert,
    struct CNArrInsertRep, struct CNArrInsertArray, struct CNArrAppend, struct CNArrAppendRep,
    struct CNArrCreate, struct CNArrCreateInf, struct CNArrCreateRep, struct CNArrSort,
    struct CNArrConcatArr, struct CNArrDiff, struct CNArrGetRange, struct CNArrMathAbsolute,
    struct CNArrMathSubtract, struct CNArrMathAdd, struct CNArrMathMultiply, struct CNArrMathSmooth,
    struct CNArrMathCorrelate, struct CNArrMathCorrelateCircular, struct CNArrMathIndexArray,
    struct CNArrMathConstMulAdd, struct CNArrMathMaximum, struct CNArrMathMinimum,
    struct CNArrMathExtrema, struct CNArrSetRange, struct CNArrReverse, struct CNArrMeanAndVar,
    struct CNArrMathThreshold, struct CNArrMathThresholdBand, struct CNArrMathClipLow,
    struct CNArrMathClipHigh,
    // Boolean arrays
    struct CBArrGetAt, struct CBArrSetAt, struct CBArrErase, struct CBArrEraseRange,
    struct CBArrSize, struct CBArrResize, struct CBArrInsert, struct CBArrInsertRep,
    struct CBArrAppend, struct CBArrAppendRep, struct CBArrCreate, struct CBArrCreateInf,
    struct CBArrCreateRep, struct CBArrConcatArr, struct CBArrGetRange,
    // String arrays
    struct CSArrGetAt, struct CSArrSetAt, struct CSArrErase, struct CSArrEraseRange,
    struct CSArrSize, struct CSArrResize, struct CSArrInsert, struct CSArrInsertRep,
    struct CSArrAppend, struct CSArrAppendRep, struct CSArrCreate, struct CSArrCreateInf,
    struct CSArrCreateRep, struct CSArrConcatArr, struct CSArrDiff, struct CSArrGetRange,
    // Point arrays
    struct CPArrGetAt, struct CPArrSetAt, struct CPArrErase, struct CPArrEraseRange,
    struct CPArrSize, struct CPArrResize, struct CPArrInsert, struct CPArrInsertRep,
    struct CPArrAppend, struct CPArrAppendRep, struct CPArrCreate, struct CPArrCreateInf,
    struct CPArrCreateRep, struct CPArrExtrema, struct CPArrConcatArr, struct CPArrDiff,
    struct CPArrCluster1D, struct CPArrGetRange, struct CPArrSort,
    // Line arrays
    struct CLArrGetAt, struct CLArrSetAt, struct CLArrErase, struct CLArrEraseRange,
    struct CLArrSize, struct CLArrResize, struct CLArrInsert, struct CLArrInsertRep,
    struct CLArrAppend, struct CLArrAppendRep, struct CLArrCreate, struct CLArrCreateInf,
    struct CLArrCreateRep, struct CLArrConcatArr, struct CLArrDiff, struct CLArrGetRange,
    // Annotations
    struct CAnnotText, struct CAnnotPoint, struct CAnnotSegment, struct CAnnotLine,
    struct CAnnotCircle, struct CAnnotCirclesFixedRadius, struct CAnnotRect, struct CAnnotPoints,
    struct CAnnotPixels, struct CAnnotPolyline,
    // Keyboard
    struct CNuvKbdTestOneKey, struct CNuvKbdTestOneKeyStr, struct CNuvKbdTestAnyKey>;

static_assert(Catalogue::kSize == 263);

/// A new object of an instruction class; null when memory is short. The source that defines the
/// class defines this, too (instruction.h).
template <class I>
IXInstrPlugin* NewInstruction() noexcept;

}  // namespace formula
