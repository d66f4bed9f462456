#include "nuvhost/checking/facts.h"

#include <fmt/format.h>

#include <algorithm>

#include "nuvhost/checking/trial.h"
#include "nuvhost/values/json_value.h"

namespace nuvhost::check {
namespace {

std::string Shown(const CChoiceMap& choices) {
  std::string text;
  for (auto* node = choices.First(); node != nullptr; node = CChoiceMap::Next(node)) {
    text +=
        (text.empty() ? "" : ", ") + std::to_string(node->key) + " " + Quoted(node->label.c_str());
  }
  return text.empty() ? "none" : text;
}

/// Adds the fields that all three kinds of records have, and what `more` adds.
template <class Record, class More>
void Add(Facts& facts, const std::string& list, const TStdVector<Record>& records, More more) {
  for (std::size_t i = 0; i < records.Size(); ++i) {
    const std::string place = list + "[" + std::to_string(i) + "].";
    const Record& record = records[i];
    facts.push_back({place + "type", std::to_string(record.type)});
    facts.push_back({place + "name", Quoted(record.name)});
    facts.push_back({place + "description", Quoted(record.description)});
    facts.push_back({place + "index", std::to_string(record.index)});
    more(place, record);
  }
}

}  // namespace

Facts HeadFacts(const DescriptorRecord& descriptor) {
  return {{"format", std::to_string(descriptor.format)},
          {"name", Quoted(descriptor.name)},
          {"category", Quoted(descriptor.category)},
          {"identifier", Quoted(descriptor.identifier)},
          {"description", Quoted(descriptor.description)},
          {"help", std::to_string(descriptor.help)},
          {"repeatable", std::to_string(descriptor.repeatable)},
          {"extension word A", std::to_string(descriptor.extension_a)},
          {"extension word B", std::to_string(descriptor.extension_b)}};
}

Facts AllFacts(const DescriptorRecord& descriptor) {
  Facts facts = HeadFacts(descriptor);
  facts.push_back({"number of constants", std::to_string(descriptor.constants.Size())});
  facts.push_back({"number of inputs", std::to_string(descriptor.inputs.Size())});
  facts.push_back({"number of results", std::to_string(descriptor.results.Size())});
  Add(facts, "constants", descriptor.constants, [&](const std::string& place, const auto& record) {
    facts.push_back({place + "group", Quoted(record.group)});
    facts.push_back({place + "default", Shown(record.default_value)});
    facts.push_back({place + "minimum", Shown(record.minimum)});
    facts.push_back({place + "maximum", Shown(record.maximum)});
    facts.push_back({place + "choices", Shown(record.choices)});
  });
  Add(facts, "inputs", descriptor.inputs, [&](const std::string& place, const auto& record) {
    facts.push_back({place + "default", Shown(record.default_value)});
  });
  Add(facts, "results", descriptor.results, [](const std::string&, const auto&) {});
  return facts;
}

std::string Shown(const CNuvObject& value) {
  return fmt::format("{} (type {})", Dump(ToJson(value)), value.GetType());
}

std::string Difference(const Facts& before, const Facts& after) {
  // Where the lengths differ, so does a number of records before that.
  for (std::size_t i = 0; i < std::min(before.size(), after.size()); ++i) {
    if (before[i].content != after[i].content) {
      return fmt::format("{} was {}, is {}", before[i].field, before[i].content, after[i].content);
    }
  }
  return "";
}

}  // namespace nuvhost::check
