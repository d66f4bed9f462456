#include "reference_host/nuvhost/run/output_file.h"

#include "reference_host/nuvhost/error.h"
#include "reference_host/nuvhost/plugin_library.h"

namespace nuvhost {

OutputFile::OutputFile(const std::string& name, const std::string& what)
    : complaint_("cannot write " + what + " to " + name),
      path_(PathFromUtf8(name)),
      part_(PathFromUtf8(name + ".part")),
      file_(part_, std::ios::binary) {
  if (!file_) throw UserError(complaint_);
}

OutputFile::~OutputFile() {
  if (!file_.is_open()) return;
  file_.close();
  std::error_code ignored;
  std::filesystem::remove(part_, ignored);
}

void OutputFile::Finish() {
  file_.close();
  std::error_code error;
  if (file_) std::filesystem::rename(part_, path_, error);
  if (file_ && !error) return;
  std::error_code ignored;
  std::filesystem::remove(part_, ignored);
  throw UserError(complaint_ + (error ? ": " + error.message() : ": the disk may be full"));
}

}  // namespace nuvhost
