#include "reference_host/nuvhost/run/lots.h"

#include <algorithm>

#include "reference_host/nuvhost/error.h"
#include "reference_host/nuvhost/plugin_library.h"

namespace nuvhost {
namespace {

std::string DataNames(const Program& program) {
  std::string names;
  for (const Datum& datum : program.data) names += (names.empty() ? "" : ", ") + Quoted(datum.name);
  return names;
}

/// The datum that the NAME of NAME=FILE names; nothing for a plain FILE, which may have an equals
/// sign too.
std::optional<std::size_t> NamedDatum(const Program& program, const std::string& word) {
  const std::size_t equals = word.find('=');
  if (equals == std::string::npos) return std::nullopt;
  const auto datum = std::ranges::find(program.data, word.substr(0, equals), &Datum::name);
  if (datum == program.data.end()) return std::nullopt;
  return static_cast<std::size_t>(datum - program.data.begin());
}

Lot NamedLot(const Program& program, const std::vector<std::string>& words) {
  Lot lot;
  for (const std::string& word : words) {
    const std::optional<std::size_t> datum = NamedDatum(program, word);
    if (!datum) {
      const std::string name = word.substr(0, word.find('='));
      std::vector<std::string_view> known;
      for (const Datum& one : program.data) known.push_back(one.name);
      throw UserError("--data " + word + ": expected NAME=FILE, since other words name their data" +
                      (word.find('=') == std::string::npos ? "" : DidYouMean(name, known)));
    }
    const std::string file = word.substr(word.find('=') + 1);
    if (!lot.replacements.emplace(*datum, file).second) {
      throw UserError("--data " + word + ": data " + Quoted(program.data[*datum].name) +
                      " has a file already; for a run over each file write the files alone");
    }
    lot.file += (lot.file.empty() ? "" : ", ") + file;
  }
  return lot;
}

}  // namespace

std::vector<Lot> PlanLots(const Program& program, const std::vector<std::string>& words) {
  if (words.empty()) return {{program.source.Name(), {}}};
  if (program.data.empty()) {
    throw UserError("--data " + words[0] + ": " + program.source.Name() +
                    " takes no data from a file");
  }
  const auto is_named = [&](const std::string& word) {
    return NamedDatum(program, word).has_value();
  };
  if (std::ranges::any_of(words, is_named)) return {NamedLot(program, words)};
  if (program.data.size() > 1) {
    throw UserError("--data " + words[0] + ": " + program.source.Name() +
                    " has more than one data file; write NAME=FILE, with one of " +
                    DataNames(program));
  }
  std::vector<Lot> lots;
  for (const std::string& word : words) lots.push_back({word, {{0, word}}});
  return lots;
}

std::vector<std::string> OverlayNames(const std::string& name, const std::vector<Lot>& lots) {
  constexpr std::string_view kEnding = ".svg";
  if (!name.ends_with(kEnding)) {
    throw UserError("--overlay " + name + ": the file's name must end in .svg");
  }
  if (lots.size() == 1) return {name};
  const std::string beginning = name.substr(0, name.size() - kEnding.size());
  std::vector<std::string> names;
  for (const Lot& lot : lots) {
    const std::string data = ToUtf8(PathFromUtf8(lot.file).stem());
    names.push_back(beginning + '-' + data + std::string(kEnding));
    if (std::ranges::count(names, names.back()) > 1) {
      throw UserError("--overlay " + name + ": more than one data file is named " + Quoted(data) +
                      ", and each would be drawn to " + names.back() + "; run them one by one");
    }
  }
  return names;
}

}  // namespace nuvhost
