// The laws of the descriptors' contents.

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <map>
#include <set>
#include <string_view>

#include "nuvhost/checking/facts.h"
#include "nuvhost/checking/law.h"
#include "nuvhost/checking/subject.h"
#include "nuvhost/library/categories.h"
#include "nuvhost/text/names.h"
#include "nuvhost/values/json_value.h"
#include "reference_host/services/call_context.h"

namespace nuvhost::check {
namespace {

constexpr std::uint32_t kFirstHelp = 460000;

std::string Place(const char* list, std::size_t index) {
  return std::string(list) + "[" + std::to_string(index) + "]";
}

/// The first complaint about a list's records; `look` gives one about a record, or "".
template <class Record, class Look>
std::string FirstComplaint(const char* list, const TStdVector<Record>& records, Look look) {
  for (std::size_t i = 0; i < records.Size(); ++i) {
    const std::string complaint = look(records[i], i);
    if (!complaint.empty()) return Place(list, i) + " " + complaint;
  }
  return "";
}

/// The first complaint about any record, whichever list it stands in.
template <class Look>
std::string FirstComplaint(const DescriptorRecord& descriptor, Look look) {
  std::string complaint = FirstComplaint("constants", descriptor.constants, look);
  if (complaint.empty()) complaint = FirstComplaint("inputs", descriptor.inputs, look);
  if (complaint.empty()) complaint = FirstComplaint("results", descriptor.results, look);
  return complaint;
}

bool IsEmptyText(const char* text) {
  return text == nullptr || *text == '\0';
}

std::string Texts(const DescriptorRecord& descriptor) {
  AllFacts(descriptor);  // reads every text to its end
  if (IsEmptyText(descriptor.name)) return "the name is " + Quoted(descriptor.name);
  if (IsEmptyText(descriptor.category)) return "the category is " + Quoted(descriptor.category);
  if (IsEmptyText(descriptor.identifier)) {
    return "the identifier is " + Quoted(descriptor.identifier);
  }
  const auto named = [](const auto& record, std::size_t) {
    return record.name == nullptr ? "has no name" : "";
  };
  const std::string complaint = FirstComplaint("inputs", descriptor.inputs, named);
  return complaint.empty() ? FirstComplaint("results", descriptor.results, named) : complaint;
}

/// Whether a text can be read and told: not of blanks alone, and without control characters.
bool IsReadable(std::string_view text) {
  const auto is_control = [](unsigned char c) { return c < 0x20 || c == 0x7F; };
  return text.find_first_not_of(' ') != text.npos && std::ranges::none_of(text, is_control);
}

/// Kept: two pairs of inputs bear one name; saved programs have them by their positions.
bool MayShareNames(std::string_view identifier) {
  return identifier == "_Nuv_Numeric_Max2Numbers_" || identifier == "_Nuv_Numeric_Min2Numbers_";
}

template <class Record>
std::string SharedName(const char* list, const TStdVector<Record>& records) {
  std::set<std::string_view> names;
  return FirstComplaint(list, records, [&](const Record& record, std::size_t) -> std::string {
    if (record.name == nullptr || names.insert(record.name).second) return "";
    return "has the name of one before it, " + Quoted(record.name);
  });
}

std::string ParameterNames(const DescriptorRecord& descriptor) {
  std::string complaint = FirstComplaint(descriptor, [](const auto& record, std::size_t) {
    if (record.name == nullptr || IsReadable(record.name)) return std::string();
    return "has the name " + Quoted(record.name);
  });
  if (!complaint.empty()) return complaint;
  const auto label = [](const ConstantRecord& constant, std::size_t) -> std::string {
    if (constant.group != nullptr && !IsReadable(constant.group)) {
      return "has the group label " + Quoted(constant.group);
    }
    for (auto* node = constant.choices.First(); node != nullptr; node = CChoiceMap::Next(node)) {
      if (node->label.Size() > 0 && !IsReadable(node->label.View())) {
        return "has the label " + Quoted(node->label.c_str());
      }
    }
    return "";
  };
  return FirstComplaint("constants", descriptor.constants, label);
}

std::string Names(const DescriptorRecord& descriptor) {
  for (const char* text : {descriptor.name, descriptor.category, descriptor.identifier}) {
    if (!IsEmptyText(text) && !IsReadable(text)) return "has the text " + Quoted(text);
  }
  std::string complaint = ParameterNames(descriptor);
  if (complaint.empty() && !MayShareNames(TextOrEmpty(descriptor.identifier))) {
    complaint = SharedName("inputs", descriptor.inputs);
  }
  if (complaint.empty()) complaint = SharedName("constants", descriptor.constants);
  return complaint.empty() ? SharedName("results", descriptor.results) : complaint;
}

/// Complains of each instruction that shares its key with one before it.
template <class KeyOf>
void JudgeUnique(Trial& trial, const char* what, KeyOf key_of) {
  std::map<std::string, std::size_t> first;
  std::size_t index = 0;
  ForEachDescriptor(trial, [&](const DescriptorRecord& descriptor) -> std::string {
    const std::string key = key_of(descriptor);
    const auto [found, is_new] = first.emplace(key, index++);
    if (is_new) return "";
    return fmt::format("{} {} is that of prototype {} too", what, key, found->second);
  });
}

void JudgeHelp(Trial& trial) {
  ForEachDescriptor(trial, [](const DescriptorRecord& descriptor) -> std::string {
    if (descriptor.help >= kFirstHelp) return "";
    return fmt::format("help number {} is below 460000", descriptor.help);
  });
  JudgeUnique(trial, "help number",
              [](const DescriptorRecord& descriptor) { return std::to_string(descriptor.help); });
}

std::string CategoryComplaint(const DescriptorRecord& descriptor) {
  const bool known = FindCategory(TextOrEmpty(descriptor.category)) != nullptr;
  return known ? "" : "unknown category " + Quoted(descriptor.category);
}

std::string Format(const DescriptorRecord& descriptor) {
  const bool extended = descriptor.extension_a != 0 || descriptor.extension_b != 0;
  const std::uint32_t expected = !extended ? 17 : descriptor.results.Empty() ? 18 : 19;
  if (descriptor.format == expected) return "";
  return fmt::format("format code {} where it should be {}", descriptor.format, expected);
}

std::string ReservedBytes(const DescriptorRecord& descriptor) {
  struct Range {
    std::size_t begin;
    std::size_t end;
  };
  constexpr Range kReserved[] = {{4, 8}, {44, 57}, {58, 60}, {68, 80}, {176, 184}};
  unsigned char bytes[sizeof descriptor];
  std::memcpy(bytes, static_cast<const void*>(&descriptor), sizeof bytes);
  for (const Range& range : kReserved) {
    for (std::size_t i = range.begin; i < range.end; ++i) {
      if (bytes[i] != 0) return fmt::format("byte {} is {}", i, bytes[i]);
    }
  }
  return "";
}

std::string Indices(const DescriptorRecord& descriptor) {
  return FirstComplaint(descriptor, [](const auto& record, std::size_t i) {
    return record.index == i ? "" : "has index " + std::to_string(record.index);
  });
}

std::string Types(const DescriptorRecord& descriptor) {
  return FirstComplaint(descriptor, [](const auto& record, std::size_t) {
    const bool integer = record.type == NUV_PARAM_INTEGER || record.type == NUV_PARAM_CHOICE;
    const bool legal = std::is_same_v<decltype(record), const ConstantRecord&>
                           ? integer || record.type == NUV_PARAM_BOOLEAN
                           : !integer && NuvValueType(record.type) != NUV_OBJ_EMPTY;
    return legal ? "" : "has type code " + std::to_string(record.type);
  });
}

std::string Defaults(const DescriptorRecord& descriptor) {
  const auto matches = [](const ParameterRecord& input, std::size_t) -> std::string {
    const NUV_OBJ_TYPE held = input.default_value.GetType();
    if (held == NuvValueType(input.type)) return "";
    return fmt::format("has type code {} and a default of value type {}", input.type, held);
  };
  return FirstComplaint("inputs", descriptor.inputs, matches);
}

bool IsEmpty(const CNuvObject& value) {
  return value.GetType() == NUV_OBJ_EMPTY;
}

bool IsInteger(const CNuvObject& value) {
  return value.GetType() == NUV_OBJ_DOUBLE &&
         static_cast<double>(value) == static_cast<double>(static_cast<int>(value));
}

bool IsKey(const CChoiceMap& choices, std::int32_t key) {
  for (auto* node = choices.First(); node != nullptr; node = CChoiceMap::Next(node)) {
    if (node->key == key) return true;
  }
  return false;
}

std::string Choices(const ConstantRecord& constant) {
  if (constant.choices.Size() == 0) return "is a choice and has none to choose";
  for (auto* node = constant.choices.First(); node != nullptr; node = CChoiceMap::Next(node)) {
    if (node->label.Size() == 0) return "has no label for key " + std::to_string(node->key);
  }
  const auto key = static_cast<int>(constant.default_value);
  return IsKey(constant.choices, key) ? ""
                                      : "has no choice for its default, " + std::to_string(key);
}

std::string Range(const ConstantRecord& constant) {
  if (IsEmpty(constant.minimum) && IsEmpty(constant.maximum)) return "";
  if (!IsInteger(constant.minimum) || !IsInteger(constant.maximum)) {
    return "has a minimum and a maximum that are not both integers or both empty";
  }
  const auto value = static_cast<int>(constant.default_value);
  const auto minimum = static_cast<int>(constant.minimum);
  const auto maximum = static_cast<int>(constant.maximum);
  if (minimum <= value && value <= maximum) return "";
  return fmt::format("has the default {} outside its range, {} to {}", value, minimum, maximum);
}

/// A boolean, which may be held as the number 0 or 1.
bool IsBoolean(const CNuvObject& value) {
  if (value.GetType() == NUV_OBJ_BOOL) return true;
  return IsInteger(value) && (static_cast<int>(value) == 0 || static_cast<int>(value) == 1);
}

std::string ConstantValues(const ConstantRecord& constant, std::size_t /*index*/) {
  const bool boolean = constant.type == NUV_PARAM_BOOLEAN;
  if (boolean ? !IsBoolean(constant.default_value) : !IsInteger(constant.default_value)) {
    return fmt::format("has type code {} and the default {}", constant.type,
                       Shown(constant.default_value));
  }
  const bool has_range = !IsEmpty(constant.minimum) || !IsEmpty(constant.maximum);
  if (has_range && constant.type != NUV_PARAM_INTEGER) return "has a range and is no integer";
  if (constant.type == NUV_PARAM_CHOICE) return Choices(constant);
  if (constant.choices.Size() != 0) return "has choices and is no choice";
  return Range(constant);
}

std::string Constants(const DescriptorRecord& descriptor) {
  return FirstComplaint("constants", descriptor.constants, ConstantValues);
}

std::string Repeatable(const DescriptorRecord& descriptor) {
  if (descriptor.repeatable > 1) {
    return "the repeatable flag is " + std::to_string(descriptor.repeatable);
  }
  return descriptor.repeatable == 1 && descriptor.inputs.Empty() ? "repeatable without an input"
                                                                 : "";
}

template <auto look>
void JudgeEach(Trial& trial) {
  ForEachDescriptor(trial, look);
}

constexpr Law kDescriptorLaws[] = {
    {"descriptors", "texts",
     "Name, category and identifier are texts that are not empty, inputs and results have names, "
     "and every other text ends or is null.",
     JudgeEach<Texts>},
    {"descriptors", "names",
     "Names, labels, categories and identifiers are texts without control characters, none of "
     "them empty, and no two inputs, constants or results of an instruction have one name.",
     JudgeEach<Names>},
    {"descriptors", "identifiers", "No two instructions have the same identifier.",
     [](Trial& trial) {
       JudgeUnique(trial, "identifier", [](const DescriptorRecord& descriptor) {
         return Quoted(descriptor.identifier);
       });
     }},
    {"descriptors", "help-numbers",
     "Help numbers count from 460000, and no two instructions have the same.", JudgeHelp},
    {"descriptors", "categories", "The category is one of the fourteen that hosts know.",
     JudgeEach<CategoryComplaint>},
    {"descriptors", "format",
     "The format code is 17 where both extension words are 0, else 19 with results and 18 without.",
     JudgeEach<Format>},
    {"descriptors", "reserved-bytes",
     "The reserved fields of a descriptor, and the bytes between its fields, are zero.",
     JudgeEach<ReservedBytes>},
    {"descriptors", "indices",
     "Constants, inputs and results are each numbered from 0 in their order.", JudgeEach<Indices>},
    {"descriptors", "types",
     "Inputs and results have the type code of a value or an array, constants that of a boolean, "
     "an integer or a choice.",
     JudgeEach<Types>},
    {"descriptors", "defaults", "An input's default is a value of the input's type.",
     JudgeEach<Defaults>},
    {"descriptors", "constants",
     "A constant's default is of its type, lies within the range where there is one, which only "
     "integers have, and is among the choices, which only a choice has and which have labels.",
     JudgeEach<Constants>},
    {"descriptors", "repeatable",
     "The repeatable flag is 0 or 1, and 1 only where there is an input to repeat.",
     JudgeEach<Repeatable>},
};

}  // namespace

std::span<const Law> DescriptorLaws() {
  return kDescriptorLaws;
}

}  // namespace nuvhost::check
