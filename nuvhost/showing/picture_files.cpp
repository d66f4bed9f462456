#include "nuvhost/showing/picture_files.h"

#include <unordered_set>

#include "nuvhost/drawing/svg_picture.h"
#include "nuvhost/error.h"
#include "nuvhost/reading/source_text.h"
#include "nuvhost/system/input_file.h"
#include "nuvhost/system/output_file.h"

namespace nuvhost {
namespace {

constexpr const char* kPicture = "the picture";
constexpr std::string_view kEnding = ".svg";

}  // namespace

Annotations AnnotationsOf(const RunOutcome& run) {
  Annotations annotations;
  for (const StepOutcome& step : run.steps) {
    for (const Annotation& annotation : step.record.annotations) annotations.push_back(&annotation);
  }
  return annotations;
}

namespace {

std::optional<Image> ImageFrom(const std::string& name, std::string& reason) {
  std::optional<std::string> bytes = ReadBytes(name, reason);
  if (!bytes) return std::nullopt;
  return ReadImage(std::move(*bytes), reason);
}

}  // namespace

std::optional<Image> LoadImage(const Program& program, Mistakes& mistakes) {
  if (program.image.empty() || HoldsPart(program.image)) return std::nullopt;
  std::string reason;
  const std::string name = BesideProgram(program.source.Name(), program.image);
  std::optional<Image> image = ImageFrom(name, reason);
  if (!image) {
    mistakes.Add(program.source, program.image_offset,
                 fmt::format("cannot take the image \"{}\": {}", name, reason));
  }
  return image;
}

std::string PictureName(const std::string& name, const RunPlan& plan, std::size_t run) {
  if (plan.Size() == 1) return name;
  return name.substr(0, name.size() - kEnding.size()) + '-' + plan.ShortName(run) +
         std::string(kEnding);
}

void CheckPictureNames(const std::string& name, const RunPlan& plan) {
  if (!name.ends_with(kEnding)) {
    throw UserError("--overlay {}: the file's name must end in .svg", name);
  }
  std::unordered_set<std::string> known;
  for (std::size_t run = 0; run < plan.Size(); ++run) {
    const std::string picture = PictureName(name, plan, run);
    if (known.insert(picture).second) continue;
    throw UserError(
        "--overlay {}: more than one data file or part is named \"{}\", and each would be drawn to "
        "{}; run them one by one",
        name, plan.ShortName(run), picture);
  }
}

PictureFiles::PictureFiles(const Program& program, const RunPlan& plan,
                           const std::optional<Image>& image, std::string name, Progress& progress)
    : program_(program), plan_(plan), image_(image), name_(std::move(name)), progress_(progress) {
  const OutputFile trial(PictureName(name_, plan_, 0), kPicture);
}

/// Writes the run's picture. One that cannot be drawn or written loses nothing of the other runs.
void PictureFiles::RunEnded(std::size_t run, const RunOutcome& outcome) {
  if (outcome.state == RunOutcome::State::kUnreadable) return;
  if (!plan_.HasImages()) return Draw(run, outcome, image_);
  std::string reason;
  const std::optional<Image> image = ImageFrom(plan_.Image(run), reason);
  if (image) return Draw(run, outcome, image);
  progress_.Complain(fmt::format("{}: no picture, since the image {} cannot be taken: {}",
                                 plan_.Name(run), plan_.Image(run), reason));
  exit_code_ = kExitWrongCall;
}

void PictureFiles::Draw(std::size_t run, const RunOutcome& outcome,
                        const std::optional<Image>& image) {
  const std::string name = PictureName(name_, plan_, run);
  const SvgPicture picture =
      DrawSvg(AnnotationsOf(outcome), image, program_.settings.default_color);
  try {
    OutputFile file(name, kPicture);
    file.Write(picture.svg);
    file.Finish();
  } catch (const UserError& error) {
    progress_.Complain(error.what());
    exit_code_ = kExitWrongCall;
  }
  if (picture.left_out == 0) return;
  progress_.Complain(fmt::format(
      "{}: left out {}{} with numbers that are not finite or beyond 1e9", name, picture.left_out,
      picture.left_out == 1 ? " figure or point" : " figures or points"));
}

}  // namespace nuvhost
