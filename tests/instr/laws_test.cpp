// Laws that hold of instructions however they are made: two terms, of calls within calls, that give
// the same value to the letter, over random and hostile values.

#include <algorithm>
#include <cmath>
#include <map>
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
     "CNArrMathIndexArray(CNArrSort(CNArrMathIndexArray("
     "CNArrReverse(A)), true))"},
    // What 0 is added to is 0, never -0: of these the sort makes a difference, the index none.
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
    {"CNArrMathMultiply(A, P)", "CNArrMathMultiply(P, A)"},
    {"CNArrMathSubtract(F, G)", "CNArrMathAdd(F, CNArrMathConstMulAdd(G, -1, 0))"},
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
};

// S and T are texts of which s and t are parts, i and n a position in S and a count that fits
// behind it. z is any number, u and v are whole ones, q is their quotient.
const Law kOfTextsAndNumbers[] = {
    {"CCreateStrInf(CLeftStr(S, i), CMidStr(S, i, n), CMidStr(S, AddNumbers(i, n), 999))", "S"},
    {"CAddStr(CLeftStr(S, i), CRightStr(S, SubtractNumbers(CLenStr(S), i)))", "S"},
    {"CTrimStr(CCreateStrInf(T, S, T), CLenStr(T), CLenStr(T))", "S"},
    {"CMidStr(CInsertAtStr(S, i, T), i, CLenStr(T))", "T"},
    {"CAddStr(CLeftStr(S, i), CAddStr(T, CMidStr(S, i, 999)))", "CInsertAtStr(S, i, T)"},
    {"CSetAtStr(S, i, CGetAt(CSetAtStr(S, i, 65), i))", "CSetAtStr(S, i, 65)"},
    {"CReplaceStr(S, s, s)", "S"},
    {"CMidStr(S, CFindStr(S, s), CLenStr(s))", "s"},
    {"CMidStr(S, CFindStrReverse(S, s), CLenStr(s))", "s"},
    {"CFindStr(CLeftStr(S, Decrement(AddNumbers(CFindStr(S, s), CLenStr(s)))), s)", "-1"},
    {"CLenStr(CReplaceStr(S, s, CAddStr(s, s)))",
     "SubtractNumbers(MultiplyNumbers(CLenStr(S), 2), CLenStr(CReplaceStr(S, s, \"\")))"},
    {"CCompStr(S, T, p)", "CNegate(CCompStr(T, S, p))"},
    {"CPackStr(CSArrCreateInf(S, T, s))", "CCreateStrInf(S, T, s)"},
    {"CStringToNumber(CPrintfNum(\"%.17g\", z))", "z"},
    {"CStringToNumber(CPrintfNum(\"%+.16e\", z))", "z"},
    {"AddNumbers(CTruncate(q), CFractional(q))", "q"},
    {"AddNumbers(MultiplyNumbers(IntegerDivideNumbers(u, v), v), RemainderNumbers(u, v))", "u"},
    {"Not(And(p, CGreater(u, v)))", "Or(Not(p), CLessOrEqual(u, v))"},
};

class Terms {
 public:
  explicit Terms(const std::map<char, Json>& values) : values_(values) {}

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
      const auto value = values_.find(word[0]);
      return word.size() == 1 && value != values_.end() ? value->second : Json::parse(word);
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

  const std::map<char, Json>& values_;
  nuvhost::ExecSession session_{BuiltCatalogue()};
};

class Values {
 public:
  explicit Values(unsigned seed) : random_(seed) {}

  Json Element(char kind) {
    switch (kind) {
      case 'B': return Below(2) == 1;
      case 'N': return Number(AnyArray(random_, 1, Below(8))[0]);
      case 'S': return Text(12);
      case 'P': return {{"x", Element('N')}, {"y", Element('N')}};
      default: return {{"a", Element('N')}, {"d", Element('N')}};
    }
  }

