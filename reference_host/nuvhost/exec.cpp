#include <iostream>

#include "reference_host/nuvhost/commands.h"
#include "reference_host/nuvhost/console.h"
#include "reference_host/nuvhost/exec_session.h"

namespace nuvhost {

int Exec(const Catalogue& catalogue) {
  std::ios::sync_with_stdio(false);
  ExecSession session(catalogue);
  std::string line;
  while (std::getline(std::cin, line)) {
    Print(session.Answer(line) + '\n');
    FlushOutput();
  }
  return kExitSuccess;
}

}  // namespace nuvhost
