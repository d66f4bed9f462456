#include <algorithm>
#include <cstdio>
#include <set>

#include "reference_host/nuvhost/commands.h"
#include "reference_host/nuvhost/error.h"
#include "reference_host/nuvhost/json_value.h"

namespace nuvhost {
namespace {

void CheckCategory(const Catalogue& catalogue, const std::string& category) {
  std::set<std::string_view> known;
  for (const Instruction& instruction : catalogue.Instructions()) {
    known.insert(TextOrEmpty(instruction.descriptor->category));
  }
  if (category.empty() || known.contains(category)) return;
  std::string text = "no category \"" + category + "\"; there are";
  for (const std::string_view name : known) text += "\n  " + std::string(name);
  throw UserError(text);
}

}  // namespace

int List(const Catalogue& catalogue, const std::string& category, bool as_json) {
  CheckCategory(catalogue, category);
  Json list = Json::array();
  int category_width = 0;
  int name_width = 0;
  std::vector<const DescriptorRecord*> rows;
  std::vector<std::size_t> positions;
  for (const Instruction& instruction : catalogue.Instructions()) {
    const DescriptorRecord& descriptor = *instruction.descriptor;
    if (!category.empty() && TextOrEmpty(descriptor.category) != category) continue;
    rows.push_back(&descriptor);
    positions.push_back(instruction.index);
    list.push_back({{"index", instruction.index},
                    {"category", TextToJson(descriptor.category)},
                    {"name", TextToJson(descriptor.name)},
                    {"identifier", TextToJson(descriptor.identifier)}});
    category_width =
        std::max(category_width, static_cast<int>(TextOrEmpty(descriptor.category).size()));
    name_width = std::max(name_width, static_cast<int>(TextOrEmpty(descriptor.name).size()));
  }
  if (as_json) {
    std::puts(list.dump(2).c_str());
    return kExitSuccess;
  }
  for (std::size_t i = 0; i < rows.size(); ++i) {
    std::printf("%3zu  %-*s  %-*s  %s\n", positions[i], category_width,
                TextOrEmpty(rows[i]->category).data(), name_width,
                TextOrEmpty(rows[i]->name).data(), TextOrEmpty(rows[i]->identifier).data());
  }
  return kExitSuccess;
}

}  // namespace nuvhost
