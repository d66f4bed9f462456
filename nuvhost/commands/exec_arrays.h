// Arrays that calls of `nuvhost exec` hand over in files, as docs/exec.md tells: their elements as
// the machine holds them, where JSON would cost more than the calls themselves.
#pragma once

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>

#include "nuvhost/values/json_value.h"

namespace nuvhost {

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using OpenFile = std::unique_ptr<std::FILE, CloseFile>;

/// Whether arrays of this parameter type may stand in files: all but those of texts.
bool MayStandInFile(std::uint32_t parameter_type);

/// The array that {"file", "offset", "count"} tells; throws ValueError where it is not there.
CNuvObject ArrayFromFile(const Json& json, std::uint32_t parameter_type);

/// The file that takes the large arrays among a call's results, one behind the other.
class ArrayFile {
 public:
  /// Throws ValueError for any other than an existing regular file.
  explicit ArrayFile(const std::string& name);

  /// A value as JSON: {"file", "offset", "count"} for an array that went into the file, and what
  /// it is where it is small, of texts or finds no room there.
  Json Take(const CNuvObject& value);

 private:
  std::string name_;
  OpenFile file_;
  std::uint64_t size_ = 0;
};

}  // namespace nuvhost
