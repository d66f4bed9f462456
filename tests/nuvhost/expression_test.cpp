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

/// A program whose steps and data an expression can name, and a row that shows it.
std::string WithExpression(const std::string& expression) {
  return R"({"data": {"on": true}, "steps": [
  {"name": "seven", "instr": "_Nuv_Numeric_Set_", "in": [7]},
  {"name": "inner diameter", "instr": "_Nuv_Numeric_Set_", "in": [-2.25]}],
"report": [{"label": "R", "value": {"expr": ")" +
         expression + R"("}}]})";
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

// tests/transcripts/run_expressions.txt has what operators and names mean, and all other mistakes.
TEST(Expression, HasLimits) {
  const std::string deep(200, '(');
  EXPECT_EQ(ValueOf(WithExpression(deep + "1" + std::string(200, ')'))), 1);
  EXPECT_NE(Dump(ValueOf(WithExpression(deep + '('))).find("nested over 200 deep"),
            std::string::npos);
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
