// The keyboard instructions, as far as they need no desktop; tests/desktop presses keys and answers
// boxes.
#include <string>

#include "tests/instr/table.h"

namespace {

// Which of the keys is down is the user's business.
TEST(Keyboard, RefusesWhatIsNoKey) {
  const struct {
    const char* instruction;
    const char* input;
    const char* refused;  ///< the code in the message; "" for a key
  } rows[] = {{"", "1", "1"},
              {"", "2.5", "2"},
              {"", "3", ""},
              {"", "4", "4"},
              {"", "5", ""},
              {"", "255.9", ""},
              {"", "256", "256"},
              {"", "-3", "-3"},
              {"Str", R"("-65")", "-65"},
              {"Str", R"("- 65")", "0"},
              {"Str", R"("+-65")", "0"},
              {"Str", R"("\u00a065")", "0"},
              {"Str", R"("0x41")", "0"},
              {"Str", R"(" \t\n\u000b\f\r+256")", "256"},
              {"Str", R"("-2147483649")", "-2147483648"}};
  nuvhost::ExecSession session(BuiltCatalogue());
  for (const auto& row : rows) {
    const nuvhost::Json answer =
        Exec(session, std::string(R"({"instr":"_Nuv_TestOneKey)") + row.instruction +
                          R"(_","in":[)" + row.input + "]}");
    EXPECT_EQ(answer["status"], *row.refused == '\0' ? 0 : 3) << row.input;
    const std::string told =
        answer.contains("messages") ? answer["messages"][0]["text"].get<std::string>() : ": .";
    EXPECT_NE(told.find(std::string(": ") + row.refused + "."), std::string::npos) << told;
  }
}

}  // namespace
