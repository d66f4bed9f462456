#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "nuvhost/checking/law.h"
#include "nuvhost/library/categories.h"
#include "nuvhost/library/plugin_library.h"
#include "nuvhost/system/child_process.h"
#include "nuvhost/system/paths.h"
#include "nuvhost/values/json_value.h"

namespace nuvhost {
namespace {

#if defined(_WIN32)
constexpr const char* kProgram = "nuvhost.exe";
constexpr const char* kFaulty = "faulty_plugin.dll";
constexpr const char* kNoPlugin = "NuvLog.dll";
#else
constexpr const char* kProgram = "nuvhost";
constexpr const char* kFaulty = "faulty_plugin.so";
constexpr const char* kNoPlugin = "libNuvLog.so";
#endif

std::filesystem::path Faulty() {
  return ProgramFolder() / kFaulty;
}

/// Makes the faulty plug-in have a fault while it lives, in this process and in its children.
class FaultInForce {
 public:
  explicit FaultInForce(const char* fault) { Set(fault); }
  FaultInForce(const FaultInForce&) = delete;
  FaultInForce& operator=(const FaultInForce&) = delete;
  ~FaultInForce() { Set(""); }

 private:
  static void Set(const std::string& fault) {
#if defined(_WIN32)
    _putenv(("NUV_FAULT=" + fault).c_str());
#else
    setenv("NUV_FAULT", fault.c_str(), 1);
#endif
  }
};

/// A folder of the running test, with a name that is hard to pass on; gone at its end.
class TestFolder {
 public:
  TestFolder() {
    static int number = 0;
    path = ProgramFolder() / (testing::UnitTest::GetInstance()->current_test_info()->name() +
                              std::to_string(++number));
    path += PathFromUtf8(" pr\xC3\xBC\x66\x65 \xE2\x82\xAC");
    std::filesystem::create_directories(path);
  }
  TestFolder(const TestFolder&) = delete;
  TestFolder& operator=(const TestFolder&) = delete;
  ~TestFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path, ignored);
  }

  std::filesystem::path path;
};

std::string ReadAll(const std::filesystem::path& path) {
  std::stringstream text;
  text << std::ifstream(path, std::ios::binary).rdbuf();
  return text.str();
}

struct Answer {
  int code;
  std::string text;
};

/// What `nuvhost check` says of a library.
Answer Check(const std::filesystem::path& library, std::vector<std::string> words) {
  const TestFolder folder;
  words.insert(words.begin(), {"check", ToUtf8(library)});
  const ChildEnd end =
      RunChild(ProgramFolder() / kProgram, words, std::chrono::minutes(4), folder.path / "answer");
  EXPECT_TRUE(end.in_time);
  return {end.code, ReadAll(folder.path / "answer")};
}

/// One law's failure, as "law: complaint".
using Failures = std::vector<std::string>;

/// The laws that fail, judged in this process; after an essential one the others are left.
Failures JudgeHere(const std::filesystem::path& library) {
  const TestFolder folder;
  Failures failures;
  for (const check::Law* law : check::AllLaws()) {
    check::JudgeLaw(*law, library, folder.path / law->name);
    const check::Verdict verdict = check::ReadVerdict(folder.path / law->name, "crashed");
    if (verdict.outcome != check::Outcome::kFailed) continue;
    failures.push_back(std::string(law->name) + ": " + verdict.complaints.at(0));
    if (law->essential) break;
  }
  return failures;
}

/// The same, each law in a process of its own.
Failures JudgeInChildren(const std::filesystem::path& library, int seconds) {
  const Answer answer = Check(library, {"--json", "--timeout", std::to_string(seconds)});
  EXPECT_EQ(answer.code, 1) << answer.text;
  Failures failures;
  const Json judged = Json::parse(answer.text);
  for (const Json& law : judged["laws"]) {
    if (law["verdict"] != "FAIL") continue;
    failures.push_back(law["law"].get<std::string>() + ": " +
                       law["complaints"][0].get<std::string>());
  }
  EXPECT_EQ(judged["failed"], failures.size());
  return failures;
}

/// A fault, and how each of the laws that it breaks begins to complain.
struct FaultRow {
  const char* fault;
  std::vector<std::string> complaints;
};

void ExpectFailures(const FaultRow& row, const Failures& failures) {
  SCOPED_TRACE(row.fault);
  EXPECT_EQ(failures.size(), row.complaints.size()) << testing::PrintToString(failures);
  for (std::size_t i = 0; i < std::min(failures.size(), row.complaints.size()); ++i) {
    EXPECT_EQ(failures[i].substr(0, row.complaints[i].size()), row.complaints[i]);
  }
}

