#include "nuvhost/reading/data.h"

#include <fmt/format.h>

#include "nuvhost/reading/source_text.h"
#include "nuvhost/system/paths.h"
#include "nuvhost/text/names.h"

namespace nuvhost {
namespace {

constexpr std::string_view kPart = "{part}";

/// Reads the file of a datum; nothing, and a mistake, where it is no CSV file.
std::optional<CsvTable> ReadTable(const Program& program, std::size_t datum,
                                  const Replacements& replacements, Mistakes& mistakes) {
  const auto replacement = replacements.find(datum);
  const bool is_own = replacement == replacements.end();
  const Datum& read = program.data[datum];
  const DataFile file =
      is_own ? DataFile{BesideProgram(program.source.Name(), read.file)} : replacement->second;
  const std::string& name = file.name;
  std::string reason;
  std::optional<SourceText> source =
      file.rows ? ReadRows(name, *file.rows, reason) : ReadSource(name, reason);
  if (source) return CsvTable::Read(std::move(*source), mistakes);
  if (is_own) {
    mistakes.Add(program.source, read.file_offset,
                 fmt::format("cannot read \"{}\": {}", name, reason));
  } else {
    mistakes.Add(name, "cannot read the file: " + reason);
  }
  return std::nullopt;
}

/// The columns that a use names, or all where it names none; empty after a mistake.
std::vector<std::size_t> FindColumns(const DataUse& use, const CsvTable& table,
                                     std::string& reason) {
  std::vector<std::size_t> columns;
  for (const ColumnName& name : use.columns) {
    const std::optional<std::size_t> column = table.Find(name, reason);
    if (!column) return {};
    columns.push_back(*column);
  }
  if (!use.columns.empty()) return columns;

  const bool wants_points = use.type == NUV_PARAM_POINT_ARRAY;
  if (table.Columns() == (wants_points ? 2 : 1)) {
    return wants_points ? std::vector<std::size_t>{0, 1} : std::vector<std::size_t>{0};
  }
  reason = fmt::format("{} takes an array of {}; \"{}\" has {}. Choose by {}", use.input,
                       wants_points ? "points" : "numbers", table.Name(), table.DescribeColumns(),
                       wants_points ? "\"columns\": [X, Y]" : "\"column\"");
  return {};
}

}  // namespace

bool HoldsPart(const std::string& file) {
  return file.find(kPart) != std::string::npos;
}

std::string FileOfPart(const std::string& program, const std::string& file,
                       const std::string& part) {
  std::string name = file;
  for (std::size_t at = 0; (at = name.find(kPart, at)) != std::string::npos; at += part.size()) {
    name.replace(at, kPart.size(), part);
  }
  return file.starts_with(kPart) ? name : BesideProgram(program, name);
}

std::string BesideProgram(const std::string& program, const std::string& file) {
  if (PathFromUtf8(file).has_root_path()) return file;
#if defined(_WIN32)
  const std::size_t name = program.find_last_of("/\\:");
#else
  const std::size_t name = program.rfind('/');
#endif
  return name == std::string::npos ? file : program.substr(0, name + 1) + file;
}

std::vector<CNuvObject> LoadData(const Program& program, const Replacements& replacements,
                                 Mistakes& mistakes) {
  std::vector<std::optional<CsvTable>> tables;
  for (std::size_t datum = 0; datum < program.data.size(); ++datum) {
    const bool has_file = !program.data[datum].file.empty();
    tables.push_back(has_file ? ReadTable(program, datum, replacements, mistakes) : std::nullopt);
  }
  std::vector<CNuvObject> values(program.uses.size());
  for (std::size_t i = 0; i < program.uses.size(); ++i) {
    const DataUse& use = program.uses[i];
    const std::optional<CsvTable>& table = tables[use.datum];
    if (!table) continue;
    std::string reason;
    const std::vector<std::size_t> columns = FindColumns(use, *table, reason);
    const std::size_t limit = program.settings.max_array_elements;
    if (columns.empty()) {
      mistakes.Add(program.source, use.offset, reason);
    } else if (limit != 0 && table->Rows() > limit) {
      mistakes.Add(table->Name(),
                   fmt::format("{} rows; \"maxArrayElements\" is {}", table->Rows(), limit));
    } else if (columns.size() == 1) {
      values[i] = table->Numbers(columns[0], mistakes);
    } else {
      values[i] = table->Points(columns[0], columns[1], mistakes);
    }
  }
  return values;
}

}  // namespace nuvhost
