#include "nuvhost/showing/picture_files.h"

#include <algorithm>

#include "nuvhost/drawing/svg_picture.h"
#include "nuvhost/error.h"
#include "nuvhost/reading/source_text.h"
#include "nuvhost/system/input_file.h"
#include "nuvhost/system/output_file.h"
#include "nuvhost/system/paths.h"
#include "nuvhost/text/names.h"

namespace nuvhost {
namespace {

constexpr const char* kPicture = "the picture";

}  // namespace

Annotations AnnotationsOf(const RunOutcome& run) {
  Annotations annotations;
  for (const StepOutcome& step : run.steps) {
    for (const Annotation& annotation : step.record.annotations) annotations.push_back(&annotation);
  }
  return annotations;
}

std::optional<Image> LoadImage(const Program& program, Mistakes& mistakes) {
  if (program.image.empty()) return std::nullopt;
  const std::string name = BesideProgram(program.source.Name(), program.image);
  std::string reason;
  std::optional<std::string> bytes = ReadBytes(name, reason);
  std::optional<Image> image;
  if (bytes) image = ReadImage(std::move(*bytes), reason);
  if (!image) {
    mistakes.Add(program.source, program.image_offset,
                 fmt::format("cannot take the image \"{}\": {}", name, reason));
  }
  return image;
}

std::vector<std::string> PictureNames(const std::string& name,
                                      const std::vector<PlannedRun>& runs) {
  constexpr std::string_view kEnding = ".svg";
  if (!name.ends_with(kEnding)) {
    throw UserError("--overlay {}: the file's name must end in .svg", name);
  }
  if (runs.size() == 1) return {name};
  const std::string beginning = name.substr(0, name.size() - kEnding.size());
  std::vector<std::string> names;
  for (const PlannedRun& run : runs) {
    const std::string data = ToUtf8(PathFromUtf8(run.file).stem());
    names.push_back(beginning + '-' + data + std::string(kEnding));
    if (std::ranges::count(names, names.back()) > 1) {
      throw UserError(
          "--overlay {}: more than one data file is named \"{}\", and each would be drawn to {}; "
          "run them one by one",
          name, data, names.back());
    }
  }
  return names;
}

PictureFiles::PictureFiles(const Program& program, const std::optional<Image>& image,
                           std::vector<std::string> names, Progress& progress)
    : program_(program), image_(image), names_(std::move(names)), progress_(progress) {
  const OutputFile trial(names_.front(), kPicture);
}

/// Writes the run's picture. One that cannot be written loses nothing of the other runs.
void PictureFiles::RunEnded(std::size_t run, const RunOutcome& outcome) {
  if (outcome.state == RunOutcome::State::kUnreadable) return;
  const std::string& name = names_[run];
  const SvgPicture picture =
      DrawSvg(AnnotationsOf(outcome), image_, program_.settings.default_color);
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
