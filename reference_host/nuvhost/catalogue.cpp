#include "reference_host/nuvhost/catalogue.h"

#include <algorithm>
#include <charconv>
#include <optional>

#include "reference_host/nuvhost/error.h"
#include "reference_host/nuvhost/json_value.h"

namespace nuvhost {
namespace {

char Lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// Edits from one text to another, with letters of either case alike (Levenshtein, 1966).
std::size_t EditDistance(std::string_view a, std::string_view b) {
  std::vector<std::size_t> row(b.size() + 1);
  for (std::size_t j = 0; j <= b.size(); ++j) row[j] = j;
  for (std::size_t i = 1; i <= a.size(); ++i) {
    std::size_t diagonal = row[0];
    row[0] = i;
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const std::size_t replaced = diagonal + (Lower(a[i - 1]) == Lower(b[j - 1]) ? 0 : 1);
      diagonal = row[j];
      row[j] = std::min({row[j] + 1, row[j - 1] + 1, replaced});
    }
  }
  return row[b.size()];
}

/// "Numeric: Multiply", by which an instruction goes whose display name others have, too.
std::string FullName(const DescriptorRecord& descriptor) {
  return NameFromText(descriptor.category) + ": " + NameFromText(descriptor.name);
}

std::string Quoted(std::string_view text) {
  return '"' + std::string(text) + '"';
}

std::optional<std::size_t> AsPosition(std::string_view name) {
  std::size_t position = 0;
  const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), position);
  if (error != std::errc() || end != name.data() + name.size()) return std::nullopt;
  return position;
}

/// Finds a parameter by name or position among records whose name `name_of` tells.
template <class Record, class NameOf>
std::size_t FindParameter(const char* kind, const DescriptorRecord& descriptor,
                          const TStdVector<Record>& records, std::string_view name,
                          NameOf name_of) {
  std::vector<std::size_t> found;
  std::vector<std::string> names;
  for (std::size_t i = 0; i < records.Size(); ++i) {
    names.push_back(NameFromText(name_of(records[i])));
    if (names.back() == WithoutTrailingBlanks(name)) found.push_back(i);
  }
  if (found.size() == 1) return found.front();

  const std::string instruction = Quoted(NameFromText(descriptor.name));
  if (found.size() > 1) {
    std::string text = instruction + " has more than one " + kind + " named " + Quoted(name) +
                       "; use the position:";
    for (const std::size_t position : found) text += " " + std::to_string(position);
    throw UserError(text);
  }
  const std::optional<std::size_t> position = AsPosition(name);
  if (position && *position < records.Size()) return *position;
  if (records.Empty()) throw UserError(instruction + " has no " + kind + "s");
  std::string text = instruction + " has no " + kind + " " + Quoted(name);
  const std::string near = DidYouMean(name, {names.begin(), names.end()});
  if (!near.empty()) throw UserError(text + near);
  text += "; it has";
  for (std::size_t i = 0; i < names.size(); ++i) text += (i == 0 ? " " : ", ") + Quoted(names[i]);
  throw UserError(text);
}

}  // namespace

std::string_view TextOrEmpty(const char* text) {
  return text == nullptr ? "" : text;
}

std::string NameFromText(const char* text) {
  return std::string(WithoutTrailingBlanks(Utf8FromText(text)));
}

std::string_view WithoutTrailingBlanks(std::string_view name) {
  while (!name.empty() && name.back() == ' ') name.remove_suffix(1);
  return name;
}

std::string DidYouMean(std::string_view name, const std::vector<std::string_view>& candidates) {
  struct Near {
    std::size_t distance;
    std::string_view name;
  };
  const std::size_t limit = std::max<std::size_t>(2, name.size() / 3);
  std::vector<Near> nearest;
  for (const std::string_view candidate : candidates) {
    const std::size_t distance = EditDistance(name, WithoutTrailingBlanks(candidate));
    const bool has_common = distance < std::max(name.size(), candidate.size());
    const auto same = [&](const Near& near) { return near.name == candidate; };
    if (distance <= limit && has_common && std::ranges::none_of(nearest, same)) {
      nearest.push_back({distance, candidate});
    }
  }
  if (nearest.empty()) return "";
  std::ranges::stable_sort(nearest, {}, &Near::distance);
  if (nearest.size() > 3) nearest.resize(3);
  std::string text = ", did you mean ";
  for (std::size_t i = 0; i < nearest.size(); ++i) {
    if (i > 0) text += i + 1 == nearest.size() ? " or " : ", ";
    text += Quoted(WithoutTrailingBlanks(nearest[i].name));
  }
  return text + "?";
}

Catalogue::Catalogue(const std::filesystem::path& plugin_path) : library_(plugin_path) {
  IXInstrPluginLib& library = library_.Get();
  library.InitPlugins();
  for (std::size_t i = 0; i < library.GetPluginCount(); ++i) {
    IXInstrPlugin* prototype = library.GetPlugins()[i];
    instructions_.push_back({i, prototype, prototype->GetDescriptor()});
  }
}

const Instruction* Catalogue::FindIdentifier(std::string_view identifier) const {
  for (const Instruction& instruction : instructions_) {
    if (TextOrEmpty(instruction.descriptor->identifier) == identifier) return &instruction;
  }
  return nullptr;
}

const Instruction& Catalogue::Find(std::string_view name) const {
  if (const Instruction* found = FindIdentifier(name)) return *found;

  const std::string_view wanted = WithoutTrailingBlanks(name);
  std::vector<const Instruction*> found;
  std::vector<std::string> names;
  for (const Instruction& instruction : instructions_) {
    const DescriptorRecord& descriptor = *instruction.descriptor;
    const std::string forms[] = {NameFromText(descriptor.name), FullName(descriptor),
                                 NameFromText(descriptor.identifier)};
    if (std::ranges::find(forms, wanted) != std::end(forms)) found.push_back(&instruction);
    names.insert(names.end(), std::begin(forms), std::end(forms));
  }
  if (found.size() == 1) return *found.front();
  if (found.empty()) {
    throw UserError("no instruction " + Quoted(name) +
                    DidYouMean(name, {names.begin(), names.end()}));
  }
  std::string text = "several instructions are named " + Quoted(name) + "; write one of";
  for (const Instruction* instruction : found) {
    text += "\n  " + Quoted(FullName(*instruction->descriptor)) + " or " +
            NameFromText(instruction->descriptor->identifier);
  }
  throw UserError(text);
}

std::size_t FindInput(const DescriptorRecord& descriptor, std::string_view name) {
  return FindParameter("input", descriptor, descriptor.inputs, name,
                       [](const ParameterRecord& input) { return input.name; });
}

std::size_t FindResult(const DescriptorRecord& descriptor, std::string_view name) {
  return FindParameter("result", descriptor, descriptor.results, name,
                       [](const ResultRecord& result) { return result.name; });
}

std::size_t FindConstant(const DescriptorRecord& descriptor, std::string_view name) {
  return FindParameter("constant parameter", descriptor, descriptor.constants, name,
                       [](const ConstantRecord& constant) {
                         return constant.name == nullptr ? constant.group : constant.name;
                       });
}

}  // namespace nuvhost
