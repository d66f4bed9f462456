#include "nuvhost/reading/program.h"

#include <algorithm>
#include <limits>
#include <numeric>

#include "nuvhost/error.h"
#include "nuvhost/reading/arguments.h"
#include "nuvhost/reading/checker.h"
#include "nuvhost/reading/located_json.h"
#include "nuvhost/text/names.h"
#include "nuvhost/values/json_value.h"

namespace nuvhost {
namespace {

constexpr std::uint64_t kMostElements = std::uint64_t{1} << 40;
constexpr std::uint64_t kMostDecimals = 17;

class ProgramReader {
 public:
  ProgramReader(const Catalogue& catalogue, Mistakes& mistakes, Program& program)
      : catalogue_(catalogue),
        program_(program),
        checker_(program.source, mistakes),
        arguments_(catalogue, checker_, program, values_) {}

  void Read(const Located& root) {
    if (!checker_.IsObject(
            root, "a program",
            {"$schema", "title", "description", "settings", "image", "data", "steps", "report"},
            {"steps"})) {
      return;
    }
    checker_.Text(root, "$schema");
    checker_.Text(root, "description");
    program_.title = checker_.Text(root, "title").value_or("");
    if (const auto settings = root.Find("settings")) ReadSettings(*settings);
    if (const auto image = checker_.Name(root, "image")) {
      program_.image = *image;
      program_.image_offset = root.Find("image")->Offset();
    }
    if (const auto data = root.Find("data")) ReadData(*data);
    if (const auto steps = root.Find("steps")) ReadSteps(*steps);
    if (const auto report = root.Find("report")) ReadReport(*report);
  }

 private:
  void ReadSettings(const Located& json) {
    if (!checker_.IsObject(json, "\"settings\"", {"angleUnit", "defaultColor", "maxArrayElements"},
                           {})) {
      return;
    }
    Settings& settings = program_.settings;
    if (const auto unit = json.Find("angleUnit")) {
      if (**unit != "radians" && **unit != "degrees") {
        checker_.Complain(
            *unit, "\"angleUnit\": expected \"radians\" or \"degrees\", found " + Dump(**unit));
      }
      if (**unit == "degrees") settings.angle_unit = NuvAngleUnit::kDegrees;
    }
    const auto color =
        checker_.WholeNumber(json, "defaultColor", 0, std::numeric_limits<std::uint32_t>::max());
    settings.default_color = static_cast<std::uint32_t>(color.value_or(0));
    settings.max_array_elements =
        checker_.WholeNumber(json, "maxArrayElements", 1, kMostElements).value_or(0);
  }

  void ReadData(const Located& json) {
    if (!json->is_object()) {
      checker_.Complain(json, "\"data\" is an object of named data, found " + DescribeKind(*json));
    }
    for (const auto& [name, value] : json.Members()) {
      if (name.empty()) checker_.Complain(value.NameOffset(), "data needs a name");
      if (value->is_object() && !IsPair(*value) && !value->contains("value")) {
        ReadDatum(std::string(name), value);
      } else if (value->is_null()) {
        checker_.Complain(
            value, "data " + Quoted(name) + R"( is a value or {"file": "NAME.csv"}, found null)");
      } else {
        values_.emplace(name, value);
      }
    }
  }

  void ReadDatum(const std::string& name, const Located& json) {
    checker_.IsObject(json, "data from a file", {"file", "decimal", "allowEmpty"}, {"file"});
    Datum datum{name, checker_.Name(json, "file").value_or(""),
                json.Find("file").value_or(json).Offset()};
    if (const auto decimal = json.Find("decimal")) {
      if (**decimal != "." && **decimal != ",") {
        checker_.Complain(*decimal, R"("decimal": expected "." or ",", found )" + Dump(**decimal));
      }
      if (**decimal == ",") datum.decimal = ',';
    }
    datum.allow_empty = checker_.Boolean(json, "allowEmpty").value_or(false);
    program_.data.push_back(std::move(datum));
  }

  /// A point or a line.
  static bool IsPair(const Json& json) {
    return (json.contains("x") && json.contains("y")) || (json.contains("a") && json.contains("d"));
  }

  bool HasTooMany(const std::vector<Located>& elements, const char* what) {
    if (elements.size() <= kMostElements) return false;
    checker_.Complain(elements[kMostElements], "more than {} {}", kMostElements, what);
    return true;
  }

  /// Takes all names first, so that a reference to a later step is told from one to no step.
  void ReadSteps(const Located& json) {
    const std::vector<Located> steps = json.Elements();
    if (steps.empty()) checker_.Complain(json, "\"steps\" is a list of at least one step");
    if (HasTooMany(steps, "steps")) return;
    std::vector<bool> sound;
    for (const Located& step : steps) sound.push_back(ReadHead(step));
    for (std::size_t i = 0; i < steps.size(); ++i) {
      if (sound[i]) arguments_.Read(steps[i], i);
    }
  }

  /// Reads a step's name and instruction; whether the rest can be read.
  bool ReadHead(const Located& json) {
    Step step;
    if (checker_.IsObject(json, "a step", {"name", "instr", "const", "in", "note"},
                          {"name", "instr"})) {
      checker_.Text(json, "note");
      step.name = checker_.Name(json, "name").value_or("");
      const auto same = std::ranges::find(program_.steps, step.name, &Step::name);
      if (!step.name.empty() && same != program_.steps.end()) {
        checker_.Complain(
            *json.Find("name"),
            "an earlier step is named \"{}\", number {}; each needs a name of its own", step.name,
            same - program_.steps.begin() + 1);
      }
      if (const auto name = checker_.Name(json, "instr")) {
        step.instruction = FindInstruction(*name, *json.Find("instr"));
      }
    }
    if (step.instruction != nullptr) {
      for (const ConstantRecord& constant : step.instruction->descriptor->constants) {
        step.constants.push_back(constant.default_value);
      }
    }
    program_.steps.push_back(std::move(step));
    return program_.steps.back().instruction != nullptr;
  }

