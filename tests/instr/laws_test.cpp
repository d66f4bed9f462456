// Laws that hold of instructions however they are made: two terms, of calls within calls, that give
// the same value to the letter, over random and hostile values.

#include <algorithm>
#include <cmath>
#include <string>
#include <string_view>

#include "nuvhost/text/utf8.h"
#include "tests/instr/any_arrays.h"
#include "tests/instr/table.h"

namespace {

using nuvhost::Json;

/// A term is a value, the letter of one, or an instruction with terms as its inputs, of whose
/// results the first counts, or that of the digit behind it.
struct Law {
  const char* left;
  const char* right;
};

// The ? is each of the letters of element types. A and B hold some elements, x and y are others; i
// is the index of one of A, n a small count.
const Law kOfEveryType[] = {
    {"C?ArrErase(C?ArrInsert(A, i, x), i)", "A"},
    {"C?ArrInsert(C?ArrErase(A, i), i, C?ArrGetAt(A, i))", "A"},
    {"C?ArrEraseRange(C?ArrInsert(A, i, x, y), i, Increment(i))", "A"},
    {"C?ArrGetAt(C?ArrInsert(A, i, x, y), i)", "x"},
    {"C?ArrInsert(A, i, x, x)", "C?ArrInsertRep(A, i, 2, x)"},
    {"C?ArrInsert(A, C?ArrSize(A), x, y)", "C?ArrAppend(A, x, y)"},
    {"C?ArrErase(C?ArrAppend(A, x), C?ArrSize(A))", "A"},
    {"C?ArrAppend(A, x, y, x)", "C?ArrConcatArr(A, C?ArrCreateInf(x, y, x))"},
    {"C?ArrAppendRep(A, n, x)", "C?ArrConcatArr(A, C?ArrCreateRep(n, x))"},
    {"C?ArrResize(C?ArrAppendRep(A, n, x), C?ArrSize(A))", "A"},
    {"C?ArrGetRange(C?ArrConcatArr(A, B), C?ArrSize(A), C?ArrSize(B))", "B"},
    {"C?ArrConcatArr(C?ArrGetRange(A, 0, i), C?ArrGetRange(A, i, 2147483647))", "A"},
    {"C?ArrConcatArr(A, C?ArrConcatArr(B, A))", "C?ArrConcatArr(C?ArrConcatArr(A, B), A)"},
    {"C?ArrEraseRange(A, i, Decrement(C?ArrSize(A)))", "C?ArrResize(A, i)"},
    {"C?ArrGetAt(C?ArrSetAt(A, i, x), i)", "x"},
    {"C?ArrSetAt(C?ArrSetAt(A, i, x), i, C?ArrGetAt(A, i))", "A"},
    {"AddNumbers(C?ArrSize(A), C?ArrSize(B))", "C?ArrSize(C?ArrConcatArr(B, A))"},
};

// Of number arrays P is A in another order. F and G are equally many numbers with so few bits that
// sums and squares are exact, and a power of two of them, so that means are, too; H is F in another
// order, c another such number, k the index of one. p is true or false.
const Law kOfNumberArrays[] = {
    {"CNArrReverse(CNArrReverse(A))", "A"},
    {"CNArrReverse(CNArrConcatArr(A, B))", "CNArrConcatArr(CNArrReverse(B), CNArrReverse(A))"},
    {"CNArrSort(CNArrSort(A, p), p)", "CNArrSort(A, p)"},
    {"CNArrSort(P, p)", "CNArrSort(A, p)"},
    {"CNArrReverse(CNArrSort(A, p))", "CNArrSort(A, Not(p))"},
    {"CNArrSort(CNArrMathIndexArray(A), false)",
     "CNArrMathIndexArray(CNArrCreateRep(CNArrSize(A), c))"},
    // 0 added, since a sort tells -0 from 0 and an index does not.
    {"AddNumbers(CNArrGetAt(A, CNArrGetAt(CNArrMathIndexArray(A), i)), 0)",
     "AddNumbers(CNArrGetAt(CNArrSort(A, true), i), 0)"},
    {"CNArrCopyArray(A, i, n)", "CNArrGetRange(A, i, n)"},
    {"CNArrConcatArr(CNArrConcatArr(CNArrGetRange(A, 0, i), B), CNArrGetRange(A, i, 999))",
     "CNArrInsertArray(B, A, i)"},
    {"CNArrGetRange(CNArrSetRange(CNArrAppendRep(A, n, 3), i, n, x, false), i, n)",
     "CNArrCreateRep(n, x)"},
    {"CNArrMathSmooth(CNArrMathSmooth(A, Increment(k), p), Increment(n), p)",
     "CNArrMathSmooth(A, AddNumbers(Increment(k), Increment(n)), p)"},
    {"CNArrMathSmooth(CNArrReverse(F), Increment(n), p)",
     "CNArrReverse(CNArrMathSmooth(F, Increment(n), p))"},
    {"CNArrMathSubtract(CNArrMathAdd(F, G), G)", "F"},
    {"CNArrMathMaximum(H)", "CNArrGetAt(CNArrSort(F, true), 0)"},
    {"CNArrMathMinimum(H)", "CNArrGetAt(CNArrSort(F, false), 0)"},
    {"CMaxArr(CNArrMathConstMulAdd(F, -4, c))", "AddNumbers(MultiplyNumbers(CMinArr(F), -4), c)"},
    {"CNArrGetAt(F, CMaxArr(F).1)", "CMaxArr(F)"},
    {"CNArrGetAt(F, CNArrMathExtrema(F).3)", "CMinArr(H)"},
    {"CSumArr(H)", "CSumArr(F)"},
    {"CMeanArr(CNArrMathConstMulAdd(H, 4, c))", "AddNumbers(MultiplyNumbers(CMeanArr(F), 4), c)"},
    {"CNMeanAndVar(CNArrMathConstMulAdd(H, 4, c)).1", "MultiplyNumbers(CNMeanAndVar(F).1, 16)"},
    {"CVarianceArr(CNArrMathConstMulAdd(H, 4, c))", "MultiplyNumbers(CVarianceArr(F), 16)"},
    {"CMean(x, y, c)", "CMeanArr(CNArrCreateInf(x, y, c))"},
    {"CMin(x, y, c).1", "CMinArr(CNArrCreateInf(x, y, c)).1"},
    {"CMax(x, y, c).1", "CMaxArr(CNArrCreateInf(x, y, c)).1"},
    {"CCp(9999, c, c, k, 0.5)", "CCpArr(9999, c, CNArrCreateInf(c, k, 0.5))"},
    {"CCpk(9999, c, c, k, 0.5)", "CCpkArr(9999, c, CNArrCreateInf(c, k, 0.5))"},
    {"CCpkArr(c, k, F)", "CCpkArr(CNegate(k), CNegate(c), CNArrMathConstMulAdd(F, -1, 0))"},
};

// S and T are texts, s is a part of S; j and m are a position in S and a count that fits behind it.
// z is any number, u and v are whole ones, q is their quotient.
const Law kOfTextsAndNumbers[] = {
    {"CCreateStrInf(CLeftStr(S, j), CMidStr(S, j, m), CMidStr(S, AddNumbers(j, m), 999))", "S"},
    {"CAddStr(CLeftStr(S, j), CRightStr(S, SubtractNumbers(CLenStr(S), j)))", "S"},
    {"CTrimStr(CCreateStrInf(T, S, T), CLenStr(T), CLenStr(T))", "S"},
    {"CMidStr(CInsertAtStr(S, j, T), j, CLenStr(T))", "T"},
    {"CAddStr(CLeftStr(S, j), CAddStr(T, CMidStr(S, j, 999)))", "CInsertAtStr(S, j, T)"},
    {"CSetAtStr(S, j, CGetAt(CSetAtStr(S, j, 65), j))", "CSetAtStr(S, j, 65)"},
    {"CReplaceStr(S, s, s)", "S"},
    {"CMidStr(S, CFindStr(S, s), CLenStr(s))", "s"},
    {"CMidStr(S, CFindStrReverse(S, s), CLenStr(s))", "s"},
    {"CFindStr(CLeftStr(S, Decrement(AddNumbers(CFindStr(S, s), CLenStr(s)))), s)", "-1"},
    {"CLenStr(CReplaceStr(S, s, CAddStr(s, s)))",
     "SubtractNumbers(MultiplyNumbers(CLenStr(S), 2), CLenStr(CReplaceStr(S, s, \"\")))"},
    {"CCompStr(S, T, p)", "CNegate(CCompStr(T, S, p))"},
    {"CNum2Char(-1, CChar2Num(S))", "S"},
    {"CPackStr(CSArrCreateInf(S, T, s))", "CCreateStrInf(S, T, s)"},
    {"CStringToNumber(CPrintfNum(\"%.17g\", z))", "z"},
    {"CStringToNumber(CPrintfNum(\"%+.16e\", z))", "z"},
    {"AddNumbers(CTruncate(q), CFractional(q))", "q"},
    {"AddNumbers(MultiplyNumbers(IntegerDivideNumbers(u, v), v), RemainderNumbers(u, v))", "u"},
    {"Not(And(p, CGreater(u, v)))", "Or(Not(p), CLessOrEqual(u, v))"},
};

class Terms {
 public:
  explicit Terms(const Json& values) : values_(values) {}

