#include <iostream>

#include "nuvhost/commands/commands.h"
#include "nuvhost/commands/exec_session.h"
#include "nuvhost/error.h"
#include "nuvhost/library/catalogue.h"
#include "nuvhost/system/console.h"
#include "nuvhost/system/input_file.h"

namespace nuvhost {

int Exec(const Catalogue& catalogue) {
  std::ios::sync_with_stdio(false);
  ExecSession session(catalogue);
  std::string line;
  while (ReadLine(std::cin, line)) {
    Print(session.Answer(line) + '\n');
    FlushOutput();
  }
  ExpectReadWell(std::cin, "standard input");
  return kExitSuccess;
}

}  // namespace nuvhost
