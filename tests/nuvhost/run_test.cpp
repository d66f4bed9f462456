#include "nuvhost/commands/run.h"

#include <gtest/gtest.h>

#include <fstream>
#include <random>

#include "nuvhost/error.h"
#include "nuvhost/reading/source_text.h"
#include "nuvhost/running/step_runner.h"
#include "nuvhost/system/paths.h"
#include "nuvhost/values/json_value.h"
#include "tests/instr/table.h"

namespace nuvhost {
namespace {

/// What a command line was answered with.
struct Answer {
  int code;
  std::string out;
  std::string error;
};

template <class Command>
Answer Captured(Command command) {
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  Answer answer;
  std::string thrown;
  try {
    answer.code = command();
  } catch (const UserError& error) {
    answer.code = kExitWrongCall;
    thrown = error.what();
  }
  answer.out = testing::internal::GetCapturedStdout();
  answer.error = testing::internal::GetCapturedStderr() + thrown;
  return answer;
}

/// A folder of its own for each test, in which it runs.
class Run : public testing::Test {
 protected:
  void SetUp() override {
    folder_ = std::filesystem::temp_directory_path() /
              ("nuvhost_run_" + std::to_string(std::random_device()()));
    before_ = std::filesystem::current_path();
    std::filesystem::create_directory(folder_);
    std::filesystem::current_path(folder_);
  }
  void TearDown() override {
    std::filesystem::current_path(before_);
    std::filesystem::remove_all(folder_);
  }

