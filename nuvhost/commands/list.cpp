#include <algorithm>
#include <set>

#include "nuvhost/commands/commands.h"
#include "nuvhost/error.h"
#include "nuvhost/library/catalogue.h"
#include "nuvhost/system/console.h"
#include "nuvhost/text/text_table.h"
#include "nuvhost/text/utf8.h"
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

}  // namespace

int List(const Catalogue& catalogue, const std::string& category, bool as_json) {
  CheckCategory(catalogue, category);
  Json list = Json::array();
  std::size_t category_width = 0;
  std::size_t name_width = 0;
  for (const CatalogueEntry& instruction : catalogue.Entries()) {
    const DescriptorRecord& descriptor = *instruction.descriptor;
    if (!category.empty() && Utf8FromText(descriptor.category) != category) continue;
    list.push_back({{"index", instruction.index},
                    {"category", TextToJson(descriptor.category)},
                    {"name", TextToJson(descriptor.name)},
                    {"identifier", TextToJson(descriptor.identifier)}});
    category_width = std::max(category_width, Width(Utf8FromText(descriptor.category)));
    name_width = std::max(name_width, Width(Utf8FromText(descriptor.name)));
  }
  if (as_json) {
    Print(list.dump(2) + '\n');
    return kExitSuccess;
  }
  for (const Json& row : list) {
    const DescriptorRecord& descriptor =
        *catalogue.Entries()[row["index"].get<std::size_t>()].descriptor;
    const std::string position = std::to_string(row["index"].get<std::size_t>());
    Print(std::string(position.size() < 3 ? 3 - position.size() : 0, ' ') + position + "  " +
          Padded(Utf8FromText(descriptor.category), category_width) + "  " +
          Padded(Utf8FromText(descriptor.name), name_width) + "  " +
          Utf8FromText(descriptor.identifier) + '\n');
  }
  return kExitSuccess;
}

}  // namespace nuvhost
