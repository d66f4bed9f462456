#include "nuvhost/reading/data.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "nuvhost/values/json_value.h"
#include "tests/instr/table.h"

namespace nuvhost {
namespace {

/// What a step takes from a file, as JSON; or the first mistake.
std::string Taken(const std::string& file, const std::string& instruction,
                  const std::string& reference, const std::string& datum) {
  const std::string text = R"({"data": {"d": {"file": ")" + file + "\"" + datum +
                           R"(}}, "steps": [{"name": "s", "instr": ")" + instruction +
                           R"(", "in": [{"data": "d")" + reference + "}]}]}";
  Mistakes mistakes;
  const Program program = ReadProgram(BuiltCatalogue(), SourceText("p.json", text), mistakes);
  const std::vector<CNuvObject> values = LoadData(program, {}, mistakes);
  return mistakes.Empty() ? Dump(ToJson(values.at(0))) : mistakes.Listing()[0];
}

struct Row {
  const char* text;
  const char* instruction;
  const char* reference;   ///< members beside "data"
  const char* taken;       ///< the value as JSON, or a part of the mistake
  const char* datum = "";  ///< members beside "file"
};

template <class Rows>
void CheckTaken(const std::string& file, const Rows& rows) {
  const std::filesystem::path path = std::filesystem::temp_directory_path() / file;
  for (const Row& row : rows) {
    std::ofstream(path, std::ios::binary) << row.text;
    const std::string taken =
        Taken(path.generic_string(), row.instruction, row.reference, row.datum);
    EXPECT_NE(taken.find(row.taken), std::string::npos)
        << row.text << row.instruction << row.reference << ": " << taken;
    if (*row.taken == '[') {
      EXPECT_EQ(taken, row.taken);
    }
  }
  std::filesystem::remove(path);
}

constexpr const char* kHoles =
    "hole,n,x,y,ok,limit\nH1,1,1.5,2,yes,9\nH2,2,3,4,NO,\nH1,2.0,5,6,TRUE,\n\"H 3\",x,7,,0,\n";

TEST(Data, TakesFromRowsAndColumns) {
  constexpr const char* kAllowed = R"(, "allowEmpty": true)";
  constexpr Row kRows[] = {
      {kHoles, "PackStr", R"(, "column": "hole")", R"(["H1","H2","H1","H 3"])"},
      {"t\na\n\n\" b \"\n \n", "PackStr", "", R"(["a",""," b "])"},
      {"t\n\xC3\xA9\n", "PackStr", "", "[\"\xC3\xA9\"]"},
      {"t\na\n\xE2\x82\xAC\n", "PackStr", "", "3:1: \"\xE2\x82\xAC\" is no text with one byte"},
      {kHoles, "Array: Boolean: Size", R"(, "column": "ok")", "[true,false,true,false]"},
      {kHoles, "Array: Boolean: Size", R"(, "column": "n")",
       "3:4: \"2\" is no boolean: true, false, yes, no, 1 or 0; 2 more fields"},
      {kHoles, "SumArr", R"(, "column": "n")", "5:7: \"x\" is no number"},
      {kHoles, "SumArr", R"(, "column": "limit")", "[9]"},
      {kHoles, "PtAverage", R"(, "columns": ["x", "y"])", "an empty field, where a number"},
      {kHoles, "PtAverage", R"(, "columns": ["x", "y"], "where": {"ok": true})",
       R"([{"x":1.5,"y":2},{"x":5,"y":6}])"},
      {kHoles, "SumArr", R"(, "column": "x", "where": {"hole": "H1", "n": 2})", "[5]"},
      {kHoles, "SumArr", R"(, "column": "n", "where": {"hole": "H1"})", "[1,2]"},
      {"t,n\n\xE2\x82\xAC,1\n", "SumArr", R"(, "column": "n", "where": {"t": "\u20ac"})", "[1]"},
      {kHoles, "SumArr", R"(, "column": "limit", "where": {"hole": "H2"})", "no rows with"},
      {kHoles, "SumArr", R"(, "column": "x", "where": {"hole": "h1"})",
       "no rows with \"hole\" \"h1\" for input \"numbers\" of \"SumArr\"; where that is meant"},
      {kHoles, "SumArr", R"(, "column": "x", "where": {"hole": "h1"})", "[]", kAllowed},
      {kHoles, "SumArr", R"(, "column": "x", "where": {"hol": "H1"})",
       R"(has no column "hol", did you mean "hole")"},
      {"1,2\n3,4\n", "SumArr", R"(, "column": 1, "where": {"0": 3})", "[4]"},
      {kHoles, "SetNumber", R"(, "column": "x", "row": 2)", "5"},
      {kHoles, "SetNumber", R"(, "column": "x", "row": 1, "where": {"hole": "H1"})", "5"},
      {kHoles, "SetNumber", R"(, "column": "x", "where": {"hole": "H2"})", "3"},
      {kHoles, "SetNumber", R"(, "column": "limit")", "9"},
      {kHoles, "SetNumber", R"(, "column": "limit", "row": 1)", "3:13: an empty field"},
      {kHoles, "SetNumber", R"(, "column": "x", "row": 4)", "no row 4 for input \"number\" of"},
      {kHoles, "SetNumber", R"(, "column": "x", "where": {"n": 7})", "no row with \"n\" 7"},
      {kHoles, "SetNumber", R"(, "column": "x", "where": {"n": 7})", "no row with", kAllowed},
      {kHoles, "SetString", R"(, "column": "hole", "row": 3)", "\"H 3\""},
      {kHoles, "SetBoolean", R"(, "column": "ok", "row": 1)", "false"},
      {kHoles, "PtSet", R"(, "columns": ["x", "y"], "row": 1)", R"({"x":3,"y":4})"},
      {"n\n", "SumArr", "", "[]", kAllowed},
      {"\n", "PtAverage", "", "[]", kAllowed},
      {"1;5\n2,5;1\n", "SumArr", R"(, "column": 0)", "[1,2.5]", R"(, "decimal": ",")"},
  };
  CheckTaken("nuvhost_data.csv", kRows);
}

