// Numeric and Boolean instructions, beyond what docs/instructions shows of them.

#include "tests/instr/table.h"

namespace {

TEST(Instructions, TheFirstBooleanIsReadWhateverTheCount) {
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
