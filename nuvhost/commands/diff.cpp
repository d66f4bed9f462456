// `nuvhost diff`: what is different between two catalogues, and whether saved programs still work.

#include <algorithm>
#include <chrono>

#include "nuvhost/commands/commands.h"
#include "nuvhost/comparing/catalogue_reader.h"
#include "nuvhost/comparing/changes.h"
#include "nuvhost/error.h"
#include "nuvhost/system/child_process.h"
#include "nuvhost/system/console.h"
#include "nuvhost/system/input_file.h"
#include "nuvhost/system/paths.h"
#include "nuvhost/text/names.h"
#include "nuvhost/text/text_table.h"

namespace nuvhost {
namespace {

constexpr std::chrono::seconds kLimit(60);

/// Whether a file begins as a dynamic library of any platform does.
bool IsLibrary(std::string_view bytes) {
  return bytes.starts_with(
             "\x7F"
             "ELF") ||
         bytes.starts_with("MZ");
}

std::string BytesOf(const std::string& name) {
  std::string reason;
  const std::optional<std::string> bytes = ReadBytes(name, reason);
  if (!bytes) throw UserError("cannot read {}: {}", name, reason);
  return *bytes;
}

/// A library's catalogue as JSON, told by a process of its own: the library may crash or hang, and
/// the other one may be loaded by then. Nothing where that process has said what is wrong.
std::optional<std::string> DescribedByChild(const std::string& library) {
  ChildEnd end = RunChild(ProgramPath(), {"diff", "--describe", "--", library, library}, kLimit);
  if (!end.in_time) throw UserError("{} told no catalogue within {} s", library, kLimit.count());
  if (end.code == kExitSuccess) return std::move(end.output);
  if (end.code == kExitWrongCall) return std::nullopt;
  throw UserError("{} crashed as its catalogue was read; see nuvhost check", library);
}

std::optional<Json> CatalogueOf(const std::string& name) {
  std::optional<std::string> text = BytesOf(name);
  const bool is_library = IsLibrary(*text);
  if (is_library) text = DescribedByChild(name);
  if (!text) return std::nullopt;
  Mistakes mistakes;
  std::optional<Json> catalogue = ReadCatalogue(SourceText(name, std::move(*text)), mistakes);
  for (const std::string& mistake : mistakes.Listing()) Complain(mistake + '\n');
  if (catalogue) return catalogue;
  if (is_library) throw UserError("{} has no catalogue to compare; see nuvhost check", name);
  throw UserError("{} is no library, and no catalogue as `describe --all --json` prints it", name);
}

const char* Word(Change::Class kind) {
  switch (kind) {
    case Change::Class::kBreaking: return "breaking";
    case Change::Class::kCompatible: return "compatible";
    case Change::Class::kText: break;
  }
  return "text only";
}

/// Whose programs a change breaks: "hosts", "nuvhost".
std::vector<std::string> Broken(const Change& change) {
  std::vector<std::string> broken;
  if (change.breaks_hosts) broken.emplace_back("hosts");
  if (change.breaks_programs) broken.emplace_back("nuvhost");
  return broken;
}

/// What a change is, behind its place.
std::string Sentence(const Change& change) {
  if (change.IsAddition()) return "added";
  if (change.IsRemoval()) return "removed";
  if (change.before.is_null() && change.field.starts_with("choices")) {
    return fmt::format("{} added: {}", change.field, Dump(change.after[1]));
  }
  if (change.after.is_null() && change.field.starts_with("choices")) {
    return fmt::format("{} removed: {}", change.field, Dump(change.before[1]));
  }
  return fmt::format("{} was {}, is {}", change.field, Dump(change.before), Dump(change.after));
}

std::string Line(const Change& change, const std::string& sentence) {
  const std::vector<std::string> broken = Broken(change);
  return fmt::format("  {}{}{}\n", Padded(Word(change.GetClass()), 12), sentence,
                     broken.empty() ? "" : fmt::format("  ({})", fmt::join(broken, ", ")));
}

/// How far an instruction as a whole moved; nothing for any other change.
std::optional<std::int64_t> Shift(const Change& change) {
  if (change.parameter || change.field != "position") return std::nullopt;
  return change.after.get<std::int64_t>() - change.before.get<std::int64_t>();
}

/// Instructions that one change before them moved by the same way are told in one line.
void PrintMoves(const std::vector<Change>& changes) {
  std::vector<Change> moves;
  for (const Change& change : changes) {
    if (Shift(change)) moves.push_back(change);
  }
  if (moves.empty()) return;
  Print("Order\n");
  for (std::size_t begin = 0, end = 0; begin < moves.size(); begin = end) {
    while (end < moves.size() && Shift(moves[end]) == Shift(moves[begin])) ++end;
    const Change& first = moves[begin];
    const Change& last = moves[end - 1];
    const std::string sentence =
        end == begin + 1
            ? fmt::format("{}: {}", first.identifier, Sentence(first))
            : fmt::format("{} instructions, {} at {} to {} at {}: moved by {:+}", end - begin,
                          first.identifier, first.before.get<std::size_t>(), last.identifier,
                          last.before.get<std::size_t>(), *Shift(first));
    Print(Line(first, sentence));
  }
}

void PrintChanges(const std::vector<Change>& changes) {
  const std::string* instruction = nullptr;
  for (const Change& change : changes) {
    if (Shift(change)) continue;
    if (instruction == nullptr || *instruction != change.identifier) {
      Print(fmt::format("\"{}\" {}\n", WithoutTrailingBlanks(change.name), change.identifier));
    }
    instruction = &change.identifier;
    std::string place;
    if (const auto& parameter = change.parameter) {
      place = fmt::format("{}[{}] \"{}\": ", parameter->list, parameter->position, parameter->name);
    }
    Print(Line(change, place + Sentence(change)));
  }
  PrintMoves(changes);
}

Json ToJson(const Change& change) {
  Json parameter;
  if (const auto& place = change.parameter) {
    parameter = {{"list", place->list}, {"position", place->position}, {"name", place->name}};
  }
  const char* kind = change.IsAddition() ? "added" : change.IsRemoval() ? "removed" : "changed";
  return {{"identifier", change.identifier},
          {"name", change.name},
          {"parameter", parameter},
          {"change", kind},
          {"field", change.field.empty() ? Json() : Json(change.field)},
          {"before", change.before},
          {"after", change.after},
          {"class", Word(change.GetClass())},
          {"breaks", Broken(change)}};
}

std::string Verdict(std::size_t breaking) {
  if (breaking == 0) return "they still work";
  return fmt::format("{} {}", breaking,
                     breaking == 1 ? "change breaks them" : "changes break them");
}

}  // namespace

int Diff(const std::string& before_name, const std::string& after_name, bool as_json) {
  const std::optional<Json> before = CatalogueOf(before_name);
  const std::optional<Json> after = CatalogueOf(after_name);
  if (!before || !after) return kExitWrongCall;
  const std::vector<Change> changes = Compare(*before, *after);
  const auto count = [&](auto member) {
    return static_cast<std::size_t>(std::ranges::count_if(changes, member));
  };
  const auto of = [&](Change::Class kind) {
    return count([kind](const Change& change) { return change.GetClass() == kind; });
  };
  const std::size_t hosts = count(&Change::breaks_hosts);
  const std::size_t programs = count(&Change::breaks_programs);
  const std::size_t breaking = of(Change::Class::kBreaking);
  const std::size_t compatible = of(Change::Class::kCompatible);
  const std::size_t text = of(Change::Class::kText);
  if (as_json) {
    Json list = Json::array();
    for (const Change& change : changes) list.push_back(ToJson(change));
    const Json answer{{"old", before_name},
                      {"new", after_name},
                      {"changes", list},
                      {"breaking", breaking},
                      {"compatible", compatible},
                      {"textOnly", text},
                      {"hostProgramsWork", hosts == 0},
                      {"nuvhostProgramsWork", programs == 0}};
    Print(answer.dump(2, ' ', false, Json::error_handler_t::replace) + '\n');
  } else {
    PrintChanges(changes);
    Print(fmt::format("{} breaking, {} compatible, {} text only\n", breaking, compatible, text));
    Print("Programs that hosts saved: " + Verdict(hosts) + '\n');
    Print("Programs of nuvhost: " + Verdict(programs) + '\n');
  }
  return breaking == 0 ? kExitSuccess : kExitFailed;
}

int DescribeForDiff(const std::string& library) {
  ExpectTheWorst();
  return DescribeAll(Catalogue(PathFromUtf8(library)));
}

}  // namespace nuvhost
