#include "nuvhost/comparing/parameter_pairs.h"

#include <algorithm>

#include "nuvhost/text/names.h"

namespace nuvhost {

std::string NameInPrograms(const Json& parameter) {
  const Json& name = parameter.at("name");
  const Json& used = name.is_null() && parameter.contains("group") ? parameter.at("group") : name;
  if (used.is_null()) return "";
  return std::string(WithoutTrailingBlanks(used.get_ref<const std::string&>()));
}

std::vector<ParameterPair> PairParameters(const Json& before, const Json& after) {
  std::vector<ParameterPair> pairs(before.size());
  std::vector<bool> taken(after.size());
  for (std::size_t i = 0; i < before.size(); ++i) pairs[i].before = i;
  const auto same_name = [&](std::size_t i, std::size_t j) {
    return NameInPrograms(before[i]) == NameInPrograms(after[j]);
  };
  const auto pair_where = [&](auto fits) {
    for (std::size_t i = 0; i < before.size(); ++i) {
      for (std::size_t j = 0; j < after.size() && !pairs[i].after; ++j) {
        if (taken[j] || !fits(i, j)) continue;
        pairs[i].after = j;
        taken[j] = true;
      }
    }
  };
  pair_where([&](std::size_t i, std::size_t j) { return i == j && same_name(i, j); });
  pair_where(same_name);
  pair_where([](std::size_t i, std::size_t j) { return i == j; });
  for (std::size_t j = 0; j < after.size(); ++j) {
    if (!taken[j]) pairs.push_back({std::nullopt, j});
  }
  return pairs;
}

}  // namespace nuvhost
