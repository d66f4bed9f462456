#include "nuvhost/library/catalogue.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <optional>

#include "nuvhost/error.h"
#include "nuvhost/text/names.h"

namespace nuvhost {
namespace {

/// "Numeric: Multiply", by which an instruction goes whose display name others have, too.
std::string FullName(const DescriptorRecord& descriptor) {
  return NameFromText(descriptor.category) + ": " + NameFromText(descriptor.name);
}

/// All that an instruction goes by.
std::vector<std::string> NamesOf(const DescriptorRecord& descriptor) {
  return {NameFromText(descriptor.name), FullName(descriptor), NameFromText(descriptor.identifier)};
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
    std::string text = fmt::format(
        "{} has more than one {} named \"{}\"; use the position:", instruction, kind, name);
    for (const std::size_t position : found) text += " " + std::to_string(position);
    throw UserError(text);
  }
  const std::optional<std::size_t> position = AsPosition(name);
  if (position && *position < records.Size()) return *position;
  if (records.Empty()) throw UserError("{} has no {}s", instruction, kind);
  std::string text = fmt::format("{} has no {} \"{}\"", instruction, kind, name);
  const std::string near = DidYouMean(name, {names.begin(), names.end()});
  if (!near.empty()) throw UserError(text + near);
  text += "; it has";
  for (std::size_t i = 0; i < names.size(); ++i) text += (i == 0 ? " " : ", ") + Quoted(names[i]);
  throw UserError(text);
}

}  // namespace

Catalogue::Catalogue(const std::filesystem::path& plugin_path) : library_(plugin_path) {
  IXInstrPluginLib& library = library_.Get();
  library.InitPlugins();
  for (std::size_t i = 0; i < library.GetPluginCount(); ++i) {
    IXInstrPlugin* prototype = library.GetPlugins()[i];
    entries_.push_back({i, prototype, prototype->GetDescriptor()});
  }
  for (const CatalogueEntry& entry : entries_) {
    for (std::string& name : NamesOf(*entry.descriptor)) by_name_.emplace(std::move(name), &entry);
  }
}

const CatalogueEntry* Catalogue::FindIdentifier(std::string_view identifier) const {
  for (const CatalogueEntry& instruction : entries_) {
    if (TextOrEmpty(instruction.descriptor->identifier) == identifier) return &instruction;
  }
  return nullptr;
}

const CatalogueEntry& Catalogue::Find(std::string_view name) const {
  if (const CatalogueEntry* found = FindIdentifier(name)) return *found;

  std::vector<const CatalogueEntry*> found;
  const auto [first, last] = by_name_.equal_range(WithoutTrailingBlanks(name));
  for (auto one = first; one != last; ++one) {
    if (found.empty() || found.back() != one->second) found.push_back(one->second);
  }
  if (found.size() == 1) return *found.front();
  if (found.empty()) {
    std::vector<std::string> names;
    for (const CatalogueEntry& entry : entries_) {
      std::ranges::move(NamesOf(*entry.descriptor), std::back_inserter(names));
    }
    throw UserError("no instruction \"{}\"{}", name,
                    DidYouMean(name, {names.begin(), names.end()}));
  }
  std::string text = fmt::format("several instructions are named \"{}\"; write one of", name);
  for (const CatalogueEntry* instruction : found) {
    text += fmt::format("\n  \"{}\" or {}", FullName(*instruction->descriptor),
                        NameFromText(instruction->descriptor->identifier));
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
