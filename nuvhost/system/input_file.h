// Files that are read as they are.
#pragma once

#include <cstddef>
#include <istream>
#include <optional>
#include <string>

namespace nuvhost {

/// Stands for standard input where a data file is named.
inline constexpr const char* kStandardInput = "-";

/// Whether there is a file of that name that can be opened; else the reason in words.
bool IsReadable(const std::string& name, std::string& reason);

/// Throws UserError where the stream of that name could not be opened, or was read in part alone.
void ExpectReadWell(const std::istream& stream, const std::string& name);

/// The bytes of the file of that name in UTF-8; nothing, and the reason in words, where it cannot
/// be read.
std::optional<std::string> ReadBytes(const std::string& name, std::string& reason);
/// The bytes of standard input, which can be read once.
std::optional<std::string> ReadStandardInput(std::string& reason);

/// No line that is a request or a record of JSON has more bytes.
inline constexpr std::size_t kLongestLine = std::size_t{1} << 28;

/// The next line without its end; false where there is none, or where the stream cannot be read,
/// which ExpectReadWell tells. Of one that has more than `longest` bytes the first are kept, one
/// more than that.
bool ReadLine(std::istream& stream, std::string& line, std::size_t longest = kLongestLine);

}  // namespace nuvhost
