#include "nuvhost/comparing/catalogue_reader.h"

#include <limits>
#include <set>
#include <unordered_map>

#include "nuvhost/reading/checker.h"
#include "nuvhost/reading/located_json.h"
#include "nuvhost/text/names.h"

namespace nuvhost {
namespace {

enum class Kind { kText, kNumber, kBoolean, kList, kAny };

struct Member {
  const char* name;
  Kind kind;
};

constexpr Member kInstruction[] = {
    {"index", Kind::kNumber},       {"name", Kind::kText},     {"category", Kind::kText},
    {"identifier", Kind::kText},    {"help", Kind::kNumber},   {"description", Kind::kText},
    {"repeatable", Kind::kBoolean}, {"format", Kind::kNumber}, {"constants", Kind::kList},
    {"inputs", Kind::kList},        {"results", Kind::kList}};
constexpr Member kConstant[] = {
    {"type", Kind::kNumber},      {"group", Kind::kText},   {"name", Kind::kText},
    {"description", Kind::kText}, {"default", Kind::kAny},  {"min", Kind::kAny},
    {"max", Kind::kAny},          {"choices", Kind::kList}, {"index", Kind::kNumber}};
constexpr Member kInput[] = {{"type", Kind::kNumber},
                             {"name", Kind::kText},
                             {"description", Kind::kText},
                             {"default", Kind::kAny},
                             {"index", Kind::kNumber}};
constexpr Member kResult[] = {{"type", Kind::kNumber},
                              {"name", Kind::kText},
                              {"description", Kind::kText},
                              {"index", Kind::kNumber}};

class CatalogueReader {
 public:
  CatalogueReader(const SourceText& source, Mistakes& mistakes) : checker_(source, mistakes) {}

  void Read(const Located& root) {
    if (!root->is_array()) {
      return checker_.Complain(
          root, "a catalogue is a list, as `nuvhost describe --all --json` prints it; found " +
                    DescribeKind(*root));
    }
    for (const Located& instruction : root.Elements()) ReadInstruction(instruction);
  }

 private:
  void ReadInstruction(const Located& json) {
    if (!HasMembers(json, "an instruction", kInstruction)) return;
    const Located identifier = *json.Find("identifier");
    const std::string text = identifier->is_string() ? identifier->get<std::string>() : "";
    if (text.empty()) {
      checker_.Complain(identifier, "an instruction without an identifier cannot be compared");
    } else if (!identifiers_.insert(text).second) {
      checker_.Complain(identifier,
                        Quoted(text) + " is the identifier of another instruction, too");
    }
    for (const Located& one : json.Find("constants")->Elements()) {
      if (HasMembers(one, "a constant parameter", kConstant)) ReadChoices(*one.Find("choices"));
    }
    for (const Located& one : json.Find("inputs")->Elements()) HasMembers(one, "an input", kInput);
    for (const Located& one : json.Find("results")->Elements()) {
      HasMembers(one, "a result", kResult);
    }
  }

  void ReadChoices(const Located& json) {
    std::set<std::int64_t> keys;
    for (const Located& choice : json.Elements()) {
      const bool is_choice = choice->is_array() && choice->size() == 2 &&
                             (*choice)[0].is_number_integer() && IsText((*choice)[1]);
      if (!is_choice) {
        checker_.Complain(choice, "a choice is a list of its key and its label");
      } else if (!keys.insert((*choice)[0].get<std::int64_t>()).second) {
        checker_.Complain(choice, "a choice of the key " + Dump((*choice)[0]) + " stands before");
      }
    }
  }

  static bool IsText(const Json& json) { return json.is_string() || json.is_null(); }

  /// Whether the value is an object that has all these members.
  template <std::size_t size>
  bool HasMembers(const Located& json, const std::string& what, const Member (&members)[size]) {
    if (!json->is_object()) {
      checker_.Complain(json, "{} is an object, found {}", what, DescribeKind(*json));
      return false;
    }
    std::unordered_map<std::string_view, Located> given;
    for (const auto& [name, value] : json.Members()) given.emplace(name, value);
    bool sound = true;
    std::string missing;
    for (const Member& member : members) {
      const auto found = given.find(member.name);
      if (found == given.end()) {
        missing += (missing.empty() ? "" : ", ") + Quoted(member.name);
      } else if (const char* expected = Expected(*found->second, member.kind)) {
        checker_.Complain(found->second, "\"{}\": expected {}, found {}", member.name, expected,
                          DescribeKind(*found->second));
        sound = false;
      }
    }
    if (!missing.empty()) checker_.Complain(json, "{} lacks {}", what, missing);
    return sound && missing.empty();
  }

  /// What a value should be and is not; null where it is.
  static const char* Expected(const Json& json, Kind kind) {
    constexpr auto kMost = std::numeric_limits<std::uint32_t>::max();
    switch (kind) {
      case Kind::kText: return IsText(json) ? nullptr : "a text or null";
      case Kind::kBoolean: return json.is_boolean() ? nullptr : "true or false";
      case Kind::kList: return json.is_array() ? nullptr : "a list";
      case Kind::kNumber:
        return json.is_number_unsigned() && json.get<std::uint64_t>() <= kMost
                   ? nullptr
                   : "a whole number from 0 to 4294967295";
      case Kind::kAny: break;
    }
    return nullptr;
  }

  Checker checker_;
  std::set<std::string> identifiers_;
};

}  // namespace

std::optional<Json> ReadCatalogue(const SourceText& source, Mistakes& mistakes) {
  const std::optional<LocatedJson> json = LocatedJson::Parse(source, mistakes);
  if (!json) return std::nullopt;
  CatalogueReader(source, mistakes).Read(json->Root());
  if (!mistakes.Empty()) return std::nullopt;
  return *json->Root();
}

}  // namespace nuvhost
