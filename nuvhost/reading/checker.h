// Checker: what reading a program's parts has in common: objects with known members, texts, and
// complaints at their places.
#pragma once

#include <fmt/format.h>

#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "nuvhost/reading/located_json.h"
#include "nuvhost/reading/source_text.h"

namespace nuvhost {

/// The nearest of the known names, or all of them where none is near and they are few.
std::string Suggestion(std::string_view name, const std::vector<std::string_view>& known);

class Checker {
 public:
  Checker(const SourceText& source, Mistakes& mistakes) : source_(source), mistakes_(mistakes) {}

  void Complain(std::size_t offset, const std::string& text);
  void Complain(const Located& value, const std::string& text) { Complain(value.Offset(), text); }
  /// Where a byte of a text's characters stands, whatever escapes are before it.
  std::size_t OffsetWithin(const Located& text, std::size_t byte) const;
  /// A text whose places in braces are filled as fmt::format does.
  template <class Place, class First, class... Rest>
  void Complain(const Place& place, fmt::format_string<First, Rest...> text, First&& first,
                Rest&&... rest) {
    Complain(place, fmt::format(text, std::forward<First>(first), std::forward<Rest>(rest)...));
  }

  /// Whether the value is an object; members that are not known, and required ones that are
  /// missing, are mistakes. `what` names the object: "a step".
  bool IsObject(const Located& value, const std::string& what,
                std::initializer_list<std::string_view> known,
                std::initializer_list<std::string_view> required);
  /// The text of a member that is there; nothing, and a mistake, for another kind of value.
  std::optional<std::string> Text(const Located& object, std::string_view member);
  /// As Text, where an empty text is a mistake too.
  std::optional<std::string> Name(const Located& object, std::string_view member);
  std::optional<bool> Boolean(const Located& object, std::string_view member);
  /// The whole number of a member that is there, from `least` to `most`.
  std::optional<std::uint64_t> WholeNumber(const Located& object, std::string_view member,
                                           std::uint64_t least, std::uint64_t most);

 private:
  const SourceText& source_;
  Mistakes& mistakes_;
};

}  // namespace nuvhost
