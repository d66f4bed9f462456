#include "nuvhost/reading/expression.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <set>

#include "nuvhost/running/step_runner.h"
#include "nuvhost/showing/step_graph.h"
#include "nuvhost/values/json_value.h"
#include "platform/math.h"
#include "tests/instr/table.h"

namespace nuvhost {
namespace {

/// A text in JSON, in which all beyond ASCII is escaped.
std::string Escaped(const std::string& text) {
  return Json(text).dump(-1, ' ', true);
}

/// A program whose steps and data an expression can name, and a row that shows it.
std::string WithExpression(const std::string& expression) {
  return R"({"data": {"half": 0.5, "on": true, "list": [1], "both": 1, "\"\u00e9\n\ud83d\ude00\\": 2},
"steps": [
  {"name": "seven", "instr": "_Nuv_Numeric_Set_", "in": [7]},
  {"name": "inner diameter", "instr": "_Nuv_Numeric_Set_", "in": [-2.25]},
  {"name": "low", "instr": "_Nuv_Numeric_CMinArr_", "in": [[8, 3, 5]]},
  {"name": "both", "instr": "_Nuv_Numeric_Set_"},
  {"name": "min", "instr": "_Nuv_Numeric_Set_", "in": [11]},
  {"name": "point", "instr": "PtSet"}],
"report": [{"label": "R", "value": {"expr": )" +
         Escaped(expression) + "}}]}";
}

/// The value of a program's first report row; null where a step failed, a text for a mistake.
Json ValueOf(const std::string& text) {
  Mistakes mistakes;
  const Program program = ReadProgram(BuiltCatalogue(), SourceText("p.json", text), mistakes);
  if (!mistakes.Empty()) return mistakes.Listing()[0];
  Services services;
  const RunOutcome run = RunSteps(program, {}, false, services, [](std::size_t, const auto&) {});
  if (run.state != RunOutcome::State::kSucceeded) return nullptr;
  const StepResult value = program.report.at(0).value;
  return ToJson(run.steps.at(value.step).context->results.at(value.result));
}

TEST(Expression, BindsAsCommonLanguagesDo) {
  struct Row {
    const char* expression;
    const char* value;
  };
  constexpr Row kRows[] = {
      {"2 + 3 * 4", "14"},
      {"10 - 4 - 3", "3"},
      {"16 / 4 / 2", "2"},
      {"2 ^ 3 ^ 2", "512"},
      {"-2 ^ 2", "-4"},
      {"2 ^ -1", "0.5"},
      {"- - 3", "3"},
      {".5e1 + 1.5E-1", "5.15"},
      {"1 + 2 < 4 and not 3 >= 4", "true"},
      {"not true or true", "true"},
      {"true or true and false", "true"},
      {"1 = 1 and 2 == 2 and 1 != 2 and 1 <= 1 and 2 > 1", "true"},
      {"min(4, 2, 3) + max(1) + abs(-5) + sqrt(9)", "11"},
      {"[seven]*half", "3.5"},
      {"[inner diameter]-[min]", "-13.25"},
      {"low . idx + low.1 + low.min", "5"},
      {"on and seven.[output] > 1", "true"},
  };
  for (const Row& row : kRows) {
    EXPECT_EQ(Dump(ValueOf(WithExpression(row.expression))), row.value) << row.expression;
  }
}

// Each mistake is told at its column, whatever escapes stand before it.
TEST(Expression, TellsMistakesByTheirPlace) {
  struct Row {
    const char* expression;  ///< with an @ where the mistake is
    const char* complaint;
  };
  constexpr Row kRows[] = {
      {"1 + @", "expected a number, a name or \"(\", found the end"},
      {"1 @2", "expected an operator, found \"2\""},
      {"(1 + 2@", "expected \")\", found the end of the expression"},
      {"@2x + 1", "\"2x\" is no number"},
      {"1 + @1e999", "1e999 is beyond the range of numbers"},
      {"@sevn + 1", "no step or data \"sevn\", did you mean \"seven\"?"},
      {"low.@ids", "\"MinArr\" has no result \"ids\", did you mean \"idx\"?"},
      {"@[low", "a bracket without its closing"},
      {"@[] + 1", "no name within the brackets"},
      {"seven.@", "expected a name"},
      {"half.@x", "stands in the program and has no columns"},
      {"@both", "a step and data are both named \"both\""},
      {"1 + @list", "data \"list\" is a list; an expression takes numbers"},
      {"1 + @point", "\"+\" takes numbers; this is a point"},
      {"@1 < 2 < 3", "\"<\" takes numbers; this is a boolean"},
      {"-@on", "\"-\" takes numbers; this is a boolean"},
      {"@sin(1)", "no function \"sin\"; there are min, max, abs and sqrt"},
      {"abs(1@, 5)", "\"abs\" takes one value"},
      {"[\"\xC3\xA9\n\xF0\x9F\x98\x80\\] + @x", "no step or data \"x\""},
  };
  for (const Row& row : kRows) {
    std::string expression = row.expression;
    const std::size_t at = expression.find('@');
    expression.erase(at, 1);
    const std::size_t column = 46 + Escaped(expression.substr(0, at)).size() - 2;
    const std::string place = "p.json:9:" + std::to_string(column) + ": ";
    const Json answer = ValueOf(WithExpression(expression));
    ASSERT_TRUE(answer.is_string()) << row.expression;
    EXPECT_TRUE(answer.get<std::string>().starts_with(place)) << row.expression << answer;
    EXPECT_NE(answer.get<std::string>().find(row.complaint), std::string::npos) << answer;
  }
  const std::string deep(201, '(');
  EXPECT_NE(Dump(ValueOf(WithExpression(deep))).find("nested over 200 deep"), std::string::npos);
  EXPECT_EQ(ValueOf(WithExpression(deep.substr(1) + "1" + std::string(200, ')'))), 1);
  const std::string longest = "1" + std::string(9999, ' ');
  EXPECT_EQ(ValueOf(WithExpression(longest)), 1);
  EXPECT_NE(Dump(ValueOf(WithExpression(longest + ' '))).find("longer than 10000 bytes"),
            std::string::npos);
}

// The graph shows no operators: what an expression takes flows into its user.
TEST(Expression, IsDrawnAsOneWithItsUser) {
  Mistakes mistakes;
  const Program program = ReadProgram(
      BuiltCatalogue(), SourceText("p.json", R"({"data": {"d": {"file": "d.csv"}}, "steps": [
  {"name": "a", "instr": "_Nuv_Numeric_Set_"},
  {"name": "b", "instr": "_Nuv_Numeric_Set_", "in": [{"expr": "(a + d) * a - 1"}]}],
"report": [{"label": "R", "value": {"expr": "-b ^ a"}}]})"),
      mistakes);
  ASSERT_TRUE(mistakes.Empty()) << mistakes.Listing()[0];
  std::string shown;
  for (const GraphNode& node : GraphOf(program)) {
    shown += node.name + ":";
    std::set<std::size_t> from(node.from.begin(), node.from.end());
    for (const std::size_t i : from) shown += " " + std::to_string(i);
    shown += "; ";
  }
  EXPECT_EQ(shown, "d:; a:; b: 0 1; R: 1 2; ");
}

// Whatever stands in an expression, it is read or refused at a place within it.
TEST(Expression, AnyTextIsReadOrRefused) {
  constexpr const char* kPieces[] = {
      "1", ".5",   "2e3",  "a",     "[a b]", ".",    "(",        ")",  "-", "+",
      "*", "/",    "^",    "<",     ">=",    "=",    "!",        ",",  " ", "[",
      "]", "min(", "not ", " and ", "or",    "true", "\xC3\xBC", "\"", "\n"};
  const ResolveName resolve = [](const ExpressionName& name) {
    if (name.part.empty()) return Operand{StepResult{0, 0}, NUV_PARAM_NUMBER};
    throw ExpressionError(name.part_at, "no part");
  };
  std::mt19937 random(9);
  int good = 0;
  for (int round = 0; round < 20000; ++round) {
    std::string text;
    for (std::size_t pieces = random() % 8 + 1; pieces > 0; --pieces) {
      text += kPieces[random() % std::size(kPieces)];
    }
    std::vector<Step> steps;
    try {
      ReadExpression(text, BuiltCatalogue(), resolve, {0, "it"}, steps);
      ++good;
    } catch (const ExpressionError& error) {
      ASSERT_LE(error.at, text.size()) << text;
      ASSERT_STRNE(error.what(), "") << text;
    }
  }
  EXPECT_GT(good, 400);
}

/// Writes random expressions, and computes what they give by the rules of the instructions that
/// they stand for.
class Writer {
 public:
  explicit Writer(unsigned seed) : random_(seed) {}