  Json Of(std::string term) {
    std::erase(term, ' ');
    std::string_view rest = term;
    return Next(rest);
  }

 private:
  Json Next(std::string_view& rest) {
    const std::size_t end = std::min(rest.find_first_of("(,)"), rest.size());
    const std::string word(rest.substr(0, end));
    rest.remove_prefix(end);
    if (!rest.starts_with('(')) {
      return values_.contains(word) ? values_[word] : Json::parse(word);
    }
    Json inputs = Json::array();
    while (!rest.starts_with(')')) {
      rest.remove_prefix(1);
      inputs.push_back(Next(rest));
    }
    rest.remove_prefix(1);
    std::size_t result = 0;
    if (rest.starts_with('.')) {
      result = static_cast<std::size_t>(rest[1] - '0');
      rest.remove_prefix(2);
    }
    const Json answer = Exec(session_, Json{{"instr", Identifier(word)}, {"in", inputs}}.dump());
    EXPECT_EQ(answer.value("status", -1), 0) << word << inputs << answer;
    return answer["out"][result];
  }

  /// By its last part.
  static std::string Identifier(const std::string& name) {
    for (const char* family :
         {"", "Nuv_Array_", "Nuv_System_", "Nuv_String_", "Nuv_Number_", "Nuv_Numeric_",
          "Nuv_Numeric-Stat_", "Nuv_Number-Stat_", "Nuv_Default_", "Nuv_Boolean_"}) {
      const std::string identifier = std::string("_") + family + name + "_";
      if (BuiltCatalogue().FindIdentifier(identifier) != nullptr) return identifier;
    }
    return "_Nuv_Array_CArrConcatArr_";  // that of points
  }

