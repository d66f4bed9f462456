// The commands of nuvhost. Each prints its answer on standard output and returns the exit code.
// What it cannot do at all it throws as UserError.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "nuvhost/checking/trial.h"
#include "nuvhost/library/catalogue.h"

namespace nuvhost {

/// How wide text for people is, in characters; words and values that are longer stand out.
inline constexpr std::size_t kTextWidth = 100;

/// What is to be listed.
struct ListOptions {
  std::vector<std::string> words;  ///< that all occur, best first; all in their order if empty
  std::string category;            ///< the one category; all if empty
  bool identifiers = false;        ///< in place of summaries
  bool as_json = false;
};

/// The catalogue: position, category, name, summary; as JSON the identifier in place of it.
int List(const Catalogue& catalogue, const ListOptions& options);

/// One descriptor in full with its entry of the reference, or all of them as JSON.
int DescribeOne(const Catalogue& catalogue, const std::string& name, bool as_json);
int DescribeAll(const Catalogue& catalogue);

/// Runs one instruction once. Values and NAME=VALUE constants are UTF-8 texts.
int CallOnce(const Catalogue& catalogue, const std::string& name,
             const std::vector<std::string>& values, const std::vector<std::string>& constants);

/// Answers JSON lines from standard input until it ends.
int Exec(const Catalogue& catalogue);

/// Tells what is different between two catalogues, each a library or a file that DescribeAll
/// printed, and whether saved programs still work.
int Diff(const std::string& before, const std::string& after, bool as_json);
/// DescribeAll in a process of its own, of a library that may crash or hang.
int DescribeForDiff(const std::string& library);

/// Printed in place of an output file.
inline constexpr const char* kPrinted = "-";

/// How a library is to be judged.
struct CheckOptions {
  std::filesystem::path library = {};
  std::vector<std::string> outer_world = {};  ///< identifiers of instructions that are not called
  int timeout = 60;                           ///< seconds that each law may take
  std::vector<std::string> only = {};         ///< laws by name; all of the level if empty
  std::string level = "full";                 ///< "quick", "full" or "stress"
  std::optional<std::uint64_t> seed = {};     ///< of random calls
  std::optional<int> seconds = {};            ///< how long they are made; 0 for one call
  std::string junit = {};                     ///< a file for JUnit's XML, or kPrinted
  bool as_json = false;
};

/// Judges a plug-in library's conformance, each law in a process of its own.
int Check(const CheckOptions& options);
/// What each of those processes does: it judges one law and records that on standard output.
int CheckLaw(const check::Charge& charge, const std::string& law);

/// How a program is to be run.
struct RunOptions {
  std::string program;
  std::vector<std::string> data = {};   ///< FILE or NAME=FILE, in place of the program's own data
  std::string results = {};             ///< a file for all results, .csv or .json; none if empty
  bool keep_going = false;              ///< past steps that fail
  std::string overlay = {};             ///< a file for what is drawn, .svg; none if empty
  std::string log = {};                 ///< a file for the log's entries, from the first step on
  std::string plugin = {};              ///< the library's file, which must not be written
  std::vector<std::string> parts = {};  ///< names, files and patterns of parts
  bool resume = false;                  ///< go on behind what the results file holds
  bool overwrite = false;               ///< write over it
  std::size_t jobs = 1;                 ///< processes side by side; 0 for as many as processors
  std::string serve = {};               ///< what one of them tells, to be one; else empty
  bool trace = false;                   ///< tell each step's inputs and results
  bool time = false;                    ///< tell how long the steps took
  std::string until = {};               ///< the last step to run; all if empty
  std::string part_column = {};         ///< the column of a file's parts; none if empty
  std::string report = {};              ///< a file for the report page, .html; none if empty
};

/// Runs an inspection program, once or over many data files.
int RunProgram(const Catalogue& catalogue, const RunOptions& options);

/// Which results are to be joined.
struct ReportOptions {
  std::vector<std::string> results;  ///< files that runs wrote, .csv or .jsonl
  std::string report = {};           ///< a file for the report page, .html; none if empty
  std::string log = {};              ///< as for a run
  std::string plugin = {};
};

/// Joins the results of several runs of a program into one verdict and one page, whose statistics
/// the catalogue's instructions compute; the exit code as of one run over all parts.
int Report(const Catalogue& catalogue, const ReportOptions& options);

}  // namespace nuvhost
