#include "nuvhost/checking/law.h"

#include <exception>

namespace nuvhost::check {

std::vector<const Law*> AllLaws() {
  std::vector<const Law*> all;
  for (const auto laws :
       {InterfaceLaws(), InstructionLaws(), DescriptorLaws(), CallLaws(), ConductLaws()}) {
    for (const Law& law : laws) all.push_back(&law);
  }
  return all;
}

void JudgeLaw(const Law& law, const Charge& charge, const Trial::Recorder& recorder) {
  Trial trial(charge, recorder);
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
