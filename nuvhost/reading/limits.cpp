#include "nuvhost/reading/limits.h"

#include <charconv>
#include <cmath>

#include "host/records.h"
#include "nuvhost/values/json_value.h"
#include "nuvhost/values/value_text.h"

namespace nuvhost {
namespace {

/// The finite number of a member that is there; nothing, and a mistake, for anything else.
std::optional<double> FiniteNumber(Checker& checker, const Located& value,
                                   const std::string& what) {
  if (value->is_number() && std::isfinite(value->get<double>())) return value->get<double>();
  checker.Complain(value, what + ": expected a number, found " + Dump(*value));
  return std::nullopt;
}

std::optional<double> NumberMember(Checker& checker, const Located& row, std::string_view member) {
  const auto value = row.Find(member);
  if (!value) return std::nullopt;
  return FiniteNumber(checker, *value, "\"" + std::string(member) + "\"");
}

/// The sum of two numbers, at 15 digits, which every decimal that a person writes has at most.
double DecimalSum(double a, double b) {
  constexpr int kDigits = 15;
  char digits[32];
  const auto [end, error] = std::to_chars(std::begin(digits), std::end(digits), a + b,
                                          std::chars_format::scientific, kDigits - 1);
  double sum = a + b;
  std::from_chars(digits, end, sum);
  return sum;
}

/// The deviations from the nominal value that "tolerance" allows, the lower one first.
std::optional<std::pair<double, double>> ReadTolerance(Checker& checker, const Located& json) {
  const char* const what = "\"tolerance\"";
  if (!json->is_array()) {
    const auto width = FiniteNumber(checker, json, what);
    if (!width) return std::nullopt;
    if (*width >= 0.0) return std::pair{-*width, *width};
    checker.Complain(json, "{}: a single number is at least 0; write two as [-0.02, 0.05]", what);
    return std::nullopt;
  }
  const std::vector<Located> ends = json.Elements();
  if (ends.size() != 2) {
    checker.Complain(json, "{}: expected one number, or two as [-0.02, 0.05], found {} elements",
                     what, ends.size());
    return std::nullopt;
  }
  const auto lower = FiniteNumber(checker, ends[0], what);
  const auto upper = FiniteNumber(checker, ends[1], what);
  if (!lower || !upper) return std::nullopt;
  if (*lower <= *upper) return std::pair{*lower, *upper};
  checker.Complain(json, "{}: the lower deviation stands first", what);
  return std::nullopt;
}

void ReadNominal(Checker& checker, const Located& row, Limits& limits) {
  const auto nominal = row.Find("nominal");
  const auto tolerance = row.Find("tolerance");
  if (!nominal && !tolerance) return;
  if (!nominal || !tolerance) {
    checker.Complain(nominal ? *nominal : *tolerance,
                     R"("nominal" and "tolerance" go together; limits alone are "min" and "max")");
    return;
  }
  for (const char* const other : {"min", "max"}) {
    if (const auto json = row.Find(other)) {
      checker.Complain(json->NameOffset(),
                       "limits are either \"min\" and \"max\" or \"nominal\" with \"tolerance\"");
      return;
    }
  }
  const auto value = NumberMember(checker, row, "nominal");
  const auto deviations = ReadTolerance(checker, *tolerance);
  if (!value || !deviations) return;
  limits.least = DecimalSum(*value, deviations->first);
  limits.most = DecimalSum(*value, deviations->second);
}

bool Take(std::string_view& text, std::string_view word) {
  if (!text.starts_with(word)) return false;
  text.remove_prefix(word.size());
  return true;
}

std::optional<double> TakeNumber(std::string_view& text) {
  double number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || !std::isfinite(number)) return std::nullopt;
  text.remove_prefix(static_cast<std::size_t>(end - text.data()));
  return number;
}

}  // namespace

Limits ReadLimits(Checker& checker, const Located& row, std::uint32_t type) {
  for (const char* const member : {"min", "max", "nominal", "tolerance", "expect"}) {
    const std::uint32_t judged =
        member == std::string_view("expect") ? NUV_PARAM_BOOLEAN : NUV_PARAM_NUMBER;
    const auto json = row.Find(member);
    if (!json || type == judged) continue;
    checker.Complain(json->NameOffset(), "\"{}\" is for a {}; this result's type is {}", member,
                     Describe(judged), Describe(type));
    return {};
  }
  Limits limits;
  limits.least = NumberMember(checker, row, "min");
  limits.most = NumberMember(checker, row, "max");
  if (limits.least && limits.most && *limits.least > *limits.most) {
    checker.Complain(*row.Find("min"), "\"min\" is greater than \"max\"");
  }
  ReadNominal(checker, row, limits);
  if (const auto expect = row.Find("expect")) {
    if ((*expect)->is_boolean()) {
      limits.expected = (*expect)->get<bool>();
    } else {
      checker.Complain(*expect, "\"expect\": expected true or false, found " + Dump(**expect));
    }
  }
  return limits;
}

bool Hold(const Limits& limits, const CNuvObject& value) {
  if (limits.expected) return static_cast<bool>(value) == *limits.expected;
  if (!limits.Judge()) return true;
  const auto number = static_cast<double>(value);
  return std::isfinite(number) && (!limits.least || number >= *limits.least) &&
         (!limits.most || number <= *limits.most);
}

std::string LimitsText(const Limits& limits) {
  if (limits.expected) return *limits.expected ? "yes" : "no";
  if (!limits.least && !limits.most) return "";
  if (!limits.most) return "at least " + NumberText(*limits.least);
  if (!limits.least) return "at most " + NumberText(*limits.most);
  return NumberText(*limits.least) + " to " + NumberText(*limits.most);
}

std::optional<Limits> TakeLimits(std::string_view& text) {
  std::string_view rest = text;
  Limits limits;
  if (Take(rest, "yes")) {
    limits.expected = true;
  } else if (Take(rest, "no")) {
    limits.expected = false;
  } else if (Take(rest, "at most ")) {
    limits.most = TakeNumber(rest);
  } else if (Take(rest, "at least ")) {
    limits.least = TakeNumber(rest);
  } else {
    limits.least = TakeNumber(rest);
    if (!limits.least || !Take(rest, " to ")) return std::nullopt;
    limits.most = TakeNumber(rest);
    if (!limits.most) return std::nullopt;
  }
  if (!limits.Judge()) return std::nullopt;
  text = rest;
  return limits;
}

}  // namespace nuvhost
