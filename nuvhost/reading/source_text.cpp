#include "nuvhost/reading/source_text.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <tuple>

#include "nuvhost/system/input_file.h"
#include "nuvhost/text/utf8.h"

namespace nuvhost {
namespace {

constexpr std::size_t kMostShown = 100;

}  // namespace

SourceText::SourceText(std::string name, std::string text)
    : name_(std::move(name)), text_(std::move(text)) {
  if (text_.starts_with(kByteOrderMark)) text_.erase(0, kByteOrderMark.size());
}

const std::vector<std::size_t>& SourceText::Lines() const {
  if (!lines_.empty()) return lines_;
  lines_.push_back(0);
  for (std::size_t end = 0; (end = text_.find('\n', end)) != std::string::npos;) {
    lines_.push_back(++end);
  }
  return lines_;
}

void SourceText::MoveDown(std::size_t offset, std::size_t line) {
  const auto own = std::ranges::count(Text().substr(0, offset), '\n') + 1;
  moved_from_ = offset;
  moved_by_ = line - static_cast<std::size_t>(own);
}

std::string SourceText::Place(std::size_t offset) const {
  const auto next_line = std::ranges::upper_bound(Lines(), offset);
  const std::size_t begin = *std::prev(next_line);
  if (last_offset_ < begin || last_offset_ > offset) {
    last_offset_ = begin;
    last_column_ = 0;
  }
  last_column_ += Width(Text().substr(last_offset_, offset - last_offset_));
  last_offset_ = offset;
  const std::size_t moved = offset < moved_from_ ? 0 : moved_by_;
  return name_ + ':' +
         std::to_string(static_cast<std::size_t>(next_line - Lines().begin()) + moved) + ':' +
         std::to_string(last_column_ + 1);
}

std::optional<SourceText> ReadSource(const std::string& name, std::string& reason) {
  std::optional<std::string> text = ReadBytes(name, reason);
  if (!text) return std::nullopt;
  return SourceText(name, std::move(*text));
}

void Mistakes::Add(const SourceText& source, std::size_t offset, const std::string& text) {
  Add(source.Name(), offset, source.Place(offset) + ": " + text);
}

void Mistakes::Add(const std::string& file, const std::string& text) {
  Add(file, 0, file + ": " + text);
}

void Mistakes::Add(const std::string& file, std::size_t offset, std::string text) {
  const auto known = std::ranges::find(files_, file);
  const auto index = static_cast<std::size_t>(known - files_.begin());
  if (known == files_.end()) files_.push_back(file);
  found_.push_back({index, offset, std::move(text)});
}

std::vector<std::string> Mistakes::Listing() const {
  std::vector<Mistake> sorted = found_;
  std::ranges::stable_sort(sorted, [](const Mistake& a, const Mistake& b) {
    return std::tie(a.file, a.offset) < std::tie(b.file, b.offset);
  });
  sorted.erase(std::unique(sorted.begin(), sorted.end()), sorted.end());
  std::vector<std::string> texts;
  for (const Mistake& mistake : sorted) {
    if (texts.size() == kMostShown) {
      texts.push_back(fmt::format("... and {} more", sorted.size() - kMostShown));
      break;
    }
    texts.push_back(mistake.text);
  }
  return texts;
}

bool IsText(const SourceText& source, Mistakes& mistakes) {
  const std::string_view text = source.Text();
  const std::size_t zero = text.find('\0');
  if (text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF")) {
    mistakes.Add(source.Name(), "the file is in UTF-16; save it in UTF-8");
  } else if (text.starts_with(kByteOrderMark)) {
    mistakes.Add(source, 0, "a second byte order mark; save the file with one or none");
  } else if (zero != std::string_view::npos) {
    mistakes.Add(source, zero, "a zero byte; the file must be text in UTF-8");
  } else {
    return true;
  }
  return false;
}

}  // namespace nuvhost
