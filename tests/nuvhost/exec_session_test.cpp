#include "nuvhost/commands/exec_session.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <tuple>

#include "host/setting.h"
#include "nuvhost/error.h"
#include "nuvhost/reading/json_table.h"
#include "nuvhost/system/input_file.h"
#include "nuvhost/values/json_value.h"
#include "tests/instr/table.h"

namespace {

using nuvhost::Json;

constexpr const char* kSet = "_Nuv_Numeric_Set_";

TEST(ExecSession, RefusesWhatItCannotCarryOutAndGoesOn) {
  struct Row {
    const char* request;
    const char* complaint;
  };
  const std::string deep = "{\"in\":" + std::string(300, '[') + std::string(300, ']') + "}";
  const Row rows[] = {
      {"{", "parse error"},
      {"{\"instr\":\"\xFF\"}", "UTF-8"},
      {"[]", "expected an object"},
      {deep.c_str(), "nested over 200 deep"},
      {"{}", "names its instruction"},
      {"{\"in\":\xEF\xBB\xBF[]}", "parse error at line 1, column 7"},
      {"\xEF\xBB\xBF\xEF\xBB\xBF{}", "parse error at line 1, column 4"},
      {R"({"instr":"_Nuv_Numeric_Sett_"})", "did you mean \"_Nuv_Numeric_Set_\""},
      {R"({"instr":"_Nuv_Numeric_Set_","inn":[]})", "unknown member \"inn\""},
      {R"({"instr":"_Nuv_Numeric_Set_","in":1})", "expected a list"},
      {R"({"instr":"_Nuv_Numeric_Set_","in":[true]})", "expected a number"},
      {R"({"instr":"_Nuv_Numeric_Set_","in":["nan"]})", "expected a number"},
      {R"({"instr":"_Nuv_Numeric_Set_","in":[1e999]})", "number overflow"},
      {R"({"instr":"_Nuv_Numeric_Set_","prev":[1,2]})", "prev[1]: one too many"},
      {R"({"instr":"_Nuv_Numeric_Set_","const":[1]})", "one too many"},
      {R"({"instr":"_Nuv_Numeric_AddNumbers_","in":[1,"x"]})", "in[1]: expected a number"},
      {R"({"instr":"_Nuv_Numeric_AddNumbers_","in":[1],"count":2})", "between 0 and the 1"},
      {R"({"instr":"_Nuv_Numeric_AddNumbers_","in":[1],"count":-1})", "between 0 and the 1"},
      {R"({"instr":"_Nuv_Numeric_AddNumbers_","count":0.5})", "whole number"},
      {R"({"instr":"_Nuv_Numeric_CSumArr_","in":[[1,[]]]})", "element 1: expected a number"},
      {R"({"instr":"_Nuv_Boolean_Not_","in":[1]})", "expected true or false"},
      {R"({"instr":"_Nuv_String_CLenStr_","in":["\u0100"]})", "in[0]"},
      {R"({"instr":"_Nuv_Array_CPArrSort_","const":[2147483648]})", "const[0]"},
      {R"({"set":{"angleUnit":"grad"}})", "\"radians\" or \"degrees\""},
      {R"({"set":{"defaultColor":-1}})", "0 to 4294967295"},
      {R"({"set":{},"in":[]})", "unknown member \"in\""},
      {R"({"instr":"MeanArr","in":[{}]})", "in[0]: expected a list, or {\"file\""},
      {R"({"instr":"MeanArr","in":[{"file":"none.bin","count":0}]})", "cannot read the file"},
      {R"({"instr":"MeanArr","in":[{"file":"/dev/zero","count":1}]})", "cannot read the file"},
      {R"({"instr":"MeanArr","in":[{"file":"x","count":-1}]})", "\"count\": expected a whole"},
      {R"({"instr":"Divide","outFile":"none.bin"})", "it must be a file that is there"},
      {R"({"instr":"Divide","outFile":1})", "expected a file's name, found the number 1"},
      {R"({"draw":[{"op":"circle"}]})", "draw[0]: no annotation of an answer"},
      {R"({"draw":[],"image":"none.png"})", "\"image\": cannot take \"none.png\""},
  };
  nuvhost::ExecSession session(BuiltCatalogue());
  const std::string whole = R"({"instr":"Divide"})";
  for (std::size_t at = 0; at <= whole.size(); ++at) {
    std::string line = whole;
    EXPECT_EQ(session.Answer(line.insert(at, 1, '\0')),
              R"({"error":"parse error at line 1, column )" + std::to_string(at + 1) +
                  ": a zero byte\"}");
  }
  for (const Row& row : rows) {
    const Json answer = Json::parse(session.Answer(row.request));
    ASSERT_TRUE(answer.contains("error")) << row.request << " gave " << answer.dump();
    EXPECT_NE(answer["error"].get<std::string>().find(row.complaint), std::string::npos)
        << answer.dump();
  }
  EXPECT_EQ(session.Answer(R"({"set":{"angleUnit":"radians"}})"), "{}");
  EXPECT_EQ(session.Answer(R"({"instr":"_Nuv_Numeric_AddNumbers_","in":[1,2,5],"count":2})"),
            R"({"status":0,"out":[3]})");
}

