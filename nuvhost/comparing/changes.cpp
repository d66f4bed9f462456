#include "nuvhost/comparing/changes.h"

#include <map>
#include <set>

#include "nuvhost/comparing/parameter_pairs.h"
#include "nuvhost/text/names.h"

namespace nuvhost {
namespace {

constexpr std::uint32_t kFirstArrayType = 512;

std::string TextOf(const Json& json) {
  return json.is_string() ? json.get<std::string>() : "";
}

std::string Trimmed(const Json& json) {
  return std::string(WithoutTrailingBlanks(TextOf(json)));
}

/// Every name by which a program refers to an instruction.
std::set<std::string> NamesOf(const Json& instruction) {
  const std::string name = Trimmed(instruction.at("name"));
  return {name, Trimmed(instruction.at("category")) + ": " + name,
          Trimmed(instruction.at("identifier"))};
}

/// How often each name occurs.
using NameCounts = std::map<std::string, std::size_t, std::less<>>;

/// Values that are written the same; so -0.0 is not 0.
bool Same(const Json& one, const Json& other) {
  return one == other && Dump(one) == Dump(other);
}

/// Whether a limit leaves out values that were allowed; null is no limit.
bool IsNarrower(std::string_view field, const Json& before, const Json& after) {
  if (after.is_null()) return false;
  if (before.is_null() || !before.is_number() || !after.is_number()) return true;
  return field == "min" ? after > before : after < before;
}

/// The changes of one instruction.
class InstructionChanges {
 public:
  InstructionChanges(const Json& before, const Json& after, std::vector<Change>& changes)
      : before_(before), after_(after), changes_(changes) {}

  void Find(std::size_t position_before, std::size_t position_after) {
    if (position_before != position_after) {
      Add("position", position_before, position_after).breaks_hosts = true;
    }
    CompareIndex(before_, position_before, after_, position_after);
    for (const char* field : {"name", "category"}) {
      if (Change* change = Field(field)) {
        change->is_text = true;
        change->breaks_programs = Trimmed(change->before) != Trimmed(change->after);
      }
    }
    for (const char* field : {"description", "help", "summary", "helpFile"}) {
      if (Change* change = Field(field)) change->is_text = true;
    }
    if (Change* change = Field("format")) change->breaks_hosts = true;
    if (Change* change = Field("repeatable")) BreakBoth(*change, change->before == true);
    for (const char* list : {"constants", "inputs", "results"}) CompareList(list);
  }

 private:
  static void BreakBoth(Change& change, bool breaks) {
    change.breaks_hosts = breaks;
    change.breaks_programs = breaks;
  }

  Change& Add(std::string field, Json before, Json after) {
    changes_.push_back({.identifier = TextOf(before_.at("identifier")),
                        .name = TextOf(before_.at("name")),
                        .parameter = place_,
                        .field = std::move(field),
                        .before = std::move(before),
                        .after = std::move(after)});
    return changes_.back();
  }

  /// Adds the change of a member; null where there is none, or one side does not tell it.
  Change* Field(const char* field) { return Field(field, before_, after_); }
  Change* Field(const char* field, const Json& before, const Json& after) {
    if (!before.contains(field) || !after.contains(field)) return nullptr;
    if (Same(before.at(field), after.at(field))) return nullptr;
    return &Add(field, before.at(field), after.at(field));
  }

  /// A record's own number, where it does not just follow the position.
  void CompareIndex(const Json& before, std::size_t position_before, const Json& after,
                    std::size_t position_after) {
    const auto index_before = before.at("index").get<std::int64_t>();
    const auto index_after = after.at("index").get<std::int64_t>();
    const auto moved =
        static_cast<std::int64_t>(position_after) - static_cast<std::int64_t>(position_before);
    if (index_after - index_before == moved) return;
    Add("index", index_before, index_after).breaks_hosts = true;
  }

  void CompareList(const char* list) {
    const Json& before = before_.at(list);
    const Json& after = after_.at(list);
    NameCounts known;
    for (const Json& one : before) ++known[NameInPrograms(one)];
    for (const ParameterPair& pair : PairParameters(before, after)) {
      const Json& shown = pair.before ? before[*pair.before] : after[*pair.after];
      place_ = {list, pair.before ? *pair.before : *pair.after, NameInPrograms(shown)};
      if (!pair.after) {
        BreakBoth(Add("", shown, nullptr), true);
      } else if (!pair.before) {
        Change& change = Add("", nullptr, shown);
        BreakBoth(change, NeedsAValue(list, shown));
        if (known[place_->name] == 1) change.breaks_programs = true;  // means two now
      } else {
        CompareParameters(shown, *pair.before, after[*pair.after], *pair.after);
      }
    }
    place_.reset();
  }

