#include <gtest/gtest.h>

#if defined(__linux__)
#include <sys/prctl.h>
#endif

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <set>
#include <string>
#include <vector>

#include "nuvhost/checking/law.h"
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

/// The faulty plug-in's one instruction that nobody may call.
constexpr const char* kDanger = "_Faulty_Danger_";

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

/// What `nuvhost check` says of a library.
ChildEnd Check(const std::filesystem::path& library, std::vector<std::string> words) {
  words.insert(words.begin(), {"check", ToUtf8(library)});
  ChildEnd end = RunChild(ProgramFolder() / kProgram, words, std::chrono::minutes(4));
  EXPECT_TRUE(end.in_time);
  return end;
}

/// One law's failure, as "law: complaint".
using Failures = std::vector<std::string>;

/// The laws that fail for the faulty plug-in, judged in this process, but for those of conduct;
/// after an essential one the others are left.
Failures JudgeHere() {
  Failures failures;
  for (const check::Law* law : check::AllLaws()) {
    if (law->group == std::string_view("conduct")) continue;
    std::string record;
    check::JudgeLaw(*law, {Faulty(), {kDanger}}, [&](std::string_view line) { record += line; });
    const check::Verdict verdict = check::ReadVerdict(record, "");
    if (verdict.outcome != check::Outcome::kFailed) continue;
    failures.push_back(std::string(law->name) + ": " + verdict.complaints.at(0));
    if (law->essential) break;
  }
  return failures;
}

/// What one law says, judged in a process of its own: its complaints, a line each.
std::string JudgeInChild(const std::string& law, int seconds) {
  const ChildEnd end =
      RunChild(ProgramFolder() / kProgram,
               {"check", "--law", law, "--outer-world", kDanger, "--", ToUtf8(Faulty())},
               std::chrono::seconds(seconds));
  const check::Verdict verdict = check::ReadVerdict(end.output, !end.in_time    ? "no answer"
                                                                : end.code != 0 ? "crashed"
                                                                                : "");
  std::string complaints;
  for (const std::string& complaint : verdict.complaints) complaints += complaint + '\n';
  return complaints;
}

/// A fault, and of each of the laws that it breaks a part of the complaint, as "law: part".
struct FaultRow {
  const char* fault;
  std::vector<std::string> complaints;
};

std::string LawOf(const std::string& complaint) {
  return complaint.substr(0, complaint.find(':'));
}

void ExpectComplaint(const std::string& said, const std::string& expected) {
  EXPECT_EQ(LawOf(said), LawOf(expected));
  EXPECT_NE(said.find(expected.substr(expected.find(':') + 2)), std::string::npos)
      << said << " in place of " << expected;
}

