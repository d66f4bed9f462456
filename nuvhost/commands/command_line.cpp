#include "nuvhost/commands/command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdlib>
#include <exception>
#include <sstream>

#include "nuvhost/commands/commands.h"
#include "nuvhost/commands/version.h"
#include "nuvhost/error.h"
#include "nuvhost/library/catalogue.h"
#include "nuvhost/library/plugin_library.h"
#include "nuvhost/system/console.h"
#include "nuvhost/system/output_file.h"
#include "nuvhost/system/paths.h"
#include "nuvhost/text/names.h"

namespace nuvhost {
namespace {

/// The words of the command line.
struct Arguments {
  std::string plugin;
  std::string log;
  ListOptions list;
  std::string name;
  std::vector<std::string> values;
  std::vector<std::string> constants;
  RunOptions run;
  ReportOptions report;
  std::string library;
  std::string law;
  std::string before;
  std::string after;
  bool describe = false;
  CheckOptions check;
  check::FuzzPlan plan;
  int plan_time = 0;
  bool all = false;
  bool json = false;
};

// The parser takes a word in brackets apart where an option takes many words; a mark before the
// bracket keeps JSON lists whole.
constexpr char kMark = '\x01';

std::string Protected(const std::string& word) {
  return word.starts_with('[') ? kMark + word : word;
}

std::string Unprotected(const std::string& word) {
  return word.starts_with(kMark) ? word.substr(1) : word;
}

/// Told before a range, which takes what is no number for one that is too large.
CLI::Validator WholeNumber() {
  const auto check = [](const std::string& word) {
    char* end = nullptr;
    std::strtoll(word.c_str(), &end, 0);
    return *end == '\0' && !word.empty() ? "" : Quoted(word) + " is no whole number";
  };
  return {check, ""};
}

/// The commands and their words.
class CommandLine {
 public:
  CommandLine() {
    app_.require_subcommand(1);
    app_.allow_windows_style_options(false);  // "/text" is a value, on every platform
    app_.set_version_flag("--version", std::string("nuvhost ") + kVersion);
    app_.add_option("--plugin", arguments_.plugin,
                    "the plug-in library (the one that came with this program unless given)");
    app_.add_option("--log", arguments_.log,
                    "append the entries of the application log to a file, a line each")
        ->type_name("FILE");
    app_.fallthrough();
    AddList();
    AddDescribe();
    AddCall();
    AddRun();
    AddReport();
    AddExec();
    AddCheck();
    AddDiff();
    for (CLI::App* command : app_.get_subcommands(nullptr)) UnprotectWords(*command);
    UnprotectWords(app_);
  }

  int Run(const std::vector<std::string>& words) {
    std::vector<std::string> reversed;  // as the parser takes them
    for (auto word = words.rbegin(); word != words.rend(); ++word) {
      reversed.push_back(Protected(*word));
    }
    try {
      app_.parse(std::move(reversed));
    } catch (const CLI::Success& wanted) {
      return Exit(wanted);
    } catch (const CLI::ParseError& error) {
      if (app_.get_subcommands().empty() && !words.empty() && !words[0].starts_with("-")) {
        throw UserError(UnknownCommand(words[0]));
      }
      Exit(error);
      return kExitWrongCall;
    }
    UseFiles();
    // A crash while a library is judged is the library's.
    if (app_.got_subcommand("check")) std::set_terminate(std::abort);
    return command_(arguments_);
  }

 private:
  using Command = int (*)(const Arguments&);

  static void UnprotectWords(CLI::App& app) {
    for (CLI::Option* option : app.get_options()) option->transform(Unprotected);
  }

  /// Says what the parser has to say of the words, as its exit code.
  int Exit(const CLI::Error& error) {
    std::ostringstream output;
    std::ostringstream complaint;
    const int code = app_.exit(error, output, complaint);
    Print(output.str());
    Complain(complaint.str());
    return code;
  }

  /// A run and a report take the log for themselves, once they know what they read.
  void UseFiles() {
    arguments_.run.log = arguments_.log;
    arguments_.run.plugin = ToUtf8(Plugin(arguments_));
    arguments_.report.log = arguments_.log;
    arguments_.report.plugin = arguments_.run.plugin;
    WrittenFiles written;
    written.Add({"--log", arguments_.log});
    if (arguments_.check.junit != kPrinted) written.Add({"--junit", arguments_.check.junit});
    written.CheckRead({"the plug-in library", arguments_.run.plugin});
    written.CheckRead({"the library", arguments_.library});
    written.CheckRead({"the old catalogue", arguments_.before});
    written.CheckRead({"the new catalogue", arguments_.after});
    if (!app_.got_subcommand("run") && !app_.got_subcommand("report")) UseLogFile(arguments_.log);
  }

