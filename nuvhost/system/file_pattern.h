// File patterns: names with wildcards, which some shells expand and others hand on as they are.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace nuvhost {

/// Whether a name has a wildcard: `*` for any characters, `?` for one.
bool HasWildcard(std::string_view name);

struct FoundPath {
  std::string path;
  bool is_file;  ///< a regular one
};

/// The files and folders whose paths a pattern fits, in natural order. A wildcard stands for no
/// separator of paths, and for no dot at the beginning of a name.
std::vector<FoundPath> FilesMatching(const std::string& pattern);

/// Whether one name comes before another in natural order: runs of digits compare by the number
/// that they are, all else by bytes. p2 comes before p10.
bool NaturallyLess(std::string_view a, std::string_view b);

}  // namespace nuvhost