  struct Written {
    std::string text;
    std::optional<double> value;  ///< nothing where an operation fails
  };

  Written Number(int depth) {
    switch (depth == 0 ? random_() % 3 : random_() % 11) {
      case 0: return Literal();
      case 1: return {"seven", 7.0};
      case 2: return {"[inner diameter]", -2.25};
      case 3: return Pair(depth, " + ", [](double a, double b) { return 0.0 + a + b; });
      case 4: return Pair(depth, "-", [](double a, double b) { return a - b; });
      case 5: return Pair(depth, "*", [](double a, double b) { return a * b; });
      case 6:
        return Pair(depth, " / ",
                    [](double a, double b) { return b == 0.0 ? std::optional<double>() : a / b; });
      case 7: return Pair(depth, "^", [](double a, double b) { return platform::Pow(a, b); });
      case 8: return Single(depth, "-(", [](double a) { return -a; });
      case 9: return Single(depth, "abs(", [](double a) { return std::fabs(a); });
      default:
        return Single(depth, "sqrt(",
                      [](double a) { return a < 0.0 ? std::optional<double>() : std::sqrt(a); });
    }
  }

  Written Condition(int depth) {
    if (depth == 0) return random_() % 2 == 0 ? Written{"on", 1.0} : Written{"false", 0.0};
    switch (random_() % 6) {
      case 0: return Pair(depth, "<", [](double a, double b) { return a < b ? 1.0 : 0.0; });
      case 1: return Pair(depth, " >= ", [](double a, double b) { return a >= b ? 1.0 : 0.0; });
      case 2:
        return Pair(depth, "=", [](double a, double b) {
          return std::fabs(a - b) <= std::numeric_limits<double>::epsilon() ? 1.0 : 0.0;
        });
      case 3: {
        const Written a = Condition(depth - 1);
        return {"not (" + a.text + ")", a.value ? std::optional(1.0 - *a.value) : a.value};
      }
      default: {
        const bool is_and = random_() % 2 == 0;
        const Written a = Condition(depth - 1);
        const Written b = Condition(depth - 1);
        const std::string text = "(" + a.text + (is_and ? ") and (" : ")or(") + b.text + ")";
        if (!a.value || !b.value) return {text, std::nullopt};
        return {text, is_and ? *a.value * *b.value : std::max(*a.value, *b.value)};
      }
    }
  }

