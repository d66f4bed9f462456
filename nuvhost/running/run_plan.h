// The plan: the runs that a command line asks for, one for each part or data file.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "nuvhost/reading/data.h"
#include "nuvhost/reading/part_rows.h"
#include "nuvhost/system/output_file.h"

namespace nuvhost {

/// What the command line says of the runs.
struct RunWords {
  std::vector<std::string> data;   ///< FILE or NAME=FILE, in place of the program's own
  std::vector<std::string> parts;  ///< names, files and patterns of them
  std::string part_column;         ///< a column that tells the parts of one file apart
};

/// Of each run it keeps the name alone, so that there may be very many. It refers to the program.
class RunPlan {
 public:
  /// The runs over parts, over each FILE, one over all NAME=FILE together, or one over the
  /// program's own data. Throws UserError for words that do not fit the program or each other, for
  /// patterns that fit nothing and for a file of many parts that cannot be divided.
  RunPlan(const Program& program, const RunWords& words);

  std::size_t Size() const { return names_.size(); }
  /// Whether the runs are over parts or several data files.
  bool IsBatch() const { return is_of_parts_ || Size() > 1; }
  /// The name under which a run is reported: the part's, or the data file's.
  const std::string& Name(std::size_t run) const { return names_[run]; }
  /// The name's last part, without an ending that only data files have: fit for a file's name.
  std::string ShortName(std::size_t run) const;

  /// The files in place of the program's own.
  Replacements Files(std::size_t run) const;
  /// The file of the image; empty where the program has none.
  std::string Image(std::size_t run) const;
  /// Whether each run has an image of its own.
  bool HasImages() const { return is_of_parts_ && HoldsPart(program_.image); }

  /// Visits every file that the runs read.
  void VisitRead(const std::function<void(const NamedFile&)>& visit) const;

 private:
  void PlanFiles(const std::vector<std::string>& words);
  void PlanParts(const RunWords& words);
  void PlanPartRows(const RunWords& words);
  /// Takes NAME=FILE words.
  void Replace(const std::vector<std::string>& words);

  const Program& program_;
  std::vector<std::string> names_;
  bool is_of_files_ = false;  ///< each name is the file of the one datum
  bool is_of_parts_ = false;  ///< each name stands for "{part}"
  Replacements fixed_;        ///< the same for all runs
  std::optional<PartRows> rows_;
  std::size_t divided_ = 0;  ///< the datum whose file holds these rows
};

}  // namespace nuvhost