/// What this process survives.
const std::vector<FaultRow>& CalmFaults() {
  static const std::vector<FaultRow> rows = {
      {"", {}},
      {"null library", {"export: " + ToUtf8(Faulty()) + " has no library object"}},
      {"other library", {"export: a second call of NuvPluginLibGet gave another object"}},
      {"no instructions", {"prototypes: GetPluginCount gives 0"}},
      {"no array", {"prototypes: GetPlugins gives null, though GetPluginCount gives 4"}},
      {"null prototype", {"prototypes: prototype 1 is null"}},
      {"prototype twice", {"prototypes: prototype 1 is an object that stands before it"}},
      {"no descriptor", {"prototypes: prototype 0 has no descriptor"}},
      {"one not built", {"init: prototype 0: the format code is still 0"}},
      {"count too high", {"init-count: InitPlugins gives 5 the first time, GetPluginCount 4"}},
      {"version", {"information: the version is 2"}},
      {"no text", {"information: the text is null or empty"}},
      {"filled early", {"untouched: prototype 0: byte 0 of its descriptor is 17"}},
      {"full object", {"empty-object: GetEmptyObject makes a value of type 3"}},
      {"not released", {"release: GetPluginCount gives 4 after ReleasePlugins"}},
      {"not cleared", {"release: prototype 0: its descriptor still holds records"}},
      {"other reload", {"reload: loaded a second time, the library has"}},
      {"creates null", {R"(create: "_Faulty_Double_": slot 6 gives null)"}},
      {"creates itself", {R"(create: "_Faulty_Double_": slot 6 gives the object itself)"}},
      {"reserved slot", {R"(reserved-slots: "_Faulty_Double_": true from the reserved slots 13)"}},
      {"grows", {R"(build-twice: "_Faulty_Double_": number of results was 1, is 2)"}},
      {"clears nothing",
       {"release: prototype 0: its descriptor still holds records",
        R"(clear: "_Faulty_Double_": the descriptor still holds records after slot 2)"}},
      {"clears texts", {R"(clear: "_Faulty_Double_": after slot 2, name was "Double", is null)"}},
      {"no name", {R"(texts: "_Faulty_Double_": the name is null)"}},
      {"no input name", {R"(texts: "_Faulty_Double_": inputs[0] has no name)"}},
      {"same identifier", {R"(identifiers: "_Faulty_Join_": identifier "_Faulty_Join_" is that)"}},
      {"same help number", {R"(help-numbers: "_Faulty_Join_": help number 460001 is that of)"}},
      {"low help number", {R"(help-numbers: "_Faulty_Double_": help number 459999 is below)"}},
      {"category", {R"(categories: "_Faulty_Double_": unknown category "numeric")"}},
      {"format", {R"(format: "_Faulty_Double_": format code 19 where it should be 17)"}},
      {"extension word", {R"(format: "_Faulty_Double_": format code 17 where it should be 19)"}},
      {"padding", {R"(reserved-bytes: "_Faulty_Double_": byte 59 is 205)"}},
      {"index", {R"(indices: "_Faulty_Double_": inputs[0] has index 1)"}},
      {"input type",
       {R"(types: "_Faulty_Double_": inputs[0] has type code 262)",
        R"(defaults: "_Faulty_Double_": inputs[0] has type code 262 and a default of)"}},
      {"result type", {R"(types: "_Faulty_Double_": results[0] has type code 257)"}},
      {"default type", {R"(defaults: "_Faulty_Double_": inputs[0] has type code 258 and a)"}},
      {"default choice", {R"(constants: "_Faulty_Pick_": constants[0] has no choice for its)"}},
      {"no choices", {R"(constants: "_Faulty_Pick_": constants[0] is a choice and has none)"}},
      {"no label", {R"(constants: "_Faulty_Pick_": constants[0] has no label for key 1)"}},
      {"default range", {R"(constants: "_Faulty_Pick_": constants[1] has the default 11)"}},
      {"half a range", {R"(constants: "_Faulty_Pick_": constants[1] has a minimum and a maximum)"}},
      {"constant type",
       {R"(types: "_Faulty_Pick_": constants[0] has type code 258)",
        R"(constants: "_Faulty_Pick_": constants[0] has choices and is no choice)"}},
      {"repeatable twice", {R"(repeatable: "_Faulty_Double_": the repeatable flag is 2)"}},
      {"nothing to repeat", {R"(repeatable: "_Faulty_Danger_": repeatable without an input)"}},
      {"exception",
       {R"(call-numbers: "_Faulty_Double_" with infinity in input 0, "number": an exception left )"
        "Execute: number too large",
        R"(call-services: "_Faulty_Double_" without services, with infinity in input 0, "number": )"
        "an exception left Execute: number too large"}},
      {"odd exception",
       {R"(call-numbers: "_Faulty_Double_" with infinity in input 0, "number": an exception of)",
        R"(call-services: "_Faulty_Double_" without services, with infinity in input 0, "number": )"
        "an exception of an unknown type"}},
      {"status 7",
       {R"(call-defaults: "_Faulty_Double_" with its defaults: returned status 7)",
        R"(call-numbers: "_Faulty_Double_" with NaN in input 0, "number": returned status 7)",
        R"(call-types: "_Faulty_Double_" with a value of type 0 in input 0, "number": returned)",
        R"(call-results: "_Faulty_Double_" with results that hold values of type 0: returned)"}},
      {"wrong type",
       {R"(call-types: "_Faulty_Double_" with a value of type 6 in input 0, "number": returned)"}},
      {"sign lost",
       {R"(call-numbers: "_Faulty_Double_" with -0.0 in input 0, "number": input 0 was changed )"
        "from -0.0 (type 3) to 0 (type 3)",
        R"(call-types: "_Faulty_Double_" with a value of type 0 in input 0, "number": input 0)"}},
      {"text result",
       {R"(call-results: "_Faulty_Double_" with results that hold values of type 4: result 0 has)"}},
      {"long text",
       {R"(call-texts: "_Faulty_Join_" with a text of 4096 characters in input 0, "text": )",
        R"(call-counts: "_Faulty_Join_" with 1000 inputs: returned status -1)"}},
      {"no inputs",
       {R"(call-counts: "_Faulty_Join_" with an input count of 0: reported an error and)"}},
      {"constant changed",
       {R"(call-constants: "_Faulty_Pick_" with constant 1 as its maximum: constant 1 was )"
        "changed from 10 (type 3) to 9 (type 3)"}},
      {"array changed",
       {R"(call-arrays: "_Faulty_Pick_" with an array of 1000 elements in input 0, "array": )"
        "input 0 was changed from ...4"}},
      {"fails unheard",
       {R"(call-services: "_Faulty_Pick_" without services, with its defaults: returned status 3)"}},
      {"severity",
       {R"(call-defaults: "_Faulty_Pick_" with its defaults: reported a message of severity 0)",
        R"(call-arrays: "_Faulty_Pick_" with an array of 0 elements in input 0, "array": )",
        R"(call-types: "_Faulty_Pick_" with a value of type 0 in input 0, "array": reported)"}},
      {"warning fails",
       {R"(call-defaults: "_Faulty_Pick_" with its defaults: reported a warning and returned)",
        R"(call-arrays: "_Faulty_Pick_" with an array of 0 elements in input 0, "array": )",
        R"(call-types: "_Faulty_Pick_" with a value of type 0 in input 0, "array": reported)"}},
  };
  return rows;
}

