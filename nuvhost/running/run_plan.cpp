#include "nuvhost/running/run_plan.h"

#include <algorithm>
#include <filesystem>
#include <unordered_set>

#include "nuvhost/error.h"
#include "nuvhost/system/file_pattern.h"
#include "nuvhost/system/input_file.h"
#include "nuvhost/system/paths.h"
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

/// The part of a file or folder: a file's path goes without its extension.
std::string PartOf(std::string path, bool is_file) {
  if (is_file) {
    path.resize(path.size() - ToUtf8(PathFromUtf8(path).extension()).size());
    return path;
  }
  while (path.size() > 1 && path.ends_with('/')) path.pop_back();
  return path;
}

/// The parts that the words behind --parts name, in their order, each once.
std::vector<std::string> PartNames(const std::vector<std::string>& words) {
  std::vector<std::string> names;
  std::unordered_set<std::string> known;
  const auto add = [&](const std::string& path, bool is_file) {
    std::string name = PartOf(path, is_file);
    if (known.insert(name).second) names.push_back(std::move(name));
  };
  for (const std::string& word : words) {
    if (!HasWildcard(word)) {
      std::error_code ignored;
      add(word, std::filesystem::is_regular_file(PathFromUtf8(word), ignored));
      continue;
    }
    const std::vector<FoundPath> found = FilesMatching(word);
    if (found.empty()) throw UserError("--parts {}: no file or folder fits this pattern", word);
    for (const auto& [path, is_file] : found) add(path, is_file);
  }
  return names;
}

}  // namespace

RunPlan::RunPlan(const Program& program, const RunWords& words) : program_(program) {
  if (!words.data.empty() && program.data.empty()) {
    throw UserError("--data {}: {} takes no data from a file", words.data[0],
                    program.source.Name());
  }
  if (!words.parts.empty() && !words.part_column.empty()) {
    throw UserError("--part-column {}: the parts come from a column or from --parts, not from both",
                    words.part_column);
  }
  if (!words.part_column.empty()) {
    PlanPartRows(words);
  } else if (!words.parts.empty()) {
    PlanParts(words);
  } else {
    PlanFiles(words.data);
  }
}

void RunPlan::PlanFiles(const std::vector<std::string>& words) {
  const auto is_named = [&](const std::string& word) {
    return NamedDatum(program_, word).has_value();
  };
  if (words.empty()) {
    names_ = {program_.source.Name()};
  } else if (std::ranges::any_of(words, is_named)) {
    Replace(words);
    names_ = {""};
    for (const std::string& word : words) {
      names_[0] += (names_[0].empty() ? "" : ", ") + word.substr(word.find('=') + 1);
    }
  } else if (program_.data.size() > 1) {
    throw UserError("--data {}: {} has more than one data file; write NAME=FILE, with one of {}",
                    words[0], program_.source.Name(), DataNames(program_));
  } else {
    names_ = words;
    is_of_files_ = true;
  }
  if (HoldsPart(program_.image)) {
    throw UserError("{}: the image \"{}\" is one for each part; name the parts: --parts",
                    program_.source.Name(), program_.image);
  }
  for (std::size_t datum = 0; datum < program_.data.size(); ++datum) {
    if (is_of_files_ || fixed_.contains(datum) || !HoldsPart(program_.data[datum].file)) continue;
    throw UserError("{}: data {} has a file for each part, {}; name the parts: --parts",
                    program_.source.Name(), Quoted(program_.data[datum].name),
                    Quoted(program_.data[datum].file));
  }
}

void RunPlan::Replace(const std::vector<std::string>& words) {
  for (const std::string& word : words) {
    const std::optional<std::size_t> datum = NamedDatum(program_, word);
    if (!datum) {
      const std::string name = word.substr(0, word.find('='));
      std::vector<std::string_view> known;
      for (const Datum& one : program_.data) known.push_back(one.name);
      throw UserError("--data {}: expected NAME=FILE, since other words name {}{}", word,
                      words.size() > 1 ? "their data" : "the parts",
                      word.find('=') == std::string::npos ? "" : DidYouMean(name, known));
    }
    const std::string file = word.substr(word.find('=') + 1);
    if (!fixed_.emplace(*datum, DataFile{file}).second) {
      throw UserError(
          "--data {}: data \"{}\" has a file already; for a run over each file write the files "
          "alone",
          word, program_.data[*datum].name);
    }
  }
}

