#include "nuvhost/showing/results_reader.h"

#include <algorithm>

#include "nuvhost/error.h"
#include "nuvhost/system/input_file.h"
#include "nuvhost/system/paths.h"
#include "nuvhost/text/names.h"
#include "nuvhost/values/json_value.h"

namespace nuvhost {
namespace {

/// A JSON value as it would stand in a CSV field, without its quotes.
std::string FieldOf(const Json& json) {
  if (json.is_null()) return "";
  return json.is_string() ? json.get<std::string>() : Dump(json);
}

}  // namespace

ResultsReader::ResultsReader(const std::string& name)
    : name_(name), is_json_(name.ends_with(".jsonl")) {
  std::string reason;
  if (!IsReadable(name, reason)) throw UserError("cannot read {}: {}", name, reason);
  file_.open(PathFromUtf8(name), std::ios::binary);
  ExpectReadWell(file_, name_);
  if (!is_json_) {
    NextCsv(columns_);
    return;
  }
  std::vector<std::string> ignored;
  NextJson(ignored);  // which tells the columns
  file_.clear();
  file_.seekg(0);
  end_ = 0;
}

bool ResultsReader::Next(std::vector<std::string>& fields) {
  const std::uint64_t before = end_;
  if (!(is_json_ ? NextJson(fields) : NextCsv(fields))) return false;
  ++records_;
  if (fields.size() != columns_.size()) {
    end_ = before;
    Fail(fmt::format("{} fields, where there are {} columns", fields.size(), columns_.size()));
  }
  return true;
}

bool ResultsReader::NextCsv(std::vector<std::string>& fields) {
  fields.assign(1, "");
  std::uint64_t size = 0;
  bool is_quoted = false;
  for (int c = file_.get(); c != std::ifstream::traits_type::eof(); c = file_.get()) {
    ++size;
    if (c == '"') {
      is_quoted = !is_quoted;
      if (is_quoted && size > 1 && before_ == '"') fields.back() += '"';
    } else if (c == ',' && !is_quoted) {
      fields.emplace_back();
    } else if (c == '\n' && !is_quoted) {
      before_ = '\n';
      end_ += size;
      return true;
    } else if (c != '\r' || is_quoted) {
      fields.back() += static_cast<char>(c);
    }
    before_ = static_cast<char>(c);
  }
  ExpectReadWell(file_, name_);
  fields.clear();
  return false;
}

bool ResultsReader::NextJson(std::vector<std::string>& fields) {
  fields.clear();
  std::string line;
  const bool is_line = ReadLine(file_, line) && !file_.eof();
  ExpectReadWell(file_, name_);
  if (!is_line) return false;
  if (line.size() > kLongestLine) Fail(fmt::format("longer than {} bytes", kLongestLine));
  Json json;
  try {
    json = ParseJson(line);
  } catch (const ValueError& error) {
    Fail(error.what());
  }
  if (!json.is_object()) Fail("no JSON object");
  const bool is_first = columns_.empty();
  std::size_t column = 0;
  for (const auto& [name, value] : json.items()) {
    if (is_first) columns_.push_back(name);
    if (column >= columns_.size() || columns_[column++] != name) Fail("other names than the first");
    fields.push_back(FieldOf(value));
  }
  end_ += line.size() + 1;
  return true;
}

void ResultsReader::Fail(const std::string& reason) const {
  throw UserError("{}: record {}: {}", name_, records_, reason);
}

std::string DifferenceOf(const std::vector<std::string>& columns,
                         const std::vector<std::string>& wanted) {
  for (std::size_t i = 0; i < std::max(columns.size(), wanted.size()); ++i) {
    const std::string here = i < columns.size() ? Quoted(columns[i]) : "missing";
    const std::string there = i < wanted.size() ? Quoted(wanted[i]) : "none";
    if (here != there) return fmt::format("column {} is {}, and would be {}", i + 1, here, there);
  }
  return "";
}

}  // namespace nuvhost