  static void Write(const std::string& name, const std::string& text) {
    std::ofstream(PathFromUtf8(name), std::ios::binary) << text;
  }
  static std::string Read(const std::string& name) {
    std::ifstream file(PathFromUtf8(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  /// Whether the folder holds a file that was begun and not finished.
  static bool HasLeftovers() {
    for (const auto& entry : std::filesystem::recursive_directory_iterator(".")) {
      if (entry.path().extension() == ".part") return true;
    }
    return false;
  }

  static Answer Carry(const std::string& program, std::vector<std::string> data = {},
                      const std::string& results = "", bool keep_going = false,
                      const std::string& overlay = "") {
    return Captured([&] {
      return RunProgram(BuiltCatalogue(), {program, std::move(data), results, keep_going, overlay});
    });
  }

  std::filesystem::path folder_;
  std::filesystem::path before_;
};

/// 12 / (largest - smallest) of a file's numbers.
constexpr const char* kRatio = R"({
  "data": {"n": {"file": "n.csv"}},
  "steps": [
    {"name": "max", "instr": "MaxArr", "in": [{"data": "n"}]},
    {"name": "min", "instr": "MinArr", "in": [{"data": "n"}]},
    {"name": "range", "instr": "_Nuv_Numeric_SubtractNumbers_", "in": [{"step": "max"}, {"step": "min"}]},
    {"name": "ratio", "instr": "Divide", "in": [12, {"step": "range"}]},
    {"name": "twice", "instr": "_Nuv_Numeric_AddNumbers_", "in": {"number": [{"step": "ratio"}, {"step": "ratio"}]}},
    {"name": "big", "instr": "Greater", "in": {"n1": {"step": "max"}, "n2": 2}}
  ],
  "report": [
    {"label": "Ratio", "value": {"step": "ratio"}, "unit": "mm", "decimals": 2},
    {"label": "Twice", "value": {"step": "twice"}},
    {"label": "Big", "value": {"step": "big"}}
  ]
})";

TEST_F(Run, ShowsTheReportAndStopsAtAFailure) {
  Write("p.json", kRatio);
  Write("n.csv", "1\n3.5\n");
  Answer answer = Carry("p.json");
  EXPECT_EQ(answer.code, 0);
  EXPECT_EQ(answer.out, "  Ratio  4.80  mm\n  Twice   9.6\n  Big     yes\n");
  EXPECT_EQ(answer.error, "");

  Write("n.csv", "2\n2\n");
  answer = Carry("p.json");
  EXPECT_EQ(answer.code, 1);
  EXPECT_EQ(answer.error,
            "p.json: step \"ratio\" (\"Divide\", number 4): Numeric: Divide: Division by zero\n");
  EXPECT_EQ(answer.out, "  Ratio   failed  mm\n  Twice  not run\n  Big    not run\n");

  answer = Carry("p.json", {}, "", true);
  EXPECT_EQ(answer.code, 1);
  EXPECT_EQ(answer.out,
            "  Ratio  failed  mm\n  Twice     * 0\n  Big        no\n"
            "\n  * computed from the result of a failed step\n");

  Write("n.csv", "n\n");
  EXPECT_NE(Carry("p.json").error.find("(\"MaxArr\", number 1): failed without a message"),
            std::string::npos);
}

TEST_F(Run, RunsNothingWhereDataAreWrong) {
  Write("p.json", kRatio);
  Answer answer = Carry("p.json", {}, "out.csv");
  EXPECT_EQ(answer.code, 2);
  EXPECT_EQ(answer.error, "p.json:2:26: cannot read \"n.csv\": there is no such file\n");
  Write("n.csv", "a,b\n1,x\n");
  answer = Carry("p.json");
  EXPECT_NE(
      answer.error.find("p.json:4:47: input \"numbers\" of \"MaxArr\" takes an array of "
                        "numbers; \"n.csv\" has 2 columns: \"a\", \"b\". Choose by \"column\""),
      std::string::npos)
      << answer.error;
  EXPECT_EQ(answer.out, "");
  EXPECT_FALSE(std::filesystem::exists("out.csv") || HasLeftovers());
}

TEST_F(Run, LosesNothingOfOtherFiles) {
  Write("p.json", kRatio);
  Write("a.csv", "1\n3\n");
  Write("flat, 1.csv", "2\n2\n");
  Write("text.csv", "1\nx\n");
  const std::vector<std::string> files{"a.csv", "flat, 1.csv", "text.csv", "none.csv", "a.csv"};
  const Answer answer = Carry("p.json", files, "out.csv");
  EXPECT_EQ(answer.code, 2);
  EXPECT_EQ(answer.out,
            "                Ratio\n"
            "  File           (mm)    Twice      Big  Status\n"
            "  -----------  ------  -------  -------  ----------\n"
            "  a.csv          6.00       12      yes  ok\n"
            "  flat, 1.csv  failed  not run  not run  failed\n"
            "  text.csv          -        -        -  unreadable\n"
            "  none.csv          -        -        -  unreadable\n"
            "  a.csv          6.00       12      yes  ok\n");
  EXPECT_EQ(
      answer.error,
      "flat, 1.csv: step \"ratio\" (\"Divide\", number 4): Numeric: Divide: Division by zero\n"
      "text.csv:2:1: \"x\" is no number\n"
      "none.csv: cannot read the file: there is no such file\n");
  EXPECT_EQ(Read("out.csv"),
            "file,status,max.max,max.idx,min.min,min.idx,range.difference,ratio.quotient,"
            "twice.sum,big.n1 > n2\n"
            "a.csv,ok,3,1,1,0,2,6,12,true\n"
            "\"flat, 1.csv\",failed,2,0,2,0,0,,,\n"
            "text.csv,unreadable,,,,,,,,\n"
            "none.csv,unreadable,,,,,,,,\n"
            "a.csv,ok,3,1,1,0,2,6,12,true\n");
  EXPECT_EQ(Carry("p.json", {"a.csv", "flat, 1.csv"}).code, 1);
}

TEST_F(Run, ShowsEveryStepWithoutAReport) {
  Write("p.json", R"({"title": "T", "data": {"v": [1, 2.5, "NaN", 4, 5]}, "steps": [
    {"name": "größte", "instr": "MaxArr", "in": [{"data": "v"}]},
    {"name": "gone", "instr": "Divide", "in": [1, 0]}]})");
  const Answer answer = Carry("p.json");
  EXPECT_EQ(answer.out,
            "T\n\n"
            "     Step    Instruction  Result    Value\n"
            "  -  ------  -----------  --------  ------\n"
            "  1  größte  MaxArr       max       5\n"
            "                          idx       4\n"
            "  2  gone    Divide       quotient  failed\n");
}

TEST_F(Run, RefusesWordsThatDoNotFit) {
  Write("p.json", kRatio);
  Write("two.json", R"({"data": {"a": {"file": "a.csv"}, "b": {"file": "b.csv"}}, "steps": [
    {"name": "s", "instr": "SumArr", "in": [{"data": "a"}]},
    {"name": "t", "instr": "SumArr", "in": [{"data": "b"}]}]})");
  Write("none.json", R"({"steps": [{"name": "s", "instr": "_Nuv_Numeric_AddNumbers_"}]})");
  Write("a.csv", "1\n");
  Write("c=d.csv", "1\n2\n");
  struct Row {
    const char* program;
    std::vector<std::string> data;
    const char* results;
    const char* complaint;  ///< "" where the words fit
  };
  const Row rows[] = {
      {"p.json", {"c=d.csv"}, "out.json", ""},
      {"p.json", {"n=c=d.csv"}, "", ""},
      {"two.json", {"a=c=d.csv", "b=a.csv"}, "", ""},
      {"gone.json", {}, "", "cannot read gone.json: there is no such file"},
      {".", {}, "", "it is a folder"},
      {"two.json", {"a.csv"}, "", R"(write NAME=FILE, with one of "a", "b")"},
      {"two.json", {"a=a.csv", "a.csv"}, "", "expected NAME=FILE"},
      {"two.json", {"a=a.csv", "a=c=d.csv"}, "", R"(data "a" has a file already)"},
      {"none.json", {"a.csv"}, "", "takes no data from a file"},
      {"p.json", {"c=d.csv"}, "out.txt", "must end in .csv or .json"},
      {"p.json", {"c=d.csv"}, "no/such/folder.csv", "cannot write results to no/such/folder.csv"},
  };
  for (const Row& row : rows) {
    const Answer answer = Carry(row.program, row.data, row.results);
    EXPECT_EQ(answer.code, *row.complaint == '\0' ? 0 : 2) << answer.error;
    EXPECT_NE(answer.error.find(row.complaint), std::string::npos) << answer.error;
    EXPECT_EQ(answer.out.empty(), answer.code != 0);
  }
  std::filesystem::create_directory("taken.csv");
  EXPECT_EQ(Carry("p.json", {"c=d.csv"}, "taken.csv").code, 2);
  EXPECT_FALSE(HasLeftovers());
}