const std::vector<FaultRow>& WildFaults() {
  static const std::vector<FaultRow> rows = {
#if !defined(_WIN32)  // there the system survives it, and refuses the library
    {"crash on load", {"export: crashed while loading the library"}},
#endif
    {"crash",
     {R"(call-numbers: crashed while executing "_Faulty_Double_" with NaN in input 0, "number")",
      "call-services: crashed"}},
    {"recursion",
     {R"(call-numbers: crashed while executing "_Faulty_Double_" with NaN)",
      "call-services: crashed"}},
    {"exit",
     {R"(call-numbers: crashed while executing "_Faulty_Double_" with NaN)",
      "call-services: crashed"}},
    {"destroys null", {R"(destroy: crashed while destroying objects of "_Faulty_Double_")"}},
    {"needs messages",
     {R"(call-services: crashed while executing "_Faulty_Pick_" without services, with its)"}},
    {"own value",
     {R"(unload: crashed while reading, copying, comparing and clearing, after the library was )"
      R"(unloaded, what "_Faulty_Double_" wrote to results that hold values of type 0)"}},
    {"hang",
     {R"(call-numbers: no answer within 5 s while executing "_Faulty_Double_" with 1e)",
      "call-services: no answer within 5 s"}},
  };
  return rows;
}

TEST(Check, EachFaultBreaksItsLawAndNoOther) {
  for (const FaultRow& row : CalmFaults()) {
    const FaultInForce fault(row.fault);
    ExpectFailures(row, JudgeHere(Faulty()));
  }
}