 private:
  Written Literal() {
    const double number =
        std::ldexp(static_cast<double>(random_()), static_cast<int>(random_() % 40) - 30);
    return {Dump(Json(number)), number};
  }

  template <class Compute>
  Written Pair(int depth, const char* sign, Compute compute) {
    const Written a = Number(depth - 1);
    const Written b = Number(depth - 1);
    const std::string text = "(" + a.text + ")" + sign + "(" + b.text + ")";
    if (!a.value || !b.value) return {text, std::nullopt};
    return {text, compute(*a.value, *b.value)};
  }

  template <class Compute>
  Written Single(int depth, const char* opening, Compute compute) {
    const Written a = Number(depth - 1);
    return {opening + a.text + ")",
            a.value ? std::optional<double>(compute(*a.value)) : std::nullopt};
  }

  std::mt19937 random_;
};

TEST(Expression, GivesWhatAPlainEvaluatorGives) {
  Writer writer(5);
  int failed = 0;
  for (int round = 0; round < 1000; ++round) {
    const bool is_number = round % 2 == 0;
    const Writer::Written written = is_number ? writer.Number(4) : writer.Condition(4);
    SCOPED_TRACE(written.text);
    const Json value = ValueOf(WithExpression(written.text));
    if (!written.value) {
      ++failed;
      ASSERT_TRUE(value.is_null()) << value;
    } else if (is_number) {
      ASSERT_EQ(value, NumberToJson(*written.value));  // with round-trip digits
      ASSERT_EQ(Dump(value), Dump(NumberToJson(*written.value)));
    } else {
      ASSERT_EQ(value, *written.value == 1.0);
    }
  }
  EXPECT_GT(failed, 25);
  EXPECT_LT(failed, 500);
}

}  // namespace
}  // namespace nuvhost
