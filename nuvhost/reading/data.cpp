#include "nuvhost/reading/data.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <memory>

#include "host/vectors.h"
#include "nuvhost/reading/csv.h"
#include "nuvhost/reading/json_table.h"
#include "nuvhost/reading/literals.h"
#include "nuvhost/system/input_file.h"
#include "nuvhost/system/paths.h"
#include "nuvhost/text/names.h"

namespace nuvhost {
namespace {

constexpr std::string_view kPart = "{part}";

/// What the program's uses take from the file of one datum.
class DatumReader {
 public:
  DatumReader(const Program& program, const Datum& datum, Mistakes& mistakes)
      : program_(program), datum_(datum), mistakes_(mistakes) {}

  void Open(SourceText source, const RowsOfPart* rows) {
    const std::string& name = source.Name();
    if (name.ends_with(".json") || name.ends_with(".JSON")) {
      auto json = JsonTable::Read(std::move(source), mistakes_);
      json_ = json.get();
      table_ = std::move(json);
    } else if (auto csv =
                   CsvTable::Read(std::move(source), mistakes_,
                                  {.decimal = datum_.decimal,
                                   .allow_empty = datum_.allow_empty,
                                   .may_have_header = rows == nullptr || rows->header_end > 0,
                                   .separator = rows != nullptr ? rows->separator : '\0'})) {
      table_ = std::make_unique<CsvTable>(std::move(*csv));
    }
  }

  CNuvObject Read(const DataUse& use) {
    if (table_ == nullptr) return CNuvObject();
    const bool is_plain = use.columns.empty() && use.where.empty() && !use.row;
    const bool is_figure = ElementOf(use.type) == NUV_PARAM_POINT;
    if (json_ != nullptr && is_plain &&
        (!json_->IsTable() || (is_figure && (*json_->Root()).is_array()))) {
      Checker checker(json_->Source(), mistakes_);
      return ReadLiteral(checker, program_.settings, json_->Root(), use.type, use.input,
                         datum_.allow_empty);
    }
    if (json_ != nullptr && !json_->IsTable()) {
      Complain(use, fmt::format("\"{}\" holds one value, without columns or rows", table_->Name()));
      return CNuvObject();
    }
    if (table_->Columns() == 0 && datum_.allow_empty && IsArray(use.type)) {
      return table_->Array(use.type, {0, 0}, ChosenRows(0), mistakes_);
    }
    std::string reason;
    const std::vector<std::size_t> columns = FindColumns(use, reason);
    const std::optional<ChosenRows> rows = columns.empty() ? std::nullopt : Rows(use, reason);
    if (rows) return IsArray(use.type) ? Array(use, columns, *rows) : One(use, columns, *rows);
    Complain(use, reason);
    return CNuvObject();
  }

 private:
  static std::uint32_t ElementOf(std::uint32_t type) {
    return IsArray(type) ? ElementType(type) : type;
  }

  /// Of what is wrong with the program as much as with the file.
  void Complain(const DataUse& use, const std::string& text) {
    mistakes_.Add(program_.source, use.offset, text);
  }
  void ComplainOfFile(const std::string& text) { mistakes_.Add(table_->Name(), text); }

  /// The columns that a use names, or all where it names none; empty after a mistake.
  std::vector<std::size_t> FindColumns(const DataUse& use, std::string& reason) const {
    std::vector<std::size_t> columns;
    for (const ColumnName& name : use.columns) {
      const std::optional<std::size_t> column = table_->Find(name, reason);
      if (!column) return {};
      columns.push_back(*column);
    }
    if (!use.columns.empty()) return columns;

    const bool wants_points = ElementOf(use.type) == NUV_PARAM_POINT;
    if (table_->Columns() == (wants_points ? 2 : 1)) {
      return wants_points ? std::vector<std::size_t>{0, 1} : std::vector<std::size_t>{0};
    }
    reason = fmt::format("{} takes {}; \"{}\" has {}. Choose by {}", use.input,
                         WithArticle(use.type), table_->Name(), table_->DescribeColumns(),
                         wants_points ? "\"columns\": [X, Y]" : "\"column\"");
    return {};
  }

  /// The rows that hold what the use wants; nothing, and the reason, where it names no column.
  std::optional<ChosenRows> Rows(const DataUse& use, std::string& reason) const {
    if (use.where.empty()) return ChosenRows(table_->Rows());
    std::vector<std::size_t> columns;
    for (const auto& [name, value] : use.where) {
      const auto column = table_->Find(NameOrPosition(name), reason);
      if (!column) return std::nullopt;
      columns.push_back(*column);
    }
    std::vector<std::size_t> rows;
    for (std::size_t row = 0; row < table_->Rows(); ++row) {
      bool holds = true;
      for (std::size_t i = 0; holds && i < columns.size(); ++i) {
        holds = table_->Holds(row, columns[i], use.where[i].second);
      }
      if (holds) rows.push_back(row);
    }
    return ChosenRows(std::move(rows));
  }

  /// Where the file has no header, a column's position is written as a member's name.
  ColumnName NameOrPosition(const std::string& name) const {
    std::size_t position = 0;
    const char* const end = name.data() + name.size();
    const auto [stop, error] = std::from_chars(name.data(), end, position);
    const bool is_position = table_->Header().empty() && error == std::errc() && stop == end;
    return is_position ? ColumnName(position) : ColumnName(name);
  }

