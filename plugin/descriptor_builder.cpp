#include "plugin/descriptor_builder.h"

#include <utility>

namespace formula {
namespace {

/// The format code of a descriptor: 17, but where an extension word is set.
std::uint32_t FormatCode(const DescriptorRecord& record) {
  if (record.extension_a == 0 && record.extension_b == 0) return 17;
  return record.results.Empty() ? 18 : 19;
}

CNuvObject DefaultValue(const Parameter& input) {
  CNuvObject value;
  switch (input.type) {
    case NUV_PARAM_BOOLEAN: value = input.first != 0.0; break;
    case NUV_PARAM_NUMBER: value = input.first; break;
    case NUV_PARAM_STRING: value = input.text; break;
    case NUV_PARAM_POINT: value = CNuvPoint(input.first, input.second); break;
    case NUV_PARAM_LINE: value = CNuvLine(input.first, input.second); break;
    case NUV_PARAM_BOOLEAN_ARRAY: value.SetType(NUV_OBJ_BOOL_VECTOR); break;
    case NUV_PARAM_NUMBER_ARRAY: value.SetType(NUV_OBJ_DOUBLE_VECTOR); break;
    case NUV_PARAM_STRING_ARRAY: value.SetType(NUV_OBJ_STRING_VECTOR); break;
    case NUV_PARAM_POINT_ARRAY: value.SetType(NUV_OBJ_POINT_VECTOR); break;
    case NUV_PARAM_LINE_ARRAY: value.SetType(NUV_OBJ_LINE_VECTOR); break;
    case NUV_PARAM_INTEGER:
    case NUV_PARAM_CHOICE: break;  // constant parameters alone
  }
  return value;
}

ConstantRecord MakeConstant(const Constant& constant) {
  ConstantRecord record;
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
  return record;
}

ParameterRecord MakeInput(const Parameter& input) {
  ParameterRecord record;
  record.type = input.type;
  record.name = input.name;
  record.description = input.description;
  record.default_value = DefaultValue(input);
  return record;
}

ResultRecord MakeResult(const Parameter& result) {
  ResultRecord record;
  record.type = result.type;
  record.name = result.name;
  record.description = result.description;
  return record;
}

template <class Record, class List, class Make>
void Append(TStdVector<Record>& records, const List& definitions, Make make) {
  records.Reserve(definitions.size());
  for (const auto& definition : definitions) {
    Record record = make(definition);
    record.index = static_cast<std::uint32_t>(records.Size());
    records.PushBack(std::move(record));
  }
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
  Append(fresh.constants, definition.constants, MakeConstant);
  Append(fresh.inputs, definition.inputs, MakeInput);
  Append(fresh.results, definition.results, MakeResult);
  fresh.format = FormatCode(fresh);
  record = std::move(fresh);
}

void ClearDescriptor(DescriptorRecord& record) noexcept {
  record.constants.Release();
  record.inputs.Release();
  record.results.Release();
}

}  // namespace formula
