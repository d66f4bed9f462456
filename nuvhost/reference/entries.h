// Entries: what the pages of docs/instructions tell of the instructions. They are Markdown; a
// section begins with its heading and the identifiers of the instructions that it is about.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace nuvhost {

/// A file of docs/instructions, cut before each second-level heading.
struct Page {
  std::string_view file;
  std::span<const std::string_view> sections;
};

std::span<const Page> Pages();

/// One section.
struct Entry {
  std::string_view file;
  std::string_view heading;
  std::vector<std::string_view> identifiers;
  std::string_view markdown;  ///< below the identifiers

  /// The first sentence, without marks.
  std::string Summary() const;
  /// When the instruction fails without a message: "where the array is empty". Empty where it
  /// never does.
  std::string SilentFailure() const;
  /// Where it stands: "docs/instructions/numeric.md#integer-divide".
  std::string HelpFile() const;
};

/// The entry of the instruction with this identifier; null where there is none.
const Entry* FindEntry(std::string_view identifier);

}  // namespace nuvhost