void RunPlan::PlanParts(const RunWords& words) {
  Replace(words.data);
  bool is_held = HoldsPart(program_.image);
  for (std::size_t datum = 0; datum < program_.data.size(); ++datum) {
    const auto fixed = fixed_.find(datum);
    is_held = is_held ||
              HoldsPart(fixed == fixed_.end() ? program_.data[datum].file : fixed->second.name);
  }
  if (!is_held) {
    throw UserError(
        "--parts {}: no file of {} holds \"{{part}}\", in the place of which a part's name is put",
        words.parts[0], program_.source.Name());
  }
  is_of_parts_ = true;
  names_ = PartNames(words.parts);
}

void RunPlan::PlanPartRows(const RunWords& words) {
  const std::string option = "--part-column " + words.part_column;
  if (words.data.size() == 1 && program_.data.size() == 1 && !NamedDatum(program_, words.data[0])) {
    fixed_[0] = {words.data[0]};
  } else {
    Replace(words.data);
  }
  std::vector<std::size_t> candidates;
  for (std::size_t datum = 0; datum < program_.data.size(); ++datum) {
    const auto fixed = fixed_.find(datum);
    const std::string& file =
        fixed == fixed_.end() ? program_.data[datum].file : fixed->second.name;
    const bool is_candidate = fixed_.empty() || fixed != fixed_.end();
    if (is_candidate && !file.empty() && !HoldsPart(file)) candidates.push_back(datum);
  }
  if (candidates.size() != 1) {
    throw UserError("{}: {}", option,
                    candidates.empty()
                        ? program_.source.Name() + " has no data file that could hold many parts"
                        : "which data file holds the parts? Write --data NAME=FILE, with one of " +
                              DataNames(program_));
  }
  divided_ = candidates[0];
  const auto fixed = fixed_.find(divided_);
  const std::string file =
      fixed != fixed_.end() ? fixed->second.name
                            : BesideProgram(program_.source.Name(), program_.data[divided_].file);
  if (file == "-") {
    throw UserError("{}: the file of the parts is read twice, which standard input cannot be",
                    option);
  }
  fixed_[divided_] = {file};
  rows_ = PartRows::Find(file, words.part_column, program_.data[divided_].decimal);
  is_of_parts_ = true;
  names_ = rows_->TakeNames();
}

std::string RunPlan::ShortName(std::size_t run) const {
  const std::filesystem::path path = PathFromUtf8(Name(run));
  if (!is_of_parts_) return ToUtf8(path.stem());
  if (!rows_) return ToUtf8(path.filename());
  std::string name = Name(run);
  for (char& c : name) {
    const bool is_control = static_cast<unsigned char>(c) < 0x20;
    if (is_control || std::string_view("/\\:*?\"<>|").find(c) != std::string_view::npos) c = '_';
  }
  return name;
}

Replacements RunPlan::Files(std::size_t run) const {
  if (is_of_files_) return {{0, {Name(run)}}};
  Replacements files = fixed_;
  if (!is_of_parts_) return files;
  for (std::size_t datum = 0; datum < program_.data.size(); ++datum) {
    const auto fixed = files.find(datum);
    if (fixed != files.end()) {
      fixed->second.name = FileOfPart("", fixed->second.name, Name(run));
    } else if (HoldsPart(program_.data[datum].file)) {
      files[datum] = {FileOfPart(program_.source.Name(), program_.data[datum].file, Name(run))};
    }
  }
  if (rows_) files[divided_].rows = rows_->Rows(run);
  return files;
}

std::string RunPlan::Image(std::size_t run) const {
  if (program_.image.empty()) return "";
  if (HasImages()) return FileOfPart(program_.source.Name(), program_.image, Name(run));
  return BesideProgram(program_.source.Name(), program_.image);
}

void RunPlan::VisitRead(const std::function<void(const NamedFile&)>& visit) const {
  const std::string& name = program_.source.Name();
  visit({"the program", name});
  const auto visit_own = [&](const char* role, const std::string& file) {
    if (!file.empty() && file != kStandardInput) visit({role, BesideProgram(name, file)});
  };
  visit_own("the image", program_.image);
  for (const Datum& datum : program_.data) visit_own("the data file", datum.file);
  const bool has_one_file = rows_ && program_.data.size() == 1;
  for (std::size_t run = 0; run < (has_one_file ? 1 : Size()); ++run) {
    if (HasImages()) visit({"the image", Image(run)});
    for (const auto& [datum, file] : Files(run)) {
      if (file.name != kStandardInput) visit({"the data file", file.name});
    }
  }
}

}  // namespace nuvhost
