#include "nuvhost/checking/trial.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <random>
#include <sstream>

#include "nuvhost/values/json_value.h"

namespace nuvhost::check {
namespace {

/// How many complaints of a law are kept; the others are counted.
constexpr std::size_t kMaxComplaints = 20;

std::string MakeKey() {
  std::random_device random;
  std::string key;
  for (int i = 0; i < 4; ++i) key += fmt::format("{:08x}", random());
  return key;
}

/// One line of a record: what it is, and its text.
struct Entry {
  std::string what;
  std::string text;
};

/// The entry on a line; an empty one for anything else.
Entry ParseLine(std::string_view line) {
  const Json parsed = Json::parse(line, nullptr, false);
  if (!parsed.is_object() || parsed.size() != 1 || !parsed.front().is_string()) return {};
  return {parsed.items().begin().key(), parsed.front().get<std::string>()};
}

std::size_t ParseCount(const std::string& text) {
  std::size_t count = 0;
  std::from_chars(text.data(), text.data() + text.size(), count);
  return count;
}

FuzzPlace ParsePlace(const std::string& text) {
  FuzzPlace place;
  std::istringstream(text) >> place.seed >> place.calls >> place.instruction;
  return place;
}

/// Takes the next line off a record; what has no end was cut off.
std::string_view TakeLine(std::string_view& record) {
  const std::size_t end = std::min(record.find('\n'), record.size());
  const std::string_view line = record.substr(0, end);
  record.remove_prefix(std::min(end + 1, record.size()));
  return line;
}

}  // namespace

Trial::Trial(Charge charge, Recorder recorder)
    : charge_(std::move(charge)), recorder_(std::move(recorder)), key_(MakeKey()) {
  recorder_(key_ + '\n');
}

void Trial::Complain(std::string_view complaint) {
  if (++complaints_ <= kMaxComplaints) Write("complaint", complaint);
}

void Trial::Reached(const FuzzPlace& place) {
  Write("reached", fmt::format("{} {} {}", place.seed, place.calls, place.instruction));
}

void Trial::Finish() {
  Write("over", std::to_string(complaints_));
}

void Trial::Write(const char* what, std::string_view text) {
  const Json line{{what, text}};
  recorder_(key_ + line.dump(-1, ' ', false, Json::error_handler_t::replace) + '\n');
}

Verdict ReadVerdict(std::string_view record, const std::string& ending) {
  Verdict verdict;
  std::string step = "starting";
  std::size_t foreign = 0;
  bool skipped = false;
  const std::string_view key = TakeLine(record);
  while (!record.empty()) {
    const bool is_cut = record.find('\n') == record.npos;
    std::string_view line = TakeLine(record);
    if (is_cut) break;
    if (!line.starts_with(key)) {
      ++foreign;
      continue;
    }
    const auto [what, text] = ParseLine(line.substr(key.size()));
    if (what == "at") step = text;
    if (what == "complaint") verdict.complaints.push_back(text);
    if (what == "cannot load") verdict.cannot_load = text;
    if (what == "skip" || what == "note") verdict.note = text;
    if (what == "skip") skipped = true;
    if (what == "not called") verdict.not_called = ParseCount(text);
    if (what == "reached") verdict.reached = ParsePlace(text);
    if (what == "left out") verdict.left_out.push_back(ParseCount(text));
    if (what == "over") {
      verdict.over = true;
      verdict.complaint_count = ParseCount(text);
    }
  }
  if (!verdict.over) verdict.complaint_count = verdict.complaints.size();
  const auto add = [&verdict](std::string complaint) {
    verdict.complaints.push_back(std::move(complaint));
    ++verdict.complaint_count;
  };
  if (foreign > 0) add(fmt::format("{} lines of the record were written by others", foreign));
  if (!verdict.over) {
    add(fmt::format("{} while {}", ending.empty() ? "ended" : ending, step));
  } else if (!ending.empty()) {
    add(fmt::format("{} after the trial, when the process was to end", ending));
  }
  if (verdict.complaint_count == 0) {
    verdict.outcome = skipped ? Outcome::kSkipped : Outcome::kPassed;
  }
  return verdict;
}

std::string Quoted(const char* text) {
  return Dump(TextToJson(text));
}

}  // namespace nuvhost::check