  CNuvObject Array(const DataUse& use, const std::vector<std::size_t>& columns,
                   const ChosenRows& chosen) {
    const ChosenRows rows = table_->WithoutBlankEnd(chosen, columns);
    const std::size_t limit = program_.settings.max_array_elements;
    if (rows.Size() == 0 && !datum_.allow_empty) {
      ComplainOfFile(
          fmt::format("no rows{} for {}; where that is meant, write \"allowEmpty\": true "
                      "beside \"file\"",
                      Condition(use), use.input));
    } else if (limit != 0 && rows.Size() > limit) {
      ComplainOfFile(fmt::format("{} rows; \"maxArrayElements\" is {}", rows.Size(), limit));
    } else {
      return table_->Array(use.type, columns, rows, mistakes_);
    }
    return CNuvObject();
  }

  /// The value in the row that the use wants, or in the only one.
  CNuvObject One(const DataUse& use, const std::vector<std::size_t>& columns,
                 const ChosenRows& chosen) {
    const ChosenRows rows = use.row ? chosen : table_->WithoutBlankEnd(chosen, columns);
    const std::size_t row = use.row.value_or(0);
    if (row >= rows.Size()) {
      ComplainOfFile(use.row ? fmt::format("no row {} for {}; it has {} row{}{}, counted from 0",
                                           row, use.input, rows.Size(), rows.Size() == 1 ? "" : "s",
                                           Condition(use))
                             : fmt::format("no row{} for {}", Condition(use), use.input));
      return CNuvObject();
    }
    if (!use.row && rows.Size() > 1) {
      Complain(use, fmt::format("{} takes one value; \"{}\" has {} rows{}. Choose by \"row\" or "
                                "\"where\"",
                                use.input, table_->Name(), rows.Size(), Condition(use)));
      return CNuvObject();
    }
    const ChosenRows one(std::vector<std::size_t>{rows[row]});
    const CNuvObject array = table_->Array(ArrayType(use.type), columns, one, mistakes_);
    CNuvObject value;
    switch (use.type) {
      case NUV_PARAM_BOOLEAN: value = static_cast<const CNuvBoolVector&>(array)[0]; break;
      case NUV_PARAM_STRING:
        value = static_cast<const char*>(static_cast<const CNuvStringVector&>(array)[0]);
        break;
      case NUV_PARAM_POINT: value = static_cast<const CNuvPointVector&>(array)[0]; break;
      default: value = static_cast<const CNuvDoubleVector&>(array)[0]; break;
    }
    return value;
  }

  /// ' with "hole" "H1"'; empty for a use of all rows.
  static std::string Condition(const DataUse& use) {
    std::string text;
    for (const auto& [column, value] : use.where) {
      text += fmt::format("{} \"{}\" {}", text.empty() ? " with" : " and", column, Dump(value));
    }
    return text;
  }

  const Program& program_;
  const Datum& datum_;
  Mistakes& mistakes_;
  std::unique_ptr<DataTable> table_;  ///< null after a mistake
  const JsonTable* json_ = nullptr;   ///< the same, where it is one
};

std::optional<SourceText> ReadData(const std::string& name, std::string& reason) {
  if (name != kStandardInput) return ReadSource(name, reason);
  std::optional<std::string> text = ReadStandardInput(reason);
  if (!text) return std::nullopt;
  return SourceText("standard input", std::move(*text));
}

/// Reads the file of a datum; nothing, and a mistake, where it cannot be read.
std::optional<SourceText> ReadFile(const Program& program, std::size_t datum,
                                   const Replacements& replacements, Mistakes& mistakes) {
  const auto replacement = replacements.find(datum);
  const bool is_own = replacement == replacements.end();
  const Datum& read = program.data[datum];
  const DataFile file =
      is_own ? DataFile{BesideProgram(program.source.Name(), read.file)} : replacement->second;
  const std::string& name = file.name;
  if (is_own && read.file.empty()) return std::nullopt;  // a mistake of its own
  std::string reason;
  std::optional<SourceText> source =
      file.rows ? ReadRows(name, *file.rows, reason) : ReadData(name, reason);
  if (source) return source;
  if (is_own) {
    mistakes.Add(program.source, read.file_offset,
                 fmt::format("cannot read \"{}\": {}", name, reason));
  } else {
    mistakes.Add(name, "cannot read the file: " + reason);
  }
  return std::nullopt;
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
  if (file == kStandardInput || PathFromUtf8(file).has_root_path()) return file;
#if defined(_WIN32)
  const std::size_t name = program.find_last_of("/\\:");
#else
  const std::size_t name = program.rfind('/');
#endif
  return name == std::string::npos ? file : program.substr(0, name + 1) + file;
}

std::vector<CNuvObject> LoadData(const Program& program, const Replacements& replacements,
                                 Mistakes& mistakes) {
  std::vector<CNuvObject> values(program.uses.size());
  for (std::size_t datum = 0; datum < program.data.size(); ++datum) {
    std::optional<SourceText> source = ReadFile(program, datum, replacements, mistakes);
    if (!source) continue;
    DatumReader reader(program, program.data[datum], mistakes);
    const auto replaced = replacements.find(datum);
    const bool has_rows = replaced != replacements.end() && replaced->second.rows;
    reader.Open(std::move(*source), has_rows ? &*replaced->second.rows : nullptr);
    for (std::size_t i = 0; i < program.uses.size(); ++i) {
      if (program.uses[i].datum == datum) values[i] = reader.Read(program.uses[i]);
    }
  }
  return values;
}

}  // namespace nuvhost
