#include "nuvhost/showing/step_trace.h"

#include <algorithm>

#include "nuvhost/text/names.h"
#include "nuvhost/text/text_table.h"
#include "nuvhost/values/value_text.h"

namespace nuvhost {
namespace {

/// Adds values under their names, the first behind what they are. Values beyond the names are
/// repeated last ones.
template <class Records>
void AddValues(TextTable& table, std::string what, const Records& records,
               const std::vector<CNuvObject>& values) {
  for (std::size_t i = 0; i < values.size() && records.Size() > 0; ++i) {
    const char* name = records[std::min(i, records.Size() - 1)].name;
    table.Add({std::exchange(what, ""), NameFromText(name), ValueText(values[i])});
  }
}

}  // namespace

void StepTrace::StepRan(std::size_t run, std::size_t step, const StepOutcome& outcome) {
  const DescriptorRecord& descriptor = *program_.steps[step].instruction->descriptor;
  TextTable table("lll");
  AddValues(table, "const", descriptor.constants, outcome.context->constants);
  AddValues(table, "in", descriptor.inputs, outcome.context->inputs);
  if (outcome.state == StepOutcome::State::kFailed) {
    table.Add({"out", "failed"});
  } else {
    AddValues(table, "out", descriptor.results, outcome.context->results);
  }
  std::string text =
      OnOneLine(plan_.Name(run)) + ": " + DescribeStep(program_, step) + '\n' + table.Text();
  text.pop_back();
  progress_.Complain(text);
}

}  // namespace nuvhost
