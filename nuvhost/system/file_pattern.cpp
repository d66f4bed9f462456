#include "nuvhost/system/file_pattern.h"

#include <algorithm>
#include <filesystem>

#include "nuvhost/system/paths.h"

namespace nuvhost {
namespace {

#if defined(_WIN32)
constexpr std::string_view kSeparators = "/\\";
#else
constexpr std::string_view kSeparators = "/";
#endif

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

/// The run of digits at the beginning, without zeros in front.
std::string_view Digits(std::string_view text) {
  const auto end = std::ranges::find_if_not(text, IsDigit);
  text = text.substr(0, static_cast<std::size_t>(end - text.begin()));
  return text.substr(std::min(text.find_first_not_of('0'), text.size()));
}

void SkipDigits(std::string_view& text) {
  while (!text.empty() && IsDigit(text[0])) text.remove_prefix(1);
}

/// The bytes of the character that a text begins with.
std::size_t FirstCharacter(std::string_view text) {
  std::size_t size = 1;
  while (size < text.size() && (static_cast<unsigned char>(text[size]) & 0xC0) == 0x80) ++size;
  return size;
}

/// Goes back to the last `*` alone, which is enough: what an earlier one could take, it can.
bool Fits(std::string_view name, std::string_view pattern) {
  if (name.starts_with('.') && !pattern.starts_with('.')) return false;
  std::string_view retry_name;
  std::string_view retry_pattern;
  bool has_star = false;
  while (true) {
    if (pattern.starts_with('*')) {
      pattern.remove_prefix(1);
      retry_name = name;
      retry_pattern = pattern;
      has_star = true;
    } else if (!name.empty() && pattern.starts_with('?')) {
      name.remove_prefix(FirstCharacter(name));
      pattern.remove_prefix(1);
    } else if (!name.empty() && pattern.starts_with(name[0])) {
      name.remove_prefix(1);
      pattern.remove_prefix(1);
    } else if (name.empty() && pattern.empty()) {
      return true;
    } else if (has_star && !retry_name.empty()) {
      retry_name.remove_prefix(FirstCharacter(retry_name));
      name = retry_name;
      pattern = retry_pattern;
    } else {
      return false;
    }
  }
}

/// Adds the paths that begin as `folder`, a path with its separator or nothing, and go on as the
/// pattern.
void Expand(const std::string& folder, std::string_view pattern, std::vector<FoundPath>& found) {
  namespace fs = std::filesystem;
  const std::size_t end = std::min(pattern.find_first_of(kSeparators), pattern.size());
  const std::size_t next = std::min(pattern.find_first_not_of(kSeparators, end), pattern.size());
  const std::string_view name = pattern.substr(0, end);
  const std::string_view separator = pattern.substr(end, next - end);
  const std::string_view rest = pattern.substr(next);
  std::error_code error;
  const auto add = [&](const std::string& path, const fs::directory_entry& entry) {
    if (!rest.empty()) return Expand(path + std::string(separator), rest, found);
    const bool wants_folder = !separator.empty();
    if (wants_folder ? entry.is_directory(error) : entry.exists(error)) {
      found.push_back({path, entry.is_regular_file(error)});
    }
  };
  if (!HasWildcard(name)) {
    const std::string path = folder + std::string(name);
    return add(path, fs::directory_entry(PathFromUtf8(path), error));
  }
  fs::directory_iterator entry(PathFromUtf8(folder.empty() ? "." : folder), error);
  for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
    const std::string entry_name = ToUtf8(entry->path().filename());
    if (Fits(entry_name, name)) add(folder + entry_name, *entry);
  }
}

}  // namespace

bool HasWildcard(std::string_view name) {
  return name.find_first_of("*?") != std::string_view::npos;
}

std::vector<FoundPath> FilesMatching(const std::string& pattern) {
  std::vector<FoundPath> found;
  const std::size_t root = std::min(pattern.find_first_not_of(kSeparators), pattern.size());
  Expand(pattern.substr(0, root), std::string_view(pattern).substr(root), found);
  std::ranges::sort(found, NaturallyLess, &FoundPath::path);
  return found;
}

bool NaturallyLess(std::string_view a, std::string_view b) {
  const std::string_view whole_a = a;
  const std::string_view whole_b = b;
  while (!a.empty() && !b.empty()) {
    if (IsDigit(a[0]) && IsDigit(b[0])) {
      const std::string_view digits_a = Digits(a);
      const std::string_view digits_b = Digits(b);
      if (digits_a.size() != digits_b.size()) return digits_a.size() < digits_b.size();
      if (digits_a != digits_b) return digits_a < digits_b;
      SkipDigits(a);
      SkipDigits(b);
    } else if (a[0] != b[0]) {
      return static_cast<unsigned char>(a[0]) < static_cast<unsigned char>(b[0]);
    } else {
      a.remove_prefix(1);
      b.remove_prefix(1);
    }
  }
  if (a.empty() != b.empty()) return a.empty();
  return whole_a < whole_b;
}

}  // namespace nuvhost
