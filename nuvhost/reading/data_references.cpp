#include "nuvhost/reading/data_references.h"

#include <algorithm>

#include "nuvhost/reading/literals.h"
#include "nuvhost/text/names.h"

namespace nuvhost {
namespace {

constexpr std::size_t kMostRows = std::size_t{1} << 40;

}  // namespace

Argument DataReferences::Read(const Located& json, std::uint32_t type, const std::string& input) {
  checker_.IsObject(json, "a reference to data", {"data", "column", "columns", "where", "row"}, {});
  const std::optional<std::string> name = checker_.Name(json, "data");
  if (!name) return CNuvObject();
  const std::string data = "data " + Quoted(*name);

  if (const auto value = values_.find(*name); value != values_.end()) {
    if (json->size() > 1) {
      checker_.Complain(json, data + " stands in the program and has no columns or rows");
      return CNuvObject();
    }
    return ReadLiteral(checker_, program_.settings, value->second, type,
                       fmt::format("{}, from {}", input, data));
  }
  const auto datum = std::ranges::find(program_.data, *name, &Datum::name);
  if (datum == program_.data.end()) {
    checker_.Complain(*json.Find("data"), "no {}{}", data, Suggestion(*name, Names()));
    return CNuvObject();
  }
  DataUse use{static_cast<std::size_t>(datum - program_.data.begin()),
              Columns(json),
              type,
              input,
              json.Offset(),
              Where(json),
              checker_.WholeNumber(json, "row", 0, kMostRows)};
  if (!Fits(json, use, data)) return CNuvObject();
  return Add(std::move(use));
}

bool DataReferences::Fits(const Located& json, const DataUse& use, const std::string& data) {
  const std::uint32_t kind = IsArray(use.type) ? ElementType(use.type) : use.type;
  const bool is_point = kind == NUV_PARAM_POINT;
  if (kind == NUV_PARAM_LINE || use.columns.size() == (is_point ? 1 : 2)) {
    constexpr const char* kGives[] = {
        "comes from a file, which holds numbers, texts, booleans and points",
        "is one column; a point comes from two, \"columns\": [X, Y]",
        "is two columns, which give points; choose one by \"column\""};
    checker_.Complain(json, "{} takes {}; {} {}", use.input, WithArticle(use.type), data,
                      kGives[kind == NUV_PARAM_LINE ? 0 : use.columns.size()]);
    return false;
  }
  if (const auto row = json.Find("row"); row && IsArray(use.type)) {
    checker_.Complain(row->NameOffset(),
                      "{} takes {}; \"row\" is for one value, some rows are chosen by \"where\"",
                      use.input, WithArticle(use.type));
    return false;
  }
  return true;
}

UseNumber DataReferences::Add(DataUse use) {
  program_.uses.push_back(std::move(use));
  return {program_.uses.size() - 1};
}

/// None, one or two columns.
std::vector<ColumnName> DataReferences::Columns(const Located& json) {
  std::vector<Located> wanted;
  if (const auto column = json.Find("column")) wanted.push_back(*column);
  if (const auto columns = json.Find("columns")) {
    if (!wanted.empty()) {
      checker_.Complain(columns->NameOffset(), "\"column\" and \"columns\" exclude each other");
      return {};
    }
    wanted = columns->Elements();
    if (wanted.size() != 2) {
      checker_.Complain(*columns, "\"columns\" is a list of two columns, for x and y");
      return {};
    }
  }
  std::vector<ColumnName> names;
  for (const Located& column : wanted) {
    if (column->is_string()) {
      names.emplace_back(column->get<std::string>());
    } else if (column->is_number_unsigned()) {
      names.emplace_back(column->get<std::size_t>());
    } else {
      checker_.Complain(
          column, "a column is its header, or its position from 0; found " + DescribeKind(*column));
      return {};
    }
  }
  return names;
}

std::vector<std::pair<std::string, Json>> DataReferences::Where(const Located& json) {
  std::vector<std::pair<std::string, Json>> conditions;
  const std::optional<Located> where = json.Find("where");
  if (!where) return conditions;
  for (const auto& [column, value] : where->Members()) {
    if (value->is_number() || value->is_string() || value->is_boolean()) {
      conditions.emplace_back(column, *value);
    } else {
      checker_.Complain(value,
                        "\"where\" compares a column with a number, a text or a boolean, found " +
                            DescribeKind(*value));
    }
  }
  if (!(*where)->is_object() || (*where)->empty()) {
    checker_.Complain(*where, R"("where" is an object such as {"hole": "H1"}, by column)");
  }
  return conditions;
}

bool DataReferences::Has(const std::string& name) const {
  return values_.contains(name) ||
         std::ranges::find(program_.data, name, &Datum::name) != program_.data.end();
}

std::vector<std::string_view> DataReferences::Names() const {
  std::vector<std::string_view> names;
  for (const Datum& known : program_.data) names.push_back(known.name);
  for (const auto& [known, value] : values_) names.push_back(known);
  return names;
}

Operand DataReferences::InExpression(const ExpressionName& name, std::size_t offset,
                                     const std::string& place) {
  const std::string data = "data " + Quoted(name.name);
  if (const auto found = values_.find(name.name); found != values_.end()) {
    if (!name.part.empty()) {
      throw ExpressionError(name.part_at, data + " stands in the program and has no columns");
    }
    const Json& written = *found->second;
    const Json& value =
        IsWrapped(written) && written.contains("value") ? written["value"] : written;
    const std::uint32_t type = value.is_boolean() ? NUV_PARAM_BOOLEAN : NUV_PARAM_NUMBER;
    try {
      return {FromJson(value, type), type};
    } catch (const ValueError&) {
      throw ExpressionError(name.at,
                            fmt::format("{} is {}; an expression takes numbers and booleans", data,
                                        DescribeKind(value)));
    }
  }
  const auto datum = std::ranges::find(program_.data, name.name, &Datum::name);
  DataUse use{
      static_cast<std::size_t>(datum - program_.data.begin()), {}, NUV_PARAM_NUMBER, place, offset};
  if (!name.part.empty()) use.columns.emplace_back(name.part);
  return {Add(std::move(use)), NUV_PARAM_NUMBER};
}

}  // namespace nuvhost
