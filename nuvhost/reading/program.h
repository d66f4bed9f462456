// Program: an inspection program, read from its file and checked against the catalogue.
//
// docs/programs.md tells the format. What a Program refers to by a number exists: reading it has
// found every mistake that can be found without the data.
#pragma once

#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "host/setting.h"
#include "nuvhost/library/catalogue.h"
#include "nuvhost/reading/data_table.h"
#include "nuvhost/reading/limits.h"
#include "nuvhost/reading/source_text.h"

namespace nuvhost {

/// The host's settings while a program runs.
struct Settings {
  NuvAngleUnit angle_unit = NuvAngleUnit::kRadians;
  std::uint32_t default_color = 0;
  std::size_t max_array_elements = 0;  ///< 0 for the host's own limit
};

/// Named data from a file.
struct Datum {
  std::string name;
  std::string file;             ///< as the program names it; empty after a mistake
  std::size_t file_offset = 0;  ///< where it does
  char decimal = '.';           ///< the decimal sign of its numbers
  bool allow_empty = false;     ///< whether it may have no rows
};

/// What an input takes from a datum's file: an array from one column, points from two, or the one
/// value in a row. Without names the file has just these columns.
struct DataUse {
  std::size_t datum;
  std::vector<ColumnName> columns;
  std::uint32_t type;
  std::string input;   ///< 'input "numbers" of "MeanArr"'
  std::size_t offset;  ///< where the program refers to it
  /// What the fields of some columns hold in the rows that count: a number, text or boolean.
  std::vector<std::pair<std::string, Json>> where{};
  std::optional<std::size_t> row{};  ///< which of these rows; the only one unless given
};

struct StepResult {
  std::size_t step;
  std::size_t result;
  bool operator==(const StepResult&) const = default;
};

/// What an input is fed: a value, a use of data by its number, or the result of an earlier step.
struct UseNumber {
  std::size_t use;
};
using Argument = std::variant<CNuvObject, UseNumber, StepResult>;

/// What is known of a step that an operator in an expression stands for.
struct Generated {
  std::size_t before;   ///< the written step that it runs before; their number for the report's
  std::string origin;   ///< 'step "ratio", expression "a / b", operator "/"'
  std::string label{};  ///< the report row whose value it gives; empty for a part of a value
};

struct Step {
  std::string name;  ///< empty for a generated step
  const CatalogueEntry* instruction = nullptr;
  std::vector<CNuvObject> constants{};
  std::vector<Argument> inputs{};  ///< fewer than declared where defaults fill up
  std::optional<Generated> generated{};
};

struct ReportRow {
  std::string label;
  StepResult value{};
  std::string unit;
  std::optional<int> decimals;
  Limits limits;
};

struct Program {
  explicit Program(SourceText text) : source(std::move(text)) {}

  SourceText source;
  std::string title;
  Settings settings;
  std::string image;             ///< a file as the program names it; empty for none
  std::size_t image_offset = 0;  ///< where it does
  std::vector<Datum> data;
  std::vector<DataUse> uses;
  std::vector<Step> steps;  ///< the written ones in their order, then the generated ones
  std::vector<ReportRow> report;

  /// Whether a row of the report has limits, so that a part can be good or bad.
  bool Judges() const;
};

/// The program's steps in the order in which they run.
std::vector<std::size_t> RunOrder(const Program& program);

/// Reads and checks a program. One with mistakes can be asked for its data, but not run.
Program ReadProgram(const Catalogue& catalogue, SourceText source, Mistakes& mistakes);

/// Leaves out the steps behind the one of that name, and the report's rows that need them. Throws
/// UserError for a step that is not there.
void EndWith(Program& program, const std::string& step);

}  // namespace nuvhost
