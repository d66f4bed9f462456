#include "nuvhost/reading/program.h"

#include <gtest/gtest.h>

#include <fstream>
#include <random>

#include "nuvhost/reading/arguments.h"
#include "nuvhost/reading/source_text.h"
#include "nuvhost/values/json_value.h"
#include "tests/instr/table.h"

namespace nuvhost {
namespace {

std::vector<std::string> Complaints(const std::string& text) {
  Mistakes mistakes;
  ReadProgram(BuiltCatalogue(), SourceText("p.json", text), mistakes);
  return mistakes.Listing();
}

/// A wrong program with `@` where the mistake is, and a part of what is said of it.
struct WrongRow {
  std::string text;
  std::string complaint;
};

/// Each row must be answered with its one complaint, at its place.
void CheckWrong(const std::vector<WrongRow>& rows) {
  for (const WrongRow& row : rows) {
    SCOPED_TRACE(row.text);
    std::string text = row.text;
    const std::size_t at = text.find('@');
    ASSERT_NE(at, std::string::npos);
    text.erase(at, 1);
    const std::string before = text.substr(0, at);
    const auto line = std::ranges::count(before, '\n') + 1;
    const std::size_t column = at - (before.rfind('\n') + 1) + 1;
    const std::string place =
        "p.json:" + std::to_string(line) + ":" + std::to_string(column) + ": ";
    const std::vector<std::string> complaints = Complaints(text);
    ASSERT_EQ(complaints.size(), 1u) << (complaints.empty() ? "" : complaints[1]);
    EXPECT_EQ(complaints[0].substr(0, place.size()), place) << complaints[0];
    EXPECT_NE(complaints[0].find(row.complaint), std::string::npos) << complaints[0];
  }
}

/// A program of steps that can be referred to, and one more with these members.
std::string With(const std::string& members, const std::string& more = "") {
  return R"({"data": {"r": {"file": "r.csv"}, "v": [1, 2, 3]},
"steps": [
  {"name": "low", "instr": "MinArr", "in": {"numbers": {"data": "v"}}},
  {"name": "yes", "instr": "SetBoolean", "in": [true]},
  {"name": "it", )" +
         members + R"(},
  {"name": "after", "instr": "SetNumber"}
])" + more +
         "}";
}

TEST(Program, TellsBrokenJsonByItsPlace) {
  const std::string deep(200, '[');
  std::string steps = R"({"steps": [)";
  for (int i = 0; i < 10000; ++i) steps += "1, ";
  CheckWrong({
      {"{\"steps\": [\n@", "unexpected end of the file"},
      {R"({"title": @tru})", R"(broken JSON: unexpected "tru")"},
      {R"({"title": "x"@]", "steps": 1})", "unexpected ']'; expected ',' or '}'"},
      {R"({"title": @"x})", "missing closing quote"},
      {"{\"title\": @\"x\ny\"}", "must be escaped"},
      {"{\"title\": @\"\xFF\"}", "UTF-8"},
      {"@// comment\n{}", R"(unexpected "//")"},
      {R"({"a": [1, @1e999]})", "1e999 is beyond the range of numbers"},
      {R"({"steps": [@-1.]})", "expected digit after '.'"},
      {deep + "@[", "nested over 200 deep"},
      {steps + "@1]}", "more than 10000 steps"},
      {std::string("{\n @\0}", 6), "a zero byte"},
  });
  EXPECT_EQ(Complaints("\xEF\xBB\xBF\xEF\xBB\xBF{}"),
            std::vector<std::string>{
                "p.json:1:1: a second byte order mark; save the file with one or none"});
}

