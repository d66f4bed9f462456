// SourceText: a text file that a person wrote, and the mistakes found in it by line and column.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace nuvhost {

inline constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

/// A file's text without a byte order mark, and the name under which its mistakes are reported.
class SourceText {
 public:
  SourceText(std::string name, std::string text);

  const std::string& Name() const { return name_; }
  std::string_view Text() const { return text_; }
  /// What stands from `offset`, the beginning of a line, on is told as if in line `line`, where
  /// the text leaves out some of its file.
  void MoveDown(std::size_t offset, std::size_t line);
  /// "NAME:LINE:COLUMN" of a byte; both count from 1, the column in characters.
  std::string Place(std::size_t offset) const;

 private:
  const std::vector<std::size_t>& Lines() const;

  std::string name_;
  std::string text_;
  mutable std::vector<std::size_t> lines_;  ///< where each begins, once a place was asked for
  // The last place that was asked for, so that many in one long line are found in one pass.
  mutable std::size_t last_offset_ = 0;
  mutable std::size_t last_column_ = 0;
  std::size_t moved_from_ = std::string::npos;
  std::size_t moved_by_ = 0;
};

/// The text of the file of that name in UTF-8; nothing, and the reason in words, where it cannot
/// be read.
std::optional<SourceText> ReadSource(const std::string& name, std::string& reason);

/// All that is wrong with the files of a run, so that one look shows everything.
class Mistakes {
 public:
  void Add(const SourceText& source, std::size_t offset, const std::string& text);
  /// A mistake of the file as a whole.
  void Add(const std::string& file, const std::string& text);

  bool Empty() const { return found_.empty(); }
  /// One text for each mistake, in the order of their places within a file; a great many are cut
  /// short, and the last text tells how many there were.
  std::vector<std::string> Listing() const;

 private:
  struct Mistake {
    std::size_t file;  ///< in the order in which files were first found wrong
    std::size_t offset;
    std::string text;  ///< with the place in front
    bool operator==(const Mistake&) const = default;
  };

  void Add(const std::string& file, std::size_t offset, std::string text);

  std::vector<std::string> files_;
  std::vector<Mistake> found_;
};

/// Whether a file holds text that can be read on; else a mistake says why not. Zero bytes and a
/// byte order mark behind the first, which readers take in many ways, are none.
bool IsText(const SourceText& source, Mistakes& mistakes);

}  // namespace nuvhost