  static std::filesystem::path Plugin(const Arguments& arguments) {
    return arguments.plugin.empty() ? DefaultPluginPath() : PathFromUtf8(arguments.plugin);
  }

  std::string UnknownCommand(const std::string& name) const {
    std::vector<std::string_view> known;
    for (const CLI::App* command : app_.get_subcommands(nullptr)) {
      known.push_back(command->get_name());
    }
    return fmt::format("no command \"{}\"{}\nRun with --help for more information.", name,
                       DidYouMean(name, known));
  }

  CLI::App* Add(const char* name, const char* description, Command command) {
    CLI::App* added = app_.add_subcommand(name, description);
    added->callback([this, command] { command_ = command; });
    return added;
  }

  void AddList() {
    CLI::App* list = Add("list", "List the instructions, or find some",
                         [](const Arguments& a) { return List(Catalogue(Plugin(a)), a.list); });
    list->add_option("words", arguments_.list.words,
                     "only those whose names, identifiers, parameters, descriptions or help have "
                     "all these words, best first");
    list->add_option("--category", arguments_.list.category, "only those of one category");
    list->add_flag("--identifiers", arguments_.list.identifiers, "identifiers, no summaries");
    list->add_flag("--json", arguments_.list.as_json, "as JSON");
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
    describe->add_option("name", arguments_.name, "display name, \"CATEGORY: NAME\" or identifier");
    describe->add_flag("--all", arguments_.all, "every instruction");
    describe->add_flag("--json", arguments_.json, "as JSON");
  }

  void AddCall() {
    CLI::App* call = Add("call", "Run one instruction once", [](const Arguments& a) {
      return CallOnce(Catalogue(Plugin(a)), a.name, a.values, a.constants);
    });
    call->add_option("name", arguments_.name, "display name, \"CATEGORY: NAME\" or identifier")
        ->required();
    call->add_option("values", arguments_.values,
                     "inputs in order: 1.5, true, text, x,y for a point, a,d for a line, JSON "
                     "lists for arrays; what is left out has its default");
    call->add_option("--const", arguments_.constants,
                     "constant parameters as NAME=VALUE; a choice by its key or label")
        ->expected(1)
        ->take_all();
  }

  void AddRun() {
    CLI::App* run = Add("run", "Run an inspection program",
                        [](const Arguments& a) { return RunProgram(Catalogue(Plugin(a)), a.run); });
    run->footer(
        "Exit code: 0 where every part is good, 1 where one is bad or failed, 2 for a wrong call\n"
        "or unreadable data, 130 where Ctrl-C ended a run over many parts.");
    run->add_option("program", arguments_.run.program, "the program, a JSON file")->required();
    run->add_option("--data", arguments_.run.data,
                    "data files in place of the program's own, one run each; NAME=FILE for a "
                    "program with several")
        ->type_name("FILE");
    run->add_option("--parts", arguments_.run.parts,
                    "the parts, one run each: names, files or folders that take the place of "
                    "{part} in the program's file names; '*' and '?' are wildcards")
        ->type_name("PART");
    run->add_option("--part-column", arguments_.run.part_column,
                    "the column that tells apart the parts of one data file, one run each")
        ->type_name("COLUMN");
    run->add_option(
           "--results", arguments_.run.results,
           "write all results to OUT.csv or OUT.jsonl, a row for each run, or to OUT.json, in "
           "full")
        ->type_name("OUT");
    CLI::Option* resume = run->add_flag("--resume", arguments_.run.resume,
                                        "go on behind the parts whose results are in OUT");
    resume->needs("--results");
    run->add_flag("--overwrite", arguments_.run.overwrite,
                  "write over the results of many parts that are in OUT")
        ->needs("--results")
        ->excludes(resume);
    run->add_option("--overlay", arguments_.run.overlay,
                    "draw the annotations over the program's image into OUT.svg; of several runs "
                    "each into OUT-NAME.svg")
        ->type_name("OUT");
    run->add_option("--report", arguments_.run.report,
                    "write a page to look at into OUT.html: the verdict, the parts that are not "
                    "good, charts and statistics")
        ->type_name("OUT");
    run->add_flag("--keep-going", arguments_.run.keep_going, "go on after a step that fails");
    run->add_option("--jobs", arguments_.run.jobs,
                    "so many processes side by side; 0 for one a processor")
        ->type_name("N")
        ->check(WholeNumber())
        ->check(CLI::Range(0, 1024))
        ->capture_default_str();
    // How this program starts itself as one of them.
    run->add_option("--serve", arguments_.run.serve)->group("");
    run->add_option("--until", arguments_.run.until, "run up to and including a step, by its name")
        ->type_name("STEP");
    run->add_flag("--trace", arguments_.run.trace,
                  "tell each step's inputs and results on standard error");
    run->add_flag("--time", arguments_.run.time, "tell how long the steps took on standard error");
  }