TEST(Program, TellsEveryMistakeByItsPlace) {
  CheckWrong({
      {"@[]", "a program is an object in braces, found a list"},
      {"@{}", R"(a program needs a member "steps")"},
      {R"({"steps": @[]})", "at least one step"},
      {R"({"steps": [@3]})", "a step is an object in braces, found the number 3"},
      {With(R"("instr": "SetNumber")", R"(, "title": "x", @"t\u0069tle": "x")"), "given twice"},
      {With(R"("instr": "SetNumber")", R"(, "settings": {"angleUnit": @"grad"})"), "\"radians\""},
      {With(R"("instr": "SetNumber")", R"(, "settings": {"maxArrayElements": @0})"), "from 1 to"},
      {With(R"("instr": "SetNumber")", R"(, "settings": {"defaultColor": @1.5})"), "whole number"},
      {R"({"data": {"r": @null}, "steps": [{"name": "a", "instr": "_Nuv_Numeric_AddNumbers_"}]})",
       "found null"},
      {R"({"steps": [{"name": @"", "instr": "_Nuv_Numeric_AddNumbers_"}]})", R"("name" is empty)"},
      {With(R"("instr": @"\u20ac")"), "no instruction"},
      {With(R"("instr": "Less", "in": {@"limit": 1})"), R"(it has "n1", "n2")"},
      {With(R"("instr": "Min2", "in": {@"number": 1})"), "use the position: 0 1"},
      {With(R"("instr": "Sqrt", "in": {"n": 1, @"0": 2})"), R"("0" is given twice)"},
      {With(R"("instr": "Sqrt", "in": [1, @2, 3])"), R"("Sqrt" takes 1 input, 3 given)"},
      {With(R"("instr": "Sqrt", "in": @7)"), "an object by name or a list by position"},
      {With(R"("instr": "Sqrt", "in": [{@"stp": "low"}])"), R"(did you mean "step"?)"},
      {With(R"("instr": "SumArr", "in": [[1, @{"step": "low"}]])"), "values, no references"},
      {With(R"("instr": "_Nuv_Numeric_AddNumbers_", "in": {"number": @[]})"), "at least one value"},
      {With(R"("instr": "Sqrt", "const": {@"mode": 1})"), "has no constant parameters"},
      {With(R"("instr": "Sqrt", "in": [@{"step": "yes"}])"),
       R"(input "n" of "Sqrt" takes a number; result "output" of step "yes" is a boolean)"},
      {With(R"("instr": "Sqrt", "in": [{"step": @"lwo"}])"),
       R"(no step "lwo", did you mean "low"?)"},
      {With(R"("instr": "Sqrt", "in": [{"step": @"after"}])"), "runs later"},
      {With(R"("instr": "Sqrt", "in": [{"step": @"it"}])"), "uses its own result"},
      {With(R"("instr": "Sqrt", "in": [{"step": "low", "result": @"ids"}])"), R"(mean "idx"?)"},
      {With(R"("instr": "Sqrt", "in": [{"step": "low", "result": @2}])"), R"(it has "min", "idx")"},
      {With(R"("instr": "Sqrt", "in": [{"step": "low", "result": @-1}])"), "position from 0"},
      {With(R"("instr": "SumArr", "in": [{"data": @"w"}])"), R"(no data "w"; known: "r", "v")"},
      {With(R"("instr": "SumArr", "in": [@{"data": "v", "row": 0}])"), "has no columns or rows"},
      {With(R"("instr": "SumArr", "in": [{"data": "r", "columns": @["x"]}])"), "two columns"},
      {With(R"("instr": "SumArr", "in": [@{"data": "r", "columns": [0, 1]}])"),
       "takes an array of numbers; data \"r\" is two columns, which give points"},
      {With(R"("instr": "PtSet", "in": [@{"data": "r", "column": 0}])"), "a point comes from two"},
      {With(R"("instr": "LnSet", "in": [@{"data": "r"}])"), "takes a line; data \"r\" comes from"},
      {With(R"("instr": "SumArr", "in": [{"data": "r", @"row": 0}])"), "\"row\" is for one value"},
      {With(R"("instr": "Sqrt", "in": [{"data": "r", "row": @-1}])"), "a whole number from 0"},
      {With(R"("instr": "SumArr", "in": [{"data": "r", "where": @{}}])"), "such as {\"hole\""},
      {With(R"("instr": "SumArr", "in": [{"data": "r", "where": {"a": @[1]}}])"), "found a list"},
      {R"({"data": {"r": {"file": "x", "decimal": @";"}}, "steps": [{"name": "a", "instr": "SetNumber"}]})",
       R"(expected "." or ",", found ";")"},
      {R"({"data": {"r": {"file": "x", "allowEmpty": @1}}, "steps": [{"name": "a", "instr": "SetNumber"}]})",
       "expected true or false"},
      {R"({"data": {"e": @[]}, "steps": [{"name": "a", "instr": "SumArr", "in": [{"data": "e"}]}]})",
       R"(from data "e": no elements; where that is meant, write {"value": [], "allowEmpty": true})"},
      {With(R"("instr": "SumArr", "in": [{"value": @[]}])"), "no elements"},
      {With(R"("instr": "SumArr", "in": [@[1, 2, 3, 4]])",
            R"(, "settings": {"maxArrayElements": 3})"),
       R"(4 elements; "maxArrayElements" is 3)"},
      {With(R"("instr": "_Nuv_Numeric_AddNumbers_")",
            R"(, "report": [@{"value": {"step": "low"}}])"),
       "\"label\""},
      {With(R"("instr": "_Nuv_Numeric_AddNumbers_")",
            R"(, "report": [{"label": "x", "value": {"step": "yes"}, "decimals": @2}])"),
       "this result's type is boolean"},
  });
}

TEST(Program, TellsAllMistakesInOrder) {
  const std::vector<std::string> complaints = Complaints(
      "\xEF\xBB\xBF{\"titel\": 1,\n\"data\": {\"v\": [1, \"\xC3\xA9\", null]},\n"
      "\"steps\": [{\"name\": \"a\", \"instr\": \"SumArr\", \"in\": [{\"data\": \"v\"}]},\n"
      "{\"name\": \"b\", \"instr\": \"SumArr\", \"in\": [{\"data\": \"v\"}]},\n"
      "{\"name\": \"c\", \"instr\": \"Sum\", \"note\": \"\xC3\xA9\xC3\xA9\", \"x\": 1}]}");
  std::string places;
  for (const std::string& complaint : complaints) places += complaint.substr(7, 5) + ' ';
  EXPECT_EQ(places, "1:2:  2:19: 2:24: 5:24: 5:45: ");
}