TEST(Data, TakesFromJson) {
  constexpr const char* kColumns =
      R"({"hole": ["H1", "H2", "H1"], "x": [1, "NaN", 3.5], "y": [4, 5]})";
  constexpr const char* kRowObjects = R"([{"x": 1, "hole": "a"}, {"x": null}, {"x": 3}])";
  constexpr Row kRows[] = {
      {"[1, 2.5]", "SumArr", "", "[1,2.5]"},
      {R"([{"y": 1, "x": 2}])", "PtAverage", "", R"([{"x":2,"y":1}])"},
      {R"({"a": 1, "d": 2})", "LnSet", "", "takes a line"},
      {"[1, \"x\"]", "SumArr", "", "json:1:5: input \"numbers\" of \"SumArr\": expected a number"},
      {"[1, 2", "SumArr", "", "json:1:6: broken JSON: unexpected end"},
      {"[]", "SumArr", "", "no elements"},
      {"[]", "SumArr", "", "[]", R"(, "allowEmpty": true)"},
      {"[1]", "SumArr", R"(, "column": "x")", "holds one value, without columns or rows"},
      {kColumns, "SumArr", R"(, "column": "y")", "[4,5]"},
      {kColumns, "PtAverage", R"(, "columns": ["x", "y"])", "row 2: expected a number, found null"},
      {kColumns, "PackStr", R"(, "column": 0)", R"(["H1","H2","H1"])"},
      {kColumns, "SumArr", R"(, "column": "x", "where": {"hole": "H1"})", "[1,3.5]"},
      {kColumns, "SumArr", R"(, "column": "hole")",
       "json:1:11: column \"hole\", row 0: expected a number, found a text; 2 more fields"},
      {kRowObjects, "SumArr", R"(, "column": "x")",
       "json:1:31: column \"x\", row 1: expected a number, found null"},
      {kRowObjects, "PackStr", R"(, "column": "hole")", R"(["a"])"},
      {kRowObjects, "SumArr", R"(, "column": "z")", R"(has no column "z"; it has 2 columns)"},
      {R"([{"n": true}])", "SetBoolean", "", "true"},
  };
  CheckTaken("nuvhost_data.json", kRows);
}

}  // namespace
}  // namespace nuvhost