  void AddReport() {
    CLI::App* report =
        Add("report", "Join the results of several runs of a program",
            [](const Arguments& a) { return Report(Catalogue(Plugin(a)), a.report); });
    report->footer(
        "Exit code: 0 where every part is good, 1 where one is bad or failed, 2 for a wrong call\n"
        "or unreadable data.");
    report
        ->add_option("results", arguments_.report.results,
                     "what `run --results` wrote of some of the parts, in this order; .csv or "
                     ".jsonl")
        ->type_name("FILE")
        ->required();
    report
        ->add_option("--report", arguments_.report.report,
                     "write a page to look at into OUT.html: the verdict, the parts that are not "
                     "good, charts and statistics")
        ->type_name("OUT");
  }

  void AddExec() {
    Add("exec", "Answer calls as JSON lines from standard input",
        [](const Arguments& a) { return Exec(Catalogue(Plugin(a))); });
  }

  void AddCheck() {
    CLI::App* check = Add("check", "Judge a plug-in library's conformance", [](const Arguments& a) {
      const std::filesystem::path library = a.library.empty() ? Plugin(a) : PathFromUtf8(a.library);
      if (!a.law.empty()) return CheckLaw({library, a.check.outer_world, PlanOf(a)}, a.law);
      CheckOptions options = a.check;
      options.library = library;
      options.as_json = a.json;
      return Check(options);
    });
    CheckOptions& options = arguments_.check;
    check->add_option("library", arguments_.library,
                      "the library (the one that came with this program unless given)");
    check
        ->add_option("--level", options.level,
                     "quick for the interface and the descriptors alone; full; stress for random "
                     "calls as well")
        ->check(CLI::IsMember({"quick", "full", "stress"}))
        ->type_name("LEVEL")
        ->capture_default_str();
    check
        ->add_option("--only", options.only,
                     "one law alone, and those that it needs; may be repeated")
        ->type_name("LAW")
        ->expected(1)
        ->take_all();
    check->add_option("--seed", options.seed, "the first of the random calls, by its number")
        ->type_name("N");
    check
        ->add_option("--seconds", options.seconds,
                     "how long random calls are made, 60 s unless given; 0 for one call")
        ->type_name("N")
        ->check(WholeNumber())
        ->check(CLI::Range(0, 1000000));
    check->add_option("--timeout", options.timeout, "seconds that each law may take")
        ->type_name("SECONDS")
        ->check(WholeNumber())
        ->check(CLI::Range(1, 86400))
        ->capture_default_str();
    check->add_flag("--json", arguments_.json, "as JSON");
    check
        ->add_option("--junit", options.junit,
                     "write JUnit's XML into FILE.xml; without it, print that")
        ->type_name("[FILE.xml]")
        ->expected(0, 1)
        ->default_str(kPrinted);
    check
        ->add_option(
            "--outer-world", options.outer_world,
            "an instruction that acts on files, devices or time and must not be called; may "
            "be repeated")
        ->type_name("IDENTIFIER")
        ->expected(1)
        ->take_all();
    // How this program starts itself for one law.
    check->add_option("--law", arguments_.law)->group("");
    check->add_option("--calls", arguments_.plan.calls)->group("");
    check->add_option("--time", arguments_.plan_time)->group("");
    check->add_option("--left-out", arguments_.plan.left_out)->delimiter(',')->group("");
  }

  static check::FuzzPlan PlanOf(const Arguments& arguments) {
    check::FuzzPlan plan = arguments.plan;
    plan.seed = arguments.check.seed.value_or(0);
    plan.time = std::chrono::milliseconds(arguments.plan_time);
    return plan;
  }

  void AddDiff() {
    CLI::App* diff =
        Add("diff", "Tell what is different between two libraries", [](const Arguments& a) {
          return a.describe ? DescribeForDiff(a.before) : Diff(a.before, a.after, a.json);
        });
    diff->footer(
        "Exit code: 0 where saved programs still work, 1 where a change breaks some, 2 for a "
        "wrong\n"
        "call or a file that is neither a library nor a catalogue.");
    diff->add_option("old", arguments_.before,
                     "a plug-in library, or a file that `describe --all --json` printed")
        ->type_name("OLD")
        ->required();
    diff->add_option("new", arguments_.after, "the same of what took its place")
        ->type_name("NEW")
        ->required();
    diff->add_flag("--json", arguments_.json, "as JSON");
    // How this program starts itself for one library.
    diff->add_flag("--describe", arguments_.describe)->group("");
  }

  CLI::App app_{"Reference host for plug-in libraries of instructions", "nuvhost"};
  Arguments arguments_;
  Command command_ = nullptr;
};

}  // namespace

int RunCommandLine(const std::vector<std::string>& words) {
  return CommandLine().Run(words);
}

}  // namespace nuvhost
