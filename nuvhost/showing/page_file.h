// PageFile: the report page of a run.
#pragma once

#include <memory>
#include <string>

#include "nuvhost/drawing/image.h"
#include "nuvhost/library/catalogue.h"
#include "nuvhost/running/run_observer.h"
#include "nuvhost/showing/page_data.h"
#include "nuvhost/system/output_file.h"

namespace nuvhost {

/// The file of a page. Throws UserError for a name that does not end in .html, and where the file
/// cannot be written.
std::unique_ptr<OutputFile> OpenPage(const std::string& name);

/// It appears under its name once it is whole. It refers to the program, the catalogue, which
/// computes its statistics, and the image.
class PageFile final : public RunObserver {
 public:
  /// Throws what OpenPage throws.
  PageFile(const std::string& name, const Program& program, const Catalogue& catalogue,
           const std::optional<Image>& image);

  void RunEnded(std::size_t run, const RunOutcome& outcome) override;
  /// Throws UserError where anything of the file could not be written.
  int Finish() override;

 private:
  const Program& program_;
  const Catalogue& catalogue_;
  const std::optional<Image>& image_;
  std::unique_ptr<OutputFile> file_;
  PageData page_;
  std::size_t pictures_ = 0;
};

/// What a run gave for each of the program's characteristics: its rows with limits.
std::vector<PartValue> ValuesOf(const Program& program, const RunOutcome& run);
std::vector<Characteristic> CharacteristicsOf(const Program& program);

}  // namespace nuvhost
