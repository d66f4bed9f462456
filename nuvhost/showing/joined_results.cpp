#include "nuvhost/showing/joined_results.h"

#include <algorithm>
#include <charconv>
#include <unordered_map>

#include "nuvhost/error.h"
#include "nuvhost/showing/charts.h"
#include "nuvhost/showing/report.h"
#include "nuvhost/showing/result_row.h"
#include "nuvhost/showing/results_reader.h"
#include "nuvhost/text/names.h"
#include "nuvhost/text/text_table.h"
#include "nuvhost/text/utf8.h"
#include "nuvhost/values/value_text.h"

namespace nuvhost {
namespace {

/// What a field says of a characteristic; nothing for a text that is no value of its kind.
std::optional<PartValue> ValueOf(const std::string& field, const Limits& limits) {
  PartValue value;
  if (field.empty()) return value;
  CNuvObject object;
  if (limits.expected) {
    if (field != "true" && field != "false") return std::nullopt;
    object = field == "true";
    value.number = field == "true" ? 1 : 0;
  } else {
    const char* const end = field.data() + field.size();
    const auto [stop, error] = std::from_chars(field.data(), end, value.number.emplace());
    if (error != std::errc() || stop != end) return std::nullopt;
    object = *value.number;
  }
  value.holds = Hold(limits, object);
  return value;
}

class Joiner {
 public:
  void Add(const std::string& name) {
    if (!name.ends_with(".csv") && !name.ends_with(".jsonl")) {
      throw UserError("{}: results are joined from files whose names end in .csv or .jsonl", name);
    }
    ResultsReader reader(name);
    if (columns_.empty()) {
      TakeColumns(name, reader.Columns());
    } else if (const std::string difference = DifferenceOf(reader.Columns(), columns_);
               !difference.empty()) {
      throw UserError("{} does not go together with {}: {}", name, files_[0], difference);
    }
    files_.push_back(name);
    std::vector<std::string> fields;
    while (reader.Next(fields)) {
      AddPart(fmt::format("{}: record {} of part {}", name, reader.Records(), Quoted(fields[0])),
              fields);
    }
  }

  PageData Joined() {
    if (page_.parts.empty()) {
      throw UserError("{}: there is no part to report", fmt::join(files_, ", "));
    }
    page_.title = fmt::format("{}", fmt::join(files_, ", "));
    return std::move(page_);
  }

 private:
  void TakeColumns(const std::string& name, const std::vector<std::string>& columns) {
    if (columns.size() < 2 || columns[0] != "part" || columns[1] != "status") {
      throw UserError(
          R"({} does not hold results: the first columns of these are "part", "status")", name);
    }
    columns_ = columns;
    for (std::size_t i = 2; i < columns.size(); ++i) {
      std::optional<Characteristic> row = CharacteristicOf(columns[i]);
      if (!row) continue;
      page_.characteristics.push_back(std::move(*row));
      judged_.push_back(i);
    }
  }

  void AddPart(const std::string& place, const std::vector<std::string>& fields) {
    const auto state = StateOf(fields[1]);
    if (!state) throw UserError("{}: there is no status {}", place, Quoted(fields[1]));
    const std::size_t file = files_.size() - 1;
    const auto [known, is_new] = file_of_.emplace(fields[0], file);
    if (!is_new && known->second != file) {
      throw UserError("part {} stands in {} and in {}; leave out one of them", Quoted(fields[0]),
                      files_[known->second], files_[file]);
    }
    PartResult& part = page_.parts.emplace_back();
    part.name = ValidUtf8(fields[0]);
    part.state = *state;
    part.values.reserve(judged_.size());
    for (std::size_t i = 0; i < judged_.size(); ++i) {
      const std::string& field = fields[judged_[i]];
      const Limits& limits = page_.characteristics[i].limits;
      const auto value = ValueOf(field, limits);
      if (!value) {
        throw UserError("{}: column {} is {}, and would be {}", place, Quoted(columns_[judged_[i]]),
                        Quoted(field), limits.expected ? "true or false" : "a number");
      }
      part.values.push_back(*value);
    }
  }

  std::vector<std::string> files_;
  std::vector<std::string> columns_;
  std::vector<std::size_t> judged_;                       ///< the column of each characteristic
  std::unordered_map<std::string, std::size_t> file_of_;  ///< the parts
  PageData page_;
};

std::string CharacteristicsText(const PageData& page) {
  TextTable table("llrrrrrr");
  table.SetHeader({"Characteristic", "Limits", "n", "Good", "Bad", "Mean", "Min", "Max"});
  for (std::size_t i = 0; i < page.characteristics.size(); ++i) {
    const Characteristic& row = page.characteristics[i];
    const Statistics& statistics = page.statistics[i];
    const auto number = [](const std::optional<double>& one) {
      return one ? NumberText(*one) : "";
    };
    table.Add({HeadText(row.label, row.unit, {}), LimitsText(row.limits),
               std::to_string(statistics.count), std::to_string(statistics.good),
               std::to_string(statistics.bad),
               statistics.mean ? ShortNumber(*statistics.mean, std::nullopt) : "",
               number(statistics.least), number(statistics.most)});
  }
  return page.characteristics.empty() ? "" : table.Text();
}

std::string ValueText(const PartValue& value, const Limits& limits) {
  if (!value.number) return "-";
  const std::string text =
      limits.expected ? (*value.number != 0 ? "yes" : "no") : NumberText(*value.number);
  return (value.holds ? "" : "! ") + text;
}

std::string NotGoodText(const PageData& page) {
  TextTable table("l" + std::string(page.characteristics.size(), 'r') + "l");
  std::vector<std::string> head{"Part"};
  for (const Characteristic& row : page.characteristics) {
    head.push_back(HeadText(row.label, row.unit, row.limits));
  }
  head.emplace_back("Status");
  table.SetHeader(std::move(head));
  std::size_t not_good = 0;
  bool has_bad = false;
  for (const PartResult& part : page.parts) {
    if (!PageData::IsNotGood(part) || ++not_good > kMostShown) continue;
    std::vector<std::string> cells{part.name};
    for (std::size_t i = 0; i < part.values.size(); ++i) {
      has_bad = has_bad || !part.values[i].holds;
      cells.push_back(ValueText(part.values[i], page.characteristics[i].limits));
    }
    cells.emplace_back(StateText(part.state));
    table.Add(std::move(cells));
  }
  if (not_good == 0) return "";
  return table.Text() +
         (not_good > kMostShown ? fmt::format("\n  not shown: {} others\n", not_good - kMostShown)
                                : "") +
         (has_bad ? kBadNote : "");
}

}  // namespace

PageData JoinResults(const std::vector<std::string>& files) {
  Joiner joiner;
  for (const std::string& name : files) joiner.Add(name);
  return joiner.Joined();
}

std::string JoinedText(const PageData& page) {
  const std::string characteristics = CharacteristicsText(page);
  const std::string not_good = NotGoodText(page);
  return characteristics + (characteristics.empty() || not_good.empty() ? "" : "\n") + not_good;
}

}  // namespace nuvhost
