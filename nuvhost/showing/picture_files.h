// PictureFiles: what each run drew, as an SVG file over the program's image.
#pragma once

#include <string>
#include <vector>

#include "nuvhost/drawing/image.h"
#include "nuvhost/drawing/view.h"
#include "nuvhost/error.h"
#include "nuvhost/reading/source_text.h"
#include "nuvhost/running/run_observer.h"
#include "nuvhost/running/run_plan.h"
#include "nuvhost/system/progress.h"

namespace nuvhost {

/// All that the steps of a run drew.
Annotations AnnotationsOf(const RunOutcome& run);

/// The program's image; nothing where it names none or one for each part, and after a mistake.
std::optional<Image> LoadImage(const Program& program, Mistakes& mistakes);

/// Where a run's picture goes: for one run to the name itself, for several to OUT-NAME.svg for
/// OUT.svg.
std::string PictureName(const std::string& name, const RunPlan& plan, std::size_t run);
/// Throws UserError for a name that does not end in .svg, and where two runs would write one file.
void CheckPictureNames(const std::string& name, const RunPlan& plan);

/// It refers to what it is given, but for the name.
class PictureFiles final : public RunObserver {
 public:
  /// Throws UserError where the first file cannot be written; they all go to one folder.
  PictureFiles(const Program& program, const RunPlan& plan, const std::optional<Image>& image,
               std::string name, Progress& progress);

  void RunEnded(std::size_t run, const RunOutcome& outcome) override;
  int Finish() override { return exit_code_; }

 private:
  void Draw(std::size_t run, const RunOutcome& outcome, const std::optional<Image>& image);

  const Program& program_;
  const RunPlan& plan_;
  const std::optional<Image>& image_;
  std::string name_;
  Progress& progress_;
  int exit_code_ = kExitSuccess;
};

}  // namespace nuvhost
