// The keyboard instructions and the event, as far as they need no desktop; tests/desktop presses
// keys and answers boxes.
#include <string>

#include "tests/instr/table.h"

namespace {

TEST(Keyboard, RefusesWhatIsNoKey) {
  const struct {
    const char* identifier;
    std::initializer_list<std::pair<const char*, const char*>> refused;  ///< code in the message
  } keys[] = {{"_Nuv_TestOneKey_",
               {{"[]", "0"},
                {"[0.99]", "0"},
                {"[1]", "1"},
                {"[2.5]", "2"},
                {"[4]", "4"},
                {"[256]", "256"},
                {"[-3]", "-3"},
                {R"(["NaN"])", "-2147483648"}}},
              {"_Nuv_TestOneKeyStr_",
               {{"[]", "0"},
                {R"(["abc"])", "0"},
                {R"(["- 65"])", "0"},
                {R"(["+-65"])", "0"},
                {R"(["\u00a065"])", "0"},
                {R"(["0x41"])", "0"},
                {R"(["2e2"])", "2"},
                {R"([" \t\n\u000b\f\r+256"])", "256"},
                {R"(["4294967361"])", "2147483647"},
                {R"(["-2147483649"])", "-2147483648"}}}};
  for (const auto& [identifier, refused] : keys) {
    for (const auto& [input, code] : refused) {
      const std::string message = std::string("Test one key|Invalid key value: ") + code +
                                  ". Must be between 1 and 255 and not a mouse button virtual-key";
      CheckRows(std::initializer_list<InstructionRow>{Fails(identifier, input, message.c_str())});
    }
  }
}

// Which of them is down is the user's business.
TEST(Keyboard, TakesKeysAndExtraMouseButtons) {
  nuvhost::ExecSession session(BuiltCatalogue());
  for (const char* request :
       {R"({"instr":"_Nuv_TestOneKey_","in":[5]})", R"({"instr":"_Nuv_TestOneKey_","in":[3]})",
        R"({"instr":"_Nuv_TestOneKey_","in":[255.9]})",
        R"({"instr":"_Nuv_TestOneKeyStr_","in":["  6.5abc"]})"}) {
    const nuvhost::Json answer = Exec(session, request);
    EXPECT_EQ(answer["status"], 0) << request;
    EXPECT_FALSE(answer.contains("messages")) << request;
  }
}

TEST(Desktop, RaisesTheEventOfItsNumber) {
  nuvhost::ExecSession session(BuiltCatalogue());
  for (const char* id : {"-5", "0", "2147483647", "-2147483648"}) {
    const nuvhost::Json answer =
        Exec(session, std::string(R"({"instr":"_Nuv_System_CSystemGenerateProgramEvent_",)") +
                          R"("const":[)" + id + "]}");
    EXPECT_EQ(answer["status"], 0);
    EXPECT_EQ(answer["events"].dump(), std::string(R"([{"code":45,"value":)") + id + "}]");
  }
}

}  // namespace
