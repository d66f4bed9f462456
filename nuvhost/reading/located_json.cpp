#include "nuvhost/reading/located_json.h"

#include <algorithm>
#include <unordered_map>

#include "nuvhost/text/names.h"
#include "nuvhost/values/json_text.h"

namespace nuvhost {
namespace {

/// What the parser says in words for people: without its prefix and the text it read last, but
/// with the token that it did not expect.
std::string Reason(std::string_view what, std::string_view token) {
  const std::size_t dash = what.find(" - ");
  std::string reason(dash == std::string_view::npos ? what : what.substr(dash + 3));
  const std::size_t read = reason.find("; last read: ");
  if (read != std::string::npos) {
    const std::size_t expected = reason.find("; expected ", read);
    reason.erase(read, expected == std::string::npos ? expected : expected - read);
  }
  const std::pair<const char*, std::string> words[] = {
      {"invalid literal", "unexpected " + Quoted(token)},
      {"end of input", "end of the file"},
      {"string literal", "a text in double quotes"},
      {"number literal", "a number"},
      {"'[', '{', or a literal", "a value"},
      {"; expected '}'", "; expected ',' or '}'"},
      {"; expected ']'", "; expected ',' or ']'"},
  };
  for (const auto& [from, to] : words) {
    const std::size_t found = reason.find(from);
    if (found != std::string::npos) reason.replace(found, std::string_view(from).size(), to);
  }
  return "broken JSON: " + reason;
}

/// The token at a byte, or the separator that stands there.
Token TokenAt(std::string_view text, std::size_t byte) {
  if (byte < text.size() && (text[byte] == ',' || text[byte] == ':')) return {byte, byte + 1};
  Token token = NextToken(text, 0);
  while (token.begin < text.size() && token.end <= byte) token = NextToken(text, token.end);
  return token;
}

/// The number that no double can hold.
Token Overflow(std::string_view text) {
  Token token = NextToken(text, 0);
  while (token.begin < text.size() &&
         (kBrackets.find(text[token.begin]) != std::string_view::npos ||
          Json::accept(text.substr(token.begin, token.end - token.begin)))) {
    token = NextToken(text, token.end);
  }
  return token;
}

/// Walks a text that is JSON and notes where everything stands.
class Walk {
 public:
  Walk(const SourceText& source, Mistakes& mistakes) : source_(source), mistakes_(mistakes) {
    Advance();
  }

  JsonPlaces Value() {
    JsonPlaces places;
    places.value = token_.begin;
    const char first = source_.Text()[token_.begin];
    Advance();
    if (first == '[') Elements(places);
    if (first == '{') Members(places);
    return places;
  }

 private:
  void Advance() { token_ = NextToken(source_.Text(), token_.end); }
  bool At(char bracket) const { return source_.Text()[token_.begin] == bracket; }

  void Elements(JsonPlaces& places) {
    while (!At(']')) places.children.push_back(Value());
    Advance();
  }

  // As in the parsed object, a member given again takes the place of the first.
  void Members(JsonPlaces& places) {
    std::unordered_map<std::string, std::size_t> known;
    while (!At('}')) {
      const Token name_token = token_;
      const std::string name =
          Json::parse(source_.Text().substr(name_token.begin, name_token.end - name_token.begin));
      Advance();
      JsonPlaces member = Value();
      member.name = name_token.begin;
      const auto [found, is_new] = known.emplace(name, places.children.size());
      if (is_new) {
        places.children.push_back(std::move(member));
      } else {
        mistakes_.Add(source_, name_token.begin, Quoted(name) + " is given twice");
        places.children[found->second] = std::move(member);
      }
    }
    Advance();
  }

  const SourceText& source_;
  Mistakes& mistakes_;
  Token token_{0, 0};
};

}  // namespace

std::vector<Located> Located::Elements() const {
  std::vector<Located> elements;
  if (!json_->is_array()) return elements;
  for (std::size_t i = 0; i < json_->size(); ++i) {
    elements.emplace_back((*json_)[i], places_->children[i]);
  }
  return elements;
}

std::vector<std::pair<std::string_view, Located>> Located::Members() const {
  std::vector<std::pair<std::string_view, Located>> members;
  if (!json_->is_object()) return members;
  auto place = places_->children.begin();
  for (const auto& [name, value] : json_->get_ref<const Json::object_t&>()) {
    members.emplace_back(name, Located(value, *place++));
  }
  return members;
}

std::optional<Located> Located::Find(std::string_view name) const {
  for (const auto& [member, value] : Members()) {
    if (member == name) return value;
  }
  return std::nullopt;
}

std::optional<LocatedJson> LocatedJson::Parse(const SourceText& source, Mistakes& mistakes) {
  if (!IsText(source, mistakes)) return std::nullopt;
  const std::string_view text = source.Text();
  if (const auto excess = FindExcess(text)) {
    mistakes.Add(source, excess->offset, excess->what);
    return std::nullopt;
  }
  try {
    Json json = Json::parse(text);
    return LocatedJson(std::move(json), Walk(source, mistakes).Value());
  } catch (const Json::parse_error& error) {
    const std::string_view what = error.what();
    std::size_t byte = error.byte == 0 ? 0 : error.byte - 1;
    // A word, number or text that stopped short is itself the one to show.
    const auto says = [&](const char* words) { return what.find(words) != what.npos; };
    const bool is_word = says("- invalid literal") || says("- invalid number");
    if (byte > 0 && (says("missing closing quote") || (is_word && !EndsWord(text[byte - 1])))) {
      --byte;
    }
    const Token token = TokenAt(text, byte);
    mistakes.Add(source, token.begin,
                 Reason(error.what(), text.substr(token.begin, token.end - token.begin)));
  } catch (const Json::out_of_range&) {
    const Token token = Overflow(text);
    mistakes.Add(source, token.begin,
                 std::string(text.substr(token.begin, token.end - token.begin)) +
                     " is beyond the range of numbers");
  }
  return std::nullopt;
}

}  // namespace nuvhost