  const CatalogueEntry* FindInstruction(const std::string& name, const Located& place) {
    try {
      return &catalogue_.Find(name);
    } catch (const UserError& error) {
      checker_.Complain(place, error.what());
    }
    return nullptr;
  }

  void ReadReport(const Located& json) {
    if (!json->is_array()) {
      checker_.Complain(json, "\"report\" is a list of rows, found " + DescribeKind(*json));
    }
    if (HasTooMany(json.Elements(), "report rows")) return;
    for (const Located& row : json.Elements()) {
      if (checker_.IsObject(row, "a report row",
                            {"label", "value", "unit", "decimals", "min", "max", "nominal",
                             "tolerance", "expect"},
                            {"label", "value"})) {
        ReadReportRow(row);
      }
    }
  }

  void ReadReportRow(const Located& json) {
    ReportRow row;
    row.label = checker_.Name(json, "label").value_or("");
    row.unit = checker_.Text(json, "unit").value_or("");
    if (const auto decimals = checker_.WholeNumber(json, "decimals", 0, kMostDecimals)) {
      row.decimals = static_cast<int>(*decimals);
    }
    const auto value = json.Find("value");
    if (!value) return;
    const auto reference = arguments_.ReportValue(*value, row.label);
    if (!reference) return;
    row.value = *reference;
    const std::uint32_t type =
        program_.steps[row.value.step].instruction->descriptor->results[row.value.result].type;
    const bool has_digits = type != NUV_PARAM_BOOLEAN && type != NUV_PARAM_BOOLEAN_ARRAY &&
                            type != NUV_PARAM_STRING && type != NUV_PARAM_STRING_ARRAY;
    if (row.decimals && !has_digits) {
      checker_.Complain(
          *json.Find("decimals"),
          std::string("\"decimals\" is for numbers; this result's type is ") + Describe(type));
    }
    row.limits = ReadLimits(checker_, json, type);
    program_.report.push_back(std::move(row));
  }

  static constexpr std::size_t kMostElements = 10000;  ///< of the steps, and of the report

  const Catalogue& catalogue_;
  Program& program_;
  Checker checker_;
  LiteralData values_;
  ArgumentReader arguments_;
};

}  // namespace

std::vector<std::size_t> RunOrder(const Program& program) {
  const auto rank = [&](std::size_t step) {  // a generated step's is below that of its user
    const std::optional<Generated>& generated = program.steps[step].generated;
    return generated ? 2 * generated->before : 2 * step + 1;
  };
  std::vector<std::size_t> order(program.steps.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::ranges::stable_sort(order, {}, rank);
  return order;
}

bool Program::Judges() const {
  return std::ranges::any_of(report, [](const ReportRow& row) { return row.limits.Judge(); });
}

Program ReadProgram(const Catalogue& catalogue, SourceText source, Mistakes& mistakes) {
  Program program(std::move(source));
  if (const auto json = LocatedJson::Parse(program.source, mistakes)) {
    ProgramReader(catalogue, mistakes, program).Read(json->Root());
  }
  return program;
}

void EndWith(Program& program, const std::string& step) {
  const auto last = std::ranges::find(program.steps, step, &Step::name);
  if (last == program.steps.end()) {
    std::vector<std::string_view> known;
    for (const Step& one : program.steps) known.push_back(one.name);
    throw UserError("--until {}: {} has no step \"{}\"{}", step, program.source.Name(), step,
                    DidYouMean(step, known));
  }
  const auto end = static_cast<std::size_t>(last - program.steps.begin()) + 1;
  const auto written = static_cast<std::size_t>(
      std::ranges::count_if(program.steps, [](const Step& one) { return !one.generated; }));
  std::vector<std::optional<std::size_t>> places(program.steps.size());
  std::size_t kept = 0;
  const auto is_kept = [&](const Argument& input) {
    const auto* result = std::get_if<StepResult>(&input);
    return result == nullptr || places[result->step].has_value();
  };
  for (std::size_t i = 0; i < program.steps.size(); ++i) {
    const Step& one = program.steps[i];
    const std::size_t before = one.generated ? one.generated->before : i;
    const bool is_of_report = one.generated && before == written;
    if (before < end || (is_of_report && std::ranges::all_of(one.inputs, is_kept))) {
      places[i] = kept++;
    }
  }
  std::vector<Step> steps;
  std::vector<DataUse> uses;
  for (std::size_t i = 0; i < program.steps.size(); ++i) {
    if (!places[i]) continue;
    Step& one = steps.emplace_back(std::move(program.steps[i]));
    if (one.generated) one.generated->before = std::min(one.generated->before, end);
    for (Argument& input : one.inputs) {
      if (auto* result = std::get_if<StepResult>(&input)) result->step = *places[result->step];
      if (auto* number = std::get_if<UseNumber>(&input)) {
        uses.push_back(program.uses[number->use]);
        number->use = uses.size() - 1;
      }
    }
  }
  program.steps = std::move(steps);
  program.uses = std::move(uses);
  std::erase_if(program.report, [&](const ReportRow& row) { return !places[row.value.step]; });
  for (ReportRow& row : program.report) row.value.step = *places[row.value.step];
}

}  // namespace nuvhost