/// Leaves something of every kind in the record, and fails if told to.
class Noisy final : public IXInstrPlugin {
 public:
  explicit Noisy(Status status) : status_(status) {
    descriptor_.name = "Noisy ";
    descriptor_.identifier = "_Noisy_";
    ResultRecord result;
    result.type = NUV_PARAM_POINT_ARRAY;
    result.name = "points";
    descriptor_.results.PushBack(std::move(result));
    result.type = NUV_PARAM_STRING;
    result.name = "text";
    descriptor_.results.PushBack(std::move(result));
    result.type = NUV_PARAM_LINE;
    result.name = "line";
    descriptor_.results.PushBack(std::move(result));
  }
  void* DeletingDestructor(std::uint32_t /*flags*/) override { return this; }
  DescriptorRecord* GetDescriptor() override { return &descriptor_; }
  IXInstrPlugin* Create() override { return nullptr; }
  Status Execute(IXInstrContext* context) override {
    auto& messages = *static_cast<IXMessageService*>(context->Service(NUV_SERVICE_MESSAGE));
    messages.Report(NUV_SEVERITY_WARNING, "Noisy", "careful");
    messages.Report(NUV_SEVERITY_ERROR, "Noisy", "caf\xE9");
    messages.RaiseProgramEvent(45, -5);
    static_cast<IXAnnotationService*>(context->Service(NUV_SERVICE_ANNOTATION))
        ->DrawPoint(nullptr, {1, 2}, 0, true, true);
    CNuvLog::Instance().Log(LEVEL_DEBUG, "two\nlines");
    CNuvPointVector points;
    for (int i = 0; i < 6; ++i) points.PushBack(CNuvPoint(i, -i));
    *context->ResultValue(0) = points;
    *context->ResultValue(1) = "a \"b\",\n\xE9";
    *context->ResultValue(2) = CNuvLine(0.5, -0.0);
    degrees_ = CNuvSetting::Inst().GetAngleUnit() == NuvAngleUnit::kDegrees;
    return status_;
  }

