// Numeric and Boolean instructions: the rows where an instruction could go wrong.

#include "tests/instr/table.h"

namespace {

TEST(Instructions, Rows) {
  const InstructionRow rows[] = {
      {"_Nuv_Numeric_Set_", "[-0.0]", "[-0.0]"},
      {"_Nuv_Numeric_AddNumbers_", "[]", "[0]"},
      {"_Nuv_Numeric_AddNumbers_", "[-0.0]", "[0]"},
      {"_Nuv_Numeric_AddNumbers_", "[1e16, 1, 1, -1e16]", "[0]"},  // in their order
      {"_Nuv_Numeric_SubtractNumbers_", "[10, 3, 2]", "[5]"},
      {"_Nuv_Numeric_SubtractNumbers_", "[-0.0]", "[-0.0]"},
      {"_Nuv_Numeric_MultiplyNumbers_", "[]", "[1]"},
      {"_Nuv_Numeric_MultiplyNumbers_", "[1e200, 1e200, 1e-300]", R"(["Infinity"])"},
      {"_Nuv_Numeric_Increment_", "[-0.5]", "[0.5]"},
      {"_Nuv_Numeric_Decrement_", "[1e-30]", "[-1]"},
      {"_Nuv_Numeric_CAbs_", "[-0.0]", "[0]"},
      {"_Nuv_Numeric_CNegate_", "[0]", "[-0.0]"},
      {"_Nuv_Numeric_CCopy_", R"(["-Infinity"])", R"(["-Infinity"])"},
      {"_Nuv_Numeric_CSquare_", "[-3]", "[9]"},
      {"_Nuv_Numeric_CSqrt_", "[2]", "[1.4142135623730951]"},
      {"_Nuv_Numeric_CSqrt_", "[-0.0]", "[-0.0]"},
      {"_Nuv_Numeric_CSqrt_", R"(["NaN"])", R"(["NaN"])"},
      Fails("_Nuv_Numeric_CSqrt_", "[-1e-300]"),
      {"_Nuv_Numeric_Min2Numbers_", "[1, 2]", "[1]"},
      {"_Nuv_Numeric_Min2Numbers_", "[-0.0, 0]", "[0]"},  // a tie gives the second
      {"_Nuv_Numeric_Min2Numbers_", R"(["NaN", 2])", "[2]"},
      {"_Nuv_Numeric_Min2Numbers_", R"([2, "NaN"])", R"(["NaN"])"},
      {"_Nuv_Numeric_Max2Numbers_", "[1, 2]", "[2]"},
      {"_Nuv_Numeric_Max2Numbers_", "[0, -0.0]", "[-0.0]"},
      {"_Nuv_Numeric_Max2Numbers_", R"(["NaN", 2])", "[2]"},
      {"_Nuv_Numeric_PowNumbers_", "[3]", "[3]"},
      {"_Nuv_Numeric_PowNumbers_", "[0, 0]", "[1]"},
      {"_Nuv_Numeric_PowNumbers_", "[-8, 0.5]", R"(["NaN"])"},
      {"_Nuv_Numeric_PowNumbers_", "[-2, 3]", "[-8]"},
      {"_Nuv_Numeric_PowNumbers_", R"([-2, "-Infinity"])", "[0]"},
      {"_Nuv_Numeric_PowNumbers_", "[0, -1]", R"(["Infinity"])"},
      {"_Nuv_Numeric_PowNumbers_", R"(["NaN", 0])", "[1]"},
      // Powers that a multiplied-out power function gets wrong in the last bit: Python's
      // decimal module, rounded from 50 digits.
      {"_Nuv_Numeric_PowNumbers_", "[1.1, 7]", "[1.9487171000000012]"},
      {"_Nuv_Numeric_PowNumbers_", "[0.7, 9]", "[0.04035360699999998]"},
      {"_Nuv_Numeric_PowNumbers_", "[10, -5]", "[1e-05]"},
      {"_Nuv_Numeric_DivideNumbers_", "[1, 1e-300]", "[9.999999999999999e+299]"},
      {"_Nuv_Numeric_DivideNumbers_", R"([1, "-Infinity"])", "[-0.0]"},
      {"_Nuv_Numeric_DivideNumbers_", R"([1, "NaN"])", R"(["NaN"])"},
      Fails("_Nuv_Numeric_DivideNumbers_", "[1, 0]", "Numeric: Divide|Division by zero"),
      Fails("_Nuv_Numeric_DivideNumbers_", "[0, -0.0]", "Numeric: Divide|Division by zero"),
      {"_Nuv_Numeric_IntegerDivideNumbers_", "[7.9, -2.9]", "[-3]"},
      {"_Nuv_Numeric_IntegerDivideNumbers_", "[-1, 2]", "[0]"},
      {"_Nuv_Numeric_IntegerDivideNumbers_", R"(["NaN", 2])", "[-1073741824]"},
      Fails("_Nuv_Numeric_IntegerDivideNumbers_", "[7, 0.9]",
            "Numeric: Integer Divide|Division by zero"),
      Fails("_Nuv_Numeric_IntegerDivideNumbers_", "[-2147483648, -1.5]",
            "Numeric: Integer Divide|Integer overflow"),
      {"_Nuv_Numeric_RemainderNumbers_", "[-7, 2]", "[-1]"},
      {"_Nuv_Numeric_RemainderNumbers_", "[7, -2]", "[1]"},
      Fails("_Nuv_Numeric_RemainderNumbers_", "[7, -0.9]", "Numeric: Remainder|Division by zero"),
      Fails("_Nuv_Numeric_RemainderNumbers_", R"(["NaN", -1])",
            "Numeric: Remainder|Integer overflow"),
      {"_Nuv_Numeric_CRound_", "[0.5]", "[0]"},
      {"_Nuv_Numeric_CRound_", "[1.5]", "[2]"},
      {"_Nuv_Numeric_CRound_", "[2.5]", "[2]"},
      {"_Nuv_Numeric_CRound_", "[-0.5]", "[0]"},
      {"_Nuv_Numeric_CRound_", "[-2.6]", "[-3]"},
      {"_Nuv_Numeric_CRound_", "[0.49999999999999994]", "[0]"},
      {"_Nuv_Numeric_CRound_", "[2147483647.4]", "[2147483647]"},
      {"_Nuv_Numeric_CRound_", "[2147483647.5]", "[-2147483648]"},
      {"_Nuv_Numeric_CRound_", "[3e9]", "[-2147483648]"},
      {"_Nuv_Numeric_CRound_", R"(["NaN"])", "[-2147483648]"},
      {"_Nuv_Numeric_CTruncate_", "[-0.9]", "[0]"},
      {"_Nuv_Numeric_CTruncate_", "[-2.7]", "[-2]"},
      {"_Nuv_Numeric_CTruncate_", R"(["Infinity"])", "[-2147483648]"},
      {"_Nuv_Numeric_CFractional_", "[-2.75]", "[-0.75]"},
      {"_Nuv_Numeric_CFractional_", "[4e9]", "[6147483648]"},
      {"_Nuv_Boolean_Set_", "[true]", "[true]"},
      {"_Nuv_Boolean_Not_", "[true]", "[false]"},
      {"_Nuv_Boolean_Not_", "[]", "[true]"},
      {"_Nuv_Boolean_And_", "[true, true, true]", "[true]"},
      {"_Nuv_Boolean_And_", "[true, false, true]", "[false]"},
      {"_Nuv_Boolean_And_", "[true, true, false]", "[false]"},
      {"_Nuv_Boolean_Or_", "[false, false, true]", "[true]"},
      {"_Nuv_Boolean_Or_", "[true, false]", "[true]"},
      {"_Nuv_Boolean_Or_", "[false]", "[false]"},
      {"_Nuv_Boolean_Xor_", "[true, true, true]", "[true]"},
      {"_Nuv_Boolean_Xor_", "[true, true]", "[false]"},
  };
  CheckRows(rows);
  // The first input is read even where the host says that there is none.
  nuvhost::ExecSession session(BuiltCatalogue());
  for (const char* name : {"And", "Or", "Xor"}) {
    const std::string request =
        std::string(R"({"instr":"_Nuv_Boolean_)") + name + R"(_","in":[true, false],"count":0})";
    EXPECT_EQ(Exec(session, request)["out"][0], true) << name;
  }
}

TEST(Instructions, Comparisons) {
  // Each row: the six answers in the order of the names.
  const char* names[] = {"CGreater",     "CGreaterOrEqual", "CLess",
                         "CLessOrEqual", "CEqual",          "CNotEqual"};
  struct Row {
    const char* inputs;
    const char* answers;
  };
  constexpr Row kRows[] = {
      {"[1, 2]", "001101"},
      {"[2, 1]", "110001"},
      {"[2, 2]", "010110"},
      {"[0, -0.0]", "010110"},
      {"[0.30000000000000004, 0.3]", "110010"},
      {"[1e-16, 2e-16]", "001110"},
      {"[2.220446049250313e-16, 0]", "110010"},   // the tolerance itself still counts as equal
      {"[2.2204460492503136e-16, 0]", "110001"},  // the next number does not
      {"[1000000, 1000000.000000001]", "001101"},
      {R"(["NaN", 1])", "000000"},
      {R"([1, "NaN"])", "000000"},
      {R"(["Infinity", "Infinity"])", "010100"},
      {R"(["-Infinity", "Infinity"])", "001101"},
  };
  nuvhost::ExecSession session(BuiltCatalogue());
  for (const Row& row : kRows) {
    for (std::size_t i = 0; i < 6; ++i) {
      const std::string request =
          std::string(R"({"instr":"_Nuv_Numeric_)") + names[i] + R"(_","in":)" + row.inputs + "}";
      EXPECT_EQ(Exec(session, request)["out"][0], row.answers[i] == '1')
          << names[i] << " " << row.inputs;
    }
  }
}

}  // namespace
