#include "nuvhost/system/stream_file.h"

#include <cerrno>
#include <filesystem>
#include <utility>

#include "nuvhost/error.h"
#include "nuvhost/system/paths.h"
#include "nuvhost/system/system_file.h"

namespace nuvhost {

StreamFile::StreamFile(const std::string& name, const std::string& what, Mode mode,
                       std::uint64_t kept)
    : complaint_(fmt::format("cannot write {} to {}", what, name)) {
  const std::filesystem::path path = Resolved(PathFromUtf8(name));
  const Existing existing = Look(path);
  if (existing.refusal != nullptr) Fail(existing.refusal);
  std::error_code error;
  if (existing.exists && mode == Mode::kNew && std::filesystem::file_size(path, error) > 0) {
    Fail(
        "there is a file of that name; --resume goes on behind what it holds, --overwrite loses "
        "it");
  }
  if (existing.exists) std::filesystem::resize_file(path, kept, error);
  if (error) Fail(error.message());
  file_ = Append(path);
  if (file_ == nullptr) Fail(std::error_code(errno, std::generic_category()).message());
}

StreamFile::~StreamFile() {
  if (file_ != nullptr) std::fclose(file_);
}

void StreamFile::Write(std::string_view line) {
  if (error_) return;
  if (std::fwrite(line.data(), 1, line.size(), file_) == line.size() && std::fflush(file_) == 0) {
    return;
  }
  error_ = {errno, std::generic_category()};
}

void StreamFile::Finish() {
  if (std::fclose(std::exchange(file_, nullptr)) != 0 && !error_) {
    error_ = {errno, std::generic_category()};
  }
  if (error_) Fail(error_.message());
}

void StreamFile::Fail(const std::string& reason) const {
  throw UserError(complaint_ + ": " + reason);
}

}  // namespace nuvhost
