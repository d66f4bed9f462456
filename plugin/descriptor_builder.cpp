#include "plugin/descriptor_builder.h"

#include <utility>

namespace formula {
namespace {

void SetDefault(CNuvObject& value, const Parameter& input) {
  switch (input.type) {
    case NUV_PARAM_BOOLEAN: value = input.first != 0.0; break;
    case NUV_PARAM_NUMBER: value = input.first; break;
    case NUV_PARAM_STRING: value = input.text; break;
    case NUV_PARAM_POINT:
      static_cast<CNuvPoint&>(value) = CNuvPoint(input.first, input.second);
      break;
    case NUV_PARAM_LINE: static_cast<CNuvLine&>(value) = CNuvLine(input.first, input.second); break;
    default: value.SetType(NuvValueType(input.type)); break;
  }
}

void Fill(ConstantRecord& record, const Constant& constant) {
  record.type = constant.type;
  record.group = constant.group;
  record.name = constant.name;
  record.description = constant.description;
  if (constant.type == NUV_PARAM_BOOLEAN) {
    record.default_value = constant.default_value != 0;
  } else {
    record.default_value = constant.default_value;
  }
  if (constant.has_range) {
    record.minimum = constant.minimum;
    record.maximum = constant.maximum;
  }
  for (const Choice& choice : constant.choices) record.choices.Insert(choice.key, choice.label);
}

void Fill(ParameterRecord& record, const Parameter& input) {
  record.type = input.type;
  record.name = input.name;
  record.description = input.description;
  SetDefault(record.default_value, input);
}

void Fill(ResultRecord& record, const Parameter& result) {
  record.type = result.type;
  record.name = result.name;
  record.description = result.description;
}

/// The records are made where they stay: a value of the host's need not be movable.
template <class Record, class List>
TStdVector<Record> Records(const List& definitions) {
  TStdVector<Record> records(definitions.size());
  std::uint32_t index = 0;
  for (const auto& definition : definitions) {
    Fill(records[index], definition);
    records[index].index = index;
    ++index;
  }
  return records;
}

}  // namespace

void BuildDescriptor(DescriptorRecord& record, const Definition& definition) {
  DescriptorRecord fresh;
  fresh.name = definition.name;
  fresh.category = definition.category;
  fresh.identifier = definition.identifier;
  fresh.description = definition.description;
  fresh.help = definition.help;
  fresh.repeatable = definition.repeatable ? 1 : 0;
  fresh.constants = Records<ConstantRecord>(definition.constants);
  fresh.inputs = Records<ParameterRecord>(definition.inputs);
  fresh.results = Records<ResultRecord>(definition.results);
  fresh.format = 17;  // that of descriptors without extension words
  record = std::move(fresh);
}

void ClearDescriptor(DescriptorRecord& record) noexcept {
  record.constants.Release();
  record.inputs.Release();
  record.results.Release();
}

}  // namespace formula
