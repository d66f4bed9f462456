#include "nuvhost/reference/entries.h"

#include <algorithm>

#include "nuvhost/reference/plain_text.h"
#include "nuvhost/text/words.h"

namespace nuvhost {
namespace {

/// Takes the first line off a text.
std::string_view TakeLine(std::string_view& text) {
  const std::size_t end = std::min(text.find('\n'), text.size());
  const std::string_view line = text.substr(0, end);
  text.remove_prefix(std::min(end + 1, text.size()));
  return line;
}

/// The identifier that a line such as "- `IDENTIFIER` 460113" begins with; empty for others.
std::string_view IdentifierOf(std::string_view line) {
  if (line.starts_with("- ")) line.remove_prefix(2);
  if (!line.starts_with('`')) return "";
  line.remove_prefix(1);
  const std::size_t end = line.find('`');
  if (end == std::string_view::npos) return "";
  const std::size_t help = line.find_first_not_of(' ', end + 1);
  if (help == std::string_view::npos || line[help] < '0' || line[help] > '9') return "";
  return line.substr(0, end);
}

Entry EntryOf(std::string_view file, std::string_view section) {
  Entry entry{file, TakeLine(section).substr(3), {}, section};
  while (!section.empty()) {
    const std::string_view line = TakeLine(section);
    const std::string_view identifier = IdentifierOf(line);
    if (!identifier.empty()) {
      entry.identifiers.push_back(identifier);
      entry.markdown = section;
    } else if (line.find_first_not_of(' ') != std::string_view::npos) {
      break;
    }
  }
  return entry;
}

std::vector<Entry> ReadEntries() {
  std::vector<Entry> entries;
  for (const Page& page : Pages()) {
    for (const std::string_view section : page.sections) {
      if (section.starts_with("## ")) entries.push_back(EntryOf(page.file, section));
    }
  }
  return entries;
}

bool IsWordSign(char c) {
  return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_' || c == '-' ||
         static_cast<unsigned char>(c) >= 0x80;
}

}  // namespace

std::string Entry::Summary() const {
  std::string text = PlainParagraph(markdown);
  for (std::size_t end = 1; end <= text.size(); ++end) {
    const std::string_view sentence(text.data(), end);
    const bool is_end =
        sentence.ends_with('.') || sentence.ends_with('!') || sentence.ends_with('?');
    const bool is_short = sentence.ends_with("e.g.") || sentence.ends_with("i.e.");
    if (is_end && !is_short && (end == text.size() || text[end] == ' ')) {
      return std::string(sentence);
    }
  }
  return text;
}

std::string Entry::SilentFailure() const {
  constexpr std::string_view kMark = "**Fails** without a message ";
  const std::size_t at = markdown.find(kMark);
  if (at == std::string_view::npos) return "";
  const std::string text = PlainParagraph(markdown.substr(at + kMark.size()));
  return text.substr(0, std::min(text.find(". "), text.size() - 1));
}

std::string Entry::HelpFile() const {
  std::string anchor;
  for (const char c : LowerCase(heading)) {
    if (c == ' ') {
      anchor += '-';
    } else if (IsWordSign(c)) {
      anchor += c;
    }
  }
  return "docs/instructions/" + std::string(file) + '#' + anchor;
}

const Entry* FindEntry(std::string_view identifier) {
  static const std::vector<Entry> kEntries = ReadEntries();
  for (const Entry& entry : kEntries) {
    if (std::ranges::find(entry.identifiers, identifier) != entry.identifiers.end()) return &entry;
  }
  return nullptr;
}

}  // namespace nuvhost
