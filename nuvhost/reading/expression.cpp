#include "nuvhost/reading/expression.h"

#include <algorithm>
#include <charconv>
#include <type_traits>

#include "nuvhost/reading/literals.h"
#include "nuvhost/text/names.h"

namespace nuvhost {
namespace {

constexpr int kMaxNesting = 200;
constexpr std::size_t kLongestExpression = 10000;

/// An operator or a function: the instruction that it stands for, and what it takes.
struct Operation {
  std::string_view sign;
  const char* identifier;
  std::uint32_t takes;  ///< the type of its operands
  std::uint32_t gives;
  bool repeats = false;  ///< of a function: whether it takes any number of values
};

constexpr std::uint32_t kNumber = NUV_PARAM_NUMBER;
constexpr std::uint32_t kBoolean = NUV_PARAM_BOOLEAN;

constexpr Operation kSums[] = {{"+", "_Nuv_Numeric_AddNumbers_", kNumber, kNumber},
                               {"-", "_Nuv_Numeric_SubtractNumbers_", kNumber, kNumber}};
constexpr Operation kProducts[] = {{"*", "_Nuv_Numeric_MultiplyNumbers_", kNumber, kNumber},
                                   {"/", "_Nuv_Numeric_DivideNumbers_", kNumber, kNumber}};
// Where one sign begins another the longer comes first.
constexpr Operation kComparisons[] = {{"<=", "_Nuv_Numeric_CLessOrEqual_", kNumber, kBoolean},
                                      {">=", "_Nuv_Numeric_CGreaterOrEqual_", kNumber, kBoolean},
                                      {"!=", "_Nuv_Numeric_CNotEqual_", kNumber, kBoolean},
                                      {"==", "_Nuv_Numeric_CEqual_", kNumber, kBoolean},
                                      {"=", "_Nuv_Numeric_CEqual_", kNumber, kBoolean},
                                      {"<", "_Nuv_Numeric_CLess_", kNumber, kBoolean},
                                      {">", "_Nuv_Numeric_CGreater_", kNumber, kBoolean}};
constexpr Operation kAnd[] = {{"and", "_Nuv_Boolean_And_", kBoolean, kBoolean}};
constexpr Operation kOr[] = {{"or", "_Nuv_Boolean_Or_", kBoolean, kBoolean}};
constexpr Operation kNot{"not", "_Nuv_Boolean_Not_", kBoolean, kBoolean};
constexpr Operation kMinus{"-", "_Nuv_Numeric_CNegate_", kNumber, kNumber};
constexpr Operation kPower{"^", "_Nuv_Numeric_PowNumbers_", kNumber, kNumber};
constexpr Operation kFunctions[] = {{"min", "_Nuv_Numeric_CMin_", kNumber, kNumber, true},
                                    {"max", "_Nuv_Numeric_CMax_", kNumber, kNumber, true},
                                    {"abs", "_Nuv_Numeric_CAbs_", kNumber, kNumber},
                                    {"sqrt", "_Nuv_Numeric_CSqrt_", kNumber, kNumber}};
constexpr Operation kSetNumber{"", "_Nuv_Numeric_Set_", kNumber, kNumber};
constexpr Operation kSetBoolean{"", "_Nuv_Boolean_Set_", kBoolean, kBoolean};

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

/// Names in letters, digits and underscores, of any language.
bool IsNameCharacter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || IsDigit(c) || c == '_' ||
         static_cast<unsigned char>(c) >= 0x80;
}

bool IsReserved(std::string_view word) {
  return word == "and" || word == "or" || word == "not" || word == "true" || word == "false";
}

const CatalogueEntry& InstructionOf(const Operation& operation, const Catalogue& catalogue,
                                    std::size_t at) {
  if (const CatalogueEntry* found = catalogue.FindIdentifier(operation.identifier)) return *found;
  throw ExpressionError(
      at,
      fmt::format("the library has no instruction {}, which {} stands for", operation.identifier,
                  operation.sign.empty() ? "a value" : Quoted(operation.sign)));
}

/// Descends through the levels of precedence, the loosest first, and adds steps as it returns.
class Parser {
 public:
  Parser(std::string_view text, const Catalogue& catalogue, const ResolveName& resolve,
         const Generated& generated, std::vector<Step>& steps)
      : text_(text),
        catalogue_(catalogue),
        resolve_(resolve),
        generated_(generated),
        steps_(steps) {}

  Operand Read() {
    const Part whole = Or();
    SkipBlanks();
    if (at_ < text_.size()) Fail(at_, "expected an operator, found " + Found());
    return whole.operand;
  }

