#include "nuvhost/reading/checker.h"

#include <algorithm>

#include "nuvhost/text/names.h"
#include "nuvhost/values/json_value.h"

namespace nuvhost {

std::string Suggestion(std::string_view name, const std::vector<std::string_view>& known) {
  constexpr std::size_t kFew = 12;
  std::string text = DidYouMean(name, known);
  if (!text.empty() || known.empty() || known.size() > kFew) return text;
  for (const std::string_view one : known)
    text += (text.empty() ? "; known: " : ", ") + Quoted(one);
  return text;
}

void Checker::Complain(std::size_t offset, const std::string& text) {
  mistakes_.Add(source_, offset, text);
}

bool Checker::IsObject(const Located& value, const std::string& what,
                       std::initializer_list<std::string_view> known,
                       std::initializer_list<std::string_view> required) {
  if (!value->is_object()) {
    Complain(value, "{} is an object in braces, found {}", what, DescribeKind(*value));
    return false;
  }
  for (const auto& [name, member] : value.Members()) {
    if (std::ranges::find(known, name) != known.end()) continue;
    Complain(member.NameOffset(), "{} has no member \"{}\"{}", what, name, Suggestion(name, known));
  }
  for (const std::string_view member : required) {
    if (!value.Find(member)) Complain(value, "{} needs a member \"{}\"", what, member);
  }
  return true;
}

std::optional<std::string> Checker::Text(const Located& object, std::string_view member) {
  const std::optional<Located> value = object.Find(member);
  if (!value) return std::nullopt;
  if ((*value)->is_string()) return (*value)->get<std::string>();
  Complain(*value, "\"{}\": expected a text, found {}", member, DescribeKind(**value));
  return std::nullopt;
}

std::optional<std::string> Checker::Name(const Located& object, std::string_view member) {
  std::optional<std::string> text = Text(object, member);
  if (!text || !text->empty()) return text;
  Complain(*object.Find(member), Quoted(member) + " is empty");
  return std::nullopt;
}

std::optional<bool> Checker::Boolean(const Located& object, std::string_view member) {
  const std::optional<Located> value = object.Find(member);
  if (!value) return std::nullopt;
  if ((*value)->is_boolean()) return (*value)->get<bool>();
  Complain(*value, "\"{}\": expected true or false, found {}", member, DescribeKind(**value));
  return std::nullopt;
}

std::size_t Checker::OffsetWithin(const Located& text, std::size_t byte) const {
  const std::string_view source = source_.Text();
  std::size_t at = text.Offset() + 1;  // behind the quote
  std::size_t decoded = 0;
  while (decoded < byte) {
    std::size_t length = 1;
    if (source[at] == '\\') {
      length = source[at + 1] == 'u' ? 6 : 2;
      const bool is_pair = length == 6 && source.substr(at + 6).starts_with("\\u") &&
                           (source[at + 2] == 'd' || source[at + 2] == 'D') &&
                           std::string_view("89abAB").find(source[at + 3]) != source.npos;
      if (is_pair) length = 12;
    }
    decoded += length < 6 ? 1
                          : Json::parse('"' + std::string(source.substr(at, length)) + '"')
                                .get_ref<const std::string&>()
                                .size();
    at += length;
  }
  return at;
}

std::optional<std::uint64_t> Checker::WholeNumber(const Located& object, std::string_view member,
                                                  std::uint64_t least, std::uint64_t most) {
  const std::optional<Located> value = object.Find(member);
  if (!value) return std::nullopt;
  if ((*value)->is_number_unsigned()) {
    const auto number = (*value)->get<std::uint64_t>();
    if (number >= least && number <= most) return number;
  }
  Complain(*value, "\"{}\": expected a whole number from {} to {}, found {}", member, least, most,
           DescribeKind(**value));
  return std::nullopt;
}

}  // namespace nuvhost
