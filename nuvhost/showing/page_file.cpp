#include "nuvhost/showing/page_file.h"

#include "nuvhost/drawing/svg_picture.h"
#include "nuvhost/error.h"
#include "nuvhost/showing/html_report.h"
#include "nuvhost/showing/page_statistics.h"
#include "nuvhost/showing/picture_files.h"

namespace nuvhost {

std::unique_ptr<OutputFile> OpenPage(const std::string& name) {
  if (name.ends_with(".html")) return std::make_unique<OutputFile>(name, "the report");
  throw UserError("--report {}: the file's name must end in .html", name);
}

std::vector<Characteristic> CharacteristicsOf(const Program& program) {
  std::vector<Characteristic> all;
  for (const ReportRow& row : program.report) {
    if (row.limits.Judge()) all.push_back({row.label, row.unit, row.decimals, row.limits});
  }
  return all;
}

std::vector<PartValue> ValuesOf(const Program& program, const RunOutcome& run) {
  std::vector<PartValue> values;
  for (const ReportRow& row : program.report) {
    if (!row.limits.Judge()) continue;
    PartValue& value = values.emplace_back();
    const std::optional<bool> holds = Judged(row, run);
    if (!holds) continue;
    const CNuvObject& result = run.steps[row.value.step].context->results[row.value.result];
    value.holds = *holds;
    value.number = row.limits.expected ? static_cast<double>(static_cast<bool>(result))
                                       : static_cast<double>(result);
  }
  return values;
}

PageFile::PageFile(const std::string& name, const Program& program, const Catalogue& catalogue,
                   const std::optional<Image>& image)
    : program_(program), catalogue_(catalogue), image_(image), file_(OpenPage(name)) {
  page_.title = program.title;
  page_.program = program.source.Name();
  page_.characteristics = CharacteristicsOf(program);
  page_.graph = GraphOf(program);
}

void PageFile::RunEnded(std::size_t /*run*/, const RunOutcome& outcome) {
  PartResult& part = page_.parts.emplace_back();
  part.name = outcome.file;
  part.state = outcome.state;
  part.errors = outcome.errors;
  part.values = ValuesOf(program_, outcome);
  static_assert(kMostPictures <= kMostShown);  // of further ones another process tells no drawings
  if (!PageData::IsNotGood(part) || pictures_ == kMostPictures) return;
  ++pictures_;
  const Annotations annotations = AnnotationsOf(outcome);
  if (annotations.empty()) return;
  part.picture = page_.Embedded(DrawSvg(annotations, image_, program_.settings.default_color).svg);
}

int PageFile::Finish() {
  Summarise(page_, catalogue_);
  file_->Write(ReportPage(page_));
  file_->Finish();
  return kExitSuccess;
}

}  // namespace nuvhost
