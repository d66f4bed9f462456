#include "nuvhost/system/output_file.h"

#include <cerrno>
#include <fstream>
#include <random>
#include <utility>

#include "host/setting.h"
#include "nuvhost/error.h"
#include "nuvhost/system/paths.h"

namespace nuvhost {
namespace {

namespace fs = std::filesystem;

/// Of an absolute name: a change of the current folder leads it nowhere else.
fs::path PathOf(const std::string& name) {
  const fs::path path = PathFromUtf8(name);
  std::error_code error;
  const fs::path absolute = fs::absolute(path, error);
  return Resolved(error ? path : absolute);
}

/// A name that nobody else thinks of.
std::string PartName() {
  constexpr char kDigits[] = "0123456789abcdef";
  std::random_device random;
  std::string name = "nuvhost-";
  for (int i = 0; i < 16; ++i) name += kDigits[random() % 16];
  return name + ".part";
}

std::optional<Identity> FutureIdentityOf(const fs::path& path) {
  std::optional<Identity> identity = IdentityOf(path);
  if (identity) return identity;
  identity = IdentityOf(path.parent_path());
  if (identity) identity->name = FoldedName(path);
  return identity;
}

[[noreturn]] void FailOverwriting(const NamedFile& written, const NamedFile& other) {
  throw UserError("{} {} would overwrite {} {}: they are one file; write to another", written.role,
                  written.name, other.role, other.name);
}

}  // namespace

OutputFile::OutputFile(const std::string& name, const std::string& what)
    : complaint_(fmt::format("cannot write {} to {}", what, name)), path_(PathOf(name)) {
  const Existing existing = Look(path_);
  if (existing.refusal != nullptr) Fail(existing.refusal);
  part_ = path_.parent_path() / PartName();
  RemoveOnSignal(&part_);
  file_ = Create(part_, existing);
  if (file_ != nullptr) return;
  const std::string reason = LastError().message();
  KeepOnSignal(&part_);
  Fail(reason);
}

OutputFile::~OutputFile() {
  if (file_ != nullptr) {
    std::fclose(file_);
    std::error_code ignored;
    fs::remove(part_, ignored);
  }
  KeepOnSignal(&part_);
}

void OutputFile::Write(std::string_view text) {
  if (error_ || std::fwrite(text.data(), 1, text.size(), file_) == text.size()) return;
  error_ = {errno, std::generic_category()};
}

void OutputFile::Finish() {
  if (!error_ && !ReachesDisk(file_)) error_ = {errno, std::generic_category()};
  if (std::fclose(std::exchange(file_, nullptr)) != 0 && !error_) {
    error_ = {errno, std::generic_category()};
  }
  if (!error_ && !Replace(part_, path_)) error_ = LastError();
  if (!error_) {
    KeepOnSignal(&part_);
    return;
  }
  std::error_code ignored;
  fs::remove(part_, ignored);
  Fail(error_.message());
}

void OutputFile::Fail(const std::string& reason) const {
  throw UserError(complaint_ + ": " + reason);
}

void WrittenFiles::Add(const NamedFile& written) {
  if (written.name.empty()) return;
  const auto identity = FutureIdentityOf(PathOf(written.name));
  if (!identity) return;
  const auto [other, is_new] = files_.emplace(*identity, written);
  if (!is_new) FailOverwriting(written, other->second);
}

void WrittenFiles::CheckRead(const NamedFile& read) const {
  if (read.name.empty() || files_.empty()) return;
  std::optional<Identity> identity = IdentityOf(PathFromUtf8(read.name));
  // What is not there yet is known by where it will be.
  if (!identity) identity = FutureIdentityOf(PathOf(read.name));
  const auto written = identity ? files_.find(*identity) : files_.end();
  if (written != files_.end()) FailOverwriting(written->second, read);
}

void UseLogFile(const std::string& name) {
  if (name.empty()) return;
  if (!std::ofstream(PathFromUtf8(name), std::ios::app)) {
    throw UserError("cannot write the log file " + name);
  }
  CNuvSetting::Inst().SetLogFile(name);
}

}  // namespace nuvhost
