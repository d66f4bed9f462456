// The trigonometric functions and their inverses, in the user's angle unit; conversions between
// degrees and radians; the constants that the host computes with.

#include <cmath>

#include "host/geometry.h"
#include "instr/numeric/families.h"
#include "platform/math.h"

namespace formula {
namespace {

/// What tells a constant of the host from its sisters.
struct ConstantRow {
  const char* name;
  const char* identifier;
  std::uint32_t help;
  const char* description;
  const char* result;
};

constexpr Definition HostConstant(const ConstantRow& row) {
  return {.category = "Trigonometric",
          .name = row.name,
          .identifier = row.identifier,
          .help = row.help,
          .description = row.description,
          .results = {Number(row.result)}};
}

}  // namespace

struct CSin final : Instruction<CSin> {
  static constexpr Definition kDefinition = NumberFunction({
      .category = "Trigonometric",
      .name = "Sin",
      .identifier = "_Nuv_Trigonometric_Sin_",
      .help = 460174,
      .description = "Calculates the sine",
      .input = "angle",
      .result = "sin",
  });
  static Status Run(Call& call, Radians angle) { return call.Set(0, platform::Sin(angle)); }
};

struct CCos final : Instruction<CCos> {
  static constexpr Definition kDefinition = NumberFunction({
      .category = "Trigonometric",
      .name = "Cos",
      .identifier = "_Nuv_Trigonometric_Cos_",
      .help = 460175,
      .description = "Calculates the cosine",
      .input = "angle",
      .result = "cos",
  });
  static Status Run(Call& call, Radians angle) { return call.Set(0, platform::Cos(angle)); }
};

struct CTan final : Instruction<CTan> {
  static constexpr Definition kDefinition = NumberFunction({
      .category = "Trigonometric",
      .name = "Tan",
      .identifier = "_Nuv_Trigonometric_Tan_",
      .help = 460176,
      .description = "Calculates the tangent",
      .input = "angle",
      .result = "tan",
  });
  static Status Run(Call& call, Radians angle) { return call.Set(0, platform::Tan(angle)); }
};

struct CArcSin final : Instruction<CArcSin> {
  static constexpr Definition kDefinition = NumberFunction({
      .category = "Trigonometric",
      .name = "ArcSin",
      .identifier = "_Nuv_Trigonometric_ArcSin_",
      .help = 460177,
      .description = "Calculates the arcsine",
      .input = "sin",
      .result = "angle",
  });
  static Status Run(Call& call, double sine) { return call.SetAngle(0, std::asin(sine)); }
};

struct CArcCos final : Instruction<CArcCos> {
  static constexpr Definition kDefinition = NumberFunction({
      .category = "Trigonometric",
      .name = "ArcCos",
      .identifier = "_Nuv_Trigonometric_ArcCos_",
      .help = 460178,
      .description = "Calculates the arccosine",
      .input = "cos",
      .result = "angle",
  });
  static Status Run(Call& call, double cosine) { return call.SetAngle(0, std::acos(cosine)); }
};

struct CArcTan final : Instruction<CArcTan> {
  static constexpr Definition kDefinition = NumberFunction({
      .category = "Trigonometric",
      .name = "ArcTan",
      .identifier = "_Nuv_Trigonometric_ArcTan_",
      .help = 460179,
      .description = "Calculates the arctangent",
      .input = "tan",
      .result = "angle",
  });
  static Status Run(Call& call, double tangent) { return call.SetAngle(0, std::atan(tangent)); }
};

/// Whatever the preferred unit; the product is formed first.
struct CDeg2Rad final : Instruction<CDeg2Rad> {
  static constexpr Definition kDefinition = NumberFunction({
      .category = "Trigonometric",
      .name = "DegToRad",
      .identifier = "_Nuv_Trigonometric_Deg2Rad_",
      .help = 460180,
      .description = "Converts degrees input value to radians",
      .input = "angle",
      .result = "radians",
  });
  static Status Run(Call& call, double degrees) {
    return call.Set(0, degrees * CNuvGeometry::Pi / 180.0);
  }
};

/// Whatever the preferred unit; the product is formed first.
struct CRad2Deg final : Instruction<CRad2Deg> {
  static constexpr Definition kDefinition = NumberFunction({
      .category = "Trigonometric",
      .name = "RadToDeg",
      .identifier = "_Nuv_Trigonometric_Rad2Deg_",
      .help = 460181,
      .description = "Converts radians input value to degrees.",
      .input = "angle",
      .result = "degrees",
  });
  static Status Run(Call& call, double radians) {
    return call.Set(0, radians * 180.0 / CNuvGeometry::Pi);
  }
};

struct CGetPi final : Instruction<CGetPi> {
  static constexpr Definition kDefinition = HostConstant({
      .name = "GetPi",
      .identifier = "_Nuv_Trigonometric_GetPi_",
      .help = 460182,
      .description = "Retrieves the value of Pi (as used internally by the application.)",
      .result = "Pi",
  });
  static Status Run(Call& call) { return call.Set(0, CNuvGeometry::Pi); }
};

/// Kept: this identifier and the next have another family word and a "C" before the name; saved
/// programs find them by these.
struct CGetPiDiv2 final : Instruction<CGetPiDiv2> {
  static constexpr Definition kDefinition = HostConstant({
      .name = "GetPiDiv2",
      .identifier = "_Nuv_Trigonometry_CGetPiDiv2_",
      .help = 460183,
      .description =
          "Retrieves the value of Pi divided by two (as used internally by the application).",
      .result = "PiDiv2",
  });
  static Status Run(Call& call) { return call.Set(0, CNuvGeometry::PiDiv2); }
};

struct CGetPiDiv4 final : Instruction<CGetPiDiv4> {
  static constexpr Definition kDefinition = HostConstant({
      .name = "GetPiDiv4",
      .identifier = "_Nuv_Trigonometry_CGetPiDiv4_",
      .help = 460184,
      .description =
          "Retrieves the value of Pi divided by four (as used internally by the application).",
      .result = "PiDiv4",
  });
  static Status Run(Call& call) { return call.Set(0, CNuvGeometry::PiDiv4); }
};

template struct Instructions<CSin, CCos, CTan, CArcSin, CArcCos, CArcTan, CDeg2Rad, CRad2Deg,
                             CGetPi, CGetPiDiv2, CGetPiDiv4>;

}  // namespace formula