/// What this process survives.
const std::vector<FaultRow>& CalmFaults() {
  static const std::vector<FaultRow> rows = {
      {"", {}},
      {"null library", {"export: has no library object"}},
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
      {"creates null", {"create: slot 6 gives null"}},
      {"creates itself", {"create: slot 6 gives the object itself"}},
      {"reserved slot", {"reserved-slots: true from the reserved slots 13"}},
      {"grows", {"build-twice: number of results was 1, is 2"}},
      {"clears nothing",
       {"release: still holds records", "clear: still holds records after slot 2"}},
      {"clears texts", {R"(clear: after slot 2, name was "Double", is null)"}},
      {"no name", {"texts: the name is null"}},
      {"no input name", {"texts: inputs[0] has no name"}},
      {"same identifier", {R"(identifiers: identifier "_Faulty_Join_" is that)"}},
      {"same help number", {"help-numbers: help number 460001 is that of"}},
      {"low help number", {"help-numbers: help number 459999 is below"}},
      {"category", {R"(categories: unknown category "numeric")"}},
      {"format", {"format: format code 19 where it should be 17"}},
      {"extension word", {"format: format code 17 where it should be 19"}},
      {"padding", {"reserved-bytes: byte 59 is 205"}},
      {"index", {"indices: inputs[0] has index 1"}},
      {"input type",
       {"types: inputs[0] has type code 262", "defaults: inputs[0] has type code 262"}},
      {"result type", {"types: results[0] has type code 257"}},
      {"default type", {"defaults: inputs[0] has type code 258 and a"}},
      {"default choice", {"constants: constants[0] has no choice for its"}},
      {"no choices", {"constants: constants[0] is a choice and has none"}},
      {"no label", {"constants: constants[0] has no label for key 1"}},
      {"default range", {"constants: constants[1] has the default 11"}},
      {"half a range", {"constants: constants[1] has a minimum and a maximum"}},
      {"constant type",
       {"types: constants[0] has type code 258", "constants: has choices and is no"}},
      {"repeatable twice", {"repeatable: the repeatable flag is 2"}},
      {"nothing to repeat", {"repeatable: repeatable without an input"}},
      {"exception", {"call-numbers: left Execute: number too large", "call-services: infinity in"}},
      {"odd exception", {"call-numbers: ", "call-services: "}},
      {"status 7", {"call-defaults: status 7", "call-numbers: ", "call-types: ", "call-results: "}},
      {"wrong type", {R"(call-types: with a value of type 6 in input 0, "number": returned)"}},
      {"text result", {"call-results: results that hold values of type 4: result 0 has"}},
      {"long text", {"call-texts: 4096 characters in input 0", "call-counts: with 1000 inputs"}},
      {"no inputs", {"call-counts: with an input count of 0: reported an error and"}},
      {"constant changed",
       {"call-constants: constant 1 was changed from 10 (type 3) to 9 (type 3)"}},
      {"array changed", {"call-arrays: input 0 was changed from ...4"}},
      {"fails unheard", {"call-services: without services, with its defaults: returned status 3"}},
      {"severity", {"call-defaults: of severity 0", "call-arrays: ", "call-types: "}},
      {"warning fails", {"call-defaults: a warning and", "call-arrays: ", "call-types: "}},
  };
  return rows;
}