 private:
  struct Part {
    Operand operand;
    std::size_t begin;
  };

  [[noreturn]] static void Fail(std::size_t at, const std::string& text) {
    throw ExpressionError(at, text);
  }

  void SkipBlanks() { at_ = std::min(text_.find_first_not_of(" \t\r\n", at_), text_.size()); }

  /// The word, number or character at which the parser stands, in quotes.
  std::string Found() const {
    if (at_ == text_.size()) return "the end of the expression";
    std::size_t end = at_;
    while (end < text_.size() && IsNameCharacter(text_[end])) ++end;
    return Quoted(text_.substr(at_, std::max<std::size_t>(end - at_, 1)));
  }

  std::string_view Word() const {
    std::size_t end = at_;
    while (end < text_.size() && IsNameCharacter(text_[end])) ++end;
    return text_.substr(at_, end - at_);
  }

  /// Steps over a sign, or a word as a whole.
  bool Accept(std::string_view sign) {
    SkipBlanks();
    const bool found =
        IsNameCharacter(sign[0]) ? Word() == sign : text_.substr(at_).starts_with(sign);
    if (found) at_ += sign.size();
    return found;
  }

  void Expect(std::string_view sign, const char* where) {
    if (!Accept(sign)) Fail(at_, fmt::format("expected \"{}\"{}, found {}", sign, where, Found()));
  }

  Part Or() {
    return Binary(kOr, [this] { return And(); });
  }
  Part And() {
    return Binary(kAnd, [this] { return Not(); });
  }

  Part Not() {
    SkipBlanks();
    const std::size_t begin = at_;
    if (!Accept("not")) {
      return Binary(kComparisons, [this] { return Sum(); });
    }
    const Nesting nesting(*this);
    return {Apply(kNot, begin, {Not()}), begin};
  }

  Part Sum() {
    return Binary(kSums, [this] { return Product(); });
  }
  Part Product() {
    return Binary(kProducts, [this] { return Signed(); });
  }

  Part Signed() {
    SkipBlanks();
    const std::size_t begin = at_;
    if (!Accept("-")) return Power();
    const Nesting nesting(*this);
    return {Apply(kMinus, begin, {Signed()}), begin};
  }

  /// Binds closer than a sign before it, and from the right.
  Part Power() {
    Part base = Primary();
    SkipBlanks();
    const std::size_t sign = at_;
    if (!Accept("^")) return base;
    const Nesting nesting(*this);
    return {Apply(kPower, sign, {base, Signed()}), base.begin};
  }

  /// Operands of one level, which binds from the left.
  template <std::size_t Size, class Next>
  Part Binary(const Operation (&operations)[Size], Next next) {
    Part left = next();
    while (true) {
      SkipBlanks();
      const std::size_t sign = at_;
      const auto* const found = std::ranges::find_if(
          operations, [this](const Operation& operation) { return Accept(operation.sign); });
      if (found == std::end(operations)) return left;
      left = {Apply(*found, sign, {left, next()}), left.begin};
    }
  }

  Part Primary() {
    SkipBlanks();
    const std::size_t begin = at_;
    const char first = begin < text_.size() ? text_[begin] : '\0';
    if (IsDigit(first) || first == '.') return {Number(), begin};
    if (Accept("(")) {
      const Nesting nesting(*this);
      const Part inner = Or();
      Expect(")", "");
      return {inner.operand, begin};
    }
    const std::string_view word = Word();
    if (Accept("true")) return {Constant(true), begin};
    if (Accept("false")) return {Constant(false), begin};
    if (first == '[' || !(word.empty() || IsReserved(word))) {
      return {NameOrFunction(), begin};
    }
    Fail(begin, "expected a number, a name or \"(\", found " + Found());
  }

  template <class Value>
  static Operand Constant(Value value) {
    Operand operand{CNuvObject(), std::is_same_v<Value, bool> ? kBoolean : kNumber};
    std::get<CNuvObject>(operand.argument) = value;
    return operand;
  }

  Operand Number() {
    const std::size_t begin = at_;
    double number = 0.0;
    const char* const end = text_.data() + text_.size();
    const auto [stop, error] = std::from_chars(text_.data() + at_, end, number);
    at_ = static_cast<std::size_t>(stop - text_.data());
    const bool runs_on = at_ < text_.size() && (IsNameCharacter(text_[at_]) || text_[at_] == '.');
    if (error == std::errc::invalid_argument || runs_on) {
      while (at_ < text_.size() && (IsNameCharacter(text_[at_]) || text_[at_] == '.')) ++at_;
      Fail(begin, Quoted(text_.substr(begin, std::max(at_, begin + 1) - begin)) + " is no number");
    }
    if (error != std::errc()) {
      Fail(begin,
           std::string(text_.substr(begin, at_ - begin)) + " is beyond the range of numbers");
    }
    return Constant(number);
  }

