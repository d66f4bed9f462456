// Points and lines as values: constants, from numbers and to numbers.

#include "plugin/instruction.h"

namespace formula {

struct CPointSet final : Instruction<CPointSet> {
  static constexpr Definition kDefinition{
      .category = "Geometric",
      .name = "PtSet",
      .identifier = "_Nuv_Geometric_PointSet_",
      .help = 460080,
      .description = "Sets a point to the specified value",
      .inputs = {Point("pt")},
      .results = {Point("output")},
  };
  static Status Run(Call& call, const CNuvObject& value) { return call.Set(0, value); }
};

struct CLineSet final : Instruction<CLineSet> {
  static constexpr Definition kDefinition{
      .category = "Geometric",
      .name = "LnSet",
      .identifier = "_Nuv_Geometric_LineSet_",
      .help = 460081,
      .description = "Sets a line to the specified value",
      .inputs = {Line("ln")},
      .results = {Line("output")},
  };
  static Status Run(Call& call, const CNuvObject& value) { return call.Set(0, value); }
};

struct CPtToXY final : Instruction<CPtToXY> {
  static constexpr Definition kDefinition{
      .category = "Geometric",
      .name = "PtToXY",
      .identifier = "_Nuv_Geometric_PtToXY_",
      .help = 460100,
      .description = "Extracts the values of x and y as two numbers",
      .inputs = {Point("point")},
      .results = {Number("x"), Number("y")},
  };
  static Status Run(Call& call, CNuvPoint point) {
    call.Set(0, point.x);
    return call.Set(1, point.y);
  }
};

struct CXYToPt final : Instruction<CXYToPt> {
  static constexpr Definition kDefinition{
      .category = "Geometric",
      .name = "XYToPt",
      .identifier = "_Nuv_Geometric_XYToPt_",
      .help = 460101,
      .description = "Makes a point from the values passed in",
      .inputs = {Number("x", 0.0), Number("y", 0.0)},
      .results = {Point("point")},
  };
  static Status Run(Call& call, double x, double y) { return call.Set(0, CNuvPoint(x, y)); }
};

struct CLnToAD final : Instruction<CLnToAD> {
  static constexpr Definition kDefinition{
      .category = "Geometric",
      .name = "LnToAD",
      .identifier = "_Nuv_Geometric_LnToAD_",
      .help = 460102,
      .description = "Extracts the values of a and d as two numbers",
      .inputs = {Line("line")},
      .results = {Number("a"), Number("d")},
  };
  static Status Run(Call& call, CNuvLine line) {
    call.SetAngle(0, line.a);
    return call.Set(1, line.d);
  }
};

struct CADToLn final : Instruction<CADToLn> {
  static constexpr Definition kDefinition{
      .category = "Geometric",
      .name = "ADToLn",
      .identifier = "_Nuv_Geometric_ADToLn_",
      .help = 460103,
      .description = "Makes a line from the values passed in",
      .inputs = {Number("a", 0.0), Number("d", 0.0)},
      .results = {Line("line")},
  };
  static Status Run(Call& call, Radians a, double d) { return call.Set(0, CNuvLine(a, d)); }
};

template struct Instructions<CPointSet, CLineSet, CPtToXY, CXYToPt, CLnToAD, CADToLn>;

}  // namespace formula
