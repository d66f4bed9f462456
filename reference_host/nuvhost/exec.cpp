#include <cstdio>
#include <iostream>

#include "reference_host/nuvhost/commands.h"
#include "reference_host/nuvhost/exec_session.h"

namespace nuvhost {

int Exec(const Catalogue& catalogue) {
  std::ios::sync_with_stdio(false);
  ExecSession session(catalogue);
  std::string line;
  while (std::getline(std::cin, line)) {
    const std::string answer = session.Answer(line) + '\n';
    std::fwrite(answer.data(), 1, answer.size(), stdout);
    if (std::fflush(stdout) != 0) return kExitWanting;  // nobody reads any more
  }
  return kExitSuccess;
}

}  // namespace nuvhost
