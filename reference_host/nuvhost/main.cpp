// nuvhost: the reference host on the command line.

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "reference_host/nuvhost/commands.h"
#include "reference_host/nuvhost/error.h"

#if defined(_WIN32)
#include <fcntl.h>
#include <io.h>
#endif

namespace nuvhost {
namespace {

/// The words of the command line.
struct Arguments {
  std::string plugin;
  std::string category;
  std::string name;
  std::vector<std::string> values;
  std::vector<std::string> constants;
  bool all = false;
  bool json = false;
};

/// Declares every command; what each runs is kept in `run`.
class CommandLine {
 public:
  CommandLine() {
    app_.require_subcommand(1);
    app_.set_version_flag("--version", "nuvhost " NUVHOST_VERSION);
    app_.add_option("--plugin", arguments_.plugin,
                    "the plug-in library (the one beside this program unless given)");
    app_.fallthrough();
    AddList();
    AddDescribe();
    AddCall();
    AddExec();
  }

  int Run(std::vector<std::string> words) {
    std::ranges::reverse(words);
    try {
      app_.parse(words);
    } catch (const CLI::Success& wanted) {
      return app_.exit(wanted);
    } catch (const CLI::ParseError& error) {
      app_.exit(error);
      return kExitWrongCall;
    }
    return command_(arguments_);
  }

 private:
  using Command = int (*)(const Arguments&);

  static std::filesystem::path Plugin(const Arguments& arguments) {
    return arguments.plugin.empty() ? DefaultPluginPath() : PathFromUtf8(arguments.plugin);
  }

  CLI::App* Add(const char* name, const char* description, Command command) {
    CLI::App* added = app_.add_subcommand(name, description);
    added->callback([this, command] { command_ = command; });
    return added;
  }

  void AddList() {
    CLI::App* list = Add("list", "List the instructions", [](const Arguments& a) {
      return List(Catalogue(Plugin(a)), a.category, a.json);
    });
    list->add_option("--category", arguments_.category, "only those of one category");
    list->add_flag("--json", arguments_.json, "as JSON");
  }

  void AddDescribe() {
    CLI::App* describe = Add("describe", "Show an instruction in full", [](const Arguments& a) {
      if (a.all != a.name.empty()) {
        throw UserError("describe takes either an instruction's name or --all --json");
      }
      if (a.all && !a.json) throw UserError("describe --all prints JSON; add --json");
      const Catalogue catalogue(Plugin(a));
      return a.all ? DescribeAll(catalogue) : DescribeOne(catalogue, a.name, a.json);
    });
    describe->add_option("name", arguments_.name, "display name or identifier");
    describe->add_flag("--all", arguments_.all, "every instruction");
    describe->add_flag("--json", arguments_.json, "as JSON");
  }

  void AddCall() {
    CLI::App* call = Add("call", "Run one instruction once", [](const Arguments& a) {
      return CallOnce(Catalogue(Plugin(a)), a.name, a.values, a.constants);
    });
    call->add_option("name", arguments_.name, "display name or identifier")->required();
    call->add_option("values", arguments_.values,
                     "inputs in order: 1.5, true, text, x,y for a point, a,d for a line, JSON "
                     "lists for arrays; what is left out has its default");
    call->add_option("--const", arguments_.constants,
                     "constant parameters as NAME=VALUE; a choice by its key or label")
        ->expected(1)
        ->take_all();
  }

  void AddExec() {
    Add("exec", "Answer calls as JSON lines from standard input",
        [](const Arguments& a) { return Exec(Catalogue(Plugin(a))); });
  }

  CLI::App app_{"Reference host for plug-in libraries of instructions", "nuvhost"};
  Arguments arguments_;
  Command command_ = nullptr;
};

int Main(std::vector<std::string> words) {
  try {
    return CommandLine().Run(std::move(words));
  } catch (const std::exception& error) {
    std::fprintf(stderr, "nuvhost: %s\n", error.what());
    return kExitWrongCall;
  }
}

}  // namespace
}  // namespace nuvhost

#if defined(_WIN32)

int wmain(int count, wchar_t** words) {
  _setmode(_fileno(stdin), _O_BINARY);
  _setmode(_fileno(stdout), _O_BINARY);
  std::vector<std::string> utf8;
  for (int i = 1; i < count; ++i) utf8.push_back(nuvhost::ToUtf8(std::filesystem::path(words[i])));
  return nuvhost::Main(std::move(utf8));
}

#else

int main(int count, char** words) {
  return nuvhost::Main(std::vector<std::string>(words + 1, words + count));
}

#endif
