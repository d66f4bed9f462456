// LocatedJson: a JSON text's values, each with its place in the text.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "nuvhost/reading/source_text.h"
#include "nuvhost/values/json_value.h"

namespace nuvhost {

/// Where a value stands, where its name does if it is a member, and the same for all within it.
struct JsonPlaces {
  std::size_t value = 0;
  std::size_t name = 0;
  std::vector<JsonPlaces> children;
};

/// A value in a text; it refers to the LocatedJson it came from.
class Located {
 public:
  Located(const Json& json, const JsonPlaces& places) : json_(&json), places_(&places) {}

  const Json& operator*() const { return *json_; }
  const Json* operator->() const { return json_; }
  std::size_t Offset() const { return places_->value; }
  /// Where the member's name stands; only for a member.
  std::size_t NameOffset() const { return places_->name; }

  /// The elements of a list; none for any other value.
  std::vector<Located> Elements() const;
  /// The members of an object, in order; none for any other value.
  std::vector<std::pair<std::string_view, Located>> Members() const;
  std::optional<Located> Find(std::string_view name) const;

 private:
  const Json* json_;
  const JsonPlaces* places_;
};

class LocatedJson {
 public:
  /// Parses a text. Broken JSON and what exceeds a limit (json_text.h) are mistakes that leave
  /// nothing; a member given twice is a mistake too.
  static std::optional<LocatedJson> Parse(const SourceText& source, Mistakes& mistakes);

  Located Root() const { return {json_, places_}; }

 private:
  LocatedJson(Json json, JsonPlaces places) : json_(std::move(json)), places_(std::move(places)) {}

  Json json_;
  JsonPlaces places_;
};

}  // namespace nuvhost
