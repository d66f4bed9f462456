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
  Answer answer = Captured([&] {
    return RunChecked(BuiltCatalogue(), program, {"p.json", {}, "o.json", false});
  });
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
            "                        line    a 28.6478897565412, d -0.0\n"
            "                                1 annotation\n");
  const Json step = Json::parse(Read("o.json"))["runs"][0]["steps"][0];
  EXPECT_EQ(step["results"][0]["value"].size(), 6u);
  EXPECT_EQ(step["results"][1], Json::parse(R"({"name": "text", "value": "a \"b\",\né"})"));
  EXPECT_EQ(step["annotations"][0]["op"], "point");
  EXPECT_EQ(step["events"][0]["value"], -5);
  EXPECT_EQ(step["messages"].size(), 2u);
  EXPECT_EQ(step["log"][0]["text"], "two\nlines");

  answer = Captured([&] {
    return RunChecked(BuiltCatalogue(), program, {"p.json", {}, "o.csv", false});
  });
  EXPECT_EQ(Read("o.csv"),
            "part,status,it.text,it.line.a,it.line.d\n"
            "p.json,ok,\"a \"\"b\"\",\n\xC3\xA9\",0.5,-0.0\n");

  noisy.status_ = Status::kFailure;
  answer = Captured([&] {
    return RunChecked(BuiltCatalogue(), program, {"p.json", {}, "", false});
  });
  EXPECT_EQ(answer.code, 1);
  EXPECT_EQ(answer.error, told + "Noisy: caf\xC3\xA9\n");
  EXPECT_EQ(Captured([&] {
              return RunChecked(BuiltCatalogue(), program, {"p.json", {}, "", false, "o.svg"});
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

  // An image for each part, of another size.
  Write("parts.json", with_image("{part}.png"));
  for (const char* part : {"a", "b"}) {
    Write(std::string(part) + ".csv", "1\n");
    Write(std::string(part) + ".png", std::string(png).replace(19, 1, part));
  }
  answer = Captured([&] {
    return RunProgram(BuiltCatalogue(), {.program = "parts.json",
                                         .data = {"n={part}.csv"},
                                         .overlay = "parts.svg",
                                         .parts = {"?.png", "gone"}});
  });
  EXPECT_EQ(answer.code, 2) << answer.error;
  EXPECT_NE(Read("parts-a.svg").find("viewBox=\"0 0 97 7\""), std::string::npos);
  EXPECT_NE(Read("parts-b.svg").find("viewBox=\"0 0 98 7\""), std::string::npos);
  EXPECT_FALSE(std::filesystem::exists("parts-gone.svg"));

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
