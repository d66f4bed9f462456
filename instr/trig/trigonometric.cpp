// The trigonometric functions and their inverses, in the user's angle unit; conversions between
// degrees and radians; the constants that the host computes with.

#include <cmath>

#include "host/geometry.h"
#include "host/setting.h"
#include "instr/numeric/families.h"
#include "platform/math.h"

namespace formula {
namespace {

/// A function of one number. A member states its row and `Of`.
template <class I>
struct AngleFunction : NumberFunction<I> {
  static constexpr Definition Row(const char* name, const char* identifier, std::uint32_t help,
                                  const char* description, const char* input, const char* result) {
    Definition row = NumberFunction<I>::Row(name, identifier, help, description, result, input);
    row.category = "Trigonometric";
    return row;
  }
};

/// A constant of the host. A member states its row and `Value`.
template <class I>
struct HostConstant : Instruction<I> {
  static constexpr Definition Row(const char* name, const char* identifier, std::uint32_t help,
                                  const char* description, const char* result) {
    return {.category = "Trigonometric",
            .name = name,
            .identifier = identifier,
            .help = help,
            .description = description,
            .results = {Number(result)}};
  }
  static Status Run(Call& call) { return call.Set(0, I::Value()); }
};

}  // namespace

struct CSin final : AngleFunction<CSin> {
  static constexpr Definition kDefinition =
      Row("Sin", "_Nuv_Trigonometric_Sin_", 460174, "Calculates the sine", "angle", "sin");
  static double Of(double angle) { return platform::Sin(CNuvAngleTr::ToRad(angle)); }
};

struct CCos final : AngleFunction<CCos> {
  static constexpr Definition kDefinition =
      Row("Cos", "_Nuv_Trigonometric_Cos_", 460175, "Calculates the cosine", "angle", "cos");
  static double Of(double angle) { return platform::Cos(CNuvAngleTr::ToRad(angle)); }
};

struct CTan final : AngleFunction<CTan> {
  static constexpr Definition kDefinition =
      Row("Tan", "_Nuv_Trigonometric_Tan_", 460176, "Calculates the tangent", "angle", "tan");
  static double Of(double angle) { return platform::Tan(CNuvAngleTr::ToRad(angle)); }
};

struct CArcSin final : AngleFunction<CArcSin> {
  static constexpr Definition kDefinition =
      Row("ArcSin", "_Nuv_Trigonometric_ArcSin_", 460177, "Calculates the arcsine", "sin", "angle");
  static double Of(double sine) { return CNuvAngleTr::ToPrefs(std::asin(sine), true); }
};

struct CArcCos final : AngleFunction<CArcCos> {
  static constexpr Definition kDefinition = Row("ArcCos", "_Nuv_Trigonometric_ArcCos_", 460178,
                                                "Calculates the arccosine", "cos", "angle");
  static double Of(double cosine) { return CNuvAngleTr::ToPrefs(std::acos(cosine), true); }
};

struct CArcTan final : AngleFunction<CArcTan> {
  static constexpr Definition kDefinition = Row("ArcTan", "_Nuv_Trigonometric_ArcTan_", 460179,
                                                "Calculates the arctangent", "tan", "angle");
  static double Of(double tangent) { return CNuvAngleTr::ToPrefs(std::atan(tangent), true); }
};

/// Whatever the preferred unit; the product is formed first.
struct CDeg2Rad final : AngleFunction<CDeg2Rad> {
  static constexpr Definition kDefinition =
      Row("DegToRad", "_Nuv_Trigonometric_Deg2Rad_", 460180,
          "Converts degrees input value to radians", "angle", "radians");
  static double Of(double degrees) { return degrees * CNuvGeometry::Pi / 180.0; }
};

/// Whatever the preferred unit; the product is formed first.
struct CRad2Deg final : AngleFunction<CRad2Deg> {
  static constexpr Definition kDefinition =
      Row("RadToDeg", "_Nuv_Trigonometric_Rad2Deg_", 460181,
          "Converts radians input value to degrees.", "angle", "degrees");
  static double Of(double radians) { return radians * 180.0 / CNuvGeometry::Pi; }
};

/// Kept: the full stop stands inside the parenthesis here and outside it in the two that follow.
struct CGetPi final : HostConstant<CGetPi> {
  static constexpr Definition kDefinition =
      Row("GetPi", "_Nuv_Trigonometric_GetPi_", 460182,
          "Retrieves the value of Pi (as used internally by the application.)", "Pi");
  static double Value() { return CNuvGeometry::Pi; }
};

/// Kept: this identifier and the next have another family word and a "C" before the name; saved
/// programs find them by these.
struct CGetPiDiv2 final : HostConstant<CGetPiDiv2> {
  static constexpr Definition kDefinition =
      Row("GetPiDiv2", "_Nuv_Trigonometry_CGetPiDiv2_", 460183,
          "Retrieves the value of Pi divided by two (as used internally by the application).",
          "PiDiv2");
  static double Value() { return CNuvGeometry::PiDiv2; }
};

struct CGetPiDiv4 final : HostConstant<CGetPiDiv4> {
  static constexpr Definition kDefinition =
      Row("GetPiDiv4", "_Nuv_Trigonometry_CGetPiDiv4_", 460184,
          "Retrieves the value of Pi divided by four (as used internally by the application).",
          "PiDiv4");
  static double Value() { return CNuvGeometry::PiDiv4; }
};

template IXInstrPlugin* NewInstruction<CSin>() noexcept;
template IXInstrPlugin* NewInstruction<CCos>() noexcept;
template IXInstrPlugin* NewInstruction<CTan>() noexcept;
template IXInstrPlugin* NewInstruction<CArcSin>() noexcept;
template IXInstrPlugin* NewInstruction<CArcCos>() noexcept;
template IXInstrPlugin* NewInstruction<CArcTan>() noexcept;
template IXInstrPlugin* NewInstruction<CDeg2Rad>() noexcept;
template IXInstrPlugin* NewInstruction<CRad2Deg>() noexcept;
template IXInstrPlugin* NewInstruction<CGetPi>() noexcept;
template IXInstrPlugin* NewInstruction<CGetPiDiv2>() noexcept;
template IXInstrPlugin* NewInstruction<CGetPiDiv4>() noexcept;

}  // namespace formula
