#include "nuvhost/reading/arguments.h"

#include <algorithm>

#include "nuvhost/error.h"
#include "nuvhost/library/catalogue.h"
#include "nuvhost/reading/literals.h"
#include "nuvhost/text/names.h"
#include "nuvhost/text/utf8.h"
#include "nuvhost/values/json_value.h"

namespace nuvhost {
namespace {

std::string NameOf(const char* name) {
  return Quoted(NameFromText(name));
}

std::string Plural(std::size_t count, const std::string& what) {
  return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

/// The type of a value: what is an integer or a choice in a constant parameter is a number.
std::uint32_t ValueKind(std::uint32_t type) {
  return type == NUV_PARAM_INTEGER || type == NUV_PARAM_CHOICE ? NUV_PARAM_NUMBER : type;
}

/// Whether an instruction builds arrays by adding to one, which then often begins without
/// elements.
bool AddsToArray(const DescriptorRecord& descriptor) {
  constexpr std::string_view kEnds[] = {"ArrInsert_",   "ArrInsertRep_", "ArrInsertArray_",
                                        "ArrAppend_",   "ArrAppendRep_", "ArrResize_",
                                        "ArrConcatArr_"};
  const std::string_view identifier = TextOrEmpty(descriptor.identifier);
  return std::ranges::any_of(kEnds,
                             [&](std::string_view end) { return identifier.ends_with(end); });
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
  if (const auto constants = json.Find("const")) ReadConstants(*constants, program_.steps[step]);
  ReadInputs(json, step);
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

void ArgumentReader::ReadInputs(const Located& json, std::size_t step) {
  const TStdVector<ParameterRecord>& declared = Descriptor().inputs;
  std::vector<Argument> inputs;
  for (const ParameterRecord& input : declared) inputs.emplace_back(input.default_value);
  std::vector<bool> given(declared.Size());
  const std::optional<Located> in = json.Find("in");
  if (in && (*in)->is_object()) {
    ReadInputsByName(*in, inputs, given);
  } else if (in && (*in)->is_array()) {
    ReadInputsByPosition(*in, inputs, given);
  } else if (in) {
    checker_.Complain(
        *in, "\"in\" is an object by name or a list by position, found " + DescribeKind(**in));
    return;
  }
  CheckGiven(in ? *in : json, given);
  program_.steps[step].inputs = std::move(inputs);  // not before: expressions add steps
}

/// An array that is left out would be one without elements, of which no result tells anything.
void ArgumentReader::CheckGiven(const Located& json, const std::vector<bool>& given) {
  const DescriptorRecord& descriptor = Descriptor();
  if (AddsToArray(descriptor)) return;
  for (std::size_t i = 0; i < given.size(); ++i) {
    const ParameterRecord& input = descriptor.inputs[i];
    if (given[i] || !IsArray(input.type)) continue;
    checker_.Complain(json, "{} needs {} for its input {}", NameOf(descriptor.name),
                      WithArticle(input.type), NameOf(input.name));
  }
}

void ArgumentReader::ReadInputsByName(const Located& json, std::vector<Argument>& inputs,
                                      std::vector<bool>& given) {
  const DescriptorRecord& descriptor = Descriptor();
  const std::size_t declared = descriptor.inputs.Size();
  bool all_known = true;
  for (const auto& [name, value] : json.Members()) {
    const auto position = Find(FindInput, descriptor, name, value.NameOffset());
    all_known = all_known && position.has_value();
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
    inputs.resize(std::max(inputs.size(), *position + values.size()));
    for (std::size_t i = 0; i < values.size(); ++i) {
      inputs[*position + i] = ReadInput(values[i], *position);
    }
  }
  if (!all_known) given.assign(declared, true);  // whichever was meant, one mistake is enough
}

void ArgumentReader::ReadInputsByPosition(const Located& json, std::vector<Argument>& inputs,
                                          std::vector<bool>& given) {
  const DescriptorRecord& descriptor = Descriptor();
  const std::size_t declared = descriptor.inputs.Size();
  const std::vector<Located> values = json.Elements();
  std::fill_n(given.begin(), std::min(values.size(), declared), true);
  if (values.size() > declared && descriptor.repeatable == 0) {
    checker_.Complain(values[declared], "{} takes {}, {} given", NameOf(descriptor.name),
                      Plural(declared, "input"), values.size());
    return;
  }
  inputs.resize(std::max(declared, values.size()));
  for (std::size_t i = 0; i < values.size(); ++i) {
    inputs[i] = ReadInput(values[i], std::min(i, declared - 1));
  }
}

Argument ArgumentReader::ReadInput(const Located& json, std::size_t input) {
  const DescriptorRecord& descriptor = Descriptor();
  const ParameterRecord& record = descriptor.inputs[input];
  const std::string what =
      fmt::format("input {} of {}", NameOf(record.name), NameOf(descriptor.name));
  if (json->is_object() && json->contains("step")) return FromStep(json, record.type, what);
  if (json->is_object() && json->contains("data")) return data_.Read(json, record.type, what);
  if (json->is_object() && json->contains("expr")) return FromExpression(json, record.type, what);
  for (const auto& [name, member] : json.Members()) {
    if (IsWrapped(*json)) break;
    const std::string near = DidYouMean(name, {"step", "data", "expr", "value"});
    if (near.empty()) continue;
    checker_.Complain(member.NameOffset(), "a reference has no member \"{}\"{}", name, near);
    return CNuvObject();
  }
  return ReadLiteral(checker_, program_.settings, json, record.type, what, AddsToArray(descriptor));
}

Argument ArgumentReader::FromStep(const Located& json, std::uint32_t type,
                                  const std::string& input) {
  const std::optional<StepResult> found = Reference(json);
  if (!found) return CNuvObject();
  const Step& step = program_.steps[found->step];
  const ResultRecord& result = step.instruction->descriptor->results[found->result];
  if (ValueKind(result.type) != ValueKind(type)) {
    checker_.Complain(json, "{} takes {}; result {} of step \"{}\" is {}", input, WithArticle(type),
                      NameOf(result.name), step.name, WithArticle(result.type));
  }
  return *found;
}

std::size_t ArgumentReader::FindStep(const std::string& name) const {
  const std::vector<Step>& all = program_.steps;
  const auto step = std::ranges::find(all, name, &Step::name);
  const auto index = static_cast<std::size_t>(step - all.begin());
  if (index < step_) return index;
  if (index == step_ && step != all.end()) {
    throw ValueError("step \"{}\" uses its own result", name);
  }
  if (step != all.end()) {
    throw ValueError("step \"{}\" runs later; a step uses results of earlier steps only", name);
  }
  std::vector<std::string_view> names;
  for (std::size_t i = 0; i < step_; ++i) names.push_back(all[i].name);
  throw ValueError("no step " + Quoted(name) + Suggestion(name, names));
}

std::uint32_t ArgumentReader::TypeOf(const StepResult& result) const {
  return program_.steps[result.step].instruction->descriptor->results[result.result].type;
}

std::optional<StepResult> ArgumentReader::Reference(const Located& json) {
  if (!checker_.IsObject(json, "a reference to a step", {"step", "result"}, {"step"})) {
    return std::nullopt;
  }
  const std::optional<std::string> name = checker_.Name(json, "step");
  if (!name) return std::nullopt;
  std::size_t step = 0;
  try {
    step = FindStep(*name);
  } catch (const ValueError& error) {
    checker_.Complain(*json.Find("step"), error.what());
    return std::nullopt;
  }
  if (program_.steps[step].instruction == nullptr) return std::nullopt;  // a mistake of its own

  const DescriptorRecord& descriptor = *program_.steps[step].instruction->descriptor;
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
  return StepResult{step, *position};
}

Argument ArgumentReader::FromExpression(const Located& json, std::uint32_t type,
                                        const std::string& input) {
  const std::string place = fmt::format("step \"{}\"", program_.steps[step_].name);
  const std::optional<Operand> operand = ReadOperand(json, {step_, place});
  if (!operand) return CNuvObject();
  if (ValueKind(operand->type) != ValueKind(type)) {
    checker_.Complain(*json.Find("expr"), "{} takes {}; the expression gives {}", input,
                      WithArticle(type), WithArticle(operand->type));
  }
  return operand->argument;
}

std::optional<StepResult> ArgumentReader::ReportValue(const Located& json,
                                                      const std::string& label) {
  const auto is_written = [](const Step& step) { return !step.generated; };
  step_ = static_cast<std::size_t>(std::ranges::count_if(program_.steps, is_written));
  if (!json->is_object() || !json->contains("expr")) return Reference(json);
  Generated generated{step_, fmt::format("report row \"{}\"", label)};
  const std::optional<Operand> operand = ReadOperand(json, generated);
  if (!operand) return std::nullopt;
  const auto* result = std::get_if<StepResult>(&operand->argument);
  if (result == nullptr) {
    program_.steps.push_back(ValueStep(*operand, catalogue_, generated));
    program_.steps.back().generated->label = label;
    return StepResult{program_.steps.size() - 1, 0};
  }
  if (auto& made = program_.steps[result->step].generated) made->label = label;
  return *result;
}

std::optional<Operand> ArgumentReader::ReadOperand(const Located& json,
                                                   const Generated& generated) {
  checker_.IsObject(json, "an expression", {"expr"}, {"expr"});
  const std::optional<std::string> text = checker_.Name(json, "expr");
  if (!text) return std::nullopt;
  const Located written = *json.Find("expr");
  Generated of_operators = generated;
  of_operators.origin += fmt::format(", expression \"{}\"", *text);
  const auto resolve = [&](const ExpressionName& name) {
    return Resolve(name, checker_.OffsetWithin(written, name.at), of_operators.origin);
  };
  const std::size_t steps = program_.steps.size();
  try {
    return ReadExpression(*text, catalogue_, resolve, of_operators, program_.steps);
  } catch (const ExpressionError& error) {
    program_.steps.resize(steps);
    if (*error.what() != '\0') {
      checker_.Complain(checker_.OffsetWithin(written, error.at), error.what());
    }
  }
  return std::nullopt;
}

Operand ArgumentReader::Resolve(const ExpressionName& name, std::size_t offset,
                                const std::string& place) {
  const bool is_step =
      std::ranges::find(program_.steps, name.name, &Step::name) != program_.steps.end();
  if (data_.Has(name.name)) {
    if (!is_step) return data_.InExpression(name, offset, place);
    throw ExpressionError(name.at, "a step and data are both named " + Quoted(name.name) +
                                       "; give one of them another name");
  }
  try {
    const std::size_t step = FindStep(name.name);
    const CatalogueEntry* instruction = program_.steps[step].instruction;
    if (instruction == nullptr) throw ExpressionError(name.at, "");  // a mistake of its own
    const StepResult result{
        step, FindResult(*instruction->descriptor, name.part.empty() ? "0" : name.part)};
    return {result, ValueKind(TypeOf(result))};
  } catch (const ExpressionError&) {
    throw;
  } catch (const ValueError& error) {
    std::string text = error.what();
    if (!is_step) text = "no step or data " + Quoted(name.name) + Suggestion(name.name, Names());
    throw ExpressionError(name.at, text);
  } catch (const UserError& error) {
    throw ExpressionError(name.part_at, error.what());
  }
}

/// What an expression can name: the earlier steps and the data.
std::vector<std::string_view> ArgumentReader::Names() const {
  std::vector<std::string_view> names = data_.Names();
  for (std::size_t i = 0; i < step_; ++i) names.push_back(program_.steps[i].name);
  return names;
}

}  // namespace nuvhost
