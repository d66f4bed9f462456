#include "nuvhost/showing/result_row.h"

#include <unordered_set>

#include "nuvhost/text/names.h"
#include "nuvhost/text/utf8.h"
#include "nuvhost/values/json_value.h"
#include "nuvhost/values/value_text.h"

namespace nuvhost {
namespace {

std::string Field(const std::string& text) {
  if (text.find_first_of(",\"\r\n") == std::string::npos) return text;
  std::string quoted = "\"";
  for (const char c : text) quoted += c == '"' ? "\"\"" : std::string(1, c);
  return quoted + '"';
}

/// The columns that a result of a type takes, by what follows its name; none for an array.
std::vector<const char*> ColumnsOf(std::uint32_t type) {
  switch (type) {
    case NUV_PARAM_POINT: return {".x", ".y"};
    case NUV_PARAM_LINE: return {".a", ".d"};
    default: return type < NUV_PARAM_BOOLEAN_ARRAY ? std::vector{""} : std::vector<const char*>{};
  }
}

std::uint32_t TypeOf(const Program& program, const StepResult& result) {
  return program.steps[result.step].instruction->descriptor->results[result.result].type;
}

/// A column's name without the number that made it unlike an earlier one: "Width [yes] (2)".
std::string_view WithoutNumber(std::string_view column) {
  const std::size_t at = column.rfind(" (");
  if (at == std::string_view::npos || !column.ends_with(')')) return column;
  const std::string_view number = column.substr(at + 2, column.size() - at - 3);
  const bool is_number = !number.empty() && number.find_first_not_of("0123456789") == number.npos;
  return is_number ? column.substr(0, at) : column;
}

/// Adds the cells of a result, empty ones where its step gave none.
void AddCells(const Program& program, const RunOutcome& run, const StepResult& result,
              std::vector<ResultCell>& cells) {
  const std::size_t count = ColumnsOf(TypeOf(program, result)).size();
  const StepOutcome* const step = run.steps.empty() ? nullptr : &run.steps[result.step];
  if (count == 0 || step == nullptr || !HasResults(*step)) {
    cells.insert(cells.end(), count, std::monostate());
    return;
  }
  const CNuvObject& value = step->context->results[result.result];
  switch (value.GetType()) {
    case NUV_OBJ_BOOL: cells.emplace_back(static_cast<bool>(value)); break;
    case NUV_OBJ_DOUBLE: cells.emplace_back(static_cast<double>(value)); break;
    case NUV_OBJ_STRING: cells.emplace_back(Utf8FromBytes(static_cast<const char*>(value))); break;
    case NUV_OBJ_POINT: {
      const auto& point = static_cast<const CNuvPoint&>(value);
      cells.insert(cells.end(), {point.x, point.y});
      break;
    }
    case NUV_OBJ_LINE: {
      const auto& line = static_cast<const CNuvLine&>(value);
      cells.insert(cells.end(), {line.a, line.d});
      break;
    }
    default: cells.insert(cells.end(), count, std::monostate());
  }
}

struct CellToCsv {
  std::string operator()(std::monostate /*nothing*/) const { return ""; }
  std::string operator()(bool truth) const { return truth ? "true" : "false"; }
  std::string operator()(double number) const { return NumberText(number); }
  std::string operator()(const std::string& text) const { return Field(text); }
};

struct CellToJson {
  Json operator()(std::monostate /*nothing*/) const { return nullptr; }
  Json operator()(bool truth) const { return truth; }
  Json operator()(double number) const { return NumberToJson(number); }
  Json operator()(const std::string& text) const { return text; }
};

std::string Text(const Json& json) {
  return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

}  // namespace

std::string ResultColumn(const Characteristic& row) {
  if (!row.limits.Judge()) return CharacteristicOf(row.label) ? row.label + " []" : row.label;
  const std::string head = row.label + " [" + LimitsText(row.limits);
  std::string name = head + (row.unit.empty() ? "" : " " + row.unit) + "]";
  const Characteristic as_read{row.label, row.unit, {}, row.limits};
  return CharacteristicOf(name) == as_read ? name : head + "]";
}

std::optional<Characteristic> CharacteristicOf(const std::string& column) {
  const std::string_view name = WithoutNumber(column);
  if (!name.ends_with(']')) return std::nullopt;
  // The limits stand in the last bracket that holds some.
  for (std::size_t at = name.rfind(" ["); at != std::string_view::npos;) {
    std::string_view rest = name.substr(at + 2, name.size() - at - 3);
    if (rest.empty()) return std::nullopt;
    const std::optional<Limits> limits = TakeLimits(rest);
    if (limits && (rest.empty() || (rest[0] == ' ' && rest.size() > 1))) {
      return Characteristic{std::string(name.substr(0, at)),
                            std::string(rest.substr(rest.empty() ? 0 : 1)),
                            {},
                            *limits};
    }
    at = at == 0 ? std::string_view::npos : name.rfind(" [", at - 1);
  }
  return std::nullopt;
}

std::vector<std::string> ResultColumns(const Program& program) {
  std::vector<std::string> columns;
  std::unordered_set<std::string> known;
  const auto add = [&](const std::string& name) {
    std::string unique = name;
    for (int i = 2; !known.insert(unique).second; ++i) unique = fmt::format("{} ({})", name, i);
    columns.push_back(std::move(unique));
  };
  add("part");
  add("status");
  for (const ReportRow& row : program.report) {
    for (const char* end : ColumnsOf(TypeOf(program, row.value))) {
      add(ResultColumn({row.label, row.unit, row.decimals, row.limits}) + end);
    };
  }
  for (const Step& step : program.steps) {
    if (step.generated) continue;  // its value is a row of the report, or a part of one
    for (const ResultRecord& result : step.instruction->descriptor->results) {
      for (const char* end : ColumnsOf(result.type)) {
        add(step.name + '.' + NameFromText(result.name) + end);
      }
    }
  }
  return columns;
}

std::vector<ResultCell> ResultCells(const Program& program, const RunOutcome& run) {
  std::vector<ResultCell> cells{run.file, std::string(StateText(run.state))};
  for (const ReportRow& row : program.report) AddCells(program, run, row.value, cells);
  for (std::size_t i = 0; i < program.steps.size(); ++i) {
    if (program.steps[i].generated) continue;
    const std::size_t results = program.steps[i].instruction->descriptor->results.Size();
    for (std::size_t j = 0; j < results; ++j) AddCells(program, run, {i, j}, cells);
  }
  return cells;
}

std::string CsvHeader(const std::vector<std::string>& columns) {
  std::string line;
  for (const std::string& column : columns) line += (line.empty() ? "" : ",") + Field(column);
  return line + '\n';
}

std::string CsvLine(const std::vector<ResultCell>& cells) {
  std::string line;
  const char* separator = "";
  for (const ResultCell& cell : cells) {
    line += separator + std::visit(CellToCsv{}, cell);
    separator = ",";
  }
  return line + '\n';
}

std::string JsonLine(const std::vector<std::string>& columns,
                     const std::vector<ResultCell>& cells) {
  std::string line = "{";
  for (std::size_t i = 0; i < columns.size(); ++i) {
    line +=
        (i == 0 ? "" : ", ") + Text(columns[i]) + ": " + Text(std::visit(CellToJson{}, cells[i]));
  }
  return line + "}\n";
}

}  // namespace nuvhost