  Status status_;
  DescriptorRecord descriptor_;
  bool degrees_ = false;
};

TEST_F(Run, ShowsWhatInstructionsReport) {
  Noisy noisy(Status::kSuccess);
  const CatalogueEntry instruction{0, &noisy, noisy.GetDescriptor()};
  Program program(SourceText("p.json", ""));
  program.settings.angle_unit = NuvAngleUnit::kDegrees;
  program.steps.push_back({"it", &instruction, {}, {}});
  Answer answer = Captured([&] { return RunChecked(program, {"p.json", {}, "o.json", false}); });
  EXPECT_EQ(answer.code, 0);
  EXPECT_TRUE(noisy.degrees_);
  EXPECT_EQ(CNuvSetting::Inst().GetAngleUnit(), NuvAngleUnit::kRadians);
  const std::string place = "p.json: step \"it\" (\"Noisy\", number 1): ";
  const std::string told = place + "log: two\\nlines\n" + place + "event 45, value -5\n" + place +
                           "warning: Noisy: careful\n" + place;
  EXPECT_EQ(answer.error, told + "message: Noisy: caf\xC3\xA9\n");
  EXPECT_EQ(answer.out,
            "     Step  Instruction  Result  Value\n"
            "  -  ----  -----------  ------  ---------------------------------------------------\n"
            "  1  it    Noisy        points  [(0, 0), (1, -1), (2, -2), (3, -3), ...] 6 elements\n"
            "                        text    \"a \\\"b\\\",\\n\xC3\xA9\"\n"
            "                        line    a 0.5, d -0.0\n"
            "                                1 annotation\n");
  const Json step = Json::parse(Read("o.json"))["runs"][0]["steps"][0];
  EXPECT_EQ(step["results"][0]["value"].size(), 6u);
  EXPECT_EQ(step["results"][1], Json::parse(R"({"name": "text", "value": "a \"b\",\né"})"));
  EXPECT_EQ(step["annotations"][0]["op"], "point");
  EXPECT_EQ(step["events"][0]["value"], -5);
  EXPECT_EQ(step["messages"].size(), 2u);
  EXPECT_EQ(step["log"][0]["text"], "two\nlines");

  answer = Captured([&] { return RunChecked(program, {"p.json", {}, "o.csv", false}); });
  EXPECT_EQ(Read("o.csv"),
            "file,status,it.text,it.line.a,it.line.d\n"
            "p.json,ok,\"a \"\"b\"\",\n\xC3\xA9\",0.5,-0.0\n");

  noisy.status_ = Status::kFailure;
  answer = Captured([&] { return RunChecked(program, {"p.json", {}, "", false}); });
  EXPECT_EQ(answer.code, 1);
  EXPECT_EQ(answer.error, told + "Noisy: caf\xC3\xA9\n");
  EXPECT_EQ(Captured([&] {
              return RunChecked(program, {"p.json", {}, "", false, "o.svg"});
            }).code,
            1);
  EXPECT_NE(Read("o.svg").find("d=\"M"), std::string::npos) << "what a failed run drew";
}

