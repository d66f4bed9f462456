#include "nuvhost/checking/law.h"

#include <exception>

namespace nuvhost::check {

std::vector<const Law*> AllLaws() {
  std::vector<const Law*> all;
  for (const auto laws : {InterfaceLaws(), InstructionLaws(), DescriptorLaws(), CallLaws()}) {
    for (const Law& law : laws) all.push_back(&law);
  }
  return all;
}

void JudgeLaw(const Law& law, const std::filesystem::path& library,
              const std::filesystem::path& record, const FuzzPlan& plan) {
  Trial trial(library, record, plan);
  try {
    law.judge(trial);
  } catch (const std::exception& error) {
    trial.Complain(std::string("an exception ended the trial: ") + error.what());
  } catch (...) {
    trial.Complain("an exception of an unknown type ended the trial");
  }
  trial.Finish();
}

}  // namespace nuvhost::check
