// A run's results as one row: for CSV, and as one line of JSON.
#pragma once

#include <string>
#include <variant>
#include <vector>

#include "nuvhost/running/step_runner.h"
#include "nuvhost/showing/page_data.h"

namespace nuvhost {

/// Nothing stands for what a failed step did not compute.
using ResultCell = std::variant<std::monostate, bool, double, std::string>;

/// "part", "status", the report's rows with their limits, "Width [24.05 to 24.15 mm]", then
/// STEP.RESULT: all that are no arrays, points and lines in two columns each. No two are alike.
std::vector<std::string> ResultColumns(const Program& program);
/// The name of a row's column. CharacteristicOf reads it as that row, whatever its label and unit
/// hold; where it could not, the unit is left out, or "[]" stands behind a row without limits.
std::string ResultColumn(const Characteristic& row);
/// The row with limits, less its decimals, whose column has a name; nothing for any other column.
std::optional<Characteristic> CharacteristicOf(const std::string& column);
/// As many as there are columns.
std::vector<ResultCell> ResultCells(const Program& program, const RunOutcome& run);

/// A line of CSV, as RFC 4180 has it but for the line end.
std::string CsvHeader(const std::vector<std::string>& columns);
std::string CsvLine(const std::vector<ResultCell>& cells);
/// A line of JSON: an object with the columns as names.
std::string JsonLine(const std::vector<std::string>& columns, const std::vector<ResultCell>& cells);

}  // namespace nuvhost