// Each run's picture lies over the program's image, which is looked at before anything runs.
TEST_F(Run, DrawsOverTheImage) {
  const std::string png =
      "\x89PNG\r\n\x1A\n" +
      std::string("\0\0\0\x0DIHDR\0\0\0\x09\0\0\0\x07\x08\0\0\0\0crc_\0\0\0\0IENDcrc_", 37);
  std::filesystem::create_directory(PathFromUtf8("größe"));
  std::filesystem::create_directory("other");
  const std::string program = R"({"image": "%", "data": {"n": {"file": "n.csv"}}, "steps": [
    {"name": "s", "instr": "SumArr", "in": [{"data": "n"}]}]})";
  const auto with_image = [&](const std::string& name) {
    return std::string(program).replace(program.find('%'), 1, name);
  };
  Write("größe/p.json", with_image("teil.png"));
  Write("größe/teil.png", png);
  Write("größe/n.csv", "1\n");
  Write("n.csv", "1\n");
  Write("other/n.csv", "2\n");
  Write("m.csv", "3\n");
  Write("short.json", with_image("short.png"));
  Write("short.png", png.substr(0, 30));
  Write("none.json", with_image("none.png"));
  Write("csv.json", with_image("n.csv"));
  Write("picture.svg", "");
  Write("svg.json", with_image("picture.svg"));
  EXPECT_EQ(Carry("größe/p.json", {}, "", false, "größe/ö.svg").code, 0);
  EXPECT_NE(Read("größe/ö.svg").find("viewBox=\"0 0 9 7\""), std::string::npos);
  EXPECT_NE(Read("größe/ö.svg").find("data:image/png;base64,iVBORw0KGgo"), std::string::npos);

  Answer answer = Carry("größe/p.json", {"n.csv", "gone.csv", "m.csv"}, "", false, "o.svg");
  EXPECT_EQ(answer.code, 2);
  EXPECT_EQ(Read("o-n.svg"), Read("größe/ö.svg"));
  EXPECT_EQ(Read("o-m.svg"), Read("größe/ö.svg"));
  EXPECT_FALSE(std::filesystem::exists("o-gone.svg") || HasLeftovers());

  std::filesystem::create_directory("p-m.svg");
  answer = Carry("größe/p.json", {"n.csv", "m.csv"}, "", false, "p.svg");
  EXPECT_EQ(answer.code, 2);
  EXPECT_NE(answer.out.find("m.csv: ok"), std::string::npos);
  EXPECT_NE(answer.error.find("cannot write the picture to p-m.svg"), std::string::npos);
  EXPECT_EQ(Read("p-n.svg"), Read("größe/ö.svg"));

  struct Row {
    const char* program;
    std::vector<std::string> data;
    const char* overlay;
    const char* complaint;  ///< "" where all is well
  };
  const Row rows[] = {
      {"short.json", {}, "", ""},  // nobody asks for the image
      {"short.json",
       {},
       "x.svg",
       "short.json:1:11: cannot take the image \"short.png\": the file ends"},
      {"none.json", {}, "x.svg", "image \"none.png\": there is no such file"},
      {"csv.json", {}, "x.svg", "image \"n.csv\": the file is neither PNG nor JPEG"},
      {"größe/p.json", {}, "x.png", "must end in .svg"},
      {"größe/p.json", {}, "no/such.svg", "cannot write the picture to no/such.svg"},
      {"größe/p.json", {"n.csv", "other/n.csv"}, "x.svg", "is named \"n\""},
      {"svg.json", {}, "picture.svg", "cannot take the image"},
  };
  for (const Row& row : rows) {
    answer = Carry(row.program, row.data, "", false, row.overlay);
    EXPECT_EQ(answer.code, *row.complaint == '\0' ? 0 : 2) << answer.error;
    EXPECT_NE(answer.error.find(row.complaint), std::string::npos) << answer.error;
    EXPECT_EQ(answer.out.empty(), answer.code != 0);
    EXPECT_FALSE(std::filesystem::exists("x.svg") || HasLeftovers());
  }
}

}  // namespace
}  // namespace nuvhost
