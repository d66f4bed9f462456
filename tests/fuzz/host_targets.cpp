// The reference host's readers and its pictures, each over one text or drawing.

#include <algorithm>
#include <string>
#include <vector>

#include "host/setting.h"
#include "nuvhost/commands/exec_session.h"
#include "nuvhost/drawing/svg_picture.h"
#include "nuvhost/reading/csv.h"
#include "nuvhost/reading/data.h"
#include "nuvhost/reading/json_table.h"
#include "nuvhost/running/step_runner.h"
#include "tests/fuzz/targets.h"
#include "tests/fuzz/values.h"

namespace fuzz {
namespace {

constexpr std::size_t kMostElements = 1 << 16;

/// Asks a table for all that a program could ask it for.
void ReadColumns(const nuvhost::DataTable& table, nuvhost::Mistakes& mistakes) {
  const nuvhost::ChosenRows rows(table.Rows());
  for (std::size_t column = 0; column < std::min(table.Columns(), std::size_t{4}); ++column) {
    for (const std::uint32_t type : {NUV_PARAM_BOOLEAN_ARRAY, NUV_PARAM_NUMBER_ARRAY,
                                     NUV_PARAM_STRING_ARRAY, NUV_PARAM_POINT_ARRAY}) {
      std::vector<std::size_t> columns{column};
      if (type == NUV_PARAM_POINT_ARRAY) columns.push_back(table.Columns() - 1);
      nuvhost::Mistakes own;
      const CNuvObject array = table.Array(type, columns, rows, own);
      Require(!own.Empty() || array.GetType() == NuvValueType(type), "a column of another type");
    }
    table.WithoutBlankEnd(rows, {column});
    for (const nuvhost::Json& value : {nuvhost::Json(1), nuvhost::Json("a")}) {
      for (std::size_t row = 0; row < std::min(rows.Size(), std::size_t{8}); ++row) {
        table.Holds(row, column, value);
      }
    }
  }
  std::string reason;
  table.Find(std::string("a"), reason);
  Require(!table.DescribeColumns().empty(), "columns without a description");
  for (const std::string& mistake : mistakes.Listing()) Require(!mistake.empty(), "no mistake");
}

/// A text in which every letter is one that no number has.
std::string AnyLabel(Bytes& bytes) {
  std::string text = AnyText(bytes);
  std::ranges::replace_if(
      text, [](char c) { return c >= 'A' && c <= 'z'; }, 'x');
  return text;
}

nuvhost::Annotation AnyAnnotation(Bytes& bytes) {
  using namespace nuvhost;
  const auto point = [&] {
    const double x = AnyNumber(bytes);
    return CNuvPoint(x, AnyNumber(bytes));
  };
  const auto points = [&] {
    const CNuvObject value = AnyValue(bytes, NUV_OBJ_POINT_VECTOR);
    return static_cast<const CNuvPointVector&>(value);
  };
  const auto size = [&] { return AnyNumber(bytes); };
  Annotation drawn{std::nullopt, static_cast<std::uint32_t>(bytes.Next(3)), PointFigure{}};
  if (bytes.Flag()) drawn.label = AnyLabel(bytes);
  const bool fill = bytes.Flag();
  switch (bytes.Next() % 10) {
    case 0: drawn.figure = PointFigure{point()}; break;
    case 1: drawn.figure = SegmentFigure{point(), point()}; break;
    case 2: drawn.figure = LineFigure{CNuvLine(size(), size())}; break;
    case 3: drawn.figure = CircleFigure{CNuvCircle(size(), size(), size()), fill}; break;
    case 4: drawn.figure = CirclesFigure{points(), size(), fill}; break;
    case 5:
      drawn.figure = RectFigure{CNuvRect(size(), size(), size(), size(), size()), fill};
      break;
    case 6: drawn.figure = PointsFigure{points()}; break;
    case 7: drawn.figure = TextFigure{point(), AnyLabel(bytes), fill}; break;
    case 8: drawn.figure = PolylineFigure{points()}; break;
    default: drawn.figure = PixelsFigure{points()}; break;
  }
  return drawn;
}

}  // namespace

void AnswerRequest(Bytes bytes) {
  CNuvSetting::Inst().SetVectorLimit(kMostElements);
  nuvhost::ExecSession session(HarmlessInstructions());
  const std::string answer = session.Answer(bytes.Rest());
  Require(nuvhost::Json::accept(answer), "an answer that is no JSON");
  Require(answer.find('\n') == answer.npos, "an answer of several lines");
}

void RunProgram(Bytes bytes) {
  nuvhost::Mistakes mistakes;
  nuvhost::Program program =
      ReadProgram(HarmlessInstructions(), {"program.json", bytes.Rest()}, mistakes);
  for (const std::string& mistake : mistakes.Listing()) Require(!mistake.empty(), "no mistake");
  if (!mistakes.Empty() || !program.data.empty()) return;
  program.settings.max_array_elements = kMostElements;
  nuvhost::Services services;
  const nuvhost::RunOutcome run =
      RunSteps(program, {}, true, services, [](std::size_t, const nuvhost::StepOutcome&) {});
  Require(run.steps.size() == program.steps.size(), "a step without an outcome");
}

void ReadCsv(Bytes bytes) {
  const std::uint8_t how = bytes.Next();
  nuvhost::Mistakes mistakes;
  const auto table =
      nuvhost::CsvTable::Read({"data.csv", bytes.Rest()}, mistakes,
                              {.decimal = how % 2 == 0 ? '.' : ',', .allow_empty = how % 4 > 1});
  Require(table.has_value() == mistakes.Empty(), "neither a table nor a mistake");
  if (table) ReadColumns(*table, mistakes);
}

void ReadJson(Bytes bytes) {
  nuvhost::Mistakes mistakes;
  const auto table = nuvhost::JsonTable::Read({"data.json", bytes.Rest()}, mistakes);
  // A member that is given twice is a mistake and leaves a value.
  Require(table != nullptr || !mistakes.Empty(), "neither a value nor a mistake");
  if (table != nullptr && table->IsTable()) ReadColumns(*table, mistakes);
}

void ReadHeader(Bytes bytes) {
  std::string reason;
  const auto image = nuvhost::ReadImage(bytes.Rest(), reason);
  Require(image.has_value() == reason.empty(), "neither an image nor a reason");
  if (image) Require(image->width > 0 && image->height > 0, "an image without pixels");
}

// What is drawn has a size, and each of its numbers is one. Texts and fonts, which stand in the
// picture, too, have no letters.
void DrawOverlay(Bytes bytes) {
  std::vector<nuvhost::Annotation> drawn;
  for (std::size_t count = bytes.Below(8); count > 0; --count) {
    drawn.push_back(AnyAnnotation(bytes));
  }
  nuvhost::Annotations annotations;
  for (const nuvhost::Annotation& one : drawn) annotations.push_back(&one);
  std::optional<nuvhost::Image> image;
  if (bytes.Next() % 4 == 0) {
    image = nuvhost::Image{"bytes", "image/png", 1 + static_cast<std::uint32_t>(bytes.Next(2)),
                           1 + static_cast<std::uint32_t>(bytes.Next(2))};
  }
  const std::string svg = DrawSvg(annotations, image, 0).svg;
  for (const char* wrong : {"nan", "inf", " width=\"0\"", " height=\"0\"", "font-size=\"0\"",
                            "=\"\"", "width=\"-", "height=\"-", " r=\"-"}) {
    const std::size_t at = svg.find(wrong);
    if (at != svg.npos) Require(false, "in a picture: " + svg.substr(at < 60 ? 0 : at - 60, 90));
  }
}

}  // namespace fuzz