  Operand NameOrFunction() {
    const std::size_t begin = at_;
    const std::string name = Name();
    if (text_[begin] != '[' && Accept("(")) {
      const auto* const function = std::ranges::find(kFunctions, name, &Operation::sign);
      if (function == std::end(kFunctions)) {
        Fail(begin, "no function " + Quoted(name) + "; there are min, max, abs and sqrt");
      }
      return Function(*function, begin);
    }
    ExpressionName reference{name, "", begin, begin};
    if (Accept(".")) {
      SkipBlanks();
      reference.part_at = at_;
      reference.part = Name();
    }
    return resolve_(reference);
  }

  /// A word, or all within brackets.
  std::string Name() {
    const std::size_t begin = at_;
    if (at_ < text_.size() && text_[at_] == '[') {
      const std::size_t end = text_.find(']', at_);
      if (end == std::string_view::npos) Fail(begin, "a bracket without its closing \"]\"");
      at_ = end + 1;
      if (end == begin + 1) Fail(begin, "no name within the brackets");
      return std::string(text_.substr(begin + 1, end - begin - 1));
    }
    const std::string_view word = Word();
    if (word.empty()) Fail(at_, "expected a name, found " + Found());
    at_ += word.size();
    return std::string(word);
  }

  Operand Function(const Operation& function, std::size_t begin) {
    const Nesting nesting(*this);
    std::vector<Part> values{Or()};
    while (Accept(",")) {
      if (!function.repeats) {
        Fail(at_ - 1,
             fmt::format("\"{}\" takes one value; a decimal sign is a point", function.sign));
      }
      values.push_back(Or());
    }
    Expect(")",
           fmt::format(" after the value{} of \"{}\"", function.repeats ? "s" : "", function.sign)
               .c_str());
    return Apply(function, begin, values);
  }

  Operand Apply(const Operation& operation, std::size_t at, const std::vector<Part>& parts) {
    Step step;
    step.instruction = &InstructionOf(operation, catalogue_, at);
    for (const Part& part : parts) {
      if (part.operand.type != operation.takes) {
        Fail(part.begin, fmt::format("\"{}\" takes {}s; this is {}", operation.sign,
                                     Describe(operation.takes), WithArticle(part.operand.type)));
      }
      step.inputs.push_back(part.operand.argument);
    }
    step.generated = generated_;
    const bool is_function =
        std::ranges::find(kFunctions, operation.sign, &Operation::sign) != std::end(kFunctions);
    step.generated->origin +=
        fmt::format(", {} \"{}\"", is_function ? "function" : "operator", operation.sign);
    steps_.push_back(std::move(step));
    return {StepResult{steps_.size() - 1, 0}, operation.gives};
  }

  /// A level of the descent, of which there are not too many.
  struct Nesting {
    explicit Nesting(Parser& parser) : of(parser) {
      if (++of.depth_ > kMaxNesting) Fail(of.at_, "nested over 200 deep");
    }
    Nesting(const Nesting&) = delete;
    Nesting& operator=(const Nesting&) = delete;
    ~Nesting() { --of.depth_; }
    Parser& of;
  };

  std::string_view text_;
  const Catalogue& catalogue_;
  const ResolveName& resolve_;
  const Generated& generated_;
  std::vector<Step>& steps_;
  std::size_t at_ = 0;
  int depth_ = 0;
};

}  // namespace

Operand ReadExpression(std::string_view text, const Catalogue& catalogue,
                       const ResolveName& resolve, const Generated& generated,
                       std::vector<Step>& steps) {
  if (text.size() > kLongestExpression) {
    throw ExpressionError(kLongestExpression,
                          fmt::format("an expression longer than {} bytes", kLongestExpression));
  }
  return Parser(text, catalogue, resolve, generated, steps).Read();
}

Step ValueStep(const Operand& operand, const Catalogue& catalogue, const Generated& generated) {
  Step step;
  step.instruction =
      &InstructionOf(operand.type == kBoolean ? kSetBoolean : kSetNumber, catalogue, 0);
  step.inputs.push_back(operand.argument);
  step.generated = generated;
  return step;
}

}  // namespace nuvhost
