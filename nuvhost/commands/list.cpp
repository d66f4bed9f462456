#include <algorithm>
#include <set>

#include "nuvhost/commands/commands.h"
#include "nuvhost/error.h"
#include "nuvhost/library/catalogue.h"
#include "nuvhost/reference/entries.h"
#include "nuvhost/reference/search.h"
#include "nuvhost/system/console.h"
#include "nuvhost/text/names.h"
#include "nuvhost/text/text_table.h"
#include "nuvhost/text/utf8.h"
#include "nuvhost/text/words.h"
#include "nuvhost/values/json_value.h"

namespace nuvhost {
namespace {

void CheckCategory(const Catalogue& catalogue, const std::string& category) {
  std::set<std::string> known;
  for (const CatalogueEntry& instruction : catalogue.Entries()) {
    known.insert(Utf8FromText(instruction.descriptor->category));
  }
  if (category.empty() || known.contains(category)) return;
  std::string text = fmt::format("no category \"{}\"; there are", category);
  for (const std::string& name : known) text += "\n  " + name;
  throw UserError(text);
}

std::string NothingFound(const ListOptions& options) {
  std::string text = "no instruction";
  if (!options.category.empty()) text += " of " + Quoted(options.category);
  text += " has";
  for (const std::string& word : options.words) text += ' ' + Quoted(word);
  return text;
}

std::string ListAsJson(const std::vector<const CatalogueEntry*>& instructions) {
  Json list = Json::array();
  for (const CatalogueEntry* instruction : instructions) {
    const DescriptorRecord& descriptor = *instruction->descriptor;
    list.push_back({{"index", instruction->index},
                    {"category", TextToJson(descriptor.category)},
                    {"name", TextToJson(descriptor.name)},
                    {"identifier", TextToJson(descriptor.identifier)}});
  }
  return list.dump(2) + '\n';
}

/// What stands beside a name: the identifier or the summary, without one the description.
std::string Remark(const DescriptorRecord& descriptor, bool identifiers) {
  if (identifiers) return Utf8FromText(descriptor.identifier);
  const Entry* entry = FindEntry(TextOrEmpty(descriptor.identifier));
  return entry != nullptr ? entry->Summary() : Utf8FromText(descriptor.description);
}

std::string ListAsText(const std::vector<const CatalogueEntry*>& instructions, bool identifiers) {
  std::size_t category_width = 0;
  std::size_t name_width = 0;
  for (const CatalogueEntry* instruction : instructions) {
    category_width =
        std::max(category_width, Width(Utf8FromText(instruction->descriptor->category)));
    name_width = std::max(name_width, Width(NameFromText(instruction->descriptor->name)));
  }
  const std::size_t left = 9 + category_width + name_width;  // of the remark
  std::string text;
  for (const CatalogueEntry* instruction : instructions) {
    const DescriptorRecord& descriptor = *instruction->descriptor;
    const std::string head = fmt::format("{:>3}  {}  {}  ", instruction->index,
                                         Padded(Utf8FromText(descriptor.category), category_width),
                                         Padded(NameFromText(descriptor.name), name_width));
    const std::vector<std::string> remark =
        Wrapped(Remark(descriptor, identifiers), kTextWidth - left);
    text += head + remark[0] + '\n';
    for (std::size_t i = 1; i < remark.size(); ++i) {
      text += std::string(left, ' ') + remark[i] + '\n';
    }
  }
  return text;
}

}  // namespace

int List(const Catalogue& catalogue, const ListOptions& options) {
  CheckCategory(catalogue, options.category);
  std::vector<const CatalogueEntry*> shown = Search(catalogue, options.words);
  std::erase_if(shown, [&](const CatalogueEntry* instruction) {
    return !options.category.empty() &&
           Utf8FromText(instruction->descriptor->category) != options.category;
  });
  if (shown.empty() && !options.as_json) throw UserError(NothingFound(options));
  Print(options.as_json ? ListAsJson(shown) : ListAsText(shown, options.identifiers));
  return kExitSuccess;
}

}  // namespace nuvhost