  /// Whether saved programs lack a value of an added parameter: it has no default, nobody leaves
  /// an array out, and what follows a repeated input was its repetition.
  bool NeedsAValue(std::string_view list, const Json& parameter) const {
    if (list == "results") return false;
    if (list == "inputs" && before_.at("repeatable") == true) return true;
    return parameter.at("default").is_null() || parameter.at("type") >= kFirstArrayType;
  }

  void CompareParameters(const Json& before, std::size_t position_before, const Json& after,
                         std::size_t position_after) {
    if (position_before != position_after) {
      BreakBoth(Add("position", position_before, position_after), true);
    }
    CompareIndex(before, position_before, after, position_after);
    const bool renamed = NameInPrograms(before) != NameInPrograms(after);
    const bool same_name = Same(before.at("name"), after.at("name"));
    if (Change* change = Field("name", before, after)) {
      change->is_text = true;
      change->breaks_programs = renamed;
    }
    if (Change* change = Field("group", before, after)) {
      change->is_text = true;
      change->breaks_programs = renamed && same_name;
    }
    if (Change* change = Field("description", before, after)) change->is_text = true;
    if (Change* change = Field("type", before, after)) BreakBoth(*change, true);
    if (Change* change = Field("default", before, after)) change->breaks_programs = true;
    for (const char* limit : {"min", "max"}) {
      if (Change* change = Field(limit, before, after)) {
        BreakBoth(*change, IsNarrower(limit, change->before, change->after));
      }
    }
    if (before.contains("choices")) CompareChoices(before.at("choices"), after.at("choices"));
  }

  /// Hosts store a choice's key; programs may write its label, of equal ones the first.
  void CompareChoices(const Json& before, const Json& after) {
    const auto key_of = [](const Json& choice) { return choice[0].get<std::int64_t>(); };
    std::map<std::int64_t, Json> labels_after;
    std::set<std::string> known;
    for (const Json& choice : after) labels_after.emplace(key_of(choice), choice[1]);
    Json order_before = Json::array();
    for (const Json& choice : before) {
      const std::string field = "choices[" + Dump(choice[0]) + "]";
      const auto found = labels_after.find(key_of(choice));
      known.insert(Trimmed(choice[1]));
      if (found == labels_after.end()) {
        BreakBoth(Add(field, choice, nullptr), true);
        continue;
      }
      order_before.push_back(choice[0]);
      if (!Same(choice[1], found->second)) {
        Change& change = Add(field, choice, Json::array({choice[0], found->second}));
        change.is_text = true;
        change.breaks_programs = Trimmed(choice[1]) != Trimmed(found->second);
      }
      labels_after.erase(found);
    }
    Json order_after = Json::array();
    for (const Json& choice : after) {
      if (!labels_after.contains(key_of(choice))) {
        order_after.push_back(choice[0]);
      } else {
        Change& change = Add("choices[" + Dump(choice[0]) + "]", nullptr, choice);
        change.breaks_programs = known.contains(Trimmed(choice[1]));
      }
    }
    if (order_before != order_after) {
      Add("choices", order_before, order_after).is_text = true;
    }
  }

  const Json& before_;
  const Json& after_;
  std::vector<Change>& changes_;
  std::optional<ParameterPlace> place_;
};

std::map<std::string, std::size_t> PositionsOf(const Json& catalogue) {
  std::map<std::string, std::size_t> positions;
  for (const Json& instruction : catalogue) {
    positions.emplace(TextOf(instruction.at("identifier")), positions.size());
  }
  return positions;
}

}  // namespace

Change::Class Change::GetClass() const {
  if (breaks_hosts || breaks_programs) return Class::kBreaking;
  return is_text ? Class::kText : Class::kCompatible;
}

std::vector<Change> Compare(const Json& before, const Json& after) {
  const std::map<std::string, std::size_t> positions = PositionsOf(after);
  const std::map<std::string, std::size_t> former = PositionsOf(before);
  std::vector<Change> changes;
  NameCounts known;
  for (const auto& [identifier, position] : former) {
    const Json& instruction = before[position];
    for (const std::string& name : NamesOf(instruction)) ++known[name];
  }
  for (std::size_t i = 0; i < before.size(); ++i) {
    const std::string identifier = TextOf(before[i].at("identifier"));
    const auto found = positions.find(identifier);
    if (found != positions.end()) {
      InstructionChanges(before[i], after[found->second], changes).Find(i, found->second);
      continue;
    }
    changes.push_back({.identifier = identifier,
                       .name = TextOf(before[i].at("name")),
                       .before = before[i],
                       .breaks_hosts = true,
                       .breaks_programs = true});
  }
  for (const Json& instruction : after) {
    const std::string identifier = TextOf(instruction.at("identifier"));
    if (former.contains(identifier)) continue;
    changes.push_back(
        {.identifier = identifier, .name = TextOf(instruction.at("name")), .after = instruction});
    for (const std::string& name : NamesOf(instruction)) {
      if (known[name] == 1) changes.back().breaks_programs = true;  // means two now
    }
  }
  return changes;
}

}  // namespace nuvhost
