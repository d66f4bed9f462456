#include <algorithm>

#include "nuvhost/commands/commands.h"
#include "nuvhost/error.h"
#include "nuvhost/library/catalogue.h"
#include "nuvhost/reference/entries.h"
#include "nuvhost/reference/plain_text.h"
#include "nuvhost/system/console.h"
#include "nuvhost/text/names.h"
#include "nuvhost/text/text_table.h"
#include "nuvhost/text/utf8.h"
#include "nuvhost/text/words.h"
#include "nuvhost/values/json_value.h"

namespace nuvhost {
namespace {

Json ConstantToJson(const ConstantRecord& constant) {
  Json choices = Json::array();
  for (auto* node = constant.choices.First(); node != nullptr; node = CChoiceMap::Next(node)) {
    choices.push_back(Json::array({node->key, TextToJson(node->label.c_str())}));
  }
  return {{"type", constant.type},
          {"group", TextToJson(constant.group)},
          {"name", TextToJson(constant.name)},
          {"description", TextToJson(constant.description)},
          {"default", ToJson(constant.default_value)},
          {"min", ToJson(constant.minimum)},
          {"max", ToJson(constant.maximum)},
          {"choices", std::move(choices)},
          {"index", constant.index}};
}

Json InputToJson(const ParameterRecord& input) {
  return {{"type", input.type},
          {"name", TextToJson(input.name)},
          {"description", TextToJson(input.description)},
          {"default", ToJson(input.default_value)},
          {"index", input.index}};
}

Json ResultToJson(const ResultRecord& result) {
  return {{"type", result.type},
          {"name", TextToJson(result.name)},
          {"description", TextToJson(result.description)},
          {"index", result.index}};
}

template <class Record, class ToJsonRow>
Json ListToJson(const TStdVector<Record>& records, ToJsonRow to_json) {
  Json list = Json::array();
  for (const Record& record : records) list.push_back(to_json(record));
  return list;
}

Json DescriptorToJson(const CatalogueEntry& instruction) {
  const DescriptorRecord& descriptor = *instruction.descriptor;
  const Entry* entry = FindEntry(TextOrEmpty(descriptor.identifier));
  const std::string silent = entry == nullptr ? "" : entry->SilentFailure();
  return {{"index", instruction.index},
          {"name", TextToJson(descriptor.name)},
          {"category", TextToJson(descriptor.category)},
          {"identifier", TextToJson(descriptor.identifier)},
          {"help", descriptor.help},
          {"description", TextToJson(descriptor.description)},
          {"repeatable", descriptor.repeatable != 0},
          {"format", descriptor.format},
          {"constants", ListToJson(descriptor.constants, ConstantToJson)},
          {"inputs", ListToJson(descriptor.inputs, InputToJson)},
          {"results", ListToJson(descriptor.results, ResultToJson)},
          {"summary", entry == nullptr ? Json() : Json(entry->Summary())},
          {"helpFile", entry == nullptr ? Json() : Json(entry->HelpFile())},
          {"silentFailure", silent.empty() ? Json() : Json(silent)}};
}

/// One parameter of the printed page: name, type, and what more there is to say.
struct Row {
  std::string name;
  std::string type;
  std::string rest;
};

std::string Sentence(const char* description) {
  return description == nullptr ? "" : "  " + Utf8FromText(description);
}

Row ConstantRow(const ConstantRecord& constant) {
  std::string rest = "default " + Dump(ToJson(constant.default_value));
  if (constant.minimum.GetType() != NUV_OBJ_EMPTY) {
    rest +=
        fmt::format(", {} to {}", Dump(ToJson(constant.minimum)), Dump(ToJson(constant.maximum)));
  }
  rest += Sentence(constant.description);
  for (auto* node = constant.choices.First(); node != nullptr; node = CChoiceMap::Next(node)) {
    rest += "\n      " + std::to_string(node->key) + "  " + Utf8FromText(node->label.c_str());
  }
  const char* name = constant.name == nullptr ? constant.group : constant.name;
  return {Utf8FromText(name), Describe(constant.type), std::move(rest)};
}

Row InputRow(const ParameterRecord& input) {
  return {
      Utf8FromText(input.name), Describe(input.type),
      fmt::format("default {}{}", Dump(ToJson(input.default_value)), Sentence(input.description))};
}

Row ResultRow(const ResultRecord& result) {
  return {Utf8FromText(result.name), Describe(result.type), Utf8FromText(result.description)};
}

template <class Record, class MakeRow>
void PrintRows(const char* title, const TStdVector<Record>& records, MakeRow make_row) {
  if (records.Empty()) return;
  std::vector<Row> rows;
  std::size_t name_width = 0;
  std::size_t type_width = 0;
  for (const Record& record : records) {
    rows.push_back(make_row(record));
    name_width = std::max(name_width, Width(rows.back().name));
    type_width = std::max(type_width, Width(rows.back().type));
  }
  Print(std::string("\n  ") + title + '\n');
  for (const Row& row : rows) {
    std::string line = "    " + Padded(row.name, name_width) + "  " + Padded(row.type, type_width);
    if (!row.rest.empty()) line += "  " + row.rest;
    Print(std::string(WithoutTrailingBlanks(line)) + '\n');
  }
}

}  // namespace

int DescribeOne(const Catalogue& catalogue, const std::string& name, bool as_json) {
  const CatalogueEntry& instruction = catalogue.Find(name);
  if (as_json) {
    Print(DescriptorToJson(instruction).dump(2) + '\n');
    return kExitSuccess;
  }
  const DescriptorRecord& descriptor = *instruction.descriptor;
  Print(Utf8FromText(descriptor.name) + "  (" + Utf8FromText(descriptor.category) + ")\n");
  if (descriptor.description != nullptr) {
    for (const std::string& line : Wrapped(Utf8FromText(descriptor.description), kTextWidth - 2)) {
      Print("  " + line + '\n');
    }
  }
  Print(fmt::format("\n  identifier  {}\n  position    {}\n  help        {}\n",
                    Utf8FromText(descriptor.identifier), instruction.index, descriptor.help));
  PrintRows("constant parameters", descriptor.constants, ConstantRow);
  PrintRows(descriptor.repeatable != 0 ? "inputs (the last one may be repeated)" : "inputs",
            descriptor.inputs, InputRow);
  PrintRows("results", descriptor.results, ResultRow);
  if (const Entry* entry = FindEntry(TextOrEmpty(descriptor.identifier))) {
    Print('\n' + PlainText(entry->markdown, kTextWidth));
  }
  return kExitSuccess;
}

int DescribeAll(const Catalogue& catalogue) {
  Json list = Json::array();
  for (const CatalogueEntry& instruction : catalogue.Entries()) {
    list.push_back(DescriptorToJson(instruction));
  }
  Print(list.dump(2) + '\n');
  return kExitSuccess;
}

}  // namespace nuvhost