  const Json& values_;
  nuvhost::ExecSession session_{BuiltCatalogue()};
};

Json Number(double number) {
  CNuvObject object;
  object = number;
  return nuvhost::ToJson(object);
}

/// What the letters stand for.
class Draws {
 public:
  explicit Draws(char kind) : kind_(kind) {}

  Json Draw() {
    Json v;
    v["A"] = Array(3 + Below(Below(4) == 0 ? 140 : 20));
    v["B"] = Array(1 + Below(20));
    v["P"] = Shuffled(v["A"]);
    v["x"] = Array(1)[0];
    v["y"] = Array(1)[0];
    v["i"] = Below(v["A"].size());
    v["n"] = Below(6);
    v["p"] = Below(2) == 1;
    const std::size_t size = std::size_t{4} << Below(6);
    for (std::size_t i = 0; i < size; ++i) {
      v["F"].push_back(Exact());
      v["G"].push_back(Exact());
    }
    v["H"] = Shuffled(v["F"]);
    v["c"] = Exact();
    v["k"] = Below(size);

    const std::string text = Text(60) + "b";
    const std::size_t at = Below(text.size());
    const std::size_t count = 1 + Below(text.size() - at);
    v["S"] = nuvhost::Utf8FromBytes(text);
    v["s"] = nuvhost::Utf8FromBytes(text.substr(at, count));
    v["T"] = nuvhost::Utf8FromBytes(Text(9));
    v["j"] = at;
    v["m"] = count;
    double any = kNaN;
    while (!std::isfinite(any)) any = AnyNumber(random_);
    v["z"] = Number(any);
    const double u = static_cast<double>(Below(4001)) - 2000.0;
    const double w = (1.0 + static_cast<double>(Below(50))) * (Below(2) == 0 ? 1.0 : -1.0);
    v["u"] = Number(u);
    v["v"] = Number(w);
    v["q"] = Number(u / w);
    return v;
  }

