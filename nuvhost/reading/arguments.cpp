#include "nuvhost/reading/arguments.h"

#include <algorithm>

#include "nuvhost/error.h"
#include "nuvhost/library/catalogue.h"
#include "nuvhost/text/names.h"
#include "nuvhost/text/utf8.h"
#include "nuvhost/values/json_value.h"

namespace nuvhost {
namespace {

std::string NameOf(const char* name) {
  return Quoted(NameFromText(name));
}

/// "a number", "an array of points".
std::string WithArticle(std::uint32_t type) {
  const std::string text = Describe(type);
  return (std::string_view("aeiou").find(text[0]) == std::string_view::npos ? "a " : "an ") + text;
}

std::string Plural(std::size_t count, const std::string& what) {
  return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

/// The type of a value: what is an integer or a choice in a constant parameter is a number.
std::uint32_t ValueKind(std::uint32_t type) {
  return type == NUV_PARAM_INTEGER || type == NUV_PARAM_CHOICE ? NUV_PARAM_NUMBER : type;
}

bool IsArray(std::uint32_t type) {
  return type >= NUV_PARAM_BOOLEAN_ARRAY;
}

std::uint32_t ElementType(std::uint32_t array_type) {
  return array_type - NUV_PARAM_BOOLEAN_ARRAY + NUV_PARAM_BOOLEAN;
}

bool IsReference(const Json& json) {
  return json.is_object() && (json.contains("step") || json.contains("data"));
}

/// The key of a choice given by its label or key; throws ValueError.
std::int32_t ChoiceKey(const Json& json, const CChoiceMap& choices) {
  std::vector<std::string> labels;
  const std::string label = json.is_string() ? json.get<std::string>() : "";
  for (auto* node = choices.First(); node != nullptr; node = CChoiceMap::Next(node)) {
    labels.emplace_back(Utf8FromBytes(WithoutTrailingBlanks(node->label.c_str())));
    const bool same =
        json.is_string() ? labels.back() == WithoutTrailingBlanks(label) : json == Json(node->key);
    if (same) return node->key;
    labels.back() = Quoted(labels.back()) + " (" + std::to_string(node->key) + ")";
  }
  std::string text = fmt::format("no choice {}; there are", Dump(json));
  for (std::size_t i = 0; i < labels.size(); ++i) text += (i == 0 ? " " : ", ") + labels[i];
  throw ValueError(text);
}

/// Reads a constant parameter's value; throws ValueError.
CNuvObject ConstantFromJson(const Json& json, const ConstantRecord& record) {
  CNuvObject value;
  if (record.type == NUV_PARAM_CHOICE) {
    value = ChoiceKey(json, record.choices);
    return value;
  }
  value = FromJson(json, record.type);
  if (record.minimum.GetType() == NUV_OBJ_EMPTY) return value;
  const auto number = static_cast<double>(value);
  if (number >= static_cast<double>(record.minimum) &&
      number <= static_cast<double>(record.maximum)) {
    return value;
  }
  throw ValueError("expected {} to {}, found {}", Dump(ToJson(record.minimum)),
                   Dump(ToJson(record.maximum)), Dump(json));
}

}  // namespace

void ArgumentReader::Read(const Located& json, std::size_t step) {
  step_ = step;
  Step& read = program_.steps[step];
  if (const auto constants = json.Find("const")) ReadConstants(*constants, read);
  if (const auto inputs = json.Find("in")) ReadInputs(*inputs, read);
}

template <class Finder>
std::optional<std::size_t> ArgumentReader::Find(Finder find, const DescriptorRecord& descriptor,
                                                std::string_view name, std::size_t offset) {
  try {
    return find(descriptor, name);
  } catch (const UserError& error) {
    checker_.Complain(offset, error.what());
  }
  return std::nullopt;
}

void ArgumentReader::ReadConstants(const Located& json, Step& step) {
  const DescriptorRecord& descriptor = *step.instruction->descriptor;
  std::vector<bool> given(descriptor.constants.Size());
  for (const auto& [name, value] : json.Members()) {
    const auto position = Find(FindConstant, descriptor, name, value.NameOffset());
    if (!position) continue;
    if (given[*position]) checker_.Complain(value.NameOffset(), Quoted(name) + " is given twice");
    given[*position] = true;
    ReadConstant(value, descriptor.constants[*position], step.constants[*position]);
  }
  const std::vector<Located> elements = json.Elements();
  for (std::size_t i = 0; i < std::min(elements.size(), given.size()); ++i) {
    ReadConstant(elements[i], descriptor.constants[i], step.constants[i]);
  }
  if (elements.size() > given.size()) {
    checker_.Complain(elements[given.size()], "{} has {}, {} given", NameOf(descriptor.name),
                      Plural(given.size(), "constant parameter"), elements.size());
  }
  if (!json->is_object() && !json->is_array()) {
    checker_.Complain(
        json, "\"const\" is an object by name or a list by position, found " + DescribeKind(*json));
  }
}

void ArgumentReader::ReadConstant(const Located& json, const ConstantRecord& record,
                                  CNuvObject& value) {
  try {
    value = ConstantFromJson(*json, record);
  } catch (const ValueError& error) {
    const char* name = record.name == nullptr ? record.group : record.name;
    checker_.Complain(json, "constant parameter {}: {}", NameOf(name), error.what());
  }
}

void ArgumentReader::ReadInputs(const Located& json, Step& step) {
  const DescriptorRecord& descriptor = *step.instruction->descriptor;
  for (const ParameterRecord& input : descriptor.inputs)
    step.inputs.emplace_back(input.default_value);
  if (json->is_object()) {
    ReadInputsByName(json, step);
  } else if (json->is_array()) {
    ReadInputsByPosition(json, step);
  } else {
    checker_.Complain(
        json, "\"in\" is an object by name or a list by position, found " + DescribeKind(*json));
  }
}

void ArgumentReader::ReadInputsByName(const Located& json, Step& step) {
  const DescriptorRecord& descriptor = *step.instruction->descriptor;
  const std::size_t declared = descriptor.inputs.Size();
  std::vector<bool> given(declared);
  for (const auto& [name, value] : json.Members()) {
    const auto position = Find(FindInput, descriptor, name, value.NameOffset());
    if (!position) continue;
    if (given[*position]) checker_.Complain(value.NameOffset(), Quoted(name) + " is given twice");
    given[*position] = true;

    const bool repeats = descriptor.repeatable != 0 && *position + 1 == declared;
    const std::vector<Located> values =
        repeats && value->is_array() ? value.Elements() : std::vector{value};
    if (values.empty()) {
      checker_.Complain(value, Quoted(name) +
                                   " needs at least one value; without it, its default "
                                   "is used");
      continue;
    }
    step.inputs.resize(declared + values.size() - 1);
    for (std::size_t i = 0; i < values.size(); ++i) {
      step.inputs[*position + i] = ReadInput(values[i], descriptor, *position);
    }
  }
}

void ArgumentReader::ReadInputsByPosition(const Located& json, Step& step) {
  const DescriptorRecord& descriptor = *step.instruction->descriptor;
  const std::size_t declared = descriptor.inputs.Size();
  const std::vector<Located> values = json.Elements();
  if (values.size() > declared && descriptor.repeatable == 0) {
    checker_.Complain(values[declared], "{} takes {}, {} given", NameOf(descriptor.name),
                      Plural(declared, "input"), values.size());
    return;
  }
  step.inputs.resize(std::max(declared, values.size()));
  for (std::size_t i = 0; i < values.size(); ++i) {
    step.inputs[i] = ReadInput(values[i], descriptor, std::min(i, declared - 1));
  }
}

Argument ArgumentReader::ReadInput(const Located& json, const DescriptorRecord& descriptor,
                                   std::size_t input) {
  const ParameterRecord& record = descriptor.inputs[input];
  const std::string what =
      fmt::format("input {} of {}", NameOf(record.name), NameOf(descriptor.name));
  if (json->is_object() && json->contains("step")) return FromStep(json, record.type, what);
  if (json->is_object() && json->contains("data")) return FromData(json, record.type, what);
  for (const auto& [name, member] : json.Members()) {
    const std::string near = DidYouMean(name, {"step", "data"});
    if (near.empty()) continue;
    checker_.Complain(member.NameOffset(), "a reference has no member \"{}\"{}", name, near);
    return CNuvObject();
  }
  return Literal(json, record.type, what);
}

Argument ArgumentReader::FromStep(const Located& json, std::uint32_t type,
                                  const std::string& input) {
  const std::optional<StepResult> found = Reference(json, step_);
  if (!found) return CNuvObject();
  const Step& step = program_.steps[found->step];
  const ResultRecord& result = step.instruction->descriptor->results[found->result];
  if (ValueKind(result.type) != ValueKind(type)) {
    checker_.Complain(json, "{} takes {}; result {} of step \"{}\" is {}", input, WithArticle(type),
                      NameOf(result.name), step.name, WithArticle(result.type));
  }
  return *found;
}

std::optional<StepResult> ArgumentReader::Reference(const Located& json, std::size_t steps) {
  if (!checker_.IsObject(json, "a reference to a step", {"step", "result"}, {"step"})) {
    return std::nullopt;
  }
  const std::optional<std::string> name = checker_.Name(json, "step");
  if (!name) return std::nullopt;
  const std::vector<Step>& all = program_.steps;
  const auto step = std::ranges::find(all, *name, &Step::name);
  const auto index = static_cast<std::size_t>(step - all.begin());
  if (index >= steps) {
    std::string text = "no step " + Quoted(*name);
    if (step == all.end()) {
      std::vector<std::string_view> names;
      for (std::size_t i = 0; i < steps; ++i) names.push_back(all[i].name);
      text += Suggestion(*name, names);
    } else if (index == steps) {
      text = fmt::format("step \"{}\" uses its own result", *name);
    } else {
      text =
          fmt::format("step \"{}\" runs later; a step uses results of earlier steps only", *name);
    }
    checker_.Complain(*json.Find("step"), text);
    return std::nullopt;
  }
  if (step->instruction == nullptr) return std::nullopt;  // a mistake of its own

  const DescriptorRecord& descriptor = *step->instruction->descriptor;
  const std::optional<Located> result = json.Find("result");
  std::string wanted = "0";
  if (result && (*result)->is_string()) {
    wanted = (*result)->get<std::string>();
  } else if (result && (*result)->is_number_unsigned()) {
    wanted = Dump(**result);
  } else if (result) {
    checker_.Complain(*result,
                      "\"result\": expected a result's name, or its position from 0, found " +
                          DescribeKind(**result));
    return std::nullopt;
  }
  const auto position = Find(FindResult, descriptor, wanted, (result ? *result : json).Offset());
  if (!position) return std::nullopt;
  return StepResult{index, *position};
}

Argument ArgumentReader::FromData(const Located& json, std::uint32_t type,
                                  const std::string& input) {
  checker_.IsObject(json, "a reference to data", {"data", "column", "columns"}, {});
  const std::optional<std::string> name = checker_.Name(json, "data");
  if (!name) return CNuvObject();
  const std::string data = "data " + Quoted(*name);
  const std::vector<ColumnName> columns = Columns(json);

  if (const auto value = values_.find(*name); value != values_.end()) {
    if (!columns.empty()) {
      checker_.Complain(json, data + " stands in the program and has no columns");
    }
    return Literal(value->second, type, fmt::format("{}, from {}", input, data));
  }
  const auto datum = std::ranges::find(program_.data, *name, &Datum::name);
  if (datum == program_.data.end()) {
    std::vector<std::string_view> names;
    for (const Datum& known : program_.data) names.push_back(known.name);
    for (const auto& [known, value] : values_) names.push_back(known);
    checker_.Complain(*json.Find("data"), "no {}{}", data, Suggestion(*name, names));
    return CNuvObject();
  }
  const bool fits = (type == NUV_PARAM_NUMBER_ARRAY && columns.size() <= 1) ||
                    (type == NUV_PARAM_POINT_ARRAY && columns.size() != 1);
  if (!fits) {
    constexpr const char* kGives[] = {" comes from a file and is an array of numbers or points",
                                      ", one column, is an array of numbers",
                                      ", two columns, is an array of points"};
    checker_.Complain(json, "{} takes {}; {}{}", input, WithArticle(type), data,
                      kGives[columns.size()]);
    return CNuvObject();
  }
  const DataUse use{static_cast<std::size_t>(datum - program_.data.begin()), columns, type, input,
                    json.Offset()};
  program_.uses.push_back(use);
  return UseNumber{program_.uses.size() - 1};
}

/// None, one or two columns.
std::vector<ColumnName> ArgumentReader::Columns(const Located& json) {
  std::vector<Located> wanted;
  if (const auto column = json.Find("column")) wanted.push_back(*column);
  if (const auto columns = json.Find("columns")) {
    if (!wanted.empty()) {
      checker_.Complain(columns->NameOffset(), "\"column\" and \"columns\" exclude each other");
      return {};
    }
    wanted = columns->Elements();
    if (wanted.size() != 2) {
      checker_.Complain(*columns, "\"columns\" is a list of two columns, for x and y");
      return {};
    }
  }
  std::vector<ColumnName> names;
  for (const Located& column : wanted) {
    if (column->is_string()) {
      names.emplace_back(column->get<std::string>());
    } else if (column->is_number_unsigned()) {
      names.emplace_back(column->get<std::size_t>());
    } else {
      checker_.Complain(
          column, "a column is its header, or its position from 0; found " + DescribeKind(*column));
      return {};
    }
  }
  return names;
}

CNuvObject ArgumentReader::Literal(const Located& json, std::uint32_t type,
                                   const std::string& what) {
  const std::size_t limit = program_.settings.max_array_elements;
  if (IsArray(type) && json->is_array() && limit != 0 && json->size() > limit) {
    checker_.Complain(json, "{}: {} elements; \"maxArrayElements\" is {}", what, json->size(),
                      limit);
    return CNuvObject();
  }
  try {
    return FromJson(*json, type);
  } catch (const ValueError& error) {
    if (!IsArray(type) || !json->is_array()) checker_.Complain(json, what + ": " + error.what());
  }
  for (const Located& element : json.Elements()) {
    try {
      FromJson(*element, ElementType(type));
    } catch (const ValueError& error) {
      checker_.Complain(element, what + ": " +
                                     (IsReference(*element) ? "a list holds values, no references"
                                                            : error.what()));
    }
  }
  return CNuvObject();
}

}  // namespace nuvhost
