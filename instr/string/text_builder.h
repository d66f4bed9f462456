// TextBuilder: a text result of known length, put together piece by piece.
#pragma once

#include <cstddef>
#include <cstring>
#include <memory>
#include <string_view>

#include "plugin/call.h"

namespace formula {

class TextBuilder {
 public:
  /// Ends the instruction with a failure where a text of that length cannot be a result.
  explicit TextBuilder(std::size_t length) {
    CheckTextLength(length);
    text_ = std::make_unique_for_overwrite<char[]>(length + 1);
    end_ = text_.get();
  }
  /// The pieces together are no longer than the text.
  void Append(std::string_view piece) {
    if (piece.empty()) return;
    std::memcpy(end_, piece.data(), piece.size());
    end_ += piece.size();
  }
  const char* CString() {
    *end_ = '\0';
    return text_.get();
  }

 private:
  std::unique_ptr<char[]> text_;
  char* end_ = nullptr;
};

}  // namespace formula