TEST(ExecSession, ReadsNoArrayBeyondItsFile) {
  nuvhost::ExecSession session(BuiltCatalogue());
  const std::filesystem::path path = std::filesystem::temp_directory_path() / "exec_arrays.bin";
  const double numbers[] = {1, 2, 4};
  std::ofstream(path, std::ios::binary).write(reinterpret_cast<const char*>(numbers), 24);
  const auto answer = [&](const char* instruction, const char* offset, const char* count) {
    Json request{{"instr", instruction}};
    request["in"] = {{{"file", path.generic_string()},
                      {"offset", Json::parse(offset)},
                      {"count", Json::parse(count)}}};
    return Json::parse(session.Answer(request.dump()));
  };
  EXPECT_EQ(answer("MaxArr", "0", "3")["out"][0], 4);
  EXPECT_EQ(answer("MaxArr", "0", "2")["out"][0], 2);
  EXPECT_EQ(answer("_Nuv_System_CPArrSize_", "8", "1")["out"][0], 1);
  EXPECT_EQ(answer("_Nuv_System_CBArrSize_", "0", "24")["out"][0], 24);
  for (const auto& [instruction, offset, count] : {std::tuple("MaxArr", "0", "4"),
                                                   {"MaxArr", "1", "3"},
                                                   {"MaxArr", "25", "0"},
                                                   {"MaxArr", "18446744073709551615", "1"},
                                                   {"MaxArr", "0", "18446744073709551615"},
                                                   {"MaxArr", "0", "2305843009213693952"},
                                                   {"_Nuv_System_CPArrSize_", "8", "2"},
                                                   {"_Nuv_System_CBArrSize_", "0", "25"}}) {
    EXPECT_TRUE(answer(instruction, offset, count).contains("error")) << offset << ' ' << count;
  }
  std::filesystem::remove(path);
}

TEST(ExecSession, ABrokenSettingChangesNothing) {
  nuvhost::ExecSession session(BuiltCatalogue());
  session.Answer(R"({"set":{"defaultColor":255}})");
  session.Answer(R"({"set":{"defaultColor":1,"angleUnit":"grad"}})");
  EXPECT_EQ(CNuvSetting::Inst().GetDefaultAnnotationColor(), 255u);
  session.Answer(R"({"set":{"defaultColor":0}})");
}

TEST(ExecSession, EveryNumberSurvivesTheWayThere) {
  nuvhost::ExecSession session(BuiltCatalogue());
  std::mt19937_64 random(5);
  for (int round = 0; round < 20000; ++round) {
    const std::uint64_t bits = random();
    double number;
    std::memcpy(&number, &bits, sizeof number);
    if (round % 2 == 0) number = std::ldexp(static_cast<double>(random() % 100000), round % 60);
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
