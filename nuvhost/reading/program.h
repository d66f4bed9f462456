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
#include "nuvhost/reading/csv.h"
#include "nuvhost/reading/limits.h"
#include "nuvhost/reading/source_text.h"

namespace nuvhost {

/// The host's settings while a program runs.
struct Settings {
  NuvAngleUnit angle_unit = NuvAngleUnit::kRadians;
  std::uint32_t default_color = 0;
  std::size_t max_array_elements = 0;  ///< 0 for the host's own limit
};

/// Named data: a CSV file, or a value in the program itself.
struct Datum {
  std::string name;
  std::string file;         ///< as the program names it; empty for a value
  std::size_t file_offset;  ///< where it does
};

/// An array that an input takes from a datum's file: one column's numbers, or two columns'
/// points. Without names the file has just these columns.
struct DataUse {
  std::size_t datum;
  std::vector<ColumnName> columns;
  std::uint32_t type;
  std::string input;   ///< 'input "numbers" of "MeanArr"'
  std::size_t offset;  ///< where the program refers to it
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

struct Step {
  std::string name;
  const CatalogueEntry* instruction = nullptr;
  std::vector<CNuvObject> constants;
  std::vector<Argument> inputs;  ///< fewer than declared where defaults fill up
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
  std::vector<Step> steps;
  std::vector<ReportRow> report;

  /// Whether a row of the report has limits, so that a part can be good or bad.
  bool Judges() const;
};

/// Reads and checks a program. One with mistakes can be asked for its data, but not run.
Program ReadProgram(const Catalogue& catalogue, SourceText source, Mistakes& mistakes);

/// Leaves out the steps behind the one of that name, and the report's rows that need them. Throws
/// UserError for a step that is not there.
void EndWith(Program& program, const std::string& step);

}  // namespace nuvhost
