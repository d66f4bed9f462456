#include "nuvhost/checking/trial.h"

#include <fmt/format.h>

#include <sstream>

#include "nuvhost/values/json_value.h"

namespace nuvhost::check {
namespace {

/// How many complaints of a law are kept; the others are counted.
constexpr std::size_t kMaxComplaints = 20;

/// The object on a line; null for what a crash cut off.
Json ParseLine(const std::string& line) {
  Json parsed = Json::parse(line, nullptr, false);
  return parsed.is_object() ? parsed : Json();
}

}  // namespace

Trial::Trial(std::filesystem::path library, const std::filesystem::path& record, FuzzPlan plan)
    : library_(std::move(library)), plan_(std::move(plan)), record_(record, std::ios::binary) {}

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
  record_ << line.dump(-1, ' ', false, Json::error_handler_t::replace) << '\n' << std::flush;
}

Verdict ReadVerdict(const std::filesystem::path& record, const std::string& ending) {
  Verdict verdict;
  std::string step = "starting";
  bool skipped = false;
  std::ifstream lines(record, std::ios::binary);
  for (std::string line; std::getline(lines, line);) {
    const Json parsed = ParseLine(line);
    for (const auto& [what, text] : parsed.items()) {
      if (what == "at") step = text;
      if (what == "complaint") verdict.complaints.push_back(text);
      if (what == "cannot load") verdict.cannot_load = text;
      if (what == "skip" || what == "note") verdict.note = text;
      if (what == "skip") skipped = true;
      if (what == "reached") {
        std::istringstream numbers(text.get<std::string>());
        numbers >> verdict.reached.seed >> verdict.reached.calls >> verdict.reached.instruction;
      }
      if (what == "left out") verdict.left_out.push_back(std::stoul(text.get<std::string>()));
      if (what == "over") {
        verdict.over = true;
        verdict.complaint_count = std::stoul(text.get<std::string>());
      }
    }
  }
  if (!verdict.over) {
    verdict.complaints.push_back(fmt::format("{} while {}", ending, step));
    verdict.complaint_count = verdict.complaints.size();
  } else if (verdict.complaint_count == 0) {
    verdict.outcome = skipped ? Outcome::kSkipped : Outcome::kPassed;
  }
  return verdict;
}

std::string Quoted(const char* text) {
  return Dump(TextToJson(text));
}

}  // namespace nuvhost::check
