// The data of one run: read from the files that a program names, or from others in their place.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "nuvhost/reading/part_rows.h"
#include "nuvhost/reading/program.h"
#include "nuvhost/reading/source_text.h"

namespace nuvhost {

/// A file, or one part's rows of it.
struct DataFile {
  std::string name;
  std::optional<RowsOfPart> rows = std::nullopt;
};

/// A file in place of a datum's own, by the datum's position.
using Replacements = std::map<std::size_t, DataFile>;

/// The value of each of the program's uses of data. Mistakes leave values that are of no use.
std::vector<CNuvObject> LoadData(const Program& program, const Replacements& replacements,
                                 Mistakes& mistakes);

/// Whether a file's name in a program holds "{part}", for which each part's name stands.
bool HoldsPart(const std::string& file);
/// The file of one part: the name with the part's in place of "{part}". One that begins with it is
/// taken as on the command line, any other as written beside the program.
std::string FileOfPart(const std::string& program, const std::string& file,
                       const std::string& part);

/// A file's name as a program written beside it means it.
std::string BesideProgram(const std::string& program, const std::string& file);

}  // namespace nuvhost