/// What a process of its own is for.
const std::vector<FaultRow>& WildFaults() {
  static const std::vector<FaultRow> rows = {
    {"crash", {R"(call-numbers: while executing "_Faulty_Double_" with NaN in input 0, "number")"}},
    {"recursion", {R"(call-numbers: while executing "_Faulty_Double_" with NaN)"}},
    {"destroys null", {R"(destroy: while destroying objects of "_Faulty_Double_")"}},
    {"needs messages",
     {R"(call-services: while executing "_Faulty_Pick_" without services, with its)"}},
    {"own value", {R"(unload: after the library was unloaded, what "_Faulty_Double_" wrote to)"}},
    {"hang", {R"(call-numbers: no answer while executing "_Faulty_Double_" with 1e)"}},
    {"throws in init", {"init: an exception ended the trial"}},
    {"throws in create", {"create: an exception ended the trial"}},
    {"crashes on unload", {"init: while releasing and unloading"}},
    {"hangs on unload", {"init: no answer while releasing and unloading"}},
    {"hides crashes", {"call-defaults: while executing"}},
    {"hides one crash", {"call-defaults: while executing"}},
    {"exits", {"call-defaults: ended while executing"}},
    {"aborts", {"call-defaults: while executing"}},
    {"forges the verdict", {"call-defaults: while executing"}},
    {"forges a line", {"call-defaults: written by others"}},
    {"closes everything", {"call-defaults: ended while executing"}},
    {"throws odd text", {"call-defaults: an exception left Execute"}},
    {"input beyond", {"bounds: while executing"}},
    {"far input", {"bounds: while executing"}},
    {"constant beyond", {"bounds: while executing"}},
    {"result beyond", {"bounds: while executing"}},
    {"value beyond", {"bounds: while executing"}},
    {"element beyond", {"bounds: while executing"}},
    {"element before", {"same-answer: gave another result 0"}},
    {"text beyond", {R"(bounds: while executing "_Faulty_Join_" with a text of 4096)"}},
    {"result pointer", {"bounds: pointers to results was changed"}},
    {"input pointer", {"bounds: pointers to inputs was changed"}},
    {"keeps the context", {"bounds: while executing"}},
    {"keeps an input", {"bounds: while executing"}},
    {"asks beyond", {"bounds: asked for constant 2 of 2"}},
    {"asks below", {"bounds: asked for result -1 of 1"}},
    {"destroys the context", {"bounds: destroyed the context"}},
    {"unknown slot", {"bounds: called slot 9"}},
    {"marks beyond", {"marks: marked result 1 of 1"}},
    {"marks below", {"marks: marked result -1 of 1"}},
    {"silent message", {"call-defaults: a message without a source"}},
    {"counts calls", {"same-answer: gave another result 0"}},
    {"marks at times", {"same-answer: reported something else"}},
    {"stack garbage", {"same-answer: gave another result 0"}},
    {"heap garbage", {"same-answer: gave another result 0"}},
    {"address", {"same-answer: gave another result 0"}},
    {"shared scratch", {"threads: on 4 threads at once"}},
    {"leaks", {"memory: bytes of the heap"}},
    {"leaks at times", {"memory: bytes of the heap"}},
    {"keeps pages", {"memory: of memory"}},
    {"locale", {"process: the locale was"}},
    {"rounding", {"process: floating-point numbers was"}},
    {"tiny numbers", {"process: floating-point numbers was"}},
    {"folder", {"process: the current folder was"}},
    {"environment", {"process: NUV_LEFT_BEHIND was not there"}},
    {"signals", {"process: the handler of signal 15"}},
    {"crash signals", {"process: the handler of signal 8"}},
    {"open file", {"process: open"}},
    {"thread", {"process: the number of threads was"}},
    {"thread on load", {"process: the number of threads was"}},
    {"prints", {R"(process: wrote "hello)"}},
    {"complains", {R"(process: wrote "hello)"}},
    {"settings", {"process: angle unit was radians"}},
    {"writes and fails", {"results-kept: returned status 3, and result 0"}},
    {"descriptor changed", {"descriptors-kept: description was null"}},
    {"library stays", {"library-destructor: GetPluginCount gives 4 after slot 0"}},
    {"library nowhere", {"library-destructor: slot 0 with flags 0"}},
    {"frees always", {"destructor: flags 0 frees"}},
    {"frees never", {"destructor: flags 1 does not free"}},
    {"destroyed nowhere", {"destructor: does not return the address"}},
    {"other information", {"addresses: the information has moved"}},
    {"array moves", {"addresses: the array of prototypes has moved"}},
    {"control character", {"names: Dou\\bble"}},
    {"blank name", {"names: has the name"}},
    {"same name", {"names: the name of one before it"}},
    {"label with control", {"names: has the label"}},
    {"odd boolean", {"constants: the default 7"}},
    {"range of a choice", {"constants: has a range and is no integer"}},
    {"range of numbers", {"constants: not both integers"}},
#if defined(_WIN32)
    {"input grows", {"bounds: an array among inputs was given storage"}},
    {"exception filter", {"process: the filter of exceptions was"}},
    {"error mode", {"process: the mode of errors was"}},
#else
    {"input grows", {"bounds: while executing"}},
    {"crash on load", {"export: crashed while loading the library"}},  // Windows refuses it
    {"child", {"process: a child process was"}},
    {"mask", {"process: the mask of new files"}},
    {"alarm", {"process: the alarm was off"}},
    {"termination", {"process: the handler of termination"}},
    {"blocked signal", {"process: the list of blocked signals"}},
#endif
  };
  return rows;
}

/// What only the plain heap and the plain handlers of crashes can show.
bool IsHiddenHere([[maybe_unused]] std::string_view fault) {
#if defined(__SANITIZE_ADDRESS__)
  constexpr std::string_view kHidden[] = {"leaks",       "leaks at times", "frees always",
                                          "frees never", "heap garbage",   "stack garbage"};
  if (std::ranges::find(kHidden, fault) != std::end(kHidden)) return true;
  const bool keeps_handlers = true;
#elif defined(__linux__)
  const bool keeps_handlers = prctl(PR_GET_SECCOMP) < 0;  // as under an emulator
#else
  const bool keeps_handlers = false;
#endif
  return keeps_handlers && fault.starts_with("hides ");
}

TEST(Check, EachFaultBreaksItsLawAndNoOther) {
  for (const FaultRow& row : CalmFaults()) {
    SCOPED_TRACE(row.fault);
    const FaultInForce fault(row.fault);
    const Failures failures = JudgeHere();
    EXPECT_EQ(failures.size(), row.complaints.size()) << testing::PrintToString(failures);
    for (std::size_t i = 0; i < std::min(failures.size(), row.complaints.size()); ++i) {
      ExpectComplaint(failures[i], row.complaints[i]);
    }
  }
}

TEST(Check, EachFaultOfConductBreaksItsLaw) {
  for (const FaultRow& row : WildFaults()) {
    if (IsHiddenHere(row.fault)) continue;
    const FaultInForce fault(row.fault);
    SCOPED_TRACE(row.fault);
    const bool hangs = std::string_view(row.fault).starts_with("hang");
    const std::string law = LawOf(row.complaints[0]);
    ExpectComplaint(law + ": " + JudgeInChild(law, hangs ? 5 : 60), row.complaints[0]);
  }
}

TEST(Check, EveryLawHasAFaultThatBreaksIt) {
  std::set<std::string> broken;
  for (const auto* rows : {&CalmFaults(), &WildFaults()}) {
    for (const FaultRow& row : *rows) {
      for (const std::string& complaint : row.complaints) broken.insert(LawOf(complaint));
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
         std::to_string(skipped) + " skipped";
}

TEST(Check, EndsWithATruthfulVerdict) {
  const ChildEnd sound = Check(Faulty(), {"--outer-world", kDanger});
  EXPECT_EQ(sound.code, 0) << sound.output;
  EXPECT_EQ(LastLine(sound.output), Counts(0, 0) + "; 1 instructions not called\n");
  EXPECT_NE(sound.output.find("call-defaults  (3 instructions called, 1 not called, since"),
            std::string::npos);

  const ChildEnd called = Check(Faulty(), {});  // its category does not keep it from being called
  EXPECT_EQ(called.code, 1);
  EXPECT_NE(called.output.find("executing \"_Faulty_Danger_\" with its defaults"),
            std::string::npos);

  const ChildEnd no_plugin = Check(ProgramFolder() / kNoPlugin, {});
  EXPECT_EQ(no_plugin.code, 1);
  EXPECT_NE(no_plugin.output.find("it does not export NuvPluginLibGet"), std::string::npos);
  EXPECT_EQ(LastLine(no_plugin.output), Counts(1, check::AllLaws().size() - 1) + "\n");
}

TEST(Check, JudgesALibraryInAFolderOfAnyName) {
  std::filesystem::path folder = ProgramFolder() / "check";
  folder += PathFromUtf8(" pr\xC3\xBC\x66\x65 \xE2\x82\xAC");
  std::filesystem::create_directories(folder);
  std::filesystem::copy_file(Faulty(), folder / kFaulty,
                             std::filesystem::copy_options::overwrite_existing);
  const FaultInForce fault("no name");
  const ChildEnd answer = Check(folder / kFaulty, {"--outer-world", kDanger});
  std::error_code ignored;
  std::filesystem::remove_all(folder, ignored);
  EXPECT_EQ(answer.code, 1);
  EXPECT_NE(answer.output.find("FAIL  descriptors  texts  "), std::string::npos) << answer.output;
  EXPECT_TRUE(LastLine(answer.output).starts_with(Counts(1, 0))) << answer.output;
}

TEST(Check, TheFormulaLibraryKeepsEveryLaw) {
  const ChildEnd answer = Check(DefaultPluginPath(), {});
  EXPECT_EQ(answer.code, 0) << answer.output;
  EXPECT_NE(LastLine(answer.output).find(" 0 failed"), std::string::npos) << answer.output;
}

TEST(Check, ThePageListsTheLaws) {
  std::string listed;
  std::ifstream page(CHECK_PAGE);
  for (std::string line; std::getline(page, line);) {
    if (line.starts_with("| `")) listed += line + '\n';
  }
  std::string known;
  for (const check::Law* law : check::AllLaws()) {
    known += "| `" + std::string(law->name) + "` | " + law->demand + " |\n";
  }
  EXPECT_EQ(listed, known);
}

}  // namespace
}  // namespace nuvhost