  /// What laws are about, by its letter.
  std::map<char, Json> ForArrays(char kind) {
    std::map<char, Json> values;
    values['A'] = Array(kind, 3 + Below(Below(4) == 0 ? 140 : 20));
    values['B'] = Array(kind, 1 + Below(20));
    values['P'] = Shuffled(values['A']);
    values['x'] = Element(kind);
    values['y'] = Element(kind);
    values['i'] = Below(static_cast<unsigned>(values['A'].size()));
    values['n'] = Below(6);
    values['k'] = values['c'] = 0;
    const unsigned size = 4U << Below(6);
    for (const char name : {'F', 'G'}) {
      for (unsigned i = 0; i < size; ++i) values[name].push_back(Exact());
    }
    values['H'] = Shuffled(values['F']);
    values['c'] = Exact();
    values['k'] = Below(size);
    values['p'] = Below(2) == 1;
    return values;
  }

  std::map<char, Json> ForTexts() {
    std::map<char, Json> values;
    const std::string text = RawText(60) + "b";
    const std::size_t at = Below(static_cast<unsigned>(text.size()));
    const std::size_t count = Below(static_cast<unsigned>(text.size() - at)) + 1;
    values['S'] = nuvhost::Utf8FromBytes(text);
    values['s'] = nuvhost::Utf8FromBytes(text.substr(at, count));
    values['T'] = Text(9);
    values['i'] = at;
    values['n'] = count;
    double number = kNaN;
    while (!std::isfinite(number)) number = AnyNumber(random_);
    values['z'] = Number(number);
    values['u'] = static_cast<int>(Below(4001)) - 2000;
    values['v'] = static_cast<int>(Below(50)) + 1;
    if (Below(2) == 0) values['v'] = -values['v'].get<int>();
    values['q'] = Number(values['u'].get<double>() / values['v'].get<double>());
    values['p'] = Below(2) == 1;
    return values;
  }

 private:
  unsigned Below(unsigned end) { return static_cast<unsigned>(random_() % end); }

  static Json Number(double number) {
    CNuvObject object;
    object = number;
    return nuvhost::ToJson(object);
  }
  /// An eighth of a whole number, not 0.
  Json Exact() { return Number((static_cast<int>(2 * Below(8000)) - 7999) / 8.0); }

  Json Array(char kind, unsigned size) {
    Json array = Json::array();
    const unsigned numbers = Below(8);  // all of one sort
    for (unsigned i = 0; i < size; ++i) {
      array.push_back(kind == 'N' ? Number(AnyArray(random_, 1, numbers)[0]) : Element(kind));
    }
    return array;
  }
  Json Shuffled(Json array) {
    std::shuffle(array.begin(), array.end(), random_);
    return array;
  }

  /// Of two letters, so that it repeats itself, or of any.
  std::string RawText(unsigned longest) {
    std::string text(Below(longest), 'a');
    const unsigned letters = Below(2) == 0 ? 2 : 0xff;
    for (char& c : text) c = static_cast<char>(letters == 2 ? 'a' + Below(2) : 1 + Below(0xff));
    return text;
  }
  std::string Text(unsigned longest) { return nuvhost::Utf8FromBytes(RawText(longest)); }

  std::mt19937_64 random_;
};

void Check(const Law& law, char kind, const std::map<char, Json>& values) {
  if (testing::Test::HasFailure()) return;
  std::string left = law.left;
  std::string right = law.right;
  std::ranges::replace(left, '?', kind);
  std::ranges::replace(right, '?', kind);
  Terms terms(values);
  EXPECT_EQ(terms.Of(left).dump(), terms.Of(right).dump())
      << left << " = " << right << " where " << Json(values);
}

TEST(Laws, OfEveryElementType) {
  Values values(21);
  for (int round = 0; round < RandomRounds(30); ++round) {
    for (const char kind : {'B', 'N', 'S', 'P', 'L'}) {
      const auto given = values.ForArrays(kind);
      for (const Law& law : kOfEveryType) Check(law, kind, given);
      if (HasFailure()) return;
    }
  }
}

TEST(Laws, OfNumberArrays) {
  Values values(22);
  for (int round = 0; round < RandomRounds(100); ++round) {
    const auto given = values.ForArrays('N');
    for (const Law& law : kOfNumberArrays) Check(law, 'N', given);
    if (HasFailure()) return;
  }
}

TEST(Laws, OfTextsAndNumbers) {
  Values values(23);
  for (int round = 0; round < RandomRounds(300); ++round) {
    const auto given = values.ForTexts();
    for (const Law& law : kOfTextsAndNumbers) Check(law, 'S', given);
    if (HasFailure()) return;
  }
}

}  // namespace
