#include "nuvhost/checking/calling.h"

#include "nuvhost/checking/facts.h"
#include "nuvhost/library/outer_world.h"
#include "nuvhost/text/names.h"

namespace nuvhost::check {
namespace {

/// A long text around the place that matters.
std::string Excerpt(const std::string& text, std::size_t place) {
  constexpr std::size_t kBefore = 20;
  constexpr std::size_t kLength = 60;
  const std::size_t begin = place < kLength ? 0 : place - kBefore;
  const bool cut = text.size() - begin > kLength;
  return (begin > 0 ? "..." : "") + text.substr(begin, kLength) + (cut ? "..." : "");
}

}  // namespace

std::vector<std::string> AllShown(const std::vector<CNuvObject>& values) {
  std::vector<std::string> shown;
  for (const CNuvObject& value : values) shown.push_back(Shown(value));
  return shown;
}

std::string Changed(const char* list, const std::vector<std::string>& before,
                    const std::vector<CNuvObject>& values) {
  const std::vector<std::string> after = AllShown(values);
  const auto [was, is] = std::ranges::mismatch(before, after);
  if (was == before.end()) return "";
  const auto place = static_cast<std::size_t>(std::ranges::mismatch(*was, *is).in1 - was->begin());
  return fmt::format("{} {} was changed from {} to {}", list, was - before.begin(),
                     Excerpt(*was, place), Excerpt(*is, place));
}

std::string Execute(CallContext& context, IXInstrPlugin& object, std::int32_t& status) {
  return CaughtFrom([&] { status = context.Execute(object); });
}

bool TouchesOuterWorld(const Trial& trial, const CatalogueEntry& instruction) {
  const std::string_view identifier = TextOrEmpty(instruction.descriptor->identifier);
  return nuvhost::TouchesOuterWorld(identifier) ||
         std::ranges::find(trial.Charged().outer_world, identifier) !=
             trial.Charged().outer_world.end();
}

void NoteCalls(Trial& trial, std::size_t called, std::size_t not_called) {
  if (called == 0 && not_called == 0) return trial.Skip("no instruction can be called so");
  std::string note = std::to_string(called) + " instructions called";
  if (not_called > 0) {
    note += fmt::format(", {} not called, since they touch the outer world", not_called);
    trial.NotCalled(not_called);
  }
  if (called == 0) {
    trial.Skip(note);
  } else {
    trial.Note(note);
  }
}

Cases ServiceCases(const DescriptorRecord& descriptor) {
  Cases cases = DefaultCases(descriptor);
  for (const auto make : {NumberCases, ArrayCases, CountCases}) {
    for (Case& call : make(descriptor)) cases.push_back(std::move(call));
  }
  return cases;
}

Cases AllCases(const DescriptorRecord& descriptor) {
  Cases cases = ServiceCases(descriptor);
  for (const auto make : {TextCases, WrongTypeCases, ResultCases, ConstantCases}) {
    for (Case& call : make(descriptor)) cases.push_back(std::move(call));
  }
  return cases;
}

}  // namespace nuvhost::check