TEST(Check, OutlivesWhatCrashesAndHangs) {
  for (const FaultRow& row : WildFaults()) {
    const FaultInForce fault(row.fault);
    ExpectFailures(row, JudgeInChildren(Faulty(), std::string(row.fault) == "hang" ? 5 : 60));
  }
}

TEST(Check, EveryLawHasAFaultThatBreaksIt) {
  std::set<std::string> broken;
  for (const auto* rows : {&CalmFaults(), &WildFaults()}) {
    for (const FaultRow& row : *rows) {
      for (const std::string& complaint : row.complaints) {
        broken.insert(complaint.substr(0, complaint.find(':')));
      }
    }
  }
  std::set<std::string> known;
  for (const check::Law* law : check::AllLaws()) known.insert(law->name);
  EXPECT_EQ(broken, known);
}

std::string LastLine(const std::string& text) {
  return text.substr(text.rfind('\n', text.size() - 2) + 1);
}

std::string Counts(std::size_t failed, std::size_t skipped) {
  const std::size_t passed = check::AllLaws().size() - failed - skipped;
  return std::to_string(passed) + " passed, " + std::to_string(failed) + " failed, " +
         std::to_string(skipped) + " skipped\n";
}

TEST(Check, EndsWithATruthfulVerdict) {
  const Answer sound = Check(Faulty(), {});
  EXPECT_EQ(sound.code, 0);
  EXPECT_EQ(LastLine(sound.text), Counts(0, 0));
  EXPECT_NE(sound.text.find("call-defaults  (3 instructions called, 1 of IO: System and"),
            std::string::npos);

  const Answer no_plugin = Check(ProgramFolder() / kNoPlugin, {});
  EXPECT_EQ(no_plugin.code, 1);
  EXPECT_NE(no_plugin.text.find("it does not export NuvPluginLibGet"), std::string::npos);
  EXPECT_EQ(LastLine(no_plugin.text), Counts(1, check::AllLaws().size() - 1));

  EXPECT_EQ(Check(ProgramFolder() / kProgram / "nothing", {}).code, 2);
  EXPECT_EQ(Check(CHECK_PAGE, {}).code, 2);
}

TEST(Check, JudgesALibraryInAFolderOfAnyName) {
  const TestFolder folder;
  const std::filesystem::path library = folder.path / Faulty().filename();
  std::filesystem::copy_file(Faulty(), library);
  const FaultInForce fault("no name");
  const Answer answer = Check(library, {});
  EXPECT_EQ(answer.code, 1);
  EXPECT_NE(answer.text.find("FAIL  descriptors  texts  "), std::string::npos) << answer.text;
  EXPECT_EQ(LastLine(answer.text), Counts(1, 0));
}

TEST(Check, TheFormulaLibraryKeepsEveryLaw) {
  const Answer answer = Check(DefaultPluginPath(), {});
  EXPECT_EQ(answer.code, 0) << answer.text;
  EXPECT_NE(LastLine(answer.text).find(" 0 failed"), std::string::npos) << answer.text;
}

TEST(Check, ThePageListsTheLaws) {
  std::string listed;
  std::istringstream page(ReadAll(CHECK_PAGE));
  for (std::string line; std::getline(page, line);) {
    if (line.starts_with("| `")) listed += line + '\n';
  }
  std::string known;
  for (const check::Law* law : check::AllLaws()) {
    known += "| `" + std::string(law->name) + "` | " + law->demand + " |\n";
  }
  EXPECT_EQ(listed, known);

  std::string text = ReadAll(CHECK_PAGE);
  std::ranges::replace(text, '\n', ' ');
  std::string categories = "The categories are";
  for (const Category& category : kCategories) {
    const bool is_first = &category == std::begin(kCategories);
    const bool is_last = &category == std::end(kCategories) - 1;
    categories += std::string(is_first  ? " "
                              : is_last ? " and "
                                        : ", ") +
                  '"' + std::string(category.name) + '"';
  }
  EXPECT_NE(text.find(categories), std::string::npos) << categories;
}

}  // namespace
}  // namespace nuvhost
