#include "nuvhost/reference/search.h"

#include <algorithm>

#include "nuvhost/reference/entries.h"
#include "nuvhost/reference/plain_text.h"
#include "nuvhost/text/names.h"
#include "nuvhost/text/utf8.h"
#include "nuvhost/text/words.h"

namespace nuvhost {
namespace {

/// What words are sought in, in small letters, from the best place to the least.
class Places {
 public:
  explicit Places(const DescriptorRecord& descriptor)
      : name_(LowerCase(NameFromText(descriptor.name))) {
    std::string parameters;
    for (const ConstantRecord& one : descriptor.constants) Append(parameters, one.name);
    for (const ParameterRecord& one : descriptor.inputs) Append(parameters, one.name);
    for (const ResultRecord& one : descriptor.results) Append(parameters, one.name);
    std::string description;
    Append(description, descriptor.category);
    Append(description, descriptor.description);
    std::string text;
    if (const Entry* entry = FindEntry(TextOrEmpty(descriptor.identifier))) {
      description += '\n' + entry->Summary();
      text = PlainText(entry->markdown, kUnbroken);
    }
    texts_ = {LowerCase(NameFromText(descriptor.identifier)), LowerCase(parameters),
              LowerCase(description), LowerCase(text)};
  }

  /// How well a word in small letters fits; 0 where it does not occur.
  int Rank(const std::string& word) const {
    const int places = static_cast<int>(texts_.size());
    if (name_ == word) return places + 3;
    if (name_.starts_with(word)) return places + 2;
    if (name_.find(word) != std::string::npos) return places + 1;
    for (int i = 0; i < places; ++i) {
      if (texts_[static_cast<std::size_t>(i)].find(word) != std::string::npos) return places - i;
    }
    return 0;
  }

 private:
  static constexpr std::size_t kUnbroken = 1 << 20;

  static void Append(std::string& texts, const char* text) { texts += Utf8FromText(text) + '\n'; }

  std::string name_;
  std::vector<std::string> texts_;
};

}  // namespace

std::vector<const CatalogueEntry*> Search(const Catalogue& catalogue,
                                          const std::vector<std::string>& words) {
  struct Found {
    int rank;
    const CatalogueEntry* instruction;
  };
  std::vector<Found> found;
  for (const CatalogueEntry& instruction : catalogue.Entries()) {
    found.push_back({0, &instruction});
    if (words.empty()) continue;
    const Places places(*instruction.descriptor);
    for (const std::string& word : words) {
      const int rank = places.Rank(LowerCase(word));
      if (rank == 0) {
        found.pop_back();
        break;
      }
      found.back().rank += rank;
    }
  }
  std::ranges::stable_sort(found, std::ranges::greater(), &Found::rank);
  std::vector<const CatalogueEntry*> instructions;
  for (const Found& one : found) instructions.push_back(one.instruction);
  return instructions;
}

}  // namespace nuvhost