TEST(Program, ReadsConstantParameters) {
  DescriptorRecord descriptor;
  descriptor.name = "Sort";
  ConstantRecord order;
  order.type = NUV_PARAM_CHOICE;
  order.group = "order";  // no name: it goes by its group's
  order.choices.Insert(2, "rising");
  order.choices.Insert(7, "falling ");
  descriptor.constants.PushBack(std::move(order));
  ConstantRecord width;
  width.type = NUV_PARAM_INTEGER;
  width.name = "width";
  width.minimum = 1;
  width.maximum = 9;
  descriptor.constants.PushBack(std::move(width));
  const CatalogueEntry instruction{0, nullptr, &descriptor};

  struct Row {
    const char* constants;
    const char* answer;  ///< the values, or a part of the complaint
  };
  constexpr Row kRows[] = {
      {R"({"order": "falling", "width": 9})", "7 9"},
      {R"({"order": 2})", "2 0"},
      {R"([7, 1])", "7 1"},
      {R"({"order": 3})", R"(no choice 3; there are "rising" (2), "falling" (7))"},
      {R"({"order": "fall"})", R"(no choice "fall"; there are "rising" (2))"},
      {R"({"width": 10})", R"(constant parameter "width": expected 1 to 9, found 10)"},
      {R"({"width": 1.5})", "expected a whole number"},
      {R"([2, 1, 1])", R"("Sort" has 2 constant parameters, 3 given)"},
  };
  for (const Row& row : kRows) {
    Mistakes mistakes;
    const SourceText source("p.json", std::string(R"({"const": )") + row.constants + "}");
    Program program(source);
    program.steps.push_back({"sort", &instruction, std::vector<CNuvObject>(2), {}});
    const auto json = LocatedJson::Parse(program.source, mistakes);
    Checker checker(program.source, mistakes);
    const LiteralData no_values;
    ArgumentReader(BuiltCatalogue(), checker, program, no_values).Read(json->Root(), 0);
    const std::vector<CNuvObject>& values = program.steps[0].constants;
    const std::string answer = mistakes.Empty()
                                   ? Dump(NumberToJson(static_cast<double>(values[0]))) + " " +
                                         Dump(NumberToJson(static_cast<double>(values[1])))
                                   : mistakes.Listing()[0];
    EXPECT_NE(answer.find(row.answer), std::string::npos) << row.constants << ": " << answer;
  }
}

// An array without elements is no mistake where it is meant, or where instructions build arrays.
TEST(Program, TakesEmptyArraysThatAreMeant) {
  for (const char* step : {
           R"("instr": "SumArr", "in": [{"value": [], "allowEmpty": true}])",
           R"("instr": "Array: Number: Append", "in": {"val": [1, 2]})",
           R"("instr": "Array: Point: Concatenate ", "in": [[], [{"x": 1, "y": 2}]])",
           R"("instr": "InsertArray", "in": {"insert array": [1]})",
           R"("instr": "Array: String: Resize")",
           R"("instr": "Array: Line: InsertRep", "in": [[]])",
           R"("instr": "Array: Boolean: AppendRep")",
           R"("instr": "CreateStrInf")",
       }) {
    EXPECT_EQ(Complaints(With(step)), std::vector<std::string>{}) << step;
  }
}

// Whatever becomes of a program's text, it is read or complained of at a place within it.
TEST(Program, AnyTextIsReadOrRefused) {
  std::ifstream file(PROGRAM_EXAMPLE, std::ios::binary);
  const std::string example{std::istreambuf_iterator<char>(file), {}};
  ASSERT_TRUE(Complaints(example).empty());
  const auto lines = std::ranges::count(example, '\n') + 2;
  std::mt19937 random(3);
  constexpr char kBytes[] = "{}[]\",:0e-. \nat\\\xC3";  // and the zero at its end
  for (int round = 0; round < 1500; ++round) {
    std::string text = example;
    for (std::size_t edits = 1 + random() % 3; edits > 0; --edits) {
      const std::size_t at = random() % text.size();
      const std::size_t length = random() % 8;
      text.replace(at, length, 1, kBytes[random() % sizeof kBytes]);
    }
    const unsigned marks = random() % 4;
    for (unsigned i = 0; i < marks; ++i) text.insert(0, "\xEF\xBB\xBF");
    const std::vector<std::string> complaints = Complaints(text);
    ASSERT_TRUE(!complaints.empty() || (marks < 2 && text.find('\0') == std::string::npos)) << text;
    for (const std::string& complaint : complaints) {
      ASSERT_TRUE(complaint.starts_with("p.json:")) << complaint;
      ASSERT_LE(std::stol(complaint.substr(7)), lines + 3) << complaint;
    }
  }
}

}  // namespace
}  // namespace nuvhost
