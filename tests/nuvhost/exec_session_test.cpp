#include "nuvhost/commands/exec_session.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <random>
#include <sstream>

#include "nuvhost/reading/json_table.h"
#include "nuvhost/system/input_file.h"
#include "nuvhost/values/json_value.h"
#include "tests/instr/random_rounds.h"
#include "tests/instr/table.h"

namespace {

using nuvhost::Json;

constexpr const char* kSet = "_Nuv_Numeric_Set_";

// What a transcript cannot hold; tests/transcripts/exec_refusals.txt has all else that is refused.
TEST(ExecSession, RefusesAnyBytesAndGoesOn) {
  nuvhost::ExecSession session(BuiltCatalogue());
  const std::string whole = R"({"instr":"Divide"})";
  for (std::size_t at = 0; at <= whole.size(); ++at) {
    std::string line = whole;
    EXPECT_EQ(session.Answer(line.insert(at, 1, '\0')),
              R"({"error":"parse error at line 1, column )" + std::to_string(at + 1) +
                  ": a zero byte\"}");
  }
  const std::pair<std::string, const char*> rows[] = {
      {"{\"instr\":\"\xFF\"}", "UTF-8"},
      {"{\"in\":" + std::string(300, '[') + std::string(300, ']') + "}", "nested over 200 deep"},
      {"{\"in\":\xEF\xBB\xBF[]}", "parse error at line 1, column 7"},
      {"\xEF\xBB\xBF\xEF\xBB\xBF{}", "parse error at line 1, column 4"},
      {R"({"instr":"MeanArr","in":[{"file":"/dev/zero","count":1}]})", "cannot read the file"},
  };
  for (const auto& [request, complaint] : rows) {
    const std::string answer = session.Answer(request);
    EXPECT_TRUE(answer.starts_with(R"({"error":)")) << answer;
    EXPECT_NE(answer.find(complaint), std::string::npos) << answer;
  }
  EXPECT_EQ(session.Answer(R"({"instr":"Divide","in":[1,4]})"), R"({"status":0,"out":[0.25]})");
}

TEST(ExecSession, EveryNumberSurvivesTheWayThere) {
  nuvhost::ExecSession session(BuiltCatalogue());
  std::mt19937_64 random(5);
  for (int round = 0; round < 40000; ++round) {
    const double number = AnyNumber(random);
    const Json sent = nuvhost::NumberToJson(number);
    const Json answer = Exec(session, Json{{"instr", kSet}, {"in", {sent}}}.dump());
    CNuvObject back = nuvhost::FromJson(answer["out"][0], NUV_PARAM_NUMBER);
    const auto received = static_cast<double>(back);
    if (std::isnan(number)) {
      ASSERT_TRUE(std::isnan(received));
    } else {
      ASSERT_EQ(std::memcmp(&number, &received, sizeof number), 0) << answer.dump();
    }
  }
}

// Each limit on both of its sides. What is within fails, too, but for another reason.
TEST(ExecSession, WhatIsReadHasLimits) {
  const auto members = [](std::size_t count, std::size_t longest) {
    std::string object = "{";
    for (std::size_t i = 0; i < count; ++i) {
      object += (i == 0 ? "\"" : ",\"") + std::to_string(i) + "\":{\"x\":[1,2]}";
    }
    return object + ",\"" + std::string(longest, 'n') + "\":0}";
  };
  nuvhost::ExecSession session(BuiltCatalogue());
  const auto complaint = [&](const std::string& line) { return session.Answer(line); };
  EXPECT_NE(complaint(members(3999, 1000)).find("unknown member \\\"0\\\""), std::string::npos);
  EXPECT_EQ(complaint(members(4000, 1)), R"({"error":"an object with more than 4000 members"})");
  EXPECT_EQ(complaint(members(1, 1001)), R"({"error":"a name longer than 1000 bytes"})");

  std::istringstream lines("12345\n1234567890\n\nend");
  std::string line;
  for (const char* kept : {"12345", "123456", "", "end"}) {
    EXPECT_TRUE(nuvhost::ReadLine(lines, line, 5));
    EXPECT_EQ(line, kept);
  }
  EXPECT_FALSE(nuvhost::ReadLine(lines, line, 5));

  nuvhost::Mistakes mistakes;
  for (const std::size_t columns : {4000, 4001, 4002}) {  // the last row is read no more
    std::string rows = "[{}";
    for (std::size_t i = 0; i < columns; ++i) rows += ",{\"" + std::to_string(i) + "\":1}";
    const bool fits = nuvhost::JsonTable::Read({"d.json", rows + "]"}, mistakes) != nullptr;
    EXPECT_EQ(fits, columns == 4000);
    EXPECT_EQ(mistakes.Empty(), fits);
  }
}

}  // namespace
