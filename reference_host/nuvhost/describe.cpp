#include <algorithm>
#include <cstdio>

#include "reference_host/nuvhost/commands.h"
#include "reference_host/nuvhost/json_value.h"

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

Json DescriptorToJson(const Instruction& instruction) {
  const DescriptorRecord& descriptor = *instruction.descriptor;
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
          {"results", ListToJson(descriptor.results, ResultToJson)}};
}

/// One parameter of the printed page: name, type, and what more there is to say.
struct Row {
  std::string name;
  std::string type;
  std::string rest;
};

std::string Sentence(const char* description) {
  return description == nullptr ? "" : "  " + std::string(description);
}

Row ConstantRow(const ConstantRecord& constant) {
  std::string rest = "default " + Dump(ToJson(constant.default_value));
  if (constant.minimum.GetType() != NUV_OBJ_EMPTY) {
    rest += ", " + Dump(ToJson(constant.minimum)) + " to " + Dump(ToJson(constant.maximum));
  }
  rest += Sentence(constant.description);
  for (auto* node = constant.choices.First(); node != nullptr; node = CChoiceMap::Next(node)) {
    rest += "\n      " + std::to_string(node->key) + "  " + node->label.c_str();
  }
  const char* name = constant.name == nullptr ? constant.group : constant.name;
  return {std::string(TextOrEmpty(name)), Describe(constant.type), std::move(rest)};
}

Row InputRow(const ParameterRecord& input) {
  return {std::string(TextOrEmpty(input.name)), Describe(input.type),
          "default " + Dump(ToJson(input.default_value)) + Sentence(input.description)};
}

Row ResultRow(const ResultRecord& result) {
  return {std::string(TextOrEmpty(result.name)), Describe(result.type),
          std::string(TextOrEmpty(result.description))};
}

template <class Record, class MakeRow>
void PrintRows(const char* title, const TStdVector<Record>& records, MakeRow make_row) {
  if (records.Empty()) return;
  std::vector<Row> rows;
  int name_width = 0;
  int type_width = 0;
  for (const Record& record : records) {
    rows.push_back(make_row(record));
    name_width = std::max(name_width, static_cast<int>(rows.back().name.size()));
    type_width = std::max(type_width, static_cast<int>(rows.back().type.size()));
  }
  std::printf("\n  %s\n", title);
  for (const Row& row : rows) {
    std::printf("    %-*s  %-*s  %s\n", name_width, row.name.c_str(), type_width, row.type.c_str(),
                row.rest.c_str());
  }
}

}  // namespace

int DescribeOne(const Catalogue& catalogue, const std::string& name, bool as_json) {
  const Instruction& instruction = catalogue.Find(name);
  if (as_json) {
    std::puts(DescriptorToJson(instruction).dump(2).c_str());
    return kExitSuccess;
  }
  const DescriptorRecord& descriptor = *instruction.descriptor;
  std::printf("%s  (%s)\n", TextOrEmpty(descriptor.name).data(),
              TextOrEmpty(descriptor.category).data());
  if (descriptor.description != nullptr) std::printf("  %s\n", descriptor.description);
  std::printf("\n  identifier  %s\n  position    %zu\n  help        %u\n",
              TextOrEmpty(descriptor.identifier).data(), instruction.index, descriptor.help);
  PrintRows("constant parameters", descriptor.constants, ConstantRow);
  PrintRows(descriptor.repeatable != 0 ? "inputs (the last one may be repeated)" : "inputs",
            descriptor.inputs, InputRow);
  PrintRows("results", descriptor.results, ResultRow);
  return kExitSuccess;
}

int DescribeAll(const Catalogue& catalogue) {
  Json list = Json::array();
  for (const Instruction& instruction : catalogue.Instructions()) {
    list.push_back(DescriptorToJson(instruction));
  }
  std::puts(list.dump(2).c_str());
  return kExitSuccess;
}

}  // namespace nuvhost
