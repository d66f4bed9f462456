// Points and lines as values: constants, from numbers and to numbers.

#include "instr/geometric/family.h"
#include "plugin/instruction.h"

namespace formula {

struct CPointSet final : Instruction<CPointSet> {
  static constexpr Definition kDefinition =
      Geometric("PtSet", "_Nuv_Geometric_PointSet_", 460080, "Sets a point to the specified value",
                {Point("pt")}, {Point("output")});
  static Status Run(Call& call) { return call.Set(0, call.Point(0)); }
};

struct CLineSet final : Instruction<CLineSet> {
  static constexpr Definition kDefinition =
      Geometric("LnSet", "_Nuv_Geometric_LineSet_", 460081, "Sets a line to the specified value",
                {Line("ln")}, {Line("output")});
  static Status Run(Call& call) { return call.Set(0, call.Line(0)); }
};

struct CPtToXY final : Instruction<CPtToXY> {
  static constexpr Definition kDefinition = Geometric(
      "PtToXY", "_Nuv_Geometric_PtToXY_", 460100, "Extracts the values of x and y as two numbers",
      {Point("point")}, {Number("x"), Number("y")});
  static Status Run(Call& call) {
    const CNuvPoint point = call.Point(0);
    call.Set(0, point.x);
    return call.Set(1, point.y);
  }
};

struct CXYToPt final : Instruction<CXYToPt> {
  static constexpr Definition kDefinition = Geometric(
      "XYToPt", "_Nuv_Geometric_XYToPt_", 460101, "Makes a point from the values passed in",
      {Number("x", 0.0), Number("y", 0.0)}, {Point("point")});
  static Status Run(Call& call) { return call.Set(0, CNuvPoint(call.Number(0), call.Number(1))); }
};

struct CLnToAD final : Instruction<CLnToAD> {
  static constexpr Definition kDefinition = Geometric(
      "LnToAD", "_Nuv_Geometric_LnToAD_", 460102, "Extracts the values of a and d as two numbers",
      {Line("line")}, {Number("a"), Number("d")});
  static Status Run(Call& call) {
    const CNuvLine line = call.Line(0);
    call.SetAngle(0, line.a);
    return call.Set(1, line.d);
  }
};

struct CADToLn final : Instruction<CADToLn> {
  static constexpr Definition kDefinition = Geometric(
      "ADToLn", "_Nuv_Geometric_ADToLn_", 460103, "Makes a line from the values passed in",
      {Number("a", 0.0), Number("d", 0.0)}, {Line("line")});
  static Status Run(Call& call) { return call.Set(0, CNuvLine(call.Angle(0), call.Number(1))); }
};

template IXInstrPlugin* NewInstruction<CPointSet>() noexcept;
template IXInstrPlugin* NewInstruction<CLineSet>() noexcept;
template IXInstrPlugin* NewInstruction<CPtToXY>() noexcept;
template IXInstrPlugin* NewInstruction<CXYToPt>() noexcept;
template IXInstrPlugin* NewInstruction<CLnToAD>() noexcept;
template IXInstrPlugin* NewInstruction<CADToLn>() noexcept;

}  // namespace formula