 private:
  std::size_t Below(std::size_t end) { return random_() % end; }
  /// An eighth of a whole number, not 0.
  Json Exact() { return Number((2.0 * static_cast<double>(Below(8000)) - 7999.0) / 8.0); }

  /// Of one sort of numbers.
  Json Array(std::size_t size) {
    const auto sort = static_cast<unsigned>(Below(8));
    const ::Array first = AnyArray(random_, size, sort);
    const ::Array second = AnyArray(random_, size, sort);
    Json array = Json::array();
    for (std::size_t i = 0; i < size; ++i) {
      const Json number = Number(first[i]);
      switch (kind_) {
        case 'B': array.push_back(Below(2) == 1); break;
        case 'N': array.push_back(number); break;
        case 'S': array.push_back(nuvhost::Utf8FromBytes(Text(12))); break;
        case 'P': array.push_back({{"x", number}, {"y", Number(second[i])}}); break;
        default: array.push_back({{"a", number}, {"d", Number(second[i])}}); break;
      }
    }
    return array;
  }
  Json Shuffled(Json array) {
    std::shuffle(array.begin(), array.end(), random_);
    return array;
  }
  /// Of two letters, so that it repeats itself, or of any.
  std::string Text(std::size_t longest) {
    std::string text(Below(longest), 'a');
    const bool is_any = Below(2) == 0;
    for (char& c : text) c = static_cast<char>(is_any ? 1 + Below(0xff) : 'a' + Below(2));
    return text;
  }

  char kind_;
  std::mt19937_64 random_{21};
};

template <class Laws>
void Hold(const Laws& laws, char kind, int rounds) {
  Draws values(kind);
  for (int round = 0; round < RandomRounds(rounds); ++round) {
    const Json drawn = values.Draw();
    Terms terms(drawn);
    for (const Law& law : laws) {
      std::string left = law.left;
      std::string right = law.right;
      std::ranges::replace(left, '?', kind);
      std::ranges::replace(right, '?', kind);
      ASSERT_EQ(terms.Of(left).dump(), terms.Of(right).dump())
          << left << " = " << right << " where " << drawn;
    }
  }
}

TEST(Laws, OfEveryElementType) {
  for (const char kind : {'B', 'N', 'S', 'P', 'L'}) Hold(kOfEveryType, kind, 30);
}
TEST(Laws, OfNumberArrays) {
  Hold(kOfNumberArrays, 'N', 100);
}
TEST(Laws, OfTextsAndNumbers) {
  Hold(kOfTextsAndNumbers, 'N', 300);
}

}  // namespace
