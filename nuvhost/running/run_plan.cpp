#include "nuvhost/running/run_plan.h"

#include <algorithm>

#include "nuvhost/error.h"
#include "nuvhost/system/input_file.h"
#include "nuvhost/text/names.h"

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

PlannedRun NamedRun(const Program& program, const std::vector<std::string>& words) {
  PlannedRun run;
  for (const std::string& word : words) {
    const std::optional<std::size_t> datum = NamedDatum(program, word);
    if (!datum) {
      const std::string name = word.substr(0, word.find('='));
      std::vector<std::string_view> known;
      for (const Datum& one : program.data) known.push_back(one.name);
      throw UserError("--data {}: expected NAME=FILE, since other words name their data{}", word,
                      word.find('=') == std::string::npos ? "" : DidYouMean(name, known));
    }
    const std::string file = word.substr(word.find('=') + 1);
    if (!run.replacements.emplace(*datum, file).second) {
      throw UserError(
          "--data {}: data \"{}\" has a file already; for a run over each file write the files "
          "alone",
          word, program.data[*datum].name);
    }
    run.file += (run.file.empty() ? "" : ", ") + file;
  }
  return run;
}

}  // namespace

std::vector<PlannedRun> PlanRuns(const Program& program, const std::vector<std::string>& words) {
  if (words.empty()) return {{program.source.Name(), {}}};
  if (program.data.empty()) {
    throw UserError("--data {}: {} takes no data from a file", words[0], program.source.Name());
  }
  const auto is_named = [&](const std::string& word) {
    return NamedDatum(program, word).has_value();
  };
  if (std::ranges::any_of(words, is_named)) return {NamedRun(program, words)};
  if (program.data.size() > 1) {
    throw UserError("--data {}: {} has more than one data file; write NAME=FILE, with one of {}",
                    words[0], program.source.Name(), DataNames(program));
  }
  std::vector<PlannedRun> runs;
  for (const std::string& word : words) runs.push_back({word, {{0, word}}});
  return runs;
}

std::vector<NamedFile> FilesRead(const Program& program, const std::vector<PlannedRun>& runs) {
  const std::string& name = program.source.Name();
  std::vector<NamedFile> read{{"the program", name}};
  const auto add_own = [&](const char* role, const std::string& file) {
    if (!file.empty() && file != kStandardInput) read.push_back({role, BesideProgram(name, file)});
  };
  add_own("the image", program.image);
  for (const Datum& datum : program.data) add_own("the data file", datum.file);
  for (const PlannedRun& run : runs) {
    for (const auto& [datum, file] : run.replacements) {
      if (file != kStandardInput) read.push_back({"the data file", file});
    }
  }
  return read;
}

}  // namespace nuvhost
